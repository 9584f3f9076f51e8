#include "ui/NumberBox.h"

#include "productdata/Theme.h"

void styleNumberBox(QSpinBox *number)
{
    number->setButtonSymbols(QAbstractSpinBox::NoButtons);
    number->setAlignment(Qt::AlignCenter);
    number->setStyleSheet(Theme::spinBox() + Theme::focusFrame(QStringLiteral("QSpinBox")));
}

void styleNumberDisplay(QSpinBox *number)
{
    styleNumberBox(number);
    number->setReadOnly(true);
    number->setFocusPolicy(Qt::NoFocus);
}
