#pragma once

#include <QImage>
#include <QPointF>
#include <QVector>

/**
 * The light that a strip of lamps throws on what lies round it. How much of each lamp reaches each point is worked out
 * once; a picture of new colours is then a sum.
 */
class LightGlow
{
public:
    LightGlow() = default;
    /** \param lamps places of the lamps in pixels */
    explicit LightGlow(const QVector<QPointF> &lamps);

    /** What the light reaches, in pixels. */
    QRect area() const { return lit; }

    /**
     * To be added to what is there, scaled up to area(): it has no detail and is drawn at a fraction of the size.
     * \param colours one for each lamp, as bright as the lamp is
     */
    QImage picture(const QVector<QColor> &colours) const;

private:
    /** What one lamp gives to the points of a rectangle, row by row, in parts of `whole`. */
    struct Reach
    {
        QRect area;
        QVector<quint32> parts;
    };

    QRect lit;
    QSize size; ///< of the picture
    QVector<Reach> reaches;
};
