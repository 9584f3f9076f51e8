#include "ui/PromptShade.h"

#include "productdata/Theme.h"
#include "ui/RgbText.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPointer>
#include <QVector>
#include <QWidget>

namespace {

/** How much of what lies behind is taken away, 0 to 1. */
constexpr qreal strength = 0.6;

/** Lies over all of a window. Input goes through it: what is behind a modal prompt gets none anyway. */
class Shade : public QWidget
{
public:
    explicit Shade(QWidget *window) : QWidget(window), colour(colourOf(Theme::rgb(Theme::Tone::Deep)))
    {
        colour.setAlphaF(strength);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setGeometry(window->rect());
        window->installEventFilter(this);
        show(); // as the newest child it is above all others
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Resize)
            setGeometry(parentWidget()->rect());
        return QWidget::eventFilter(watched, event);
    }
    void paintEvent(QPaintEvent *) override { QPainter(this).fillRect(rect(), colour); }

private:
    QColor colour;
};

QVector<QWidget *> prompts; ///< that show, the one that opened last at the end
QVector<QPointer<Shade>> shades;

/** A window that a user would call one. Lists and hints come and go by themselves; an icon in the tray is no window. */
bool canBeDim(const QWidget *window)
{
    const Qt::WindowType type = window->windowType();
    const bool passing = type == Qt::Popup || type == Qt::ToolTip || type == Qt::Desktop;
    return !passing && !window->windowFlags().testFlag(Qt::BypassWindowManagerHint);
}

void dim(QWidget *window)
{
    for (const QPointer<Shade> &shade : qAsConst(shades)) {
        if (shade->parentWidget() == window)
            return;
    }
    shades.append(new Shade(window));
}

/** Brings the shades to what `prompts` says. Those of windows that went have gone with them. */
void update()
{
    const QWidget *const front = prompts.isEmpty() ? nullptr : prompts.last();
    for (const QPointer<Shade> &shade : qAsConst(shades)) {
        if (shade && (!front || shade->parentWidget() == front))
            delete shade;
    }
    shades.removeAll(nullptr);
    if (!front)
        return;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (window != front && (canBeDim(window) || prompts.contains(window)))
            dim(window); // also one in the tray, which may come back before the prompt goes
    }
}

} // namespace

void PromptShade::raise(QWidget *prompt)
{
    prompts.removeAll(prompt);
    prompts.append(prompt);
    update();
}

void PromptShade::lower(QWidget *prompt)
{
    if (prompts.removeAll(prompt) > 0)
        update();
}
