#pragma once

#include <QToolButton>

/**
 * A tool button whose text is data: the page tells macros and the left button by it. So the text stays whole whatever
 * room there is, an ampersand in it is an ampersand and no shortcut, and what is painted is cut to one line with an
 * ellipsis; the whole of it then is the tool tip.
 */
class PlainTextButton : public QToolButton
{
    Q_OBJECT
public:
    explicit PlainTextButton(QWidget *parent = nullptr) : QToolButton(parent) {}

    void setPlainText(const QString &text);

Q_SIGNALS:
    /** The mouse or the keyboard came to the button, or left it. */
    void hovered(bool isHovered);

protected:
    bool event(QEvent *event) override;
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString fittingText() const;
    void updateToolTip();
};
