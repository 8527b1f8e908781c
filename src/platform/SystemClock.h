#pragma once

#include "core/ports/Clock.h"

namespace vantor {

/// This computer's local time.
class SystemClock : public Clock {
public:
    Date Now() const override;
};

}  // namespace vantor
