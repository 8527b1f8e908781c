#include "tracks/TrackOrder.h"

#include <limits>
#include <utility>

#include "tracks/TrackTexts.h"

namespace vantor {
namespace {

constexpr std::size_t BackwardForGood = 10;

}  // namespace

void TrackOrder::BeginSegment() {
    isNew_ = true;
    latest_.reset();
    backward_.clear();
}

bool TrackOrder::Give(TrackPoint& point) {
    if (isNew_) ++summary_.Segments;
    isNew_ = false;
    point.Segment = summary_.Segments - 1;
    ++summary_.Points;
    if (!point.Time) ++summary_.WithoutTime;
    if (!point.Position) ++summary_.WithoutPosition;
    if (point.Time) latest_ = point.Time;
    summary_.IsStopped = !sink_(point);
    return !summary_.IsStopped;
}

bool TrackOrder::AddBackward(const TrackPoint& point) {
    ++summary_.OutOfOrder;
    if (!backward_.empty() && *point.Time <= *backward_.back().Time) backward_.clear();
    backward_.push_back(point);
    if (backward_.size() < BackwardForGood) return true;
    std::vector<TrackPoint> waiting = std::move(backward_);
    BeginSegment();
    summary_.OutOfOrder -= waiting.size();
    for (TrackPoint& next : waiting)
        if (!Give(next)) return false;
    return true;
}

bool TrackOrder::Add(TrackPoint& point) {
    if (point.Time && !IsTrackTime(*point.Time)) point.Time.reset();
    if (point.Time && latest_) {
        if (*point.Time < *latest_) return AddBackward(point);
        if (*point.Time == *latest_) {
            ++summary_.Duplicates;
            return true;
        }
    }
    backward_.clear();
    return Give(point);
}

std::int16_t TrackOrder::NodeOf(std::string_view name, std::optional<std::int16_t> number) {
    if (const auto known = nodes_.find(name); known != nodes_.end()) return known->second;
    if (number && !summary_.Nodes.contains(*number)) {
        numbers_.insert(*number);
        return *number;
    }
    constexpr std::int16_t Last = std::numeric_limits<std::int16_t>::max();
    if (nodes_.size() == MostTrackNames) return Last;
    std::int16_t free = 1;
    while (free < Last && (numbers_.contains(free) || summary_.Nodes.contains(free))) ++free;
    if (free == Last) return Last;
    nodes_.emplace(name, free);
    summary_.Nodes.emplace(free, name);
    return free;
}

void TrackOrder::AddBroken(std::uint64_t line, std::string_view reason) {
    if (summary_.Broken++ != 0) return;
    summary_.FirstBrokenLine = line;
    summary_.FirstBrokenReason = reason;
}

void NoteTrack(TrackSummary& summary, std::string_view name) {
    ++summary.TrackCount;
    if (summary.Names.size() < MostTrackNames) summary.Names.emplace_back(name);
}

}  // namespace vantor
