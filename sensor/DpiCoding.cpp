#include "sensor/DpiCoding.h"

namespace {

/** DPI of one count of a plain code. */
constexpr int plainUnit = 50;
/** DPI of one count with the wide-step bits. */
constexpr int wideUnit = 100;

/** Bits of the flags of a level; each stands once in either nibble, for the two axes. */
constexpr int wideStepBits = 0x22;
constexpr int doubledBits = 0x11;

/** The one sensor whose codes have ten bits: the two high ones travel in bits 2 and 3 of each nibble of the flags. */
bool hasTenBitCodes(const QString &sensorName) { return sensorName == QLatin1String("3395"); }

struct RangeCoding
{
    int flags;
    int divisor; ///< the code counts the DPI value divided by this
};

/** Coding above the end of row 0 to 3 of a sensor with the flags 0x33. */
constexpr std::array<RangeCoding, DpiRangeTable::maximumRows> codingAboveRow = {{
    {0x00, 1},
    {0x22, 2},
    {0x11, 2},
    {0x33, 4},
}};

RangeCoding rangeCoding(const DpiRangeTable &table, int dpi)
{
    if (table.DpiRangeFlags == 0x33) {
        for (int index = table.DpiRangeCount - 1; index >= 0; --index) {
            if (table.row(index).max < dpi)
                return codingAboveRow[static_cast<std::size_t>(index)];
        }
    }
    const bool doublesAboveFirstRow = table.DpiRangeFlags == 0x22 || table.DpiRangeFlags == 0x11;
    if (doublesAboveFirstRow && dpi > table.row(0).max)
        return {table.DpiRangeFlags, 2};
    return {0, 1};
}

} // namespace

int decodeDpi(const SensorCoding &sensor, DpiCode level)
{
    int dpi = 0;
    if (sensor.driver.hasKeysOf(sensor.SensorName)) {
        dpi = sensor.driver.dpi(sensor.SensorName, level.code);
    } else {
        const int highBits = hasTenBitCodes(sensor.SensorName) ? (level.flags >> 6) << 8 : 0;
        dpi = ((level.code | highBits) + 1) * (level.flags & wideStepBits ? wideUnit : plainUnit);
    }
    return level.flags & doubledBits ? dpi * 2 : dpi;
}

DpiCode encodeDpi(const SensorCoding &sensor, int dpi, std::uint8_t currentFlags)
{
    const RangeCoding range = rangeCoding(sensor.DpiRange, dpi);
    int flags = range.flags;
    int code = 0;
    if (sensor.driver.hasKeysOf(sensor.SensorName)) {
        const QString key =
            QStringLiteral("SENSOR_%1_DPI_%2").arg(sensor.SensorName, QString::number(dpi / range.divisor));
        code = sensor.driver.code(key);
        if (code < 0)
            code = dpi / (currentFlags & wideStepBits ? wideUnit : plainUnit);
    } else {
        code = dpi / (range.divisor * plainUnit) - 1;
        if (hasTenBitCodes(sensor.SensorName)) {
            const int high = code >> 8;
            flags |= (high * 16 | high) * 4;
        }
    }
    return {static_cast<std::uint8_t>(code), static_cast<std::uint8_t>(flags)};
}

SensorCoding &sensorCoding()
{
    static auto *const coding = new SensorCoding;
    return *coding;
}
