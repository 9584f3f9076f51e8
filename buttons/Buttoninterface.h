#pragma once

#include "devicelink/FlashDataMap.h"

#include <QWidget>

#include <memory>

class QFrame;
class QLabel;
class Worker;

/**
 * The button page. It owns the connect thread, takes each record and tells that it has; it shows the connected model.
 */
class Buttoninterface : public QWidget
{
    Q_OBJECT
public:
    explicit Buttoninterface(QWidget *parent = nullptr);
    ~Buttoninterface() override;

public Q_SLOTS:
    void SlotUpDataButtonUIButton(FlashDataMap DataMap);
    void SlotUpDataButtonUIB(FlashDataMap DataMap);
    void SlotFormResetButton();
    void SlotMouseIndex(int index);

private:
    QFrame *background;
    QLabel *mousePicture;
    std::unique_ptr<Worker> worker;
};
