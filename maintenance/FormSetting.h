#pragma once

#include <QWidget>

/** The settings page. */
class FormSetting : public QWidget
{
    Q_OBJECT
public:
    explicit FormSetting(QWidget *parent = nullptr);
};
