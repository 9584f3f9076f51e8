#include "app/DialogMain.h"
#include "bench/Inside.h"
#include "buttons/Buttoninterface.h"
#include "macro/MacroFile.h"
#include "macro/MacroImage.h"
#include "support/MacroText.h"
#include "support/Program.h"
#include "support/VirtualMice.h"

#include <QTest>
#include <QToolButton>

#include <algorithm>

namespace {

using Judged = Figure::Judged;

constexpr int rounds = 100;
constexpr int assignments = 40;
constexpr int slots = 6;

QString macroName(int number) { return QStringLiteral("bench %1").arg(number); }

void makeFiles(int from, int to)
{
    const MacroRows rows = MacroText::many(maximumMacroEvents);
    for (int number = from; number < to; ++number)
        MacroFile::write(macroName(number), {1, rows});
}

/** The record with a macro on each button: those of the files from `first` on. */
FlashDataMap withMacros(FlashDataMap record, int first)
{
    const MacroRows rows = MacroText::many(maximumMacroEvents);
    for (int slot = 0; slot < slots; ++slot) {
        record.KeyFunctions[slot] = {6, static_cast<std::uint8_t>(slot), 1};
        record.MacroSlots[slot] = MacroImage::make(macroName(first + slot), rows);
    }
    return record;
}

Figure measureRecord(Buttoninterface *page, const QString &key, int files, double aim)
{
    Figure figure{
        key, QStringLiteral("a record with six macros, of %1 on the PC").arg(files), "ms", {}, {}, Judged::Median, aim};
    const FlashDataMap held = VirtualMice::record(QStringLiteral("q1"));
    const FlashDataMap records[] = {withMacros(held, 0), withMacros(held, slots)};
    for (int number = 0; number < rounds; ++number) {
        figure.samples << Inside::timeOf([&] { page->SlotUpDataButtonUIB(records[number % 2]); });
        Inside::serveEvents();
    }
    page->SlotUpDataButtonUIB(held);
    return figure;
}

/** A click on a macro of the list, by turns two, for the second row. */
Figure measureAssignment(Program &program, Buttoninterface *page)
{
    Figure figure{"assignMacro", "a macro put on a button", "ms", {}, {}, Judged::Median, 2};
    for (int number = 0; number < assignments; ++number) {
        program.click(QStringLiteral("RightKey"));
        program.click(QStringLiteral("DPI_10"));
        const QList<QToolButton *> buttons = page->findChildren<QToolButton *>();
        const auto button = std::find_if(buttons.begin(), buttons.end(), [number](const QToolButton *each) {
            return each->text() == macroName(number % 2);
        });
        if (button == buttons.end())
            qFatal("the macro is not in the list");
        figure.samples << Inside::timeOf([&] { (*button)->click(); });
        Inside::serveEvents();
    }
    const auto isAssigned = [] {
        const FlashDataMap held = VirtualMice::record(QStringLiteral("q1"));
        return held.KeyFunctions[1].KeyType == 6 && MacroImage::name(held.MacroSlots[1]) == macroName(1);
    };
    if (!QTest::qWaitFor(isAssigned))
        qFatal("the macro has not reached the mouse");
    return figure;
}

} // namespace

QVector<Figure> Inside::measureButtons(Program &program)
{
    constexpr int few = 20;
    constexpr int many = 2000;
    auto *const page = program.window()->findChild<Buttoninterface *>();
    makeFiles(0, few);
    program.click(QStringLiteral("ButtonMain"));
    QTest::qWait(200);
    QVector<Figure> figures;
    figures << measureRecord(page, QStringLiteral("recordButtons"), few, 5);
    figures << measureAssignment(program, page);
    makeFiles(few, many);
    program.click(QStringLiteral("ButtonMain"));
    figures << measureRecord(page, QStringLiteral("recordButtonsMany"), many, 16);
    for (int number = 0; number < many; ++number)
        MacroFile::remove(macroName(number));
    return figures;
}
