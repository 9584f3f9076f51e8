#pragma once

#include "buttons/KeyCatalogue.h"
#include "devicelink/FlashDataMap.h"

#include <QString>

/** What a slot returns to when the macro on it is deleted. */
namespace ButtonDefaults {

struct Default
{
    enum Kind {
        Factory,   ///< the factory function of its row
        Sequence,  ///< the sequence
        Untouched, ///< the product file says something that nobody understands
    };

    Kind kind = Factory;
    KeySequence sequence{};
    const KeyCatalogue::SubEntry *consumerKey = nullptr; ///< whose text the row gets
    QString combination;                                 ///< the row's text if it isn't a consumer key
};

/** What the product file has for the slot of the selected model; without an entry the factory function. */
Default ofSlot(int slot);

} // namespace ButtonDefaults
