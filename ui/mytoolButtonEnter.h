#pragma once

#include "ui/SmoothPicture.h"

#include <QToolButton>

#include <functional>

/** A device on the chooser, named "btn" and its index there. It has its device shown when the mouse comes over it. */
class mytoolButtonEnter : public SmoothPicture<QToolButton>
{
    Q_OBJECT
public:
    explicit mytoolButtonEnter(QWidget *parent = nullptr) : SmoothPicture(parent) {}

    /** What shows the device of an index. The index is the name's word: whoever takes it looks at its range. */
    void setShowDevice(std::function<void(int index)> operation) { showDevice = std::move(operation); }

protected:
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    std::function<void(int index)> showDevice;
};
