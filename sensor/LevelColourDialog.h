#pragma once

#include <QColorDialog>

/** The colour dialog in the dark look of the page that it belongs to. */
class LevelColourDialog : public QColorDialog
{
    Q_OBJECT
public:
    explicit LevelColourDialog(QWidget *parent);
};
