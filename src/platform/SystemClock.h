#pragma once

#include "core/ports/Clock.h"

namespace vantor {

/// This computer's local time, and the system's time zones.
class SystemClock : public Clock {
public:
    Date Now() const override;
    std::vector<std::string> ZoneNames() const override;
    std::string OwnZone() const override;
    std::optional<int> ZoneOffset(const std::string& zone, std::int64_t utc) const override;
};

}  // namespace vantor
