#pragma once

#include "ui/Prompt.h"

#include <QTimer>

#include <atomic>
#include <functional>

/**
 * Asks for patience while the settings travel between mouse and program, and closes by itself.
 *
 * What there is to do when the time is up differs by who waits, and needs the device; so it is handed in. The members
 * RereadMark and ImportMode tell that operation its case; nothing here depends on them.
 */
class UpDataParam : public Prompt
{
    Q_OBJECT
public:
    UpDataParam();

    /** Starts the time to wait anew. */
    void startWaiting();
    /** The time is never up: what was waited for has gone. Closes nothing. */
    void stopWaiting() { timer.stop(); }
    /** True while the time runs. */
    bool isTimeRunning() const { return timer.isActive(); }
    /** Called once on the GUI thread when the time is up. It may serve the event loop and may close the prompt. */
    void setTimeUp(std::function<void()> operation) { timeUp = std::move(operation); }

    /** True if this waits for a record that is read anew; then the pages' ready flags stay. */
    bool rereadMark() const { return RereadMark; }
    void setRereadMark(bool mark) { RereadMark = mark; }

    /** True while this waits to import a profile file, and the file's path. */
    bool importMode() const { return ImportMode; }
    const QString &importPath() const { return ImportPath; }
    /** An empty path ends the import mode. */
    void setImport(const QString &path);

    /** The prompts made while this holds speak of an import. */
    static void setImportRunning(bool running) { ImportRunning = running; }

public Q_SLOTS:
    void onTimeupDestroy();

private:
    static inline std::atomic<bool> ImportRunning{false};

    QTimer timer;
    std::function<void()> timeUp;
    bool RereadMark = false;
    bool ImportMode = false;
    QString ImportPath;
};
