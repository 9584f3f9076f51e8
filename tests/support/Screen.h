#pragma once

#include "devicelink/FlashDataMap.h"

#include <QStringList>

class QWidget;

/**
 * Compares what the sensor page and the lighting page of a window show with what a Q1 on its 4K receiver or its cable
 * holds. It reads the widgets as a user would and knows the meaning of the bytes from the wire protocol, not from the
 * program's own tables.
 * \return one line for each control that shows something else; empty when all is true.
 */
QStringList screenDifferences(const QWidget *window, const FlashDataMap &held, bool isCorded = false);
