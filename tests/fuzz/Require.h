#pragma once

#include <cstdlib>

// Aborts the fuzz target if the condition does not hold: libFuzzer reports it.
inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}
