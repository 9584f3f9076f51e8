/**
 * benchinside FILE: the figures of the program's parts, each timed where it runs: real windows on the X display of the
 * environment, virtual mice, a HOME of its own, all waits at their full length. Writes them to FILE as JSON.
 */
#include "bench/BusyApplication.h"
#include "bench/Inside.h"
#include "support/Program.h"
#include "support/TestHome.h"
#include "support/VirtualMice.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

void Inside::serveEvents()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

int main(int argc, char *argv[])
{
    if (argc != 2)
        qFatal("usage: benchinside FILE");
    QFile file(QString::fromLocal8Bit(argv[1]));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("%s: %s", argv[1], qPrintable(file.errorString()));
    qputenv("QT_QPA_PLATFORM", "xcb");
    const TestHome home;
    const BusyApplication application(argc, argv);
    VirtualMice::restoreScene();
    // What is measured is the program, not how long the devices take.
    for (const QJsonObject &device : VirtualMice::devices())
        VirtualMice::tell({"latency", device["id"].toString(), "0"});
    QJsonArray array;
    {
        Program program;
        QVector<Figure> figures = Inside::measureConnect(program);
        figures += Inside::measureChanges(program);
        figures += Inside::measurePages(program);
        figures += Inside::measureButtons(program);
        figures += Inside::measureMacros();
        figures += Inside::measureFirmware(program);
        for (const Figure &figure : figures)
            array.append(figure.toJson());
    }
    return file.write(QJsonDocument(array).toJson()) > 0 ? 0 : 1;
}
