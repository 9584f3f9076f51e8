#include "lighting/LightStage.h"

#include "app/hub/Wait.h"
#include "productdata/Theme.h"
#include "ui/RgbText.h"

#include <QLinearGradient>
#include <QPainter>
#include <QtMath>

#include <array>

using Theme::Tone;

namespace {

/** Milliseconds between two pictures. */
constexpr int frameTime = 40;
/** Lights of the strip. */
constexpr int lampCount = 40;
/** Pixels between the tail of the mouse and the foot of the stage, where the stage isn't high enough for the whole. */
constexpr int footRoom = 48;
constexpr int mouseLength = 372;

QColor colour(Theme::Tone tone) { return colourOf(Theme::rgb(tone)); }

/** The half outline on the right, tail at 0,0, in pixels: points of cubic curves, up to the nose. */
constexpr std::array<QPointF, 10> outline = {
    QPointF(0, 0),     QPointF(50, 0),    QPointF(92, -50),  QPointF(92, -122),         QPointF(92, -172),
    QPointF(85, -200), QPointF(85, -258), QPointF(85, -332), QPointF(58, -mouseLength), QPointF(0, -mouseLength)};
/** The strip follows the outline from the flank round the tail, this far outside of it. */
constexpr qreal stripGap = 11;

QPointF mirrored(QPointF point) { return {-point.x(), point.y()}; }

/** From the nose down the left flank, round the tail and up again. */
QPainterPath bodyPath()
{
    QPainterPath path(mirrored(outline[9]));
    for (std::size_t last = 9; last > 0; last -= 3)
        path.cubicTo(mirrored(outline[last - 1]), mirrored(outline[last - 2]), mirrored(outline[last - 3]));
    for (std::size_t first = 0; first < 9; first += 3)
        path.cubicTo(outline[first + 1], outline[first + 2], outline[first + 3]);
    path.closeSubpath();
    return path;
}

/** Where the lamps are, from the left flank to the right one. */
QVector<QPointF> placeLamps()
{
    QPainterPath side(outline[0]);
    side.cubicTo(outline[1], outline[2], outline[3]);
    QVector<QPointF> points(lampCount);
    constexpr int half = lampCount / 2;
    for (int number = 0; number < half; ++number) {
        const qreal percent = side.percentAtLength(side.length() * (number + 0.5) / half);
        const QPointF at = side.pointAtPercent(percent);
        const qreal angle = qDegreesToRadians(side.angleAtPercent(percent));
        const QPointF outside = at + stripGap * QPointF(std::sin(angle), std::cos(angle));
        points[half + number] = outside;
        points[half - 1 - number] = mirrored(outside);
    }
    return points;
}

/** The same for every picture; to walk along the outline takes longer than to draw what is on it. */
const QVector<QPointF> &lamps()
{
    static const QVector<QPointF> places = placeLamps();
    return places;
}

/** The colour of a lamp at its brightest. */
QColor full(const QColor &lamp)
{
    const qreal level = lamp.valueF();
    if (level <= 0)
        return Qt::black;
    return QColor::fromRgbF(lamp.redF() / level, lamp.greenF() / level, lamp.blueF() / level);
}

QColor mixed(const QColor &from, const QColor &to, qreal part)
{
    const auto between = [part](qreal a, qreal b) { return a + (b - a) * part; };
    return QColor::fromRgbF(between(from.redF(), to.redF()), between(from.greenF(), to.greenF()),
                            between(from.blueF(), to.blueF()));
}

} // namespace

LightStage::LightStage(QWidget *parent) : QWidget(parent), darkLamp(colour(Tone::Hairline))
{
    frames.setInterval(qMax(Wait::scaled(frameTime), frameTime / 4));
    connect(&frames, &QTimer::timeout, this, [this] { update(glow.area()); });
    running.start();
}

void LightStage::setLook(const LightLook &look)
{
    if (look == shown)
        return;
    if (look.effect != shown.effect)
        running.restart();
    shown = look;
    startOrStop();
    update(glow.area()); // the rest stands still; before the first picture there is no area, and nothing to renew
}

