#pragma once

#include "devicelink/FlashDataMap.h"
#include "lighting/LightForm.h"

#include <QWidget>

/**
 * The lighting page: effect, colour, brightness and speed of the mouse's light, and the two rules that turn it off.
 * Each change goes to the mouse at once; what the mouse or a profile delivers is shown without being written back.
 */
class LampLight : public QWidget
{
    Q_OBJECT
public:
    explicit LampLight(QWidget *parent = nullptr);

public Q_SLOTS:
    /** Takes the texts of a language, 0 to 5; another index counts as English. */
    void SlotChangeLanguage(int index);
    /** Shows a record while its sender waits. */
    void SlotUpDataLightUILight(FlashDataMap DataMap);
    /** Shows a record of a mouse that doesn't answer: the sliders stand still until the next record of a live one. */
    void SlotUpDataLightUIA(FlashDataMap DataMap);
    /** Shows what a factory reset leaves in the mouse. */
    void SlotFormResetLight();

protected:
    void mousePressEvent(QMouseEvent *event) override;

private Q_SLOTS:
    void on_LightMod_currentIndexChanged(int index);
    void on_LightMod_activated(int) {}
    void on_LightMod_editTextChanged(const QString &) {}
    void on_horizontalLight_valueChanged(int value);
    void on_horizontalLight_sliderMoved(int value);
    void on_LightSpinBox_2_valueChanged(int) {}
    void on_horizontalSpeed_valueChanged(int value);
    void on_horizontalSpeed_sliderMoved(int value);
    void on_SpeedSpinBox_2_valueChanged(int) {}
    void on_RippeControl_clicked(bool checked);
    void on_RSpinBox_valueChanged(int red);
    void on_GSpinBox_valueChanged(int green);
    void on_BSpinBox_valueChanged(int blue);
    void on_AddR_clicked() { step(form.RSpinBox, 1); }
    void on_AddG_clicked() { step(form.GSpinBox, 1); }
    void on_AddB_clicked() { step(form.BSpinBox, 1); }
    void on_ReduceR_clicked() { step(form.RSpinBox, -1); }
    void on_ReduceG_clicked() { step(form.GSpinBox, -1); }
    void on_ReduceB_clicked() { step(form.BSpinBox, -1); }
    void on_toolButtonColorA_clicked() { choosePreset(0); }
    void on_toolButtonColorB_clicked() { choosePreset(1); }
    void on_toolButtonColorC_clicked() { choosePreset(2); }
    void on_toolButtonColorD_clicked() { choosePreset(3); }
    void on_toolButtonColorE_clicked() { choosePreset(4); }
    void on_toolButtonColorF_clicked() { choosePreset(5); }
    void on_toolButtonColorG_clicked() { choosePreset(6); }
    void on_toolButtonColorH_clicked() { choosePreset(7); }
    void on_toolButtonColorI_clicked() { choosePreset(8); }
    void on_toolButtonColorJ_clicked() { choosePreset(9); }
    void on_toolButtonColorK_clicked() { choosePreset(10); }
    void on_toolButtonColorL_clicked() { choosePreset(11); }
    void on_toolButtonColorM_clicked() { choosePreset(12); }
    void on_toolButtonColorN_clicked() { choosePreset(13); }

private:
    void setStyles();
    void applyRecord(const FlashDataMap &record);
    void colourChanged(int red, int green, int blue);
    QColor chosenColour() const;
    void updatePreview();
    void updateStage();
    /** False, after the prompt, when changes go to a mouse that doesn't answer. */
    bool mayChange() const;
    void step(QSpinBox *value, int by);
    void choosePreset(std::size_t number);
    void pickFromStrip(const QPoint &position);
    void leaveNumbers(const QPoint &position);

    LightForm form;
    QString pictures; ///< folder with a closing slash
};
