#pragma once

#include <QFrame>
#include <QStringList>

class MyConmboBox;
class QLabel;

/**
 * A frame with a title over a combo box: the shape of a setting that is one of a list.
 *
 * Its host places and sizes it. A frame lower than `titledHeight` has no room for the title and is all combo box.
 */
class TitledCombo : public QFrame
{
    Q_OBJECT
public:
    static constexpr int titledHeight = 61; ///< px; title, gap and combo box

    /** Selects an item as a record says it. An index outside the list leaves the box as it is. */
    void setIndex(int index);
    /** The same without a signal, so that nothing is written back. */
    void setIndexSilently(int index);
    int index() const;
    /** Text of one item; an index outside the list changes nothing. */
    void setItemText(int index, const QString &text);
    void setTitle(const QString &text);
    void setDescription(const QString &toolTip);

protected:
    /** `comboName` is the object name of the box, `folder` the name of the picture folder. */
    TitledCombo(const char *comboName, const char *folder, const QStringList &items, QWidget *parent);

    MyConmboBox *comboBox() const { return combo; }
    void resizeEvent(QResizeEvent *event) override;

private:
    void layOut();

    MyConmboBox *combo;
    QLabel *label;
    QString title;
};
