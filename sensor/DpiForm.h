#pragma once

#include <QRect>
#include <QString>

#include <array>

class MyConmboBox;
class MySlider;
class QButtonGroup;
class QLabel;
class QSpinBox;
class QToolButton;
class QWidget;

/** The widgets of the DPI editor and how a level looks. */
struct DpiForm
{
    static constexpr int levelCount = 8;

    explicit DpiForm(QWidget *editor);

    /** Looks of the card and the colour bar of a level, 0 to 7. A selected one is larger than at rest. */
    void showCard(int level, bool selected);
    void showBar(int level, bool selected);
    /** "red,green,blue" of a level's bar. */
    void setColour(int level, const QString &rgb);

    /** The bar of the level looks selected, the others at rest. */
    void showActiveLook(int level);
    /** Levels 0 to `lastLevel` show, the others are hidden; -1 hides all. */
    void showLevels(int lastLevel) const;
    /** Takes colours and values from this section of the product data, as far as they reach. */
    void takeDefaults(const QString &section);

    /** Level of the first checked card or bar, -1 without one. */
    int checkedCard() const;
    int checkedBar() const;

    QToolButton *card(int level) const { return cards[static_cast<std::size_t>(level)]; }
    QToolButton *bar(int level) const { return bars[static_cast<std::size_t>(level)]; }
    const QString &colour(int level) const { return colours[static_cast<std::size_t>(level)]; }

    QString folder; ///< of the pictures
    QLabel *label;
    MyConmboBox *ChooseEvent;
    MySlider *horizontalSliderC;
    QSpinBox *spinBoxA;
    QToolButton *ReduceLevelA;
    QToolButton *AddLevelA;
    QButtonGroup *levelGroup;
    QButtonGroup *barGroup;
    QLabel *label_8; ///< the marker

private:
    void makeLevels(QWidget *editor);
    void makeValueControls();
    void makeHead();
    void makeMarker(QWidget *editor);
    void styleBar(int level, bool selected);

    std::array<QToolButton *, levelCount> cards{};
    std::array<QToolButton *, levelCount> bars{};
    std::array<QString, levelCount> colours;
};
