#include "app/Startup.h"

#include "app/DialogMain.h"
#include "app/Ending.h"
#include "app/InstanceGuard.h"
#include "app/TextSetup.h"
#include "productdata/UserFolders.h"
#include "ui/ExeIsRun.h"

#include <QApplication>
#include <QPixmapCache>

int runProgram(int &argc, char **argv)
{
    useUtf8FileNames();
    UserFolders::prepare();
    UserFolders::prune(UserFolders::Folder::Log);
    UserFolders::prune(UserFolders::Folder::Exception);

    QApplication application(argc, argv);
    // A prompt that closes while the window sits in the tray is, to Qt, the last window closed. The exit path quits.
    QApplication::setQuitOnLastWindowClosed(false);
    QPixmapCache::setCacheLimit(32768);
    setUpFonts();
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
