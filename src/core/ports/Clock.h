#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/Date.h"

namespace vantor {

class Clock {
public:
    virtual ~Clock() = default;
    /// Local date and time.
    virtual Date Now() const = 0;

    /// The time zones to choose from, "Europe/Berlin", sorted.
    virtual std::vector<std::string> ZoneNames() const = 0;
    /// The zone of this computer.
    virtual std::string OwnZone() const = 0;
    /// Seconds that a zone's clocks are ahead of UTC (west of it behind: below 0) at a moment, seconds UTC since 1970;
    /// nothing for a zone that is not known.
    virtual std::optional<int> ZoneOffset(const std::string& zone, std::int64_t utc) const = 0;
};

}  // namespace vantor
