#include "sensor/SensorDPI.h"

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/WorkingRecord.h"
#include "portwire/portwire.h"
#include "sensor/DpiCoding.h"
#include "sensor/LevelColourDialog.h"
#include "ui/FittedText.h"
#include "ui/MyConmboBox.h"
#include "ui/MySlider.h"
#include "ui/PageFont.h"
#include "ui/RgbText.h"

#include <QColorDialog>
#include <QHideEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QToolButton>

#include <algorithm>

namespace {

/** Pixels from the frame to the title, which so lines up with the titles of the other frames. */
constexpr int titleIndent = 15;

bool isLevel(int level) { return level >= 0 && level < SensorDPI::levelCount; }

/** True if the user's change could not reach the mouse. */
bool mouseIsGone()
{
    return DeviceWritesEnabled && !SensorUiUpdating && !UsbFinderC_GetDeviceOnLine(DevicePath().get().constData());
}

void promptOffline() { postMsg()->post(&PostMsg::SigMouseOffLineo, 0); }

} // namespace

SensorDPI::SensorDPI(QWidget *parent) : QFrame(parent), form(this), marker(form.label_8)
{
    resize(LevelMarker::area.size());
    form.label->setIndent(titleIndent);
    setTitle(QStringLiteral("DPI级数"));
    connectLevels();
    QMetaObject::connectSlotsByName(this);
}

void SensorDPI::connectLevels()
{
    for (int level = 0; level < levelCount; ++level) {
        connect(form.card(level), &QToolButton::toggled, this, [=](bool checked) { cardToggled(level, checked); });
        connect(form.card(level), &QToolButton::clicked, this, [=] { cardClicked(level); });
        connect(form.bar(level), &QToolButton::toggled, this, [=](bool checked) { barToggled(level, checked); });
        connect(form.bar(level), &QToolButton::clicked, this, [=] { barClicked(level); });
    }
}

// What the page sets -------------------------------------------------------------------------------------------------

void SensorDPI::setTitle(const QString &text) { FittedText::set(form.label, text, PageFont::points, 0); }

void SensorDPI::clearLevels()
{
    closeColourDialog();
    const QSignalBlocker blocker(form.ChooseEvent);
    form.ChooseEvent->clear();
}

void SensorDPI::blockLevelList(bool block) { form.ChooseEvent->blockSignals(block); }
void SensorDPI::addLevelItem(int index, const QString &text) { form.ChooseEvent->insertItem(index, text); }
void SensorDPI::selectLevelItem(int lastLevel) { form.ChooseEvent->setCurrentIndex(lastLevel); }

void SensorDPI::blockSlider(bool block)
{
    form.horizontalSliderC->blockSignals(block);
    // The change that selecting a level caused meanwhile went unheard. There is nothing left to swallow, and the next
    // change is the user's own: it must not be shown and kept from the mouse.
    if (!block)
        valueChangeArmed = true;
}

void SensorDPI::enableSlider() { form.horizontalSliderC->setEnabled(true); }
void SensorDPI::setSliderMinimum(int dpi) { form.horizontalSliderC->setMinimum(dpi); }
void SensorDPI::setSliderMaximum(int dpi) { form.horizontalSliderC->setMaximum(dpi); }
void SensorDPI::setSliderValue(int dpi) { form.horizontalSliderC->setValue(dpi); }
void SensorDPI::setSpinValue(int dpi) { form.spinBoxA->setValue(dpi); }

void SensorDPI::setLevelText(int level, const QString &text)
{
    if (isLevel(level))
        form.card(level)->setText(text);
}

void SensorDPI::setLevelColor(int level, const QString &hexadecimal)
{
    const QColor colour(hexadecimal);
    if (isLevel(level) && colour.isValid())
        form.setColour(level, rgbText(colour));
}

void SensorDPI::setActiveLevel(int level)
{
    if (!isLevel(level))
        return;
    if (level != activeLevel)
        closeColourDialog();
    activeLevel = level;
}

void SensorDPI::checkLevel(int level)
{
    if (isLevel(level))
        form.card(level)->setChecked(true);
}

