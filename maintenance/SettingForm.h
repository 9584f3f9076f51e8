#pragma once

#include <QVector>

#include <array>

class QButtonGroup;
class QCheckBox;
class QFrame;
class QLabel;
class QPushButton;
class QRadioButton;
class QScrollArea;
class QTextEdit;
class QToolButton;
class QWidget;
class MyConmboBox;
class Panel;

/** The widgets of the settings page, one member each. The page owns them all. */
class SettingForm
{
public:
    /** Modes of the receiver's light that a user can choose, from 1; button n of `lightModes` stands for mode n + 1. */
    static constexpr int lightModeCount = 3;

    /** Makes the widgets as children of the page, with their places and default texts. Call it once. */
    void build(QWidget *page);

    QScrollArea *scrollArea = nullptr;
    QFrame *content = nullptr;   ///< what scrolls
    Panel *background = nullptr; ///< below everything else

    MyConmboBox *comboBox = nullptr;
    QCheckBox *checkBox = nullptr;                           ///< start with the system
    QCheckBox *checkBox_2 = nullptr;                         ///< long range
    std::array<QRadioButton *, lightModeCount> lightModes{}; ///< `ReUntil`, `ReUntil_2`, `ReUntil_3`

    QPushButton *Receive = nullptr;
    QPushButton *Mouse = nullptr;
    QPushButton *pushButton = nullptr;   ///< the system's mouse settings
    QPushButton *pushButton_2 = nullptr; ///< pairing
    QPushButton *pushButton_3 = nullptr; ///< the maker's page
    QPushButton *pushButton_4 = nullptr; ///< the maker's name

    QLabel *label = nullptr; ///< version of the program
    QLabel *label_2 = nullptr;
    QLabel *label_3 = nullptr;
    QLabel *label_4 = nullptr;
    QLabel *label_5 = nullptr; ///< version of the receiver
    QLabel *label_6 = nullptr;
    QLabel *label_7 = nullptr; ///< version of the mouse
    QLabel *label_8 = nullptr;
    QLabel *label_9 = nullptr;
    QLabel *label_10 = nullptr;
    QLabel *label_11 = nullptr;
    QLabel *label_12 = nullptr; ///< a message on the receiver's update, `toolButton_2` its icon
    QLabel *label_13 = nullptr; ///< the same for the mouse, `toolButton_3`
    QLabel *label_14 = nullptr;

    QTextEdit *textEdit = nullptr;
    QTextEdit *textEdit_2 = nullptr;
    QTextEdit *textEdit_3 = nullptr;
    QTextEdit *textEdit_4 = nullptr;
    QTextEdit *NewLabel = nullptr;

    QToolButton *toolButton = nullptr;
    QToolButton *toolButton_2 = nullptr;
    QToolButton *toolButton_3 = nullptr;
    QVector<QToolButton *> titles; ///< `TitleButton_2` to `TitleButton_7`, the marks of the headings

    void showLongRange(bool shown);
    /** Shows or hides the choice of what the receiver's light tells; the page grows for it, and scrolls. */
    void showLight(bool shown);
    /** Keeps the version line in view. \param scrolled pixels that the content has been moved up */
    void followScroll(int scrolled);

private:
    void buildScrollArea(QWidget *page);
    void buildLabels();
    void buildTexts();
    void buildButtons();
    void buildChoices();

    QVector<QWidget *> longRangeSection;
    QVector<QWidget *> lightSection;
};
