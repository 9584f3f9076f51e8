#include "macro/MacroImage.h"

#include "macro/MacroFile.h"
#include "macro/RepeatCode.h"

#include <QByteArray>
#include <QDebug>

#include <algorithm>
#include <cstring>

namespace {
static_assert(sizeof(MacroSlot::Events) / sizeof(MacroEvent) == maximumMacroEvents, "an image holds them all");
} // namespace

void MacroImage::setName(MacroSlot &image, const QString &name)
{
    const QByteArray bytes = MacroFile::fitting(name).toLocal8Bit();
    std::memset(image.Name, 0, sizeof image.Name);
    std::memcpy(image.Name, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    image.NameLength = static_cast<std::uint8_t>(bytes.size());
}

QString MacroImage::name(const MacroSlot &image)
{
    return QString::fromLocal8Bit(image.Name, sizeof image.Name).remove(QChar(QChar::Null));
}

MacroSlot MacroImage::make(const QString &name, const MacroRows &rows)
{
    MacroSlot image{};
    setName(image, name);
    int at = 0;
    for (const MacroRow &row : rows) {
        if (at == maximumMacroEvents)
            break;
        MacroEvent &event = image.Events[at];
        if (row.isEvent()) {
            if (row.action != MacroRow::Action::Untold)
                event.Action = row.action == MacroRow::Action::Press ? 0 : 1;
            event.Kind = row.kind;
            event.Code = row.code;
        } else {
            event.DelayMs = row.delayMs;
            ++at;
        }
    }
    image.EventCount = static_cast<std::uint8_t>(std::min(at + 1, maximumMacroEvents));
    return image;
}

std::optional<MacroSlot> MacroImage::makeFromFile(const QString &name)
{
    const std::optional<MacroContent> content = MacroFile::read(name);
    if (!content)
        return {};
    return make(name, content->rows);
}

int MacroImage::repeatCodeOfFile(const QString &name)
{
    const std::optional<MacroContent> content = MacroFile::read(name);
    return content ? content->repeat.value_or(RepeatCode::once) : RepeatCode::once;
}

MacroRows MacroImage::rows(const MacroSlot &image)
{
    MacroRows rows;
    const int count = std::min<int>(image.EventCount, maximumMacroEvents);
    for (int at = 0; at < count; ++at) {
        const MacroEvent &event = image.Events[at];
        rows += MacroRow::event(KeyTable::findInMouse(event.Code, event.Kind),
                                event.Action == 0 ? MacroRow::Action::Press : MacroRow::Action::Release);
        if (at + 1 < count)
            rows += MacroRow::delay(event.DelayMs);
    }
    return rows;
}

MacroImage::ReadBack MacroImage::readBack(const FlashDataMap &record, int slot, const QStringList &names)
{
    if (slot < 0 || slot >= macroSlotCount)
        return ReadBack::NoFile;
    const QString macro = name(record.MacroSlots[slot]);
    if (!MacroFile::isFileName(macro)) {
        qWarning() << "a macro of the mouse has a name that no file can have:" << macro;
        return ReadBack::NoFile;
    }
    if (!names.contains(macro) && names.contains(macro, Qt::CaseInsensitive)) {
        qWarning() << "a macro of the mouse differs from one on this PC only in upper and lower case:" << macro;
        return ReadBack::NoFile;
    }
    const MacroContent held{RepeatCode::normalised(record.KeyFunctions[slot].KeyParam2), rows(record.MacroSlots[slot])};
    const std::optional<MacroContent> present = MacroFile::read(macro);
    if (present && present->repeat == held.repeat && present->rows == held.rows)
        return ReadBack::Unchanged;
    if (!MacroFile::write(macro, held, MacroFile::LineEnds::BareBehindFirst))
        return ReadBack::NoFile;
    return present ? ReadBack::Changed : ReadBack::Made;
}
