#pragma once

#include "core/Date.h"

namespace vantor {

class Clock {
public:
    virtual ~Clock() = default;
    /// Local date and time.
    virtual Date Now() const = 0;
};

}  // namespace vantor
