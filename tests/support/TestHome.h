#pragma once

#include "app/hub/Wait.h"

#include <QApplication>
#include <QDir>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>
#include <QTimer>

/**
 * A home folder of the test's own, so that nothing of the user's is read or written and tests can run side by side.
 * Construct it before the QApplication: Qt looks at the platform and the folders only once. It goes with the object.
 * HALVARION_TEST_HOME names a folder that another test keeps, for processes that come one after the other in one home.
 */
struct TestHome
{
    TestHome()
    {
        if (qEnvironmentVariableIsSet("HALVARION_TEST_HOME"))
            folder.remove();
        else if (!folder.isValid())
            qFatal("no folder for the test: %s", qPrintable(folder.errorString()));
        set("HOME", QString());
        set("XDG_CONFIG_HOME", QStringLiteral("config"));
        set("XDG_DATA_HOME", QStringLiteral("data"));
        set("XDG_RUNTIME_DIR", QStringLiteral("run"));
        set("TMPDIR", QStringLiteral("tmp"));
#ifdef Q_OS_WIN
        // The user's folders are the system's to say: who runs a test there gives it a user of its own. The screen,
        // too: without one there are no fonts. The mice are of this process alone all the same.
        set("PORTWIRE_FOLDER", QStringLiteral("portwire"));
#else
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        qunsetenv("WAYLAND_DISPLAY"); // the windows are on no one's desktop
        // As the program does at start: with the C locale a file with a Chinese name could not be opened.
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
    }

    /** Full path of a file or folder in the home. */
    QString path(const QString &name = QString()) const
    {
        return QDir(qEnvironmentVariable("HALVARION_TEST_HOME", folder.path())).filePath(name);
    }

    QTemporaryDir folder;

private:
    void set(const char *variable, const QString &name)
    {
        const QString target = QDir::cleanPath(path(name));
        QDir().mkpath(target);
        // Qt warns about a runtime folder that others may read.
        QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv(variable, QFile::encodeName(target));
    }
};

/**
 * What is left of every wait of the program. On Windows a thread sleeps for a whole millisecond at least, and a mouse
 * that answers hundreds of reports has to be done within the shortest of the waits.
 */
#ifdef Q_OS_WIN
constexpr double shortWaits = 0.1;
#else
constexpr double shortWaits = 0.02;
#endif

/** Runs a test class in its own home, with every wait of the program cut. */
#define HALVARION_TEST_MAIN(TestClass)                                                                                 \
    int main(int argc, char *argv[])                                                                                   \
    {                                                                                                                  \
        const TestHome home;                                                                                           \
        QApplication application(argc, argv);                                                                          \
        Wait::setScale(shortWaits);                                                                                    \
        TestClass test;                                                                                                \
        return QTest::qExec(&test, argc, argv);                                                                        \
    }
