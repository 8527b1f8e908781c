#include "plots/ReportProfile.h"

#include <algorithm>
#include <cmath>

#include "core/Numeric.h"

namespace vantor {
namespace {

/// More columns than a printed profile can show apart.
constexpr int MostColumns = 800;

constexpr TextStyle ScaleStyle{7, false, PaperColours.DimText};
constexpr TextStyle MarkStyle{7, false, PaperColours.Text};
constexpr LineStyle FaintRule{0.4, PaperColours.Grid};
constexpr double TextHeight = 9;
constexpr double ScaleWidth = 24;
constexpr double MarkGap = 3;

/// One profile in its box.
class ProfileDrawing {
public:
    ProfileDrawing(Canvas& canvas, const CanvasBox& box, const ReportProfile& profile, const ProfileFrame& frame)
        : canvas_(canvas), profile_(profile), frame_(frame), length_(frame.Units.LengthOfFeet(profile.Feet)) {
        plot_ = {box.X + ScaleWidth, box.Y + 2 * TextHeight + MarkGap, box.Width - ScaleWidth,
                 box.Height - 4 * TextHeight - 2 * MarkGap};
    }

    void Draw() {
        ShadeBetween();
        DrawSpeedAxis();
        DrawDistanceAxis();
        DrawNodes();
        DrawIdealSpeed();
        DrawTrace();
        DrawBoundaries();
        canvas_.DrawFrame(plot_, {0.6, PaperColours.Rule});
    }

private:
    double Bottom() const { return plot_.Y + plot_.Height; }
    double Right() const { return plot_.X + plot_.Width; }
    double XOfFeet(double feet) const { return plot_.X + std::clamp(feet / profile_.Feet, 0.0, 1.0) * plot_.Width; }
    double YOfSpeed(double shown) const { return Bottom() - shown / frame_.Speeds.Maximum * plot_.Height; }

    void ShadeBetween() {
        if (!HasBothBoundaries(frame_.Entry)) return;
        const double start = XOfFeet(frame_.Entry.CDStartDist);
        const double end = XOfFeet(frame_.Entry.CDEndDist);
        if (end > start) canvas_.FillBox({start, plot_.Y, end - start, plot_.Height}, PaperColours.Between);
    }

    void DrawSpeedAxis() {
        const TextStyle right = OnSide(ScaleStyle, TextSide::Right);
        for (int speed = 0; speed <= frame_.Speeds.Maximum; speed += frame_.Speeds.GridStep) {
            const double y = YOfSpeed(speed);
            canvas_.DrawLine({plot_.X, y}, {Right(), y}, FaintRule);
            canvas_.DrawText({plot_.X - ScaleWidth, y - TextHeight / 2, ScaleWidth - MarkGap, TextHeight},
                             std::to_string(speed), right);
        }
        canvas_.DrawText({plot_.X - ScaleWidth, plot_.Y - 2 * TextHeight - MarkGap, ScaleWidth - MarkGap, TextHeight},
                         frame_.Units.SpeedLabel(), right);
    }

    void DrawDistanceAxis() {
        constexpr double LeastStepWidth = 45;
        const int step = RoundStep(length_ / std::max(1, static_cast<int>(plot_.Width / LeastStepWidth)));
        const double top = Bottom() + MarkGap;
        for (std::int64_t place = 0; static_cast<double>(place) <= length_; place += step) {
            const double x = plot_.X + static_cast<double>(place) / length_ * plot_.Width;
            canvas_.DrawLine({x, Bottom()}, {x, Bottom() + MarkGap}, {0.6, PaperColours.Rule});
            const double left = std::min(x - LeastStepWidth / 2, Right() - LeastStepWidth);
            const bool isLast = left < x - LeastStepWidth / 2;
            canvas_.DrawText({left, top, LeastStepWidth, TextHeight}, std::to_string(place),
                             OnSide(ScaleStyle, isLast ? TextSide::Right : TextSide::Centre));
        }
        canvas_.DrawText({plot_.X, top + TextHeight, plot_.Width, TextHeight},
                         std::string("Distance from start of run (") + frame_.Units.LengthLabel() + ")",
                         OnSide(ScaleStyle, TextSide::Centre));
    }

    void DrawIdealSpeed() {
        const StudyRunEntry& entry = frame_.Entry;
        const std::int32_t mph = entry.IdealSpeedUser != 0 ? entry.IdealSpeedUser : entry.IdealSpeedCalc;
        if (!HasBothBoundaries(entry) || mph <= 0) return;
        const double y = YOfSpeed(std::min<double>(frame_.Units.SpeedOfMph(mph), frame_.Speeds.Maximum));
        canvas_.DrawLine({XOfFeet(entry.CDStartDist), y}, {XOfFeet(entry.CDEndDist), y},
                         {0.7, PaperColours.Trace, LinePattern::Dashed});
    }

    void DrawTrace() {
        std::vector<CanvasPoint> line;
        line.reserve(profile_.Points.size());
        for (const TracePoint& point : profile_.Points)
            line.push_back({XOfFeet(point.X), YOfSpeed(frame_.Units.SpeedOfMph(point.Speed))});
        canvas_.DrawInside(plot_, [&] { canvas_.DrawPolyline(line, {1, PaperColours.Trace}); });
    }

