#include "plots/SpeedProfile.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/StudyEdits.h"
#include "core/Numeric.h"

namespace vantor {
namespace {

constexpr double MostShown = 32767;
constexpr std::array Boundaries = {ProfileLine::Start, ProfileLine::End};

struct BoundaryPositions {
    PlotState Plot;
    StudyRunEntry Entry;
};

std::int32_t SampleIn(const PlotState& plot, ProfileLine line) {
    return line == ProfileLine::Start ? plot.CDStartSample : plot.CDEndSample;
}

std::int32_t DistanceIn(const StudyRunEntry& entry, ProfileLine line) {
    return line == ProfileLine::Start ? entry.CDStartDist : entry.CDEndDist;
}

/// Both values of each boundary, those along `axis` leading and the others following as a computation finds them.
BoundaryPositions Following(BoundaryAxis axis, const RunRecord& run, const AppSettings& settings, const PlotState& plot,
                            const StudyRunEntry& entry) {
    BoundaryPositions positions{plot, entry};
    positions.Plot.Axis = axis;
    try {
        ComputeRunDelay(run, settings, positions.Plot, positions.Entry);
    } catch (const RunTimeError&) {
        // The delay may fail; the boundaries are written before it.
    }
    return positions;
}

}  // namespace

SpeedProfile::SpeedProfile(const RunRecord& run, const AppSettings& settings, StudyRunEntry& entry)
    : run_(run), settings_(settings), entry_(entry) {
    RunCut(PlacedBoundaries(run_, entry_));
}

void SpeedProfile::RunCut(const PlotState& plot) {
    trace_ = ProfileTrace(run_, settings_.SpeedFactor);
    const PlotRectangle rectangle = geometry_.Rectangle();
    geometry_ = ProfileGeometry({settings_.MetricUnits != 0}, trace_.Extent());
    geometry_.SetRectangle(rectangle);
    plot_ = plot;
    ShowWholeRun();
}

void SpeedProfile::RunChanged() {
    const BoundaryAxis axis = plot_.Axis;
    const int scaleStep = geometry_.ScaleStep();
    const bool wasWhole = geometry_.MostOffset() <= 0;
    const double offset = geometry_.Offset();
    drag_ = {};
    computedIdealSpeed_.reset();
    RunCut(PlacedBoundaries(run_, entry_));
    if (axis != plot_.Axis) ToggleAxis();
    if (!wasWhole || scaleStep > geometry_.ScaleStep()) ShowPart(scaleStep, offset);
}

void SpeedProfile::Restore(const PlotState& plot) {
    plot_ = plot;
    computedIdealSpeed_.reset();
}

void SpeedProfile::ShowAlong(BoundaryAxis axis) {
    if (axis == plot_.Axis) return;
    const int scaleStep = geometry_.ScaleStep();
    const double offset = geometry_.Offset();
    ToggleAxis();
    ShowPart(scaleStep, offset);
}

void SpeedProfile::ShowPart(int scaleStep, double offset) {
    geometry_.SetScaleStep(scaleStep, geometry_.Rectangle().Left);
    geometry_.SetOffset(offset);
}

void SpeedProfile::ShowWholeRun() {
    geometry_.SetAxis(plot_.Axis);
    geometry_.SetTopSpeed(std::max<double>(trace_.TopSpeed(), entry_.IdealSpeedUser));
}

void SpeedProfile::ToggleAxis() {
    if (plot_.Axis == BoundaryAxis::Distance) {
        const auto byDistance = Following(BoundaryAxis::Distance, run_, settings_, plot_, entry_);
        for (const ProfileLine line : Boundaries)
            SampleOf(line) = DistanceOf(line) == 0 ? 0 : SampleIn(byDistance.Plot, line);
    } else {
        const StudyRunEntry placed = EntryByDistance();
        for (const ProfileLine line : Boundaries) DistanceOf(line) = DistanceIn(placed, line);
    }
    plot_.Axis = plot_.Axis == BoundaryAxis::Time ? BoundaryAxis::Distance : BoundaryAxis::Time;
    ShowWholeRun();
}

StudyRunEntry SpeedProfile::EntryByDistance() const {
    StudyRunEntry placed = entry_;
    if (plot_.Axis == BoundaryAxis::Distance) return placed;
    const auto byDistance = Following(BoundaryAxis::Distance, run_, settings_, plot_, entry_);
    const auto byTime = Following(BoundaryAxis::Time, run_, settings_, plot_, entry_);
    for (const ProfileLine line : Boundaries) {
        const std::int32_t sample = SampleIn(plot_, line);
        const bool isMoved = DistanceIn(entry_, line) == 0 || sample != SampleIn(byDistance.Plot, line);
        if (sample != 0 && isMoved)
            (line == ProfileLine::Start ? placed.CDStartDist : placed.CDEndDist) = DistanceIn(byTime.Entry, line);
    }
    return placed;
}

std::optional<std::int32_t> SpeedProfile::Boundary(ProfileLine line) const {
    const std::int32_t distance = DistanceIn(entry_, line);
    const std::int32_t sample = SampleIn(plot_, line);
    if (plot_.Axis == BoundaryAxis::Distance) return distance == 0 ? std::nullopt : std::optional(distance);
    return distance == 0 && sample == 0 ? std::nullopt : std::optional(sample);
}

std::optional<double> SpeedProfile::IdealSpeed() const {
    if (entry_.IdealSpeedUser != 0) return entry_.IdealSpeedUser;
    return computedIdealSpeed_;
}

std::optional<std::int32_t> SpeedProfile::ShownBoundary(ProfileLine line) const {
    const auto boundary = Boundary(line);
    return boundary ? std::optional(Round32(geometry_.AxisValueOf(*boundary))) : std::nullopt;
}

std::int32_t SpeedProfile::LastShownBoundary() const {
    return Round32(geometry_.AxisValueOf(geometry_.LastBoundary()));
}

std::optional<std::int32_t> SpeedProfile::WholeIdealSpeed() const {
    const auto speed = IdealSpeed();
    return speed ? std::optional(Round32(std::clamp(*speed, -MostShown, MostShown))) : std::nullopt;
}

std::optional<std::int32_t> SpeedProfile::ShownIdealSpeed() const {
    const auto mph = WholeIdealSpeed();
    return mph ? std::optional(geometry_.Units().WholeSpeed(*mph)) : std::nullopt;
}

std::optional<PartBetween> SpeedProfile::Between() const {
    const auto start = Boundary(ProfileLine::Start);
    const auto end = Boundary(ProfileLine::End);
    if (!HasBothBoundaries() || !start || !end || *end < *start || !trace_.HasMovement()) return std::nullopt;
    const FoundBoundaries found = FindBoundaries(run_, plot_, entry_);
    const std::int32_t first = found.Start.value_or(trace_.SampleAt(Axis(), *start));
    const std::int32_t last = found.End.value_or(trace_.SampleAt(Axis(), *end));
    const StudyRunEntry placed = EntryByDistance();
    return PartBetween{static_cast<double>(placed.CDEndDist - placed.CDStartDist), last - first};
}

double SpeedProfile::PixelOf(ProfileLine line) const {
    const PlotRectangle& rectangle = geometry_.Rectangle();
    if (line == ProfileLine::IdealSpeed)
        return IdealSpeed() ? std::max(geometry_.YOf(*IdealSpeed()), rectangle.Top) : rectangle.Top;
    if (const auto boundary = Boundary(line)) return geometry_.XOf(geometry_.AxisValueOf(*boundary));
    return line == ProfileLine::Start ? rectangle.Left : rectangle.Right;
}

ProfileLine SpeedProfile::LineAt(double x, double y, double tolerance) const {
    const double start = PixelOf(ProfileLine::Start);
    const double end = PixelOf(ProfileLine::End);
    const double toStart = std::abs(x - start);
    const double toEnd = std::abs(x - end);
    const bool takesStart = toStart != toEnd ? toStart < toEnd : x <= (start + end) / 2;
    const double toBoundary = std::min(toStart, toEnd);
    const double toIdealSpeed = std::abs(y - PixelOf(ProfileLine::IdealSpeed));
    if (std::min(toBoundary, toIdealSpeed) > tolerance) return ProfileLine::None;
    if (toIdealSpeed < toBoundary) return ProfileLine::IdealSpeed;
    return takesStart ? ProfileLine::Start : ProfileLine::End;
}

void SpeedProfile::DragTo(double x, double y) {
    const ProfileLine line = drag_.DragLine();
    if (line == ProfileLine::None) return;
    if (line != ProfileLine::IdealSpeed)
        SetBoundary(line, geometry_.BoundaryAt(x));
    else if (const auto speed = geometry_.IdealSpeedAt(y))
        SetIdealSpeedUser(*speed);
}

void SpeedProfile::MoveBy(double units) {
    const ProfileLine line = drag_.DragLine();
    if (line == ProfileLine::None) return;
    const Units shown = geometry_.Units();
    if (line == ProfileLine::IdealSpeed) {
        const double speed = IdealSpeed() ? shown.SpeedOfMph(*IdealSpeed()) : geometry_.Speeds().Maximum;
        SetIdealSpeedUser(Round32(std::clamp(shown.MphOfSpeed(speed + units), 0.0, double{MostIdealSpeed})));
        return;
    }
    const std::int32_t waiting = line == ProfileLine::Start ? 0 : geometry_.LastBoundary();
    SetBoundary(line, geometry_.BoundaryOf(geometry_.AxisValueOf(Boundary(line).value_or(waiting)) + units));
}

void SpeedProfile::MoveTo(double axisValue) { SetBoundary(drag_.DragLine(), geometry_.BoundaryOf(axisValue)); }

void SpeedProfile::SetBoundary(ProfileLine line, std::int32_t boundary) {
    if (plot_.Axis == BoundaryAxis::Distance) {
        DistanceOf(line) = boundary;
        // The computation leaves the sample as it is where it finds none, which is so in the run's last second.
        SampleOf(line) = boundary == 0 ? 0 : trace_.SampleAt(BoundaryAxis::Distance, boundary);
    } else {
        SampleOf(line) = boundary;
        if (boundary == geometry_.LastBoundary()) DistanceOf(line) = trace_.Extent().Feet;
    }
}

void SpeedProfile::SetIdealSpeedUser(std::int32_t mph) {
    entry_.IdealSpeedUser = mph;
    computedIdealSpeed_.reset();
    if (geometry_.Units().SpeedOfMph(mph) > geometry_.Speeds().Maximum) geometry_.SetTopSpeed(mph);
}

void SpeedProfile::Compute() {
    computedIdealSpeed_.reset();
    computedIdealSpeed_ = ComputeEntry(run_, settings_, plot_, entry_);
}

}  // namespace vantor