bool SensorDPI::selectLevel(int level)
{
    if (mouseIsGone()) {
        promptOffline();
        return false;
    }
    valueChangeArmed = false;
    checkLevel(level);
    return true;
}

void SensorDPI::showActiveLook(int level) { form.showActiveLook(level); }
void SensorDPI::showLevels(int lastLevel) { form.showLevels(lastLevel); }
void SensorDPI::moveMarker(int mark) { marker.standAt(mark - 1); }
void SensorDPI::reloadDefaults() { form.takeDefaults(selectedSection()); }

// Choosing a level ---------------------------------------------------------------------------------------------------

void SensorDPI::cardToggled(int level, bool checked)
{
    form.showCard(level, checked);
    if (!checked)
        return;
    form.bar(level)->setChecked(true);
    if (!DeviceWritesEnabled || SensorUiUpdating)
        return;
    activeLevel = level;
    marker.standAt(level);
    if (!selecting)
        SetDpiCurrentLevel(static_cast<std::uint8_t>(level));
}

void SensorDPI::cardClicked(int level)
{
    // Choosing the level may have opened the offline prompt, and the page may have been refilled before that closed.
    if (form.card(level)->isChecked())
        setSliderValue(form.card(level)->text().toInt());
}

void SensorDPI::barToggled(int level, bool checked)
{
    form.showBar(level, checked);
    if (!checked)
        return;
    form.card(level)->setChecked(true);
    if (!form.bar(level)->isChecked())
        return; // as in cardClicked(): the prompt closed over a page that shows another level by now
    valueChangeArmed = false;
    // The level is written where it was chosen. Asking the mouse here too would prompt twice for one click.
    const QScopedValueRollback<bool> guard(selecting, true);
    setSliderValue(form.card(level)->text().toInt());
}

void SensorDPI::barClicked(int level)
{
    if (!form.bar(level)->isChecked())
        return;
    if (!colorDialog) {
        colorDialog = new LevelColourDialog(this);
        connect(colorDialog, &QColorDialog::colorSelected, this, &SensorDPI::SetColor);
    }
    colorDialog->setCurrentColor(colourOf(form.colour(level)));
    colorDialog->show();
    colorDialog->raise();
}

/** What it was opened for has gone: its OK would give the colour to another level, of another page or mouse even. */
void SensorDPI::closeColourDialog()
{
    if (colorDialog)
        colorDialog->reject();
}

void SensorDPI::hideEvent(QHideEvent *event)
{
    QFrame::hideEvent(event);
    if (!event->spontaneous())
        closeColourDialog();
}

void SensorDPI::SetColor(const QColor &colour)
{
    const int level = form.checkedBar();
    if (level < 0 || !colour.isValid())
        return;
    form.setColour(level, rgbText(colour));
    if (DeviceWritesEnabled && !SensorUiUpdating)
        SetDpiLevelColor(level, static_cast<std::uint8_t>(colour.red()), static_cast<std::uint8_t>(colour.green()),
                         static_cast<std::uint8_t>(colour.blue()));
}

// The value of a level -----------------------------------------------------------------------------------------------

int SensorDPI::snap(int value)
{
    const SnappedDpi snapped = Snap(sensorCoding().DpiRange, value);
    if (snapped.pageStep > 0) {
        form.horizontalSliderC->setPageStep(snapped.pageStep);
        form.horizontalSliderC->setSingleStep(snapped.pageStep);
    }
    return snapped.value;
}

void SensorDPI::on_horizontalSliderC_sliderMoved(int value) { setSpinValue(snap(value)); }

void SensorDPI::on_horizontalSliderC_valueChanged(int value)
{
    if (!selecting && mouseIsGone()) {
        setSpinValue(value);
        promptOffline();
        return;
    }
    const int dpi = snap(value);
    const int level = form.checkedCard();
    setLevelText(level, QString::number(dpi));
    setSpinValue(dpi);
    if (!valueChangeArmed) {
        valueChangeArmed = true;
        return;
    }
    if (!BulkUpdateActive)
        writeDpi(level, dpi);
}

