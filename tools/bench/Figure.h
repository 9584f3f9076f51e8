#pragma once

#include <QJsonObject>
#include <QString>
#include <QVector>

/** One figure: what was measured several times, and the aim that it is held against. */
struct Figure
{
    /** What of the samples is compared with the aim. */
    enum class Judged {
        Nothing, ///< told for its own sake
        Median,
        Percentile99, ///< nearest rank
        Ratio,        ///< of the medians, to the reference
    };

    QString key; ///< in the file, never changes
    QString title;
    QString unit;
    QVector<double> samples;
    QVector<double> reference; ///< the same of the reference program, measured in turn with the samples
    Judged judged = Judged::Nothing;
    double atMost = 0; ///< the aim, in the unit or as a ratio

    /** Value at this rank of the sorted samples, 0 to 100; the median lies between two samples if need be. */
    static double percentile(QVector<double> samples, double percent);
    double median() const { return percentile(samples, 50); }
    /** What is compared with the aim. */
    double value() const;
    bool isMet() const { return judged == Judged::Nothing || value() <= atMost; }

    QJsonObject toJson() const;
    static Figure fromJson(const QJsonObject &object);
};

/** The figures as a table for a terminal, one line each. */
QString tableOf(const QVector<Figure> &figures);
