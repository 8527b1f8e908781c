#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/Date.h"
#include "core/ports/Clock.h"

namespace vantor {

/// Times of tracks, seconds UTC since 1970, and the dates and times of day of one zone, as logs and runs hold them.
class TrackTimes {
public:
    /// Error 13 for a zone that the clock does not know.
    TrackTimes(const Clock& clock, std::string zone);

    const std::string& Zone() const { return zone_; }
    Date LocalOf(double utc) const;
    /// The moment at which the zone's clocks showed so many seconds since 1970. Of two such moments, where clocks were
    /// set back, the first; of none, where they were set forward, the one that they would have shown without.
    double UtcOf(double local) const;

private:
    int OffsetAt(std::int64_t utc) const;
    int OffsetNow(std::int64_t utc) const;

    const Clock& clock_;
    std::string zone_;
    // The quarter of an hour asked for last, and its offset where that is one throughout.
    mutable std::int64_t quarter_ = 0;
    mutable std::optional<int> offset_;
};

}  // namespace vantor
