#pragma once

#include <cstdint>
#include <optional>

#include "analysis/DelayStatistics.h"
#include "analysis/ProfileTrace.h"
#include "core/AppSettings.h"
#include "core/RunRecords.h"
#include "core/StudyRecords.h"
#include "plots/ProfileDrag.h"
#include "plots/ProfileGeometry.h"

namespace vantor {

/// The highest ideal speed that may be typed or stepped to, miles per hour.
inline constexpr std::int32_t MostIdealSpeed = 999;

/// The speed profile of one run while its screen is open: what is drawn, where the lines lie, and what dragging them
/// does to the run's entry of the study. Run, settings and entry must outlive it.
class SpeedProfile {
public:
    /// Shows the whole run against distance, with the boundaries of the entry.
    SpeedProfile(const RunRecord& run, const AppSettings& settings, StudyRunEntry& entry);

    const ProfileTrace& Trace() const { return trace_; }
    ProfileGeometry& Geometry() { return geometry_; }
    const ProfileGeometry& Geometry() const { return geometry_; }
    const PlotState& Plot() const { return plot_; }
    const ProfileDrag& Drag() const { return drag_; }
    BoundaryAxis Axis() const { return plot_.Axis; }

    /// Shows run and entry as they are now, whole, with the boundaries of `plot`; the releases stay counted.
    void RunCut(const PlotState& plot);
    /// Shows run and entry as they are now, which are another run's: along the same axis and at the same scale, but
    /// whole where the run so far was shown whole. No release is counted.
    void RunChanged();
    /// The boundaries as they were, along the axis they were set on, which may be another than the shown one: ShowAlong
    /// is to be called then. The entry has been given back its own.
    void Restore(const PlotState& plot);
    /// Goes on along this axis, with the same part of it in view.
    void ShowAlong(BoundaryAxis axis);
    /// Changes between distance and time and shows the whole run. The boundaries stay where they are.
    void ToggleAxis();

    /// A boundary in feet, or its sample in time mode; nothing when it is not set.
    std::optional<std::int32_t> Boundary(ProfileLine line) const;
    /// The user's ideal speed, else the computed one, miles per hour; nothing when there is neither.
    std::optional<double> IdealSpeed() const;
    /// The entry with its boundaries by distance: one that was moved over time has the distance that a computation
    /// finds.
    StudyRunEntry EntryByDistance() const;
    /// What lies between both boundaries; nothing while one is not set or they are crossed.
    std::optional<PartBetween> Between() const;
    /// The two as whole numbers in the shown unit.
    std::optional<std::int32_t> ShownBoundary(ProfileLine line) const;
    std::optional<std::int32_t> ShownIdealSpeed() const;
    /// The last place that a boundary may have.
    std::int32_t LastShownBoundary() const;
    /// The ideal speed in whole miles per hour, whatever the shown unit.
    std::optional<std::int32_t> WholeIdealSpeed() const;
    bool HasUserIdealSpeed() const { return entry_.IdealSpeedUser != 0; }
    bool HasBothBoundaries() const { return vantor::HasBothBoundaries(entry_); }

    /// Where a line is drawn: x of a boundary, y of the ideal speed. One that is not set waits at the left, right or
    /// upper edge of the plot.
    double PixelOf(ProfileLine line) const;
    /// The line to grab at a pixel: the nearest one within `tolerance`. Between two boundaries that are equally near,
    /// the side of the pointer decides: left of their middle the start, else the end.
    ProfileLine LineAt(double x, double y, double tolerance) const;

    void Grab(ProfileLine line) { drag_.Grab(line); }
    /// Moves the grabbed line to the pointer. The ideal speed follows only between the plot's top and baseline.
    void DragTo(double x, double y);
    /// Moves the grabbed line by steps of the axis that it crosses, in the shown unit.
    void MoveBy(double units);
    /// Moves the grabbed boundary to a value of the axis, in the shown unit.
    void MoveTo(double axisValue);
    /// Lets the grabbed line go. True when the run's delay is to be computed now.
    bool Release() { return drag_.Release(); }
    /// 0 for none.
    void SetIdealSpeedUser(std::int32_t mph);

    /// Computes the run's delay into its entry. The errors are those of ComputeRunDelay.
    void Compute();

private:
    void SetBoundary(ProfileLine line, std::int32_t boundary);
    std::int32_t& SampleOf(ProfileLine line) {
        return line == ProfileLine::Start ? plot_.CDStartSample : plot_.CDEndSample;
    }
    std::int32_t& DistanceOf(ProfileLine line) {
        return line == ProfileLine::Start ? entry_.CDStartDist : entry_.CDEndDist;
    }
    void ShowWholeRun();
    void ShowPart(int scaleStep, double offset);

    const RunRecord& run_;
    const AppSettings& settings_;
    StudyRunEntry& entry_;
    ProfileTrace trace_;
    ProfileGeometry geometry_;
    PlotState plot_;
    ProfileDrag drag_;
    std::optional<float> computedIdealSpeed_;
};

}  // namespace vantor
