#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "core/RunRecords.h"

namespace vantor {

/// Where a run slows down and gains its speed again. Samples count from 1, distances are those at their ends, speeds
/// the smoothed ones there. Formulas: docs/methods.md, "Proposed boundaries".
struct DelayEvent {
    std::int32_t Onset = 0;   ///< the last sample before the vehicle slows down
    std::int32_t Lowest = 0;  ///< the first of the slowest ones
    std::int32_t End = 0;     ///< the first sample with its speed again
    std::int32_t OnsetDistance = 0;
    std::int32_t EndDistance = 0;
    double OnsetSpeed = 0;  ///< mph
    double EndSpeed = 0;

    bool operator==(const DelayEvent&) const = default;
};

struct RunEvents {
    std::vector<DelayEvent> Events;   ///< in the order driven
    std::vector<std::int32_t> Nodes;  ///< samples with a node flag
    std::vector<std::int32_t> NodeDistances;
    /// By node: the event that holds its sample, as an index into Events; nothing where the run passes without delay.
    std::vector<std::optional<std::size_t>> EventOfNode;
};

/// The events of a run whose vehicle drives before and after them; slowing that the start or the end of the run cuts is
/// none. Only the samples' values are looked at.
RunEvents FindDelayEvents(const RunRecord& run, float speedFactor);

}  // namespace vantor
