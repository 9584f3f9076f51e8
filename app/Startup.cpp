#include "app/Startup.h"

#include "app/DialogMain.h"
#include "app/Ending.h"
#include "app/InstanceGuard.h"
#include "app/ScreenScale.h"
#include "app/Selection.h"
#include "app/TextSetup.h"
#include "productdata/UserFolders.h"
#include "ui/ExeIsRun.h"

#include <QApplication>
#include <QPixmapCache>

namespace {
const char *const glIntegration = "QT_XCB_GL_INTEGRATION";
}

int runProgram(int &argc, char **argv)
{
    useUtf8FileNames();
    UserFolders::prepare();
    UserFolders::prune(UserFolders::Folder::Log);
    UserFolders::prune(UserFolders::Folder::Exception);

    // On X11, Qt loads a graphics driver for windows that draw with OpenGL, which takes as long as half of all the
    // rest. None of these does.
    if (!qEnvironmentVariableIsSet(glIntegration))
        qputenv(glIntegration, "none");
    useScreenScale();
    QApplication application(argc, argv);
    // A prompt that closes while the window sits in the tray is, to Qt, the last window closed. The exit path quits.
    QApplication::setQuitOnLastWindowClosed(false);
    QPixmapCache::setCacheLimit(32768);
    setUpFonts();
    setUpSelection();
    if (!InstanceGuard::instance().take()) {
        ExeIsRun prompt;
        prompt.exec();
        return 0;
    }
    auto *const window = new DialogMain;
    window->show();
    const int exitCode = QApplication::exec();
    Ending::finish(window);
    return exitCode;
}
