#pragma once

#include "ui/Prompt.h"

#include <QLabel>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <functional>

/** What a user does with a prompt. */
namespace PromptDriver {

inline QString labelText(const Prompt &prompt) { return prompt.findChild<QLabel *>(QStringLiteral("label"))->text(); }

inline QToolButton *button(const Prompt &prompt, const QString &name) { return prompt.findChild<QToolButton *>(name); }

/** Runs the prompt and acts on it once it shows; gives what exec() gives, or -99 when it stayed open. */
inline int execAnd(Prompt &prompt, const std::function<void()> &act)
{
    bool hung = false;
    QTimer rescue;
    rescue.setSingleShot(true);
    QObject::connect(&rescue, &QTimer::timeout, [&] {
        hung = true;
        prompt.done(0);
    });
    rescue.start(5000);
    QTimer::singleShot(0, &prompt, [&] {
        if (QTest::qWaitForWindowActive(&prompt))
            act();
    });
    const int result = prompt.exec();
    return hung ? -99 : result;
}

} // namespace PromptDriver
