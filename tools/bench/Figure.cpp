#include "bench/Figure.h"

#include <QJsonArray>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr std::array<const char *, 4> judgedNames = {"nothing", "median", "percentile99", "ratio"};
/** With more samples than these the ends of the spread are the 5th and the 95th percentile. */
constexpr int fewSamples = 20;

QJsonArray toArray(const QVector<double> &samples)
{
    QJsonArray array;
    for (const double sample : samples)
        array.append(sample);
    return array;
}

QVector<double> toSamples(const QJsonArray &array)
{
    QVector<double> samples;
    for (const QJsonValue &value : array)
        samples << value.toDouble();
    return samples;
}

/** Three digits that count. */
QString digits(double number)
{
    const int whole = number == 0 ? 1 : int(std::floor(std::log10(std::abs(number)))) + 1;
    return QString::number(number, 'f', qBound(0, 3 - whole, 4));
}

double low(const Figure &figure)
{
    return Figure::percentile(figure.samples, figure.samples.size() > fewSamples ? 5 : 0);
}
double high(const Figure &figure)
{
    return Figure::percentile(figure.samples, figure.samples.size() > fewSamples ? 95 : 100);
}

QString aimOf(const Figure &figure)
{
    switch (figure.judged) {
    case Figure::Judged::Nothing:
        break;
    case Figure::Judged::Median:
        return QStringLiteral("median <= %1 %2").arg(digits(figure.atMost), figure.unit);
    case Figure::Judged::Percentile99:
        return QStringLiteral("99th <= %1 %2").arg(digits(figure.atMost), figure.unit);
    case Figure::Judged::Ratio:
        return QStringLiteral("<= %1 x reference").arg(figure.atMost);
    }
    return QString();
}

QString resultOf(const Figure &figure)
{
    QString result;
    if (!figure.reference.isEmpty())
        result = QStringLiteral("%1 x").arg(figure.median() / Figure::percentile(figure.reference, 50), 0, 'f', 2);
    else if (figure.judged == Figure::Judged::Percentile99)
        result = QStringLiteral("99th %1").arg(digits(figure.value()));
    if (figure.judged == Figure::Judged::Nothing)
        return result;
    return result + (result.isEmpty() ? "" : ", ") + (figure.isMet() ? "met" : "MISSED");
}

} // namespace

double Figure::percentile(QVector<double> samples, double percent)
{
    if (samples.isEmpty())
        return std::nan("");
    std::sort(samples.begin(), samples.end());
    const int last = samples.size() - 1;
    if (percent == 50)
        return (samples.at(last / 2) + samples.at(last - last / 2)) / 2;
    return samples.at(qBound(0, int(std::ceil(samples.size() * percent / 100)) - 1, last));
}

double Figure::value() const
{
    switch (judged) {
    case Judged::Percentile99:
        return percentile(samples, 99);
    case Judged::Ratio:
        return median() / percentile(reference, 50);
    default:
        return median();
    }
}

QJsonObject Figure::toJson() const
{
    QJsonObject object{{"key", key},
                       {"title", title},
                       {"unit", unit},
                       {"median", median()},
                       {"low", low(*this)},
                       {"high", high(*this)},
                       {"samples", toArray(samples)},
                       {"judged", QLatin1String(judgedNames[std::size_t(judged)])}};
    if (!reference.isEmpty()) {
        object["reference"] = toArray(reference);
        object["ratio"] = median() / percentile(reference, 50);
    }
    if (judged != Judged::Nothing) {
        object["value"] = value();
        object["atMost"] = atMost;
        object["met"] = isMet();
    }
    return object;
}

Figure Figure::fromJson(const QJsonObject &object)
{
    const auto name = std::find(judgedNames.begin(), judgedNames.end(), object["judged"].toString().toStdString());
    if (name == judgedNames.end())
        qFatal("a figure says that it is judged by %s", qPrintable(object["judged"].toString()));
    return {object["key"].toString(),
            object["title"].toString(),
            object["unit"].toString(),
            toSamples(object["samples"].toArray()),
            toSamples(object["reference"].toArray()),
            Judged(name - judgedNames.begin()),
            object["atMost"].toDouble()};
}

QString tableOf(const QVector<Figure> &figures)
{
    const auto line = [](const QString &title, const QString &median, const QString &spread, const QString &count,
                         const QString &aim, const QString &result) {
        return QStringLiteral("%1 %2 %3 %4  %5 %6\n")
            .arg(title, -54)
            .arg(median, 10)
            .arg(spread, 17)
            .arg(count, 6)
            .arg(aim, -19)
            .arg(result);
    };
    QString table = line("figure", "median", "spread", "times", "aim", "result");
    for (const Figure &figure : figures)
        table += line(figure.title, digits(figure.median()) + QLatin1Char(' ') + figure.unit,
                      digits(low(figure)) + " - " + digits(high(figure)), QString::number(figure.samples.size()),
                      aimOf(figure), resultOf(figure));
    return table;
}
