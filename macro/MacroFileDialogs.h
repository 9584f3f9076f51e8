#pragma once

#include <QString>

class QWidget;

/** Ask the user for the file of an export or import, over the window of `page`. \return its path, empty if cancelled.
 */
QString askForExport(QWidget *page, const QString &name);
QString askForImport(QWidget *page);
