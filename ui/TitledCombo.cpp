#include "ui/TitledCombo.h"

#include "productdata/Theme.h"
#include "ui/ComboStyle.h"
#include "ui/FittedText.h"
#include "ui/MyConmboBox.h"
#include "ui/PageFont.h"

#include <QLabel>
#include <QSignalBlocker>

namespace {

constexpr int titleHeight = 21;
constexpr int boxTop = 30;
constexpr QSize boxSize(130, 30);

} // namespace

TitledCombo::TitledCombo(const char *comboName, const char *folder, const QStringList &items, QWidget *parent)
    : QFrame(parent), combo(new MyConmboBox(this)), label(new QLabel(this))
{
    label->setObjectName(QStringLiteral("label"));
    label->setStyleSheet(Theme::label());
    label->setFont(PageFont::font());

    combo->setObjectName(QLatin1String(comboName));
    styleCombo(combo, folder);
    combo->addItems(items);
    resize(boxSize.width(), titledHeight);
    layOut();
}

void TitledCombo::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    layOut();
}

void TitledCombo::layOut()
{
    const bool hasTitle = height() >= titledHeight;
    label->setGeometry(0, 0, width(), titleHeight); // first: one that shows without a size measures its text for one
    label->setVisible(hasTitle);
    combo->setGeometry(0, hasTitle ? boxTop : 0, qMin(width(), boxSize.width()),
                       hasTitle ? boxSize.height() : qMin(height(), boxSize.height()));
    FittedText::set(label, title, PageFont::points, 0);
}

void TitledCombo::setIndex(int index)
{
    if (index >= 0 && index < combo->count())
        combo->setCurrentIndex(index);
}

void TitledCombo::setIndexSilently(int index)
{
    const QSignalBlocker blocker(combo);
    setIndex(index);
}

int TitledCombo::index() const { return combo->currentIndex(); }

void TitledCombo::setItemText(int index, const QString &text) { combo->setItemText(index, text); }

void TitledCombo::setTitle(const QString &text)
{
    title = text;
    FittedText::set(label, title, PageFont::points, 0);
}

void TitledCombo::setDescription(const QString &toolTip)
{
    label->setToolTip(toolTip);
    combo->setToolTip(toolTip);
}
