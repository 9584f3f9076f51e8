#include "bench/Inside.h"
#include "macro/Macro.h"
#include "macro/MacroFile.h"
#include "support/MacroText.h"
#include "support/Program.h"

#include <QListWidget>
#include <QTest>

#include <memory>

namespace {

using Judged = Figure::Judged;

constexpr int files = 2000;
constexpr int openings = 20;
constexpr int selections = 100;

} // namespace

QVector<Figure> Inside::measureMacros()
{
    const MacroRows rows = MacroText::many(maximumMacroEvents);
    for (int number = 0; number < files; ++number)
        MacroFile::write(QStringLiteral("macro %1").arg(number), {1, rows});
    std::unique_ptr<Macro> page;
    Figure open{"macroOpen", "the macro page with 2,000 macros, painted", "ms", {}, {}, Judged::Median, 50};
    for (int number = 0; number < openings; ++number) {
        page.reset();
        open.samples << timeOf([&] {
            page = std::make_unique<Macro>();
            page->show();
            serveEvents();
        });
    }
    Figure select{"macroSelect", "a macro of 70 events selected", "ms", {}, {}, Judged::Median, 5};
    Figure paint{"macroTimeLine", "the time line of 70 events painted", "ms", {}, {}, Judged::Median, 4};
    auto *const list = page->findChild<QListWidget *>(QStringLiteral("listWidgetHong"));
    auto *const timeLine = page->findChild<QWidget *>(QStringLiteral("timeLine"));
    for (int number = 0; number < selections; ++number) {
        list->setCurrentRow(number);
        select.samples << timeOf([&] { Q_EMIT list->clicked(list->currentIndex()); });
        paint.samples << timeOf([&] { timeLine->repaint(); });
    }
    page.reset();
    for (int number = 0; number < files; ++number)
        MacroFile::remove(QStringLiteral("macro %1").arg(number));
    return {open, select, paint};
}
