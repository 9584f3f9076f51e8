/** A language file of any bytes. */
#include "FuzzHome.h"
#include "FuzzInput.h"
#include "Require.h"
#include "productdata/LanguageFile.h"

#include <QBuffer>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzHome::instance();
    FuzzInput input(data, size);
    const QString section = input.byte() % 2 == 0 ? QStringLiteral("Sensor") : QStringLiteral("DialogMain");
    QByteArray content = input.rest();
    int texts = 0;
    for (const bool isWhole : {true, false}) {
        QBuffer file(&content);
        file.open(QIODevice::ReadOnly | QIODevice::Text);
        int read = 0;
        const QString fault =
            LanguageFile::readSectionFrom(file, section, [&](const QString &element, const QString &) {
                require(!element.isEmpty(), "a text belongs to an element");
                ++read;
            });
        if (isWhole && !fault.isEmpty())
            break;
        // A whole file that loses its end is damaged, and gives no text that the whole one didn't have.
        require(isWhole || read <= texts, "a cut file has no more texts");
        texts = read;
        content.chop(1);
    }
    return 0;
}
