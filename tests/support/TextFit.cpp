#include "support/TextFit.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDebug>
#include <QFontMetrics>
#include <QLabel>
#include <QShowEvent>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTextEdit>

namespace {

/** Hinting and rounding make a text a pixel wider here and there; that is not seen. */
constexpr int tolerance = 1;

QString complaint(const QWidget *widget, const QString &text, QSize needed, QSize given)
{
    QString said;
    QDebug(&said) << widget->parentWidget() << widget->objectName() << text << "needs" << needed << "has" << given;
    return said;
}

void measure(QStringList &complaints, const QWidget *widget, const QString &text, QSize given, int flags)
{
    if (text.trimmed().isEmpty())
        return;
    const QRect place(QPoint(), flags & Qt::TextWordWrap ? QSize(given.width(), 10000) : QSize(10000, 10000));
    const QSize needed = widget->fontMetrics().boundingRect(place, flags, text).size();
    if (needed.width() > given.width() + tolerance || needed.height() > given.height() + tolerance)
        complaints << complaint(widget, text, needed, given);
}

} // namespace

QStringList textsThatDoNotFit(const QWidget *window)
{
    QStringList complaints;
    const QList<QWidget *> widgets = window->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if (widget->window() != window->window())
            continue;             // a dialog of the toolkit
        widget->ensurePolished(); // style sheets set fonts
        QShowEvent inSight;       // letters are fitted when a text comes into sight
        if (qobject_cast<QLabel *>(widget) || qobject_cast<QAbstractButton *>(widget))
            QCoreApplication::sendEvent(widget, &inSight);
        if (const auto *label = qobject_cast<const QLabel *>(widget)) {
            const int wrap = label->wordWrap() ? int{Qt::TextWordWrap} : 0;
            const int margin = 2 * label->margin();
            measure(complaints, label, label->text(), label->contentsRect().size() - QSize(margin, margin), wrap);
        } else if (const auto *box = qobject_cast<const QCheckBox *>(widget)) {
            const int indicator = box->style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, box) +
                                  box->style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, nullptr, box);
            measure(complaints, box, box->text(), box->size() - QSize(indicator, 0), 0);
        } else if (const auto *button = qobject_cast<const QAbstractButton *>(widget)) {
            measure(complaints, button, button->text(), button->size(), Qt::TextShowMnemonic);
        } else if (const auto *const edit = qobject_cast<const QTextEdit *>(widget)) {
            const QSize needed = edit->document()->size().toSize();
            if (needed.height() > edit->height() + tolerance)
                complaints << complaint(edit, edit->toPlainText(), needed, edit->size());
        } else if (const auto *combo = qobject_cast<const QComboBox *>(widget)) {
            QStyleOptionComboBox option;
            option.initFrom(combo);
            const QRect field =
                combo->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, combo);
            for (int item = 0; item < combo->count(); ++item)
                measure(complaints, combo, combo->itemText(item), QSize(field.width(), combo->height()), 0);
        }
    }
    return complaints;
}
