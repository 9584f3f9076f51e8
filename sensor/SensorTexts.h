#pragma once

class QString;
struct SensorForm;

/** Gives a text of the section `Sensor` of a language file to the control it belongs to. Other elements are skipped. */
void applySensorText(SensorForm &form, const QString &element, const QString &text);
