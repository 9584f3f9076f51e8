#pragma once

#include <QPoint>
#include <QProcess>
#include <QSize>

class Screen;

/**
 * A program under measurement: started, looked at, clicked on and asked to close like any other. Nothing is compiled
 * into it or handed to it for that.
 */
class Subject
{
public:
    static constexpr QSize windowSize{1020, 700};

    /** Starts the program and waits until its window is painted and at rest; ends the bench when that fails. */
    Subject(Screen &display, const QString &executable);
    /** Closes its window and waits for its end. */
    ~Subject();
    Q_DISABLE_COPY(Subject)

    /** Milliseconds from before the start of the process to the last change of the first picture. */
    double startTime() const { return start; }
    /** Resident memory now, in MiB. */
    double residentMemory() const;
    /** Seconds of processor time that all its threads have used. */
    double processorTime() const;
    /** Part of one core that it uses over a while, in percent. */
    double processorUse(double seconds) const;

    /** Clicks at a place of the window and moves the pointer away. */
    void click(QPoint place) const;
    /** Presses keys, by their names. */
    void press(const QStringList &keys) const;
    /** Clicks, and ends the bench if the window shows the same as before afterwards. */
    void clickToChange(QPoint place) const;

private:
    Screen &screen;
    QProcess process;
    std::uint32_t window = 0;
    double start = 0;
};

/** Waits. */
void rest(double seconds);