void SensorDPI::writeDpi(int level, int dpi)
{
    if (!isLevel(level) || !DeviceWritesEnabled || SensorUiUpdating)
        return;
    const std::uint8_t flags = WorkingRecord::instance().copy().DpiLevels[level].Flags;
    const DpiCode coded = encodeDpi(sensorCoding(), dpi, flags);
    SetDpiLevelCode(level, coded.code, coded.code, coded.flags);
}

void SensorDPI::step(int (*next)(const DpiRangeTable &, int))
{
    if (mouseIsGone()) {
        promptOffline();
        return;
    }
    const int from = form.spinBoxA->value();
    const int to = next(sensorCoding().DpiRange, from);
    if (to != from)
        setSliderValue(to);
}

void SensorDPI::on_ReduceLevelA_clicked() { step(stepDown); }
void SensorDPI::on_AddLevelA_clicked() { step(stepUp); }

// The number of levels -----------------------------------------------------------------------------------------------

void SensorDPI::on_ChooseEvent_currentIndexChanged(int lastLevel)
{
    if (SensorUiUpdating || !isLevel(lastLevel))
        return;
    const int previousLevel = activeLevel;
    const bool exchange = previousLevel > lastLevel;
    if (exchange)
        exchangeLevels(previousLevel, lastLevel);
    showLevels(lastLevel);
    if (!DeviceWritesEnabled)
        return;
    // One update either way: the mouse never has a count without the levels that belong to it. One that has yet to tell
    // its levels keeps them as they are.
    if (exchange && isRecordOfSelected()) {
        const FlashDataMap record = WorkingRecord::instance().copy();
        SetDpiLevelPair(record.DpiLevels[previousLevel], record.DpiLevels[lastLevel], previousLevel, lastLevel,
                        static_cast<std::uint8_t>(lastLevel));
    } else if (SetDpiLevelCount(static_cast<std::uint8_t>(lastLevel + 1)) && exchange) {
        SetDpiCurrentLevel(static_cast<std::uint8_t>(lastLevel));
    }
}

/** The active level gives way to the new last one and takes its DPI and its colour along. */
void SensorDPI::exchangeLevels(int former, int last)
{
    const QScopedValueRollback<bool> guard(selecting, true);
    const QString formerText = form.card(former)->text();
    const QString formerColour = form.colour(former);
    setLevelText(former, form.card(last)->text());
    setLevelText(last, formerText);
    form.setColour(former, form.colour(last));
    form.setColour(last, formerColour);
    marker.standAt(last);
    checkLevel(last);
    activeLevel = last;
    // The slider stays where it is, so there is nothing to swallow: the user's next step is to reach the mouse.
    valueChangeArmed = true;
}

// The marker ---------------------------------------------------------------------------------------------------------

void SensorDPI::mousePressEvent(QMouseEvent *event)
{
    QFrame::mousePressEvent(event);
    event->accept();
    if (event->buttons() != Qt::NoButton)
        marker.take(event->pos());
}

void SensorDPI::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() != Qt::NoButton && !marker.follow(event->pos()))
        dropMarker(event->pos());
}

void SensorDPI::mouseReleaseEvent(QMouseEvent *event) { dropMarker(event->pos()); }

void SensorDPI::dropMarker(QPoint point)
{
    const MarkerDrag::Result result = marker.drop(point, activeLevel, form.ChooseEvent->currentIndex());
    if (result.drop == MarkerDrag::Drop::BeyondLastLevel && DeviceWritesEnabled)
        SetDpiCurrentLevel(static_cast<std::uint8_t>(activeLevel));
    if (result.drop != MarkerDrag::Drop::Moved)
        return;
    activeLevel += result.jump.levels;
    const int chosen = activeLevel;
    {
        const QScopedValueRollback<bool> guard(selecting, true);
        if (!selectLevel(chosen))
            return;
    }
    if (DeviceWritesEnabled)
        SetDpiCurrentLevel(static_cast<std::uint8_t>(chosen));
}
