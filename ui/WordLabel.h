#pragma once

#include <QLabel>

/** A label of plain text that can be told where its lines end. Its text stays whole: it is a text of a language file.
 */
class WordLabel : public QLabel
{
    Q_OBJECT
public:
    using QLabel::QLabel;

    /** Shows the text as these lines, for as long as the label has it. */
    void setLines(const QString &whole, const QString &asLines);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString divided; ///< text that has lines of ours
    QString lines;
};
