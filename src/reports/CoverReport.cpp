#include <algorithm>

#include "core/Text.h"
#include "reports/ReportContents.h"
#include "reports/ReportText.h"
#include "statistics/Figure.h"

namespace vantor {
namespace {

constexpr double CaptionWidth = 110;
constexpr double BlockGap = 18;
constexpr TextStyle NameStyle{24, true, PaperColours.Text};
constexpr TextStyle LargeStyle{30, true, PaperColours.Text};
constexpr TextStyle FactStyle{11, false, PaperColours.Text};
constexpr TextStyle FactCaptionStyle{11, false, PaperColours.DimText};

void AddFact(ReportPages& pages, const char* caption, const std::string& text) {
    if (Trim(text).empty() || text == NoFigure) return;
    const double line = pages.Measure().LineHeight(FactStyle) + 3;
    const double width = pages.Width() - CaptionWidth;
    bool isFirst = true;
    for (const std::string& part : WrappedLines(std::string(Trim(text)), width, FactStyle, pages.Measure())) {
        const double y = pages.Take(line);
        if (isFirst) pages.DrawText({pages.Left(), y, CaptionWidth, line}, caption, FactCaptionStyle);
        pages.DrawText({pages.Left() + CaptionWidth, y, width, line}, part, FactStyle);
        isFirst = false;
    }
}

/// The first and the last day on which runs were driven.
std::string DaysText(const StudyRuns& runs) {
    std::string first;
    std::string last;
    for (const MeasuredRun& run : runs.Runs) {
        if (run.RunDate.Days <= 0) continue;
        last = ShortDate(run.RunDate);
        if (first.empty()) first = last;
    }
    return first == last ? first : first + " to " + last;
}

std::string HoursText(const Basis& basis) {
    if (!basis.FirstTime || !basis.LastTime) return {};
    const std::string periods = Joined(basis.Periods, ", ");
    return ShortTime(*basis.FirstTime) + " to " + ShortTime(*basis.LastTime) +
           (periods.empty() ? "" : " (" + periods + ")");
}

std::string RunsText(const ReportData& data) {
    const int counted = data.Statistics.Whole.All.Of[Measure::ControlDelay].N;
    std::string text = std::to_string(data.Runs.size()) + " driven, " + std::to_string(counted) + " counted";
    const auto setAside =
        std::ranges::count_if(data.Measured.Read.Runs, [](const MeasuredRun& run) { return !run.SetAside.empty(); });
    if (setAside > 0) text += ", " + std::to_string(setAside) + " set aside (see Statistics over Runs)";
    if (!data.Problems.empty()) text += ", " + std::to_string(data.Problems.size()) + " cannot be read";
    return text;
}

/// The average control delay and its grade in large letters, and how sure they are.
void AddResult(ReportPages& pages, const ReportData& data) {
    const auto known = [](const std::optional<std::string>& label) {
        return label ? std::string(Trim(*label)) : NoFigure;
    };
    const std::string delay = known(data.Labels.AvgControlDelay) + (data.Labels.AvgControlDelay ? " s" : "");
    const double caption = pages.Measure().LineHeight(FactCaptionStyle);
    const double large = pages.Measure().LineHeight(LargeStyle);
    const double y = pages.Take(caption + large + 8);
    const double half = pages.Width() / 2;
    pages.DrawRule(y - BlockGap / 2, ReportRule);
    const auto draw = [&](double x, const char* name, const std::string& figure) {
        pages.DrawText({x, y, half, caption}, name, FactCaptionStyle);
        pages.DrawText({x, y + caption, half, large}, figure, LargeStyle);
    };
    draw(pages.Left(), "Average control delay", delay);
    draw(pages.Left() + half, "Level of service", known(data.Labels.LOSGrade));
    const StatisticsOptions& options = data.Statistics.Options;
    const GroupStatistics& group = data.Statistics.Whole.All;
    const Units units = UnitsOf(data.Settings);
    const Figure figure = DelayFigure(group, options);
    if (!figure.Value) return;
    std::string sure = figure.WithInterval(units);
    if (const auto grades = GradesOf(group.Of[Measure::ControlDelay], StudyGrade); grades && figure.HalfWidth)
        sure += ", level of service " + grades->Text();
    pages.AddText(sure + "; " + figure.Remarks(), FactStyle);
    const std::string needed = RunsNeededText(group, Measure::ControlDelay, options, units);
    pages.AddText("F" + needed.substr(1) + ".", FactStyle);
}

void AddSignature(ReportPages& pages, const char* caption, const std::string& name) {
    const double line = pages.Measure().LineHeight(FactStyle) + 3;
    constexpr double Signature = 36;
    const double y = pages.Take(Signature) + Signature - line;
    pages.DrawText({pages.Left(), y, CaptionWidth, line}, caption, FactCaptionStyle);
    const CanvasBox box{pages.Left() + CaptionWidth, y, pages.Width() / 2, line};
    pages.DrawText(box, name, FactStyle);
    pages.Draw([box](Canvas& canvas) {
        canvas.DrawLine({box.X, box.Y + box.Height}, {box.X + box.Width, box.Y + box.Height}, ReportRule);
    });
}

}  // namespace

void AddCover(ReportPages& pages, const ReportData& data) {
    const StudyRecord& record = data.Contents.Record;
    pages.Skip(BlockGap);
    pages.AddText(std::string(Trim(record.StreetName).empty() ? Trim(record.StudyName) : Trim(record.StreetName)),
                  NameStyle);
    pages.Skip(BlockGap);
    AddFact(pages, "Study", record.StudyName);
    AddFact(pages, "Direction", ItemText(DirectionItems, record.Direction));
    AddFact(pages, "Critical lane", ItemText(CritLaneItems, record.CritLane));
    AddFact(pages, "Driven on", DaysText(data.Measured.Read));
    AddFact(pages, "Between", HoursText(data.Statistics.Whole.All.RestsOn));
    AddFact(pages, "Runs", RunsText(data));
    AddFact(pages, "Weather", data.Contents.Lines.Weather);
    AddFact(pages, "Observer", data.Contents.Lines.Observer);
    AddFact(pages, "Notes", record.StudyNotes);
    pages.Skip(2 * BlockGap);
    AddResult(pages, data);
    pages.Skip(BlockGap);
    const std::string warning = CorridorWarning(data);
    if (!warning.empty()) pages.AddText(warning, FactStyle);
    pages.Skip(2 * BlockGap);
    AddSignature(pages, "Prepared by", data.Contents.Lines.PreparedBy);
    AddSignature(pages, "Checked by", data.Contents.Lines.CheckedBy);
}

}  // namespace vantor
