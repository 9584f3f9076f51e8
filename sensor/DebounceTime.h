#pragma once

#include "sensor/TitledCombo.h"

/** Key debounce time, item 0 to 20 for as many milliseconds. */
class DebounceTime : public TitledCombo
{
    Q_OBJECT
public:
    static constexpr int itemCount = 21;

    explicit DebounceTime(QWidget *parent = nullptr);

    /**
     * Any change of the item is written to the mouse while writes are enabled, this one included. A host that shows
     * what the mouse holds already wants setIndexSilently().
     */
    void setIndex(int index) override;
    void setIndexSilently(int index);
    /** Item i reads the number i followed by this text, such as " ms". */
    void setUnit(const QString &unit);

private Q_SLOTS:
    void on_Debunce_currentIndexChanged(int index);
};
