#pragma once

#include <chrono>

#include "graph/host.h"

namespace kelvane {

// The time since the machine started.
class SteadyClock : public Clock {
public:
    double Seconds() const override
    {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::duration<double>(now).count();
    }
};

} // namespace kelvane
