/** An export of a macro of any bytes: all of the file, or what stands behind a good header. */
#include "FuzzInput.h"
#include "Require.h"
#include "macro/MacroExportFile.h"

#include <QtEndian>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    QByteArray content;
    if (input.byte() % 2 == 0) {
        content = MacroExportFile::write(QStringLiteral("macro"), 1, {}, {});
        qToBigEndian<qint32>(input.number(), content.data() + content.size() - 4);
    }
    content += input.rest();
    const auto header = MacroExportFile::readHeader(content);
    const auto rows = MacroExportFile::readRows(content, {MouseButtonNames::current()});
    require(header || !rows, "no rows without a header");
    if (!rows)
        return 0;
    MacroRows plain;
    for (const MacroExportFile::Row &row : *rows) {
        require(row.picture.isEmpty() || row.picture.startsWith("\x89PNG"), "a picture of the one kind");
        require(row.picture.size() < content.size(), "no more than there was");
        plain += row.row;
    }
    require(eventCount(plain) <= maximumMacroEvents && plain.size() <= 2 * maximumMacroEvents, "a macro of some rows");
    const QByteArray none(4, '\xff'); // an icon without an engine
    const auto again = MacroExportFile::readRows(
        MacroExportFile::write(header->name, header->repeat, plain, {none, none, none}), {MouseButtonNames::current()});
    require(again && again->size() == plain.size(), "what was read can be written");
    for (int at = 0; at < plain.size(); ++at)
        require(again->at(at).row == plain.at(at), "and is the same");
    return 0;
}
