#include "sensor/SensorTexts.h"

#include "sensor/MotionSync.h"
#include "sensor/RippeControl.h"
#include "sensor/SensorDPI.h"
#include "sensor/SensorEffect.h"
#include "sensor/SensorForm.h"
#include "sensor/SensorLOD.h"
#include "sensor/SensorRate.h"
#include "sensor/StraightLine.h"
#include "ui/FittedText.h"
#include "ui/MyConmboBox.h"
#include "ui/PageFont.h"

#include <QCheckBox>
#include <QLabel>

namespace {

struct TextElement
{
    const char *name;
    void (*apply)(SensorForm &form, const QString &text);
};

using Form = SensorForm;
using Text = const QString &;

constexpr TextElement elements[] = {
    {"label_2", [](Form &form, Text text) { form.frameDpi->setTitle(text); }},
    {"label_3", [](Form &form, Text text) { form.frameRate->setTitle(text); }},
    {"label_5", [](Form &form, Text text) { FittedText::set(form.label_5, text, PageFont::points, 0); }},
    {"label_11", [](Form &form, Text text) { FittedText::set(form.label_11, text, PageFont::points, 0); }},
    {"ModeSelectDes",
     [](Form &form, Text text) {
         form.label_11->setToolTip(text);
         form.ModelChoose->setToolTip(text);
     }},
    {"label_12", [](Form &form, Text text) { form.frameLOD->setTitle(text); }},
    {"LODDes", [](Form &form, Text text) { form.frameLOD->setDescription(text); }},
    {"label_7", [](Form &form, Text text) { form.frame_3->setTitle(text); }},
    {"MotionSyncDes", [](Form &form, Text text) { form.frame_3->setDescription(text); }},
    {"Performance", [](Form &form, Text text) { FittedText::set(form.Performance, text, PageFont::points); }},
    {"FullPerformanceDes", [](Form &form, Text text) { form.Performance->setToolTip(text); }},
    {"label", [](Form &form, Text text) { form.frame->setTitle(text); }},
    {"RippleDes", [](Form &form, Text text) { form.frame->setDescription(text); }},
    {"label_6", [](Form &form, Text text) { form.frame_4->setTitle(text); }},
    {"FixLineDes", [](Form &form, Text text) { form.frame_4->setDescription(text); }},
    {"label_4", [](Form &form, Text text) { form.frameEffect->setTitle(text); }},
    {"label_14", [](Form &form, Text text) { form.frameEffect->setSpeedTitle(text); }},
    {"label_15", [](Form &form, Text text) { form.frameEffect->setBrightnessTitle(text); }},
};

/** Index of an item in a family of elements, "Model" for 0 and "Model2" for 2; -1 if it isn't one of the family. */
int familyIndex(const QString &element, const char *family, int count)
{
    for (int index = 0; index < count; ++index) {
        if (element == QLatin1String(family) + (index == 0 ? QString() : QString::number(index)))
            return index;
    }
    return -1;
}

} // namespace

void applySensorText(SensorForm &form, const QString &element, const QString &text)
{
    for (const TextElement &entry : elements) {
        if (element == QLatin1String(entry.name)) {
            entry.apply(form, text);
            return;
        }
    }
    const int time = familyIndex(element, "PerformanceOpen", form.PerformanceOpen->count());
    if (time >= 0)
        form.PerformanceOpen->setItemText(time, text);
    const int mode = familyIndex(element, "Model", 3);
    if (mode >= 0)
        form.frameEffect->setItemText(mode, text);
}
