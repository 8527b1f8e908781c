#include "tracks/TrackTimes.h"

#include <cmath>
#include <utility>

#include "core/RunTimeError.h"
#include "tracks/TrackTexts.h"

namespace vantor {
namespace {

/// 1 January 1970 as the day of a date.
constexpr double DateOf1970 = 25569;
/// Zones change their offsets on such a step at most times.
constexpr std::int64_t Quarter = 900;

}  // namespace

TrackTimes::TrackTimes(const Clock& clock, std::string zone) : clock_(clock), zone_(std::move(zone)) { OffsetNow(0); }

int TrackTimes::OffsetNow(std::int64_t utc) const {
    const auto offset = clock_.ZoneOffset(zone_, utc);
    if (!offset)
        throw RunTimeError(ErrorNumber::TypeMismatch,
                           "The time zone \"" + zone_ + "\" is not known. Choose one like \"Europe/Berlin\".");
    return *offset;
}

int TrackTimes::OffsetAt(std::int64_t utc) const {
    const std::int64_t quarter = utc - ((utc % Quarter) + Quarter) % Quarter;
    if (offset_ && quarter == quarter_) return *offset_;
    const int offset = OffsetNow(utc);
    quarter_ = quarter;
    offset_.reset();
    if (OffsetNow(quarter) == offset && OffsetNow(quarter + Quarter - 1) == offset) offset_ = offset;
    return offset;
}

Date TrackTimes::LocalOf(double utc) const {
    const double local = utc + OffsetAt(static_cast<std::int64_t>(std::floor(utc)));
    return {DateOf1970 + local / static_cast<double>(SecondsOfDay)};
}

double TrackTimes::UtcOf(double local) const {
    const auto seconds = static_cast<std::int64_t>(std::floor(local));
    // No zone changes its offset twice in two days.
    const int before = OffsetAt(seconds - SecondsOfDay);
    if (OffsetAt(seconds - before) == before) return local - before;
    const int behind = OffsetAt(seconds + SecondsOfDay);
    return OffsetAt(seconds - behind) == behind ? local - behind : local - before;
}

}  // namespace vantor
