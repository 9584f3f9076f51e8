/** A DPIRange of any text: what is taken for a table behaves like one, with every DPI value. */
#include "FuzzHome.h"
#include "FuzzInput.h"
#include "Require.h"
#include "sensor/DpiCoding.h"

namespace {

void requireTable(const DpiRangeTable &table)
{
    require(table.DpiRangeCount >= 1 && table.DpiRangeCount <= DpiRangeTable::maximumRows, "one to four rows");
    for (int index = 0; index < table.DpiRangeCount; ++index) {
        const DpiRangeRow &row = table.row(index);
        require(0 <= row.min && row.min <= row.max && row.step > 0, "a row rises in steps");
        require(index == 0 || table.row(index - 1).max <= row.min, "the rows rise");
    }
}

void walk(const DpiRangeTable &table, int dpi)
{
    const SnappedDpi snapped = Snap(table, dpi);
    if (dpi >= table.minimum() && dpi <= table.maximum())
        require(snapped.pageStep > 0 && snapped.value >= 0 && snapped.value <= table.maximum(),
                "a value inside stays so");
    else
        require(snapped.pageStep == 0 && snapped.value == dpi, "a value outside stays as it is");
    const bool isInside = dpi >= table.minimum() && dpi <= table.maximum();
    require(isInside ? stepUp(table, dpi) > dpi : stepUp(table, dpi) == dpi, "up is up");
    require(isInside || stepDown(table, dpi) == dpi, "a value outside has no step");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzHome::instance();
    FuzzInput input(data, size);
    SensorCoding sensor;
    sensor.SensorName = input.byte() % 2 == 0 ? QStringLiteral("3395") : QStringLiteral("3311");
    const int dpi = input.number();
    const std::uint8_t flags = input.byte();
    const std::uint8_t code = input.byte();
    parseDpiRange(QString::fromUtf8(input.rest()).split(QLatin1Char(',')), sensor.DpiRange);

    const DpiRangeTable &table = sensor.DpiRange;
    requireTable(table);
    walk(table, dpi);
    for (int index = 0; index < table.DpiRangeCount; ++index) {
        for (const int edge : {table.row(index).min, table.row(index).max}) {
            walk(table, edge - 1);
            walk(table, edge);
            walk(table, edge + 1);
            encodeDpi(sensor, edge, flags);
        }
    }
    require(decodeDpi(sensor, {code, flags}) > 0, "a computed DPI value is above 0");
    encodeDpi(sensor, dpi, flags);
    return 0;
}
