#pragma once

class MacroTimeLine;
class MyConmboBox;
class QButtonGroup;
class QCheckBox;
class QLabel;
class QListWidget;
class QPushButton;
class QString;
class QSpinBox;
class QToolButton;
class QWidget;

/** The widgets of the macro page, one member each. The page owns them all. */
class MacroForm
{
public:
    /** Makes the widgets as children of the page, with their places, ranges and default texts. Call it once. */
    void build(QWidget *page);
    /** The texts that stand until a language file was read; numbers and the chosen event stay. */
    void setDefaultTexts();

    QListWidget *listWidgetHong = nullptr; ///< the macros
    QListWidget *listWidgetKey = nullptr;  ///< the rows of one of them
    QLabel *label = nullptr;
    QLabel *label_2 = nullptr;
    QLabel *label_3 = nullptr;
    QToolButton *NewHong = nullptr;
    QToolButton *DeleteHong = nullptr;
    QToolButton *Amend = nullptr;
    QToolButton *DeleteKey = nullptr;
    QToolButton *Save = nullptr;
    MyConmboBox *ChooseEvent = nullptr;
    QPushButton *StartRecord = nullptr;
    QPushButton *StopRecord = nullptr; ///< on the same spot; one of the two is visible
    QCheckBox *AutoInsertDelay = nullptr;
    QCheckBox *DefaultDelay = nullptr;
    QSpinBox *DelayTime = nullptr; ///< ms
    QCheckBox *ReUntilLoose = nullptr;
    QCheckBox *ReUntilClick = nullptr;
    QCheckBox *ReNumber = nullptr;
    QCheckBox *ReUntil = nullptr;
    QSpinBox *NumberEdit = nullptr;
    QLabel *AutoInsertDelayLabel = nullptr;
    QLabel *ReUntilClickLabel = nullptr;
    QLabel *ReUntilLabel = nullptr;
    QButtonGroup *repeatGroup = nullptr;
    MacroTimeLine *timeLine = nullptr;
    QLabel *hint = nullptr; ///< on the empty list of rows

    /** The repeat code that the buttons and the number say. */
    int repeatCode() const;
    /** Shows a repeat code without telling anybody. */
    void showRepeatCode(int code);
    /** The check box whose text stands in this label beside it; null for another widget. */
    QCheckBox *boxOf(const QWidget *textLabel) const;
    /** Words in the middle of the empty list of rows; none to show nothing. */
    void showHint(const QString &words);
    /** The list of macros and its like stand still while keys are recorded, which no control may get. */
    void showRecording(bool isRecording);

private:
    void buildLists(QWidget *page);
    void buildRecording(QWidget *page);
    void buildRepeat(QWidget *page);
};
