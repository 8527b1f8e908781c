#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>

namespace vantor {

/// Why a row of a list has no more than its name when its reading was stopped.
inline constexpr const char* ListingStoppedText = "It was not read: the listing was stopped.";

/// What a rule with long work tells of it and asks: how much is done, and whether to go on. A rule that is told to stop
/// leaves nothing half done. One without a sink tells nobody and never stops.
class Progress {
public:
    /// Gets the part done, 0 to 1; false stops the work and stays false. Called on the thread that does the work.
    using Sink = std::function<bool(double done)>;

    Progress() = default;
    explicit Progress(Sink sink) : sink_(std::move(sink)) {}

    /// Tells that `done` of `total` steps are done; false when the work is to stop.
    bool operator()(std::uint64_t done, std::uint64_t total) const {
        if (!sink_) return true;
        const double part = total == 0 ? 1 : static_cast<double>(done) / static_cast<double>(total);
        return sink_(from_ + (to_ - from_) * part);
    }

    /// The progress of a part of the work, which goes from `from` to `to` of the whole; both 0 to 1.
    Progress Part(double from, double to) const {
        Progress part = *this;
        part.from_ = from_ + (to_ - from_) * from;
        part.to_ = from_ + (to_ - from_) * to;
        return part;
    }

    /// The progress of part `index`, from 0, of `count` parts of one size.
    Progress PartOf(std::size_t index, std::size_t count) const {
        return Part(static_cast<double>(index) / static_cast<double>(count),
                    static_cast<double>(index + 1) / static_cast<double>(count));
    }

private:
    Sink sink_;
    double from_ = 0;
    double to_ = 1;
};

}  // namespace vantor
