#pragma once

class QFrame;
class QProgressBar;
class QRect;

/** A line on the frame of a prompt that fills with the percent of a transfer. */
QProgressBar *addTransferBar(QFrame *frame, const QRect &place);
