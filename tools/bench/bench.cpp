/**
 * bench FILE [PART...]: measures the program beside it, prints the figures as a table and writes them to FILE as JSON,
 * with every sample. Parts are start, inside (parts of the program, each by itself) and use; all without a name. Wants
 * an X display with nobody at its keyboard, and a HOME of its own. HALVARION_PROGRAMS names the folder of a program
 * that isn't beside it, with a reference program: for start alone. Exits with 1 when something could not be measured;
 * an aim that is missed stands in the table.
 */
#include "bench/Figure.h"
#include "bench/Screen.h"
#include "bench/Sessions.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>

namespace {

/** The figures of the program's parts. */
QVector<Figure> measureInside(const QString &folder)
{
    const QTemporaryDir place;
    const QString path = place.filePath(QStringLiteral("inside.json"));
    if (QProcess::execute(folder + QStringLiteral("/benchinside"), {path}) != 0)
        qFatal("benchinside failed");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("benchinside has left no figures: %s", qPrintable(file.errorString()));
    QVector<Figure> figures;
    const QJsonArray array = QJsonDocument::fromJson(file.readAll()).array();
    for (const QJsonValue &value : array)
        figures << Figure::fromJson(value.toObject());
    return figures;
}

bool write(const QString &path, const QVector<Figure> &figures)
{
    QJsonArray array;
    for (const Figure &figure : figures)
        array.append(figure.toJson());
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(QJsonObject{{"figures", array}}).toJson()) > 0 &&
           file.commit();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QTextStream errors(stderr);
    const QStringList known = {QStringLiteral("start"), QStringLiteral("inside"), QStringLiteral("use")};
    const QStringList parts = QCoreApplication::arguments().mid(2);
    const auto isKnown = [&known](const QString &part) { return known.contains(part); };
    if (argc < 2 || !std::all_of(parts.begin(), parts.end(), isKnown)) {
        errors << "usage: bench FILE [" << known.join(QLatin1Char('|')) << "...]\n";
        return 1;
    }
    const auto isWanted = [&parts](const char *part) { return parts.isEmpty() || parts.contains(QLatin1String(part)); };
    const QString folder = qEnvironmentVariable("HALVARION_PROGRAMS", QCoreApplication::applicationDirPath());
    Screen screen;
    QVector<Figure> figures;
    if (isWanted("start"))
        figures += Sessions::measureStart(screen, folder);
    if (isWanted("inside"))
        figures += measureInside(folder);
    if (isWanted("use"))
        figures += Sessions::measureUse(screen, folder);

    QTextStream(stdout) << tableOf(figures);
    const auto missed = std::count_if(figures.begin(), figures.end(), [](const Figure &one) { return !one.isMet(); });
    if (missed > 0)
        QTextStream(stdout) << '\n' << missed << " aims are missed\n";
    if (!write(QString::fromLocal8Bit(argv[1]), figures)) {
        errors << "bench: the figures can't be written to " << argv[1] << '\n';
        return 1;
    }
    return 0;
}
