/**
 * firmwareimage FILE TARGET CID MID NAME VERSION [PAYLOAD]: makes a firmware image that a virtual device takes, as
 * docs/portwire-protocol.md has it. TARGET is `mouse` or `receiver`, VERSION such as 1.c, PAYLOAD a number of bytes.
 */
#include "tools/FirmwareFile.h"

#include <QFile>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStringList>

#include <cstdio>
#include <optional>

namespace {

std::optional<FirmwareDescription> descriptionIn(const QStringList &words)
{
    static const QRegularExpression form(QStringLiteral("\\A(\\d{1,3})\\.([0-9a-fA-F]{1,2})\\z"));
    constexpr uint mostPayload = 64 << 20; // more than any device takes, so that a refusal can be tried
    FirmwareDescription made;
    const QRegularExpressionMatch version = form.match(words[4]);
    bool isCompany = false;
    bool isModel = false;
    bool isPayload = true;
    const uint company = words[1].toUInt(&isCompany);
    const uint model = words[2].toUInt(&isModel);
    if (words.size() > 5)
        made.payload = words[5].toUInt(&isPayload);
    const bool isMouse = words[0] == QLatin1String("mouse");
    if ((!isMouse && words[0] != QLatin1String("receiver")) || !isCompany || company > 255 || !isModel || model > 255 ||
        !version.hasMatch() || !isPayload || made.payload > mostPayload)
        return std::nullopt;
    made.target = isMouse ? 210 : 211;
    made.companyId = static_cast<std::uint8_t>(company);
    made.modelId = static_cast<std::uint8_t>(model);
    made.name = words[3].toStdString();
    made.version = version.captured(1).toUInt() << 8 | version.captured(2).toUInt(nullptr, 16);
    return made;
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList words;
    for (int i = 1; i < argc; ++i)
        words << QString::fromLocal8Bit(argv[i]);
    const auto description =
        words.size() == 6 || words.size() == 7 ? descriptionIn(words.mid(1)) : std::optional<FirmwareDescription>();
    if (!description) {
        std::fputs("usage: firmwareimage FILE mouse|receiver CID MID NAME VERSION [PAYLOAD]\n", stderr);
        return 1;
    }
    const std::vector<std::uint8_t> content = firmwareFile(*description);
    QSaveFile file(words[0]);
    if (file.open(QIODevice::WriteOnly) &&
        file.write(reinterpret_cast<const char *>(content.data()), static_cast<qint64>(content.size())) ==
            static_cast<qint64>(content.size()) &&
        file.commit())
        return 0;
    std::fprintf(stderr, "firmwareimage: can't write %s: %s\n", qPrintable(words[0]), qPrintable(file.errorString()));
    return 1;
}
