#pragma once

#include <QtGlobal>

class QMessageLogContext;
class QString;

/**
 * Writes debug messages to the day's file in the Log folder. It has the form of a message handler of the framework; the
 * program doesn't install it, developers do while they look for something. Any thread may enter it.
 */
void writeLog(QtMsgType type, const QMessageLogContext &context, const QString &message);
