/**
 * reference: the least that a window of this size costs. Same set-up of Qt as the program, one label, nothing else. The
 * program's start, memory and idle time are given as multiples of it, which a faster or busier machine leaves alone.
 */
#include "app/TextSetup.h"

#include <QApplication>
#include <QLabel>

int main(int argc, char *argv[])
{
    useUtf8FileNames();
    QApplication application(argc, argv);
    setUpFonts();
    QWidget window(nullptr, Qt::FramelessWindowHint);
    window.setWindowTitle(QStringLiteral("reference"));
    window.setFixedSize(1020, 700);
    QLabel label(QStringLiteral("Reference"), &window);
    label.setAlignment(Qt::AlignCenter);
    label.setGeometry(window.rect());
    window.show();
    return QApplication::exec();
}
