#pragma once

class QWidget;

/**
 * Dims what lies behind a prompt: a prompt has the colours of the page that it covers, and would be hard to tell from
 * it. Every window of the program is dim while a prompt shows, but for the prompt that opened last; the prompts beneath
 * it are dim too. When that one goes, the next comes up bright, and with the last of them everything does.
 *
 * Prompt tells it of every prompt; nobody else has to. GUI thread only.
 */
namespace PromptShade {

/** A prompt shows now. */
void raise(QWidget *prompt);
/** A prompt doesn't show any more, or is about to go. Harmless for one that didn't show. */
void lower(QWidget *prompt);

} // namespace PromptShade
