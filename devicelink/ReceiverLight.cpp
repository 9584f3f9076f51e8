#include "devicelink/ReceiverLight.h"

#include "app/hub/PostMsg.h"

Snapshot<DongleRGB> &DongleRgb()
{
    static auto *const rgb = new Snapshot<DongleRGB>;
    return *rgb;
}

void showReceiverLight()
{
    // The page reads what the pointer leads to while this thread stands in the signal.
    static DongleRGB shown;
    shown = DongleRgb().get();
    postMsg()->postBlocking(&PostMsg::SigRGBValue, &shown);
}
