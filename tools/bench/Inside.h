#pragma once

#include "bench/Figure.h"

#include <QElapsedTimer>

class Program;

/** Figures of the program's parts, taken in the process that runs them. The mouse is q1 on its 4K receiver. */
namespace Inside {

/** From the click on a picture to three filled pages. Leaves the device connected. */
QVector<Figure> measureConnect(Program &program);

/** Settings changed by setters and by controls, one and ten thousand. Wants the device connected. */
QVector<Figure> measureChanges(Program &program);

/** Records, languages and a drag on pages that show. Wants the device connected. */
QVector<Figure> measurePages(Program &program);

/** The search for a firmware image and the window while one is written. Wants the device connected; ends on its cable.
 */
QVector<Figure> measureFirmware(Program &program);

/** The macro page with many macros, and one of its own. */
QVector<Figure> measureMacros();

/** Records and macros on the button page. Wants the device connected. */
QVector<Figure> measureButtons(Program &program);

/** Milliseconds that something takes. */
template<typename Operation>
double timeOf(Operation operation)
{
    QElapsedTimer timer;
    timer.start();
    operation();
    return double(timer.nsecsElapsed()) * 1e-6;
}

/** Everything that lies in the event queue, pictures to paint above all. */
void serveEvents();

} // namespace Inside
