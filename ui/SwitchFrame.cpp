#include "ui/SwitchFrame.h"

#include "productdata/Theme.h"
#include "ui/FittedText.h"
#include "ui/LateStyle.h"
#include "ui/PageFont.h"

#include <QLabel>
#include <QToolButton>

namespace {

constexpr QSize switchSize(204, 31);
constexpr QRect labelPlace(0, 0, 152, 31);
constexpr QRect buttonPlace(158, 3, 46, 25);

} // namespace

SwitchFrame::SwitchFrame(const char *buttonName, const char *folder, const QString &title, QWidget *parent)
    : QFrame(parent), label(new QLabel(this)), button(new QToolButton(this))
{
    resize(switchSize);
    label->setObjectName(QStringLiteral("label"));
    label->setGeometry(labelPlace);
    label->setStyleSheet(Theme::label());
    label->setFont(PageFont::font());
    button->setObjectName(QLatin1String(buttonName));
    button->setGeometry(buttonPlace);
    button->setCheckable(true);
    new LateStyle(button, Theme::switchButton(Theme::pictureFolder(folder), button->objectName()));
    setTitle(title);
}

void SwitchFrame::setOn(bool on) { button->setChecked(on); }

bool SwitchFrame::isOn() const { return button->isChecked(); }

void SwitchFrame::setTitle(const QString &text)
{
    FittedText::set(label, text, PageFont::points, 0);
    button->setAccessibleName(text);
}

void SwitchFrame::setDescription(const QString &toolTip)
{
    label->setToolTip(toolTip);
    button->setToolTip(toolTip);
}
