#include "plots/ProfileLines.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "core/Numeric.h"
#include "plots/NamesInRow.h"

namespace vantor {
namespace {

constexpr std::array Boundaries = {ProfileLine::Start, ProfileLine::End};
constexpr double BetweenOpacity = 0.07;

TextStyle LabelStyle(const PlotLook& look, Colour ink) { return {look.TextSize, false, ink, TextSide::Centre}; }
double Padding(const PlotLook& look) { return look.TextSize / 2; }
double LabelWidth(const TextMeasure& measure, const PlotLook& look, const std::string& text) {
    return std::ceil(measure.TextWidth(text, LabelStyle(look, {})) + 2 * Padding(look));
}
/// Between the area and the labels above it.
double LabelGap(const PlotLook& look) { return look.TextSize / 3; }
double LabelHeight(const TextMeasure& measure, const PlotLook& look) {
    return std::ceil(measure.LineHeight(LabelStyle(look, {})) + look.TextSize / 4);
}

Colour InkOf(const PlotLook& look, ProfileLine line) {
    return line == ProfileLine::IdealSpeed ? look.Inks.IdealSpeed : look.Inks.Boundary;
}

const char* Name(ProfileLine line) { return line == ProfileLine::Start ? "Start " : "End "; }

/// "3492 ft", or seconds.
std::string PlaceText(const SpeedProfile& profile, std::int32_t value) {
    const bool inTime = profile.Axis() == BoundaryAxis::Time;
    return std::to_string(value) + " " + (inTime ? "s" : profile.Geometry().Units().LengthLabel());
}

ProfileLinePlaces LinePlacesOf(const SpeedProfile& profile) {
    ProfileLinePlaces places;
    for (const ProfileLine line : Boundaries) {
        const auto boundary = profile.ShownBoundary(line);
        places[static_cast<std::size_t>(line) - 1] = {
            profile.PixelOf(line), boundary.has_value(),
            Name(line) + (boundary ? PlaceText(profile, *boundary) : std::string("not set"))};
    }
    const auto speed = profile.ShownIdealSpeed();
    places.back() = {profile.PixelOf(ProfileLine::IdealSpeed), speed.has_value(),
                     speed ? "Ideal " + std::to_string(*speed) + " " + profile.Geometry().Units().SpeedLabel()
                           : "Ideal speed not set"};
    return places;
}

CanvasBox AreaOf(const PlotRectangle& area) {
    return {area.Left, area.Top, area.Right - area.Left, area.Baseline - area.Top};
}

std::vector<CanvasPoint> RoundedBox(const CanvasBox& box, double radius) {
    constexpr int Steps = 4;
    constexpr double Quarter = 1.5707963267948966;
    std::vector<CanvasPoint> outline;
    for (int corner = 0; corner < 4; ++corner) {
        const double x = corner == 0 || corner == 3 ? box.X + box.Width - radius : box.X + radius;
        const double y = corner < 2 ? box.Y + box.Height - radius : box.Y + radius;
        for (int step = 0; step <= Steps; ++step) {
            const double angle = Quarter * (corner + static_cast<double>(step) / Steps);
            outline.push_back({x + radius * std::cos(angle), y + radius * std::sin(angle)});
        }
    }
    return outline;
}

void DrawLabel(Canvas& canvas, const PlotLook& look, const CanvasBox& box, const std::string& text, Colour ink,
               bool isFilled) {
    const double edge = look.TextSize / 12;
    const double radius = look.TextSize / 3;
    canvas.FillShape(RoundedBox(box, radius), ink, 1);
    const CanvasBox inner{box.X + edge, box.Y + edge, box.Width - 2 * edge, box.Height - 2 * edge};
    if (!isFilled) canvas.FillShape(RoundedBox(inner, radius - edge), look.Inks.Base, 1);
    canvas.DrawText(box, text, LabelStyle(look, isFilled ? look.Inks.Base : ink));
}

CanvasBox Around(const CanvasBox& box, double margin) {
    return {box.X - margin, box.Y - margin, box.Width + 2 * margin, box.Height + 2 * margin};
}

CanvasBox United(const CanvasBox& one, const CanvasBox& other) {
    const double x = std::min(one.X, other.X);
    const double y = std::min(one.Y, other.Y);
    return {x, y, std::max(one.X + one.Width, other.X + other.Width) - x,
            std::max(one.Y + one.Height, other.Y + other.Height) - y};
}

}  // namespace

std::string ProposalLabel(const SpeedProfile& profile, const ProposedBoundaries& proposal, ProfileLine line) {
    const double value = profile.Geometry().AxisValueOf(proposal.PlaceOf(line, profile.Axis()));
    return Name(line) + PlaceText(profile, Round32(value)) + ", proposed";
}

ProfileLines::ProfileLines(const TextMeasure& measure, const PlotLook& look, const CanvasBox& area,
                           const ProfileLinePlaces& places)
    : area_(area) {
    for (std::size_t i = 0; i < places.size(); ++i)
        if (places[i]) lines_[i] = {*places[i], true, {}};
    PlaceBoundaries(measure, look);
    PlaceIdealSpeed(measure, look);
}

ProfileLines::ProfileLines(const TextMeasure& measure, const PlotLook& look, const SpeedProfile& profile)
    : ProfileLines(measure, look, AreaOf(profile.Geometry().Rectangle()), LinePlacesOf(profile)) {}

double ProfileLines::LabelRow(const TextMeasure& measure, const PlotLook& look) {
    return LabelHeight(measure, look) + LabelGap(look);
}

void ProfileLines::PlaceBoundaries(const TextMeasure& measure, const PlotLook& look) {
    std::vector<Placed*> shown;
    for (const ProfileLine line : Boundaries) {
        Placed& placed = At(line);
        placed.IsVisible =
            placed.IsVisible && placed.At.Place > area_.X - 1 && placed.At.Place < area_.X + area_.Width + 1;
        if (placed.IsVisible) shown.push_back(&placed);
    }
    std::ranges::stable_sort(shown, {}, [](const Placed* placed) { return placed->At.Place; });
    std::vector<RowName> names;
    for (const Placed* placed : shown) {
        const double width = LabelWidth(measure, look, placed->At.Text);
        names.push_back({placed->At.Place, width, width});
    }
    const auto rooms = PlaceInRow(names, {area_.X, area_.X + area_.Width}, 2, Crowded::MovesApart);
    const double height = LabelHeight(measure, look);
    for (std::size_t i = 0; i < shown.size(); ++i)
        shown[i]->Label = {std::floor(rooms[i].Low), area_.Y - height - LabelGap(look), names[i].Width, height};
}

void ProfileLines::PlaceIdealSpeed(const TextMeasure& measure, const PlotLook& look) {
    Placed& placed = At(ProfileLine::IdealSpeed);
    const double gap = look.TextSize / 4;
    const double width = LabelWidth(measure, look, placed.At.Text);
    const double height = LabelHeight(measure, look);
    const bool fitsAbove = placed.At.Place - height - gap > area_.Y;
    const double y = fitsAbove ? placed.At.Place - height - gap : placed.At.Place + gap + 1;
    placed.Label = {area_.X + area_.Width - width - Padding(look), std::floor(y), width, height};
}

CanvasBox ProfileLines::BoundsOf(ProfileLine line) const {
    const Placed& placed = At(line);
    if (!placed.IsVisible) return {};
    const CanvasBox& label = placed.Label;
    const CanvasBox way = line == ProfileLine::IdealSpeed
                              ? CanvasBox{area_.X, placed.At.Place, area_.Width, 0}
                              : CanvasBox{placed.At.Place, label.Y, 0, area_.Y + area_.Height - label.Y};
    return United(Around(way, 4), Around(label, 2));
}

void ProfileLines::Draw(Canvas& canvas, const PlotLook& look, ProfileLine active) const {
    const Placed& start = At(ProfileLine::Start);
    const Placed& end = At(ProfileLine::End);
    if (start.At.IsSet && end.At.IsSet) {
        const auto [first, last] = std::minmax(start.At.Place, end.At.Place);
        const double left = std::max(first, area_.X);
        const double right = std::min(last, area_.X + area_.Width);
        const double bottom = area_.Y + area_.Height;
        const std::array corners = {CanvasPoint{left, area_.Y}, CanvasPoint{right, area_.Y}, CanvasPoint{right, bottom},
                                    CanvasPoint{left, bottom}};
        if (left < right) canvas.FillShape(corners, look.Inks.Boundary, BetweenOpacity);
    }
    for (const ProfileLine line : AllLines) DrawLine(canvas, look, line, line == active);
    // Last, so that no line runs through a label.
    for (const ProfileLine line : AllLines)
        if (At(line).IsVisible)
            DrawLabel(canvas, look, At(line).Label, At(line).At.Text, InkOf(look, line), line == active);
}

void ProfileLines::DrawLine(Canvas& canvas, const PlotLook& look, ProfileLine line, bool isActive) const {
    const Placed& placed = At(line);
    if (!placed.IsVisible) return;
    const double place = placed.At.Place;
    const bool isLevel = line == ProfileLine::IdealSpeed;
    const CanvasPoint from =
        isLevel ? CanvasPoint{area_.X, place} : CanvasPoint{place, placed.Label.Y + placed.Label.Height};
    const CanvasPoint to =
        isLevel ? CanvasPoint{area_.X + area_.Width, place} : CanvasPoint{place, area_.Y + area_.Height};
    canvas.DrawLine(from, to,
                    {(isActive ? 3 : 2) * look.TextSize / 12, InkOf(look, line),
                     placed.At.IsSet ? LinePattern::Solid : LinePattern::Dashed});
}

void DrawProposal(Canvas& canvas, const PlotLook& look, const SpeedProfile& profile,
                  const ProposedBoundaries& proposal) {
    const ProfileGeometry& geometry = profile.Geometry();
    const PlotRectangle& area = geometry.Rectangle();
    const double gap = look.TextSize / 4;
    CanvasBox before;
    for (const ProfileLine line : Boundaries) {
        const double x = geometry.XOf(geometry.AxisValueOf(proposal.PlaceOf(line, profile.Axis())));
        if (x < area.Left - 1 || x > area.Right + 1) continue;
        canvas.DrawLine({x, area.Top}, {x, area.Baseline},
                        {2 * look.TextSize / 12, look.Inks.Boundary, LinePattern::Dashed});
        // The start's label stands left of its line, the end's right of it; where an edge moves one over the other,
        // below.
        const std::string text = ProposalLabel(profile, proposal, line);
        const double width = LabelWidth(canvas, look, text);
        const double wanted = line == ProfileLine::Start ? x - width - gap : x + gap;
        const double left = std::clamp(wanted, area.Left + 1, std::max(area.Left + 1, area.Right - width - 1));
        CanvasBox label{std::floor(left), area.Top + gap, width, LabelHeight(canvas, look)};
        if (label.X < before.X + before.Width) label.Y += label.Height + gap;
        before = label;
        DrawLabel(canvas, look, label, text, look.Inks.Boundary, false);
    }
}

}  // namespace vantor
