#pragma once

#include <cstdio>
#include <cstdlib>

/** Ends the process, which a fuzzer takes for a find, unless what must hold for every input holds for this one. */
inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "doesn't hold: %s\n", what);
    std::abort();
}
