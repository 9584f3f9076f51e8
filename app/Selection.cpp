#include "app/Selection.h"

#include "productdata/Theme.h"
#include "ui/RgbText.h"

#include <QApplication>
#include <QPalette>

void setUpSelection()
{
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Highlight, colourOf(Theme::rgb(Theme::Colour::ComboxSelectColor)));
    palette.setColor(QPalette::HighlightedText, colourOf(Theme::rgb(Theme::Colour::ComboxTextColor)));
    QApplication::setPalette(palette);
}
