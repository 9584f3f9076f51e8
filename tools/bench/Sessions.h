#pragma once

#include "bench/Figure.h"

class Screen;

/** What only the whole program can show, measured on the program itself and the reference in turn. */
namespace Sessions {

/** Start of the process to the chooser with its two devices, painted. */
QVector<Figure> measureStart(Screen &screen, const QString &folder);

/** A device connected, each page shown: resident memory, then the idle program on each page. */
QVector<Figure> measureUse(Screen &screen, const QString &folder);

} // namespace Sessions
