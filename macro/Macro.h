#pragma once

#include <QWidget>

/** The macro page. */
class Macro : public QWidget
{
    Q_OBJECT
public:
    explicit Macro(QWidget *parent = nullptr);
};