void LightStage::startOrStop()
{
    if (!isVisible() || !LightPattern::isMoving(shown))
        frames.stop();
    else if (!frames.isActive())
        frames.start();
}

void LightStage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    startOrStop();
}

void LightStage::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    startOrStop();
}

void LightStage::paintEvent(QPaintEvent *)
{
    const qreal scale = devicePixelRatioF();
    if (well.size() != size() * scale) {
        well = drawn(&LightStage::paintWell);
        mouse = drawn(&LightStage::paintMouse);
        QVector<QPointF> places = lamps();
        for (QPointF &place : places)
            place += tail();
        glow = LightGlow(places);
    }
    QPainter painter(this);
    painter.drawPixmap(0, 0, well);
    painter.setClipRect(QRectF(rect()).adjusted(1, 1, -1, -1)); // the light stays inside of the edge
    paintLight(painter);
    painter.drawPixmap(0, 0, mouse);
}

/** What stands still is drawn once. */
QPixmap LightStage::drawn(void (LightStage::*paint)(QPainter &) const) const
{
    const qreal scale = devicePixelRatioF();
    QPixmap picture(size() * scale);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    (this->*paint)(painter);
    return picture;
}

void LightStage::paintWell(QPainter &painter) const
{
    QLinearGradient depth(0, 0, 0, height());
    depth.setColorAt(0, colour(Tone::Deep));
    depth.setColorAt(1, colour(Tone::Well));
    painter.setPen(colour(Tone::Hairline));
    painter.setBrush(depth);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
}

QPointF LightStage::tail() const
{
    return {width() / 2.0, height() - qMax<qreal>(footRoom, (height() - mouseLength) / 2.0)};
}

void LightStage::paintMouse(QPainter &painter) const
{
    painter.translate(tail());
    const QPainterPath body = bodyPath();
    const QRectF box = body.boundingRect();
    QLinearGradient shell(box.topLeft(), box.bottomLeft());
    shell.setColorAt(0, colour(Tone::Raised));
    shell.setColorAt(1, colour(Tone::Window));
    painter.setPen(QPen(colour(Tone::Edge), 1));
    painter.setBrush(shell);
    painter.drawPath(body);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour(Tone::Sunken), 2));
    painter.setClipPath(body, Qt::IntersectClip);
    painter.drawLine(QPointF(0, -mouseLength), QPointF(0, -201));
    QPainterPath keys(QPointF(-96, -222));
    keys.cubicTo({-52, -194}, {52, -194}, {96, -222});
    painter.drawPath(keys);
    painter.setPen(QPen(colour(Tone::Edge), 1));
    painter.setBrush(colour(Tone::Sunken));
    painter.drawRoundedRect(QRectF(-8, -332, 16, 52), 8, 8);
}

void LightStage::paintLight(QPainter &painter) const
{
    const double seconds = double(running.elapsed()) / 1000;
    const QVector<QPointF> &places = lamps();
    QVector<QColor> colours;
    for (int number = 0; number < lampCount; ++number)
        colours << LightPattern::colourAt(shown, double(number) / (lampCount - 1), seconds);

    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    painter.drawImage(glow.area(), glow.picture(colours));
    painter.restore();

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(tail());
    const auto drawStrip = [&](qreal thickness, const QColor &unlit, qreal whiteness) {
        for (int number = 0; number + 1 < lampCount; ++number) {
            const QColor lit = mixed(full(colours[number]), Qt::white, whiteness);
            const QColor lamp = mixed(unlit, lit, colours[number].valueF());
            // Round where it ends; between two pieces that overlap nobody sees it, and it costs half of the drawing.
            const bool isEnd = number == 0 || number + 2 == lampCount;
            painter.setPen(QPen(lamp, thickness, Qt::SolidLine, isEnd ? Qt::RoundCap : Qt::SquareCap));
            painter.drawLine(places[number], places[number + 1]);
        }
    };
    drawStrip(5, darkLamp, 0);
    drawStrip(2, darkLamp, 0.6);
    painter.restore();
}
