#include "sensor/DriverSensor.h"

#include "sensor/DpiRange.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>

#include <algorithm>

namespace {

/** The names of the feature lists, in the order of DriverSensor::Feature. */
constexpr std::array<const char *, DriverSensor::featureCount> featureKeys = {
    "SUPPORT_SENSOR_MODE_SEL", "SUPPORT_LOD_CAL",     "SUPPORT_RIPPLE",
    "SUPPORT_FIXLINE",         "SUPPORT_MOTION_SYNC", "SUPPORT_MOUSEPAD_CAL",
};

/** More than any sensor table needs; a larger file is not ours. */
constexpr qint64 maximumFileSize = 1 << 20;
/** A longer line is no definition. */
constexpr int maximumLineLength = 1000;

/** One line with its tokens. The line ending stays on the last token, where the rules look for it. */
struct Line
{
    QStringList tokens;

    QStringList parts() const { return tokens.at(1).split(QLatin1Char('\t')); }
};

/** Cuts the line ending off. \return false if there was none. */
bool takeLineEnding(QString &text)
{
    if (!text.endsWith(QLatin1Char('\n')))
        return false;
    text.chop(text.endsWith(QLatin1String("\r\n")) ? 2 : 1);
    return true;
}

void add(DriverSensor &driver, const QString &key, const QString &number, int base)
{
    bool isNumber = false;
    const int value = number.toInt(&isNumber, base);
    if (!isNumber || value < 0) {
        qWarning() << "driver_sensor.h:" << key << "has no number but" << number.left(20);
        return;
    }
    driver.DriverKeys.append(key);
    driver.DriverValues.append(value);
}

/** A definition in decimal, with a comment behind it: "#define<blank>NAME<tab>12<blank>//comment". */
void takeCommented(DriverSensor &driver, const Line &line)
{
    const QStringList parts = line.tokens.at(1).split(QLatin1Char('\t'), Qt::SkipEmptyParts);
    if (parts.size() == 2)
        add(driver, parts.at(0), parts.at(1), 10);
}

/** A feature list: "#define<blank>SUPPORT_RIPPLE<tab>3395,3311". \return false if the line names no feature. */
bool takeFeature(DriverSensor &driver, const Line &line)
{
    const auto named = std::find_if(featureKeys.begin(), featureKeys.end(), [&line](const char *key) {
        return line.tokens.at(1).contains(QLatin1String(key));
    });
    if (named == featureKeys.end())
        return false;
    const QStringList parts = line.parts();
    if (parts.size() < 2)
        return true;
    QString sensors = parts.at(1);
    takeLineEnding(sensors);
    driver.Support[static_cast<std::size_t>(named - featureKeys.begin())] = sensors;
    return true;
}

/** A definition in hexadecimal: "#define<blank>NAME<tab>0x0C" and the line ending. */
void takeHexadecimal(DriverSensor &driver, const Line &line)
{
    const QStringList parts = line.parts();
    if (parts.size() < 2)
        return;
    QString number = parts.at(1);
    if (takeLineEnding(number))
        add(driver, parts.at(0), number, 16);
}

void takeLine(DriverSensor &driver, const QString &text)
{
    const Line line{text.split(QLatin1Char(' '), Qt::SkipEmptyParts)};
    if (line.tokens.size() == 3 && line.tokens.at(2).contains(QLatin1String("//")))
        takeCommented(driver, line);
    else if (line.tokens.size() == 2 && takeFeature(driver, line))
        return;
    else if (line.tokens.size() > 1 && line.tokens.at(0) == QLatin1String("#define"))
        takeHexadecimal(driver, line);
}

} // namespace

bool DriverSensor::supports(Feature feature, const QString &sensorName) const
{
    return !sensorName.isEmpty() && Support[feature].contains(sensorName);
}

bool DriverSensor::hasKeysOf(const QString &sensorName) const
{
    return !sensorName.isEmpty() && std::any_of(DriverKeys.begin(), DriverKeys.end(),
                                                [&](const QString &key) { return key.contains(sensorName); });
}

int DriverSensor::code(const QString &key) const
{
    const int index = DriverKeys.indexOf(key);
    return index < 0 ? -1 : DriverValues.at(index);
}

int DriverSensor::dpi(const QString &sensorName, int wantedCode) const
{
    for (int index = 0; index < DriverKeys.size(); ++index) {
        const QString &key = DriverKeys.at(index);
        // The value stands behind the I of "DPI" and its underscore, the first capital I of a key.
        if (DriverValues.at(index) == wantedCode && key.contains(sensorName)) {
            const int dpi = key.midRef(key.indexOf(QLatin1Char('I')) + 2).toInt();
            return dpi >= 0 && dpi <= highestDpi ? dpi : 0;
        }
    }
    return 0;
}

DriverSensor parseDriverSensor(const QByteArray &text)
{
    DriverSensor driver;
    int start = 0;
    while (start < text.size()) {
        const int ending = text.indexOf('\n', start);
        const int next = ending < 0 ? text.size() : ending + 1;
        if (next - start <= maximumLineLength)
            takeLine(driver, QString::fromUtf8(text.constData() + start, next - start));
        else
            qWarning() << "driver_sensor.h: a line of" << next - start << "bytes is skipped";
        start = next;
    }
    return driver;
}

DriverSensor readDriverSensor()
{
    QFile file(QCoreApplication::applicationDirPath() + QStringLiteral("/driver_sensor.h"));
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning() << "driver_sensor.h:" << file.errorString();
        return {};
    }
    if (file.size() > maximumFileSize) {
        qWarning() << "driver_sensor.h:" << file.size() << "bytes are no table of sensors";
        return {};
    }
    return parseDriverSensor(file.readAll());
}
