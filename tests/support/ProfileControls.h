#pragma once

#include "support/Controls.h"

#include <QTimer>

/** A hand that answers, as long as it is there, which file is meant, and whether a reset is. */
class ProfileHand : public QTimer
{
public:
    using Look = std::function<void(const QWidget *)>;
    /** \param file none to leave the dialog \param look called with each dialog or prompt before it is answered */
    explicit ProfileHand(const QString &file, const Look &look = {});
};

std::vector<Control> profileControls(const FlashDataMap &factory);
