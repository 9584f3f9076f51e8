/**
 * codeconfig PLAIN CODED: makes the product file that the program reads from the one that people edit. The values of
 * the identity keys are Base64-coded, each element of a list on its own; every other line is copied as it stands.
 */
#include "productdata/ConfigStore.h"

#include <QFile>
#include <QSaveFile>
#include <QTextStream>

namespace {

QString codedLine(const QString &line)
{
    const int equals = line.indexOf(QLatin1Char('='));
    if (equals < 0 || line.startsWith(QLatin1Char(';')) || !ConfigStore::isCodedKey(line.left(equals).trimmed()))
        return line;
    QStringList elements = line.mid(equals + 1).split(QLatin1Char(','));
    for (QString &element : elements)
        element = QString::fromLatin1(element.trimmed().toUtf8().toBase64());
    return line.left(equals + 1) + elements.join(QLatin1Char(','));
}

} // namespace

int main(int argc, char *argv[])
{
    QTextStream errors(stderr);
    if (argc != 3) {
        errors << "usage: codeconfig PLAIN CODED\n";
        return 1;
    }
    QFile plain(QString::fromLocal8Bit(argv[1]));
    QSaveFile coded(QString::fromLocal8Bit(argv[2]));
    if (!plain.open(QIODevice::ReadOnly | QIODevice::Text) || !coded.open(QIODevice::WriteOnly)) {
        errors << "codeconfig: " << plain.errorString() << ", " << coded.errorString() << '\n';
        return 1;
    }
    const QStringList lines = QString::fromUtf8(plain.readAll()).split(QLatin1Char('\n'));
    QStringList result;
    for (const QString &line : lines)
        result << codedLine(line);
    coded.write(result.join(QLatin1Char('\n')).toUtf8());
    return coded.commit() ? 0 : 1;
}
