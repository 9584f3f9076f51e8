#pragma once

#include "lighting/LightGlow.h"
#include "lighting/LightPattern.h"

#include <QColor>
#include <QElapsedTimer>
#include <QPainterPath>
#include <QPixmap>
#include <QTimer>
#include <QWidget>

/**
 * Shows what the light looks like: the back of a mouse with the light strip round it, running the chosen effect. It
 * costs nothing while it is hidden or the effect stands still.
 */
class LightStage : public QWidget
{
    Q_OBJECT
public:
    explicit LightStage(QWidget *parent = nullptr);

    void setLook(const LightLook &look);
    LightLook look() const { return shown; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void startOrStop();
    QPointF tail() const;
    QPixmap drawn(void (LightStage::*paint)(QPainter &) const) const;
    void paintWell(QPainter &painter) const;
    void paintMouse(QPainter &painter) const;
    void paintLight(QPainter &painter) const;

    QColor darkLamp; ///< of the strip
    LightLook shown;
    QTimer frames;
    QElapsedTimer running;
    QPixmap well;
    QPixmap mouse;
    LightGlow glow;
};
