#include "portwire/link/StatusPayload.h"

#include <algorithm>

namespace portwire {

void decodeBattery(const std::uint8_t *payload, std::uint8_t *out4)
{
    out4[0] = std::min(payload[0], std::uint8_t{100});
    out4[1] = payload[1] ? 1 : 0;
    out4[2] = 0;
    out4[3] = 0;
}

void decodeChangedFlags(const std::uint8_t *payload, std::uint8_t *out7)
{
    for (unsigned flag = 0; flag < 7; ++flag)
        out7[flag] = payload[0] >> flag & 1;
}

} // namespace portwire
