#pragma once

#include "ui/TitledCombo.h"

/**
 * Key debounce time, item 0 to 20 for as many milliseconds. The items read as plain numbers until the host gives them
 * their texts with a unit.
 *
 * Any change of the item is written to the mouse while writes are enabled, one by setIndex() too: a host that shows
 * what the mouse holds already wants setIndexSilently().
 */
class DebounceTime : public TitledCombo
{
    Q_OBJECT
public:
    static constexpr int itemCount = 21;

    explicit DebounceTime(QWidget *parent = nullptr);

private Q_SLOTS:
    void on_Debunce_currentIndexChanged(int index);
};