    /// The names stand in a row above the plot, each right of its line as far as the next one lets it, or left of it
    /// where only that holds it.
    void DrawNodes() {
        constexpr double LeastName = 12;
        const double top = plot_.Y - TextHeight;
        double taken = plot_.X;
        for (std::size_t i = 0; i < profile_.Nodes.size(); ++i) {
            const std::string& name = profile_.Nodes[i].Name;
            const double x = XOfFeet(profile_.Nodes[i].Feet);
            canvas_.DrawLine({x, plot_.Y - MarkGap}, {x, Bottom()}, {0.6, PaperColours.Node, LinePattern::Dashed});
            const double next = i + 1 < profile_.Nodes.size() ? XOfFeet(profile_.Nodes[i + 1].Feet) : Right();
            const double wanted = canvas_.TextWidth(name, ScaleStyle) + 1;
            const double behind = next - x - MarkGap;
            if (wanted > behind && wanted <= x - taken - MarkGap) {
                canvas_.DrawText({x - wanted - 1, top, wanted, TextHeight}, name, ScaleStyle);
                taken = x;
            } else if (behind >= LeastName && x >= taken) {
                canvas_.DrawText({x + 1, top, std::min(wanted, behind), TextHeight}, name, ScaleStyle);
                taken = x + 1 + std::min(wanted, behind);
            }
        }
    }

    /// The captions stand in the upper row above their lines, moved where they would leave the plot or meet.
    void DrawBoundaries() {
        const auto caption = [&](const char* name, std::int32_t feet) {
            return std::string(name) + " " + std::to_string(frame_.Units.WholeLength(feet));
        };
        const StudyRunEntry& entry = frame_.Entry;
        const std::string start = entry.CDStartDist != 0 ? caption("Start", entry.CDStartDist) : "";
        const std::string end = entry.CDEndDist != 0 ? caption("End", entry.CDEndDist) : "";
        const double startWidth = canvas_.TextWidth(start, MarkStyle) + 1;
        const double endWidth = canvas_.TextWidth(end, MarkStyle) + 1;
        double startLeft = std::max(XOfFeet(entry.CDStartDist) - startWidth / 2, plot_.X);
        double endLeft = std::min(XOfFeet(entry.CDEndDist) - endWidth / 2, Right() - endWidth);
        if (!start.empty() && !end.empty() && endLeft < startLeft + startWidth + MarkGap) {
            endLeft = std::min(startLeft + startWidth + MarkGap, Right() - endWidth);
            startLeft = std::min(startLeft, endLeft - startWidth - MarkGap);
        }
        if (!start.empty()) DrawBoundary(entry.CDStartDist, start, startLeft, startWidth, PaperColours.Start);
        if (!end.empty()) DrawBoundary(entry.CDEndDist, end, endLeft, endWidth, PaperColours.End);
    }

    void DrawBoundary(std::int32_t feet, const std::string& caption, double left, double width, Colour ink) {
        const double x = XOfFeet(feet);
        const double top = plot_.Y - 2 * TextHeight - MarkGap;
        canvas_.DrawLine({x, plot_.Y}, {x, Bottom()}, {1.2, ink});
        TextStyle style = MarkStyle;
        style.Ink = ink;
        canvas_.DrawText({left, top, width, TextHeight}, caption, style);
    }

    Canvas& canvas_;
    const ReportProfile& profile_;
    const ProfileFrame& frame_;
    double length_;  ///< of the run in the shown unit
    CanvasBox plot_;
};

void AddNode(ReportProfile& profile, double feet, const std::string& name) {
    const std::string number = "Node " + std::to_string(profile.Nodes.size() + 1);
    profile.Nodes.push_back({feet, name.empty() ? number : name});
}

}  // namespace

ReportProfile MakeReportProfile(const RunRecord& run, const AppSettings& settings) {
    const ProfileTrace trace(run, settings.SpeedFactor);
    ReportProfile profile;
    profile.HasMovement = trace.HasMovement();
    if (!profile.HasMovement) return profile;
    const std::int32_t samples = trace.SampleCount();
    profile.Feet = std::max(trace.Extent().Feet, trace.Extent().TraceFeet);
    profile.TopSpeed = trace.TopSpeed();
    constexpr BoundaryAxis Axis = BoundaryAxis::Distance;
    profile.Points = samples > 2 * MostColumns
                         ? ReducedPointsOf(trace, Axis, 1, samples, 0, 1, MostColumns / profile.Feet)
                         : PointsOf(trace, Axis, 1, samples, 0, 1);
    for (const ProfileMark& mark : trace.Marks())
        if (mark.IsNode) AddNode(profile, trace.DistanceOf(mark.Sample), mark.Label);
    return profile;
}

void DrawReportProfile(Canvas& canvas, const CanvasBox& box, const ReportProfile& profile, const ProfileFrame& frame) {
    ProfileDrawing(canvas, box, profile, frame).Draw();
}

std::vector<std::byte> ProfilePictureFile(const DocumentWriter& documents, const RunRecord& run,
                                          const StudyRunEntry& entry, const AppSettings& settings,
                                          const std::string& title, PictureFormat format) {
    constexpr CanvasSize Size = {720, 360};
    constexpr double Margin = 12;
    constexpr double TitleHeight = 20;
    const ReportProfile profile = MakeReportProfile(run, settings);
    const Units units = UnitsOf(settings);
    const ProfileFrame frame{units, NiceSpeedAxis(units.SpeedOfMph(profile.TopSpeed)), entry};
    const double width = Size.Width - 2 * Margin;
    const auto draw = [&](Canvas& canvas) {
        canvas.DrawText({Margin, Margin, width, TitleHeight}, title, {11, true, PaperColours.Text});
        const double top = Margin + TitleHeight;
        if (profile.HasMovement)
            DrawReportProfile(canvas, {Margin, top, width, Size.Height - top - Margin}, profile, frame);
    };
    return documents.Picture(Size, draw, format);
}

}  // namespace vantor
