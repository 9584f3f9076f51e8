#pragma once

#include "buttons/KeyCatalogue.h"
#include "buttons/KeyFunctionText.h"
#include "sensor/DriverSensor.h"

#include <QString>
#include <QVector>

#include <array>
#include <optional>

class ButtonForm;

/**
 * The six rows and what the page last showed of their slots. An assignment goes through here: to the mouse first, and
 * into the row when the mouse took it. The truth stays in the record.
 */
class ButtonRows
{
public:
    explicit ButtonRows(ButtonForm &ofForm) : form(ofForm), driver(readDriverSensor()) {}

    /** Shows a record: as many slots as the model has buttons. A text that nobody knows stays. */
    void show(const FlashDataMap &record);
    /** What every mouse does without settings; the texts stay as they are. */
    void showFactory();
    /** True once a record or the factory functions were shown. */
    bool hasFunctions() const { return !SlotTypes.isEmpty(); }

    /** Number of slots shown: the buttons of the model. */
    int slotCount() const { return SlotTypes.size(); }
    static int slotOf(int row) { return KeyCatalogue::rows[std::size_t(row)].slot; }
    /** What the slot of a row has; nothing for a button that the model lacks. */
    std::optional<KeyFunction> functionOf(int row) const;
    const KeySequence &sequenceOf(int row) const { return sequences[std::size_t(slotOf(row))]; }

    /** Text of a row as data: without NUL characters. */
    QString text(int row) const;
    void setText(int row, const QString &text);
    /** True if the row plays the macro, by its text. */
    bool hasMacro(int row, const QString &macro) const;

    /** \return false, with the row as it was, when the mouse doesn't answer or hasn't told its record yet. */
    bool assign(int row, const KeyFunction &function, const QString &text);
    bool assignSequence(int row, const KeySequence &sequence, const QString &text);
    bool assignMacro(int row, const KeyFunction &function, const MacroSlot &image, const QString &macro);

    KeyFunctionText::Words words() const;
    int dpiCode(int dpi) const;

    QString MacroPrefix;

private:
    void remember(int row, const KeyFunction &function, const QString &text);

    ButtonForm &form;
    DriverSensor driver;    ///< `DriverKeys` and `DriverValues`
    QString SensorName;     ///< of the record on show
    QVector<int> SlotTypes; ///< by slot, as are the next two
    QVector<int> SlotParam1;
    QVector<int> SlotParam2;
    std::array<KeySequence, KeyCatalogue::rowCount> sequences{};
};
