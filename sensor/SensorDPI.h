#pragma once

#include "sensor/DpiForm.h"
#include "sensor/LevelMarker.h"

#include <QFrame>

class QColor;
class QColorDialog;
struct DpiRangeTable;

/**
 * The DPI editor: how many levels there are, which is active, and the DPI value and indicator colour of each.
 *
 * Levels count from 0 to 7; operations on another level do nothing. The page fills it from a record; what the user does
 * goes to the mouse at once. What it knows of the sensor is sensorCoding(), which the page keeps.
 */
class SensorDPI : public QFrame
{
    Q_OBJECT
public:
    static constexpr int levelCount = DpiForm::levelCount;

    explicit SensorDPI(QWidget *parent = nullptr);

    void setTitle(const QString &text);

    /** A refill begins: empties the list of level counts without a signal, and closes the colour dialog. */
    void clearLevels();
    void blockLevelList(bool block);
    void addLevelItem(int index, const QString &text);
    /** Selects the item for `lastLevel` + 1 levels. */
    void selectLevelItem(int lastLevel);

    void blockSlider(bool block);
    void enableSlider();
    void setSliderMinimum(int dpi);
    void setSliderMaximum(int dpi);
    void setSliderValue(int dpi);
    void setSpinValue(int dpi);

    void setLevelText(int level, const QString &text);
    /** The colour as a hash sign and six hexadecimal digits, red, green, blue. */
    void setLevelColor(int level, const QString &hexadecimal);
    /** Stores the active level and shows nothing. */
    void setActiveLevel(int level);
    void checkLevel(int level);
    /** As if the user chose the level. \return false, with the offline prompt, if the mouse doesn't answer. */
    bool selectLevel(int level);
    /** The bar of the level looks selected, the others at rest. */
    void showActiveLook(int level);
    /** Levels 0 to `lastLevel` show, the others are hidden; -1 hides all. */
    void showLevels(int lastLevel);
    /** Puts the marker at mark 1 to 8. */
    void moveMarker(int mark);
    /** Takes colours and values from the product data of the selected model, as far as they reach. */
    void reloadDefaults();

public Q_SLOTS:
    /** Gives the selected level a colour. */
    void SetColor(const QColor &colour);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private Q_SLOTS:
    void on_ChooseEvent_currentIndexChanged(int lastLevel);
    void on_horizontalSliderC_valueChanged(int value);
    void on_horizontalSliderC_sliderMoved(int value);
    void on_ReduceLevelA_clicked();
    void on_AddLevelA_clicked();

private:
    void connectLevels();
    void cardToggled(int level, bool checked);
    void cardClicked(int level);
    void barToggled(int level, bool checked);
    void barClicked(int level);
    void closeColourDialog();

    int snap(int value);
    void step(int (*next)(const DpiRangeTable &, int));
    void writeDpi(int level, int dpi);
    void exchangeLevels(int former, int last);
    void dropMarker(QPoint point);

    DpiForm form;
    LevelMarker marker;
    QColorDialog *colorDialog = nullptr; ///< made when it is first wanted
    int activeLevel = 1;
    bool valueChangeArmed = false; ///< false: the next value change comes from selecting a level and isn't sent
    bool selecting = false;        ///< the editor moves its own controls; one write follows for all of it
};
