#pragma once

#include <QStringList>

class QWidget;

/**
 * Every text below a widget that is wider or higher than the place it has, one line each with the object's name, the
 * text and the sizes. Labels, buttons, check boxes and the items of combo boxes are measured with their own fonts.
 */
QStringList textsThatDoNotFit(const QWidget *window);
