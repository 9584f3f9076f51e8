#pragma once

class QString;
class QWidget;

/**
 * Ask the user for a file, over the window of `page`. They begin where the last one ended, as long as the program runs,
 * and close by themselves when the device window is left: what they were opened for has gone then.
 */
namespace FileDialogs {

/** For a new file, by this name unless the user says otherwise. \return its full path, empty if cancelled. */
QString askForSaving(QWidget *page, const QString &filter, const QString &name);
/** For one that exists. \return its full path, empty if cancelled. */
QString askForOpening(QWidget *page, const QString &filter);

} // namespace FileDialogs
