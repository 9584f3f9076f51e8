#include "lighting/LightStage.h"

#include "app/Wait.h"

#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>
#include <QtMath>

#include <array>
#include <utility>

namespace {

/** Milliseconds between two pictures. */
constexpr int frameTime = 40;
/** Lights of the strip. */
constexpr int lampCount = 40;
/** Reach of a lamp's glow in pixels. */
constexpr qreal glowReach = 88;
/** The glow is drawn this many times smaller: it has no detail, and so costs a sixteenth. */
constexpr int glowScale = 4;
/** Pixels between the tail of the mouse and the foot of the stage, where the stage isn't high enough for the whole. */
constexpr int footRoom = 48;
constexpr int mouseLength = 372;

constexpr QRgb wellTop = 0xff0a0c0e;
constexpr QRgb wellBottom = 0xff11151a;
constexpr QRgb hairline = 0xff2b323b;
constexpr QRgb bodyTop = 0xff262c34;
constexpr QRgb bodyBottom = 0xff14181c;
constexpr QRgb seam = 0xff0d1013;
constexpr QRgb rim = 0xff3d4651;
constexpr QRgb darkLamp = 0xff2b323b;

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
std::array<QPointF, lampCount> lamps()
{
    QPainterPath side(outline[0]);
    side.cubicTo(outline[1], outline[2], outline[3]);
    std::array<QPointF, lampCount> points;
    constexpr int half = lampCount / 2;
    for (int number = 0; number < half; ++number) {
        const qreal percent = side.percentAtLength(side.length() * (number + 0.5) / half);
        const QPointF at = side.pointAtPercent(percent);
        const qreal angle = qDegreesToRadians(side.angleAtPercent(percent));
        const QPointF outside = at + stripGap * QPointF(std::sin(angle), std::cos(angle));
        points[static_cast<std::size_t>(half) + static_cast<std::size_t>(number)] = outside;
        points[static_cast<std::size_t>(half) - 1 - static_cast<std::size_t>(number)] = mirrored(outside);
    }
    return points;
}

/** How the glow of one lamp falls off: part of its reach, and what is left of the light there. */
constexpr std::array<std::pair<qreal, qreal>, 4> glowFall = {{{0.0, 0.16}, {0.3, 0.075}, {0.6, 0.022}, {1.0, 0.0}}};

/** The full colour, as transparent as the lamp is dim. */
QColor glowing(const QColor &lamp, qreal strength)
{
    const qreal level = lamp.valueF();
    if (level <= 0)
        return Qt::transparent;
    return QColor::fromRgbF(lamp.redF() / level, lamp.greenF() / level, lamp.blueF() / level, strength * level);
}

QColor mixed(const QColor &from, const QColor &to, qreal part)
{
    const auto between = [part](qreal a, qreal b) { return a + (b - a) * part; };
    return QColor::fromRgbF(between(from.redF(), to.redF()), between(from.greenF(), to.greenF()),
                            between(from.blueF(), to.blueF()));
}

} // namespace

LightStage::LightStage(QWidget *parent) : QWidget(parent)
{
    frames.setInterval(qMax(Wait::scaled(frameTime), frameTime / 4));
    connect(&frames, &QTimer::timeout, this, QOverload<>::of(&QWidget::update));
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
    update();
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
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient well(0, 0, 0, height());
    well.setColorAt(0, QColor(wellTop));
    well.setColorAt(1, QColor(wellBottom));
    painter.setPen(QColor(hairline));
    painter.setBrush(well);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.drawRoundedRect(frame, 4, 4);
    QPainterPath inside;
    inside.addRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), 3.5, 3.5);
    painter.setClipPath(inside);
    painter.translate(tail());
    paintLight(painter);
    paintMouse(painter);
}

QPointF LightStage::tail() const
{
    return {width() / 2.0, height() - qMax<qreal>(footRoom, (height() - mouseLength) / 2.0)};
}

void LightStage::paintMouse(QPainter &painter) const
{
    const QPainterPath body = bodyPath();
    const QRectF box = body.boundingRect();
    QLinearGradient shell(box.topLeft(), box.bottomLeft());
    shell.setColorAt(0, QColor(bodyTop));
    shell.setColorAt(1, QColor(bodyBottom));
    painter.setPen(QPen(QColor(rim), 1));
    painter.setBrush(shell);
    painter.drawPath(body);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(seam), 2));
    painter.setClipPath(body, Qt::IntersectClip);
    painter.drawLine(QPointF(0, -mouseLength), QPointF(0, -201));
    QPainterPath keys(QPointF(-96, -222));
    keys.cubicTo({-52, -194}, {52, -194}, {96, -222});
    painter.drawPath(keys);
    painter.setPen(QPen(QColor(rim), 1));
    painter.setBrush(QColor(seam));
    painter.drawRoundedRect(QRectF(-8, -332, 16, 52), 8, 8);
}

void LightStage::paintLight(QPainter &painter) const
{
    const double seconds = double(running.elapsed()) / 1000;
    const std::array<QPointF, lampCount> places = lamps();
    std::array<QColor, lampCount> colours;
    for (std::size_t number = 0; number < lampCount; ++number)
        colours[number] = LightPattern::colourAt(shown, double(number) / (lampCount - 1), seconds);

    QImage glow(size() / glowScale, QImage::Format_ARGB32_Premultiplied);
    glow.fill(Qt::transparent);
    QPainter glowPainter(&glow);
    glowPainter.setCompositionMode(QPainter::CompositionMode_Plus);
    glowPainter.setPen(Qt::NoPen);
    const QPointF origin = tail();
    for (std::size_t number = 0; number < lampCount; ++number) {
        const QPointF centre = (origin + places[number]) / glowScale;
        QRadialGradient light(centre, glowReach / glowScale);
        for (const auto &[distance, alpha] : glowFall)
            light.setColorAt(distance, glowing(colours[number], alpha));
        glowPainter.setBrush(light);
        glowPainter.drawEllipse(centre, glowReach / glowScale, glowReach / glowScale);
    }
    glowPainter.end();
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    painter.drawImage(QRectF(-origin, QSizeF(size())), glow);
    painter.restore();

    const auto drawStrip = [&](qreal thickness, const QColor &unlit, qreal whiteness) {
        for (std::size_t number = 0; number + 1 < lampCount; ++number) {
            const QColor lit = mixed(glowing(colours[number], 1), Qt::white, whiteness);
            const QColor colour = mixed(unlit, lit, colours[number].valueF());
            painter.setPen(QPen(colour, thickness, Qt::SolidLine, Qt::RoundCap));
            painter.drawLine(places[number], places[number + 1]);
        }
    };
    drawStrip(5, QColor(darkLamp), 0);
    drawStrip(2, QColor(darkLamp), 0.6);
}
