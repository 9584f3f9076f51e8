#pragma once

#include <QPainter>

/**
 * A widget whose pictures, those of its style sheet as well, are scaled smoothly. On a screen of 125 % Qt would double
 * every fourth line of them, which the outlines of a drawing show as steps.
 */
template<typename Widget>
class SmoothPicture : public Widget
{
public:
    using Widget::Widget;

protected:
    void initPainter(QPainter *painter) const override
    {
        Widget::initPainter(painter);
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
    }
};
