#include "core/Numeric.h"
#include "core/Settings.h"
#include "core/Text.h"
#include "reports/ReportContents.h"
#include "reports/ReportTable.h"
#include "reports/ReportText.h"

#include <algorithm>

namespace vantor {
namespace {

constexpr double SectionGap = 12;
constexpr double CaptionWidth = 80;

struct Fact {
    const char* Caption;
    std::string Text;
};

std::string OrNoFigure(std::string_view text) {
    const std::string trimmed(Trim(text));
    return trimmed.empty() ? NoFigure : trimmed;
}

int CountedRuns(const ReportData& data) {
    return static_cast<int>(std::count_if(data.Runs.begin(), data.Runs.end(),
                                          [](const ReportRun& run) { return run.Row.State == RunState::Counted; }));
}

std::string SpeedText(const ReportData& data, std::int32_t mph) {
    return std::to_string(UnitsOf(data.Settings).WholeSpeed(mph));
}

/// Facts with their captions in one column of the page; returns where the column ends.
double DrawFacts(ReportPages& pages, const CanvasBox& column, const std::vector<Fact>& facts) {
    const double line = pages.Measure().LineHeight(BodyStyle) + 1;
    double y = column.Y;
    TextStyle caption = BodyStyle;
    caption.Ink = PaperColours.DimText;
    for (const Fact& fact : facts) {
        pages.DrawText({column.X, y, CaptionWidth, line}, fact.Caption, caption);
        const double width = column.Width - CaptionWidth;
        for (const std::string& text : WrappedLines(fact.Text, width, BodyStyle, pages.Measure())) {
            pages.DrawText({column.X + CaptionWidth, y, width, line}, text, BodyStyle);
            y += line;
        }
    }
    return y;
}

void AddStudyFields(ReportPages& pages, const ReportData& data) {
    const StudyRecord& record = data.Contents.Record;
    const double gap = 16;
    const double half = (pages.Width() - gap) / 2;
    const double top = pages.Take(0);
    const double left =
        DrawFacts(pages, {pages.Left(), top, half, 0},
                  {{"Study", OrNoFigure(record.StudyName)},
                   {"Study Group", OrNoFigure(data.StudyGroup)},
                   {"Begun", record.StudyDate.Days == 0 ? NoFigure : OrNoFigure(ShortDate(record.StudyDate))}});
    const double right = DrawFacts(pages, {pages.Left() + half + gap, top, half, 0},
                                   {{"Street", OrNoFigure(record.StreetName)},
                                    {"Direction", ItemText(DirectionItems, record.Direction)},
                                    {"Critical Lane", ItemText(CritLaneItems, record.CritLane)}});
    const double below = std::max(left, right);
    const double bottom = Trim(record.StudyNotes).empty()
                              ? below
                              : DrawFacts(pages, {pages.Left(), below, pages.Width(), 0},
                                          {{"Notes", std::string(Trim(record.StudyNotes))}});
    pages.Skip(bottom - top + SectionGap);
}

/// A ratio as it is printed: the label's "3." and ".5" would look like misprints there.
std::string PrintedRatio(std::string ratio) {
    if (ratio.ends_with('.')) ratio += '0';
    return ratio.starts_with('.') ? "0" + ratio : ratio;
}

/// The study's figures in large letters, side by side under their captions.
void AddResults(ReportPages& pages, const ReportData& data) {
    const ResultLabels& labels = data.Labels;
    const auto figure = [](const std::optional<std::string>& label, const char* unit) {
        return label ? std::string(Trim(*label)) + unit : std::string(NoFigure);
    };
    std::vector<Fact> figures = {{"Average Control Delay", figure(labels.AvgControlDelay, " s")},
                                 {"LOS Grade", figure(labels.LOSGrade, "")}};
    if (data.Settings.EnableStopDelay != 0) {
        figures.push_back({"Average Stop Delay", figure(labels.AvgStopDelay, " s")});
        figures.push_back({"Ratio of Control to Stop Delay", PrintedRatio(figure(labels.Ratio, ""))});
        const Units units = UnitsOf(data.Settings);
        figures.push_back({"Stop Speed Threshold", units.SpeedText(data.Settings.StopSpeedThreshold)});
    }
    figures.push_back({"Runs Counted", std::to_string(CountedRuns(data)) + " of " + std::to_string(data.Runs.size())});

    const TextMeasure& measure = pages.Measure();
    const double line = measure.LineHeight(CaptionStyle);
    const double width = pages.Width() / static_cast<double>(figures.size());
    const double captionWidth = width - 6;
    std::size_t captionLines = 1;
    TextStyle figureStyle = FigureStyle;
    for (const Fact& fact : figures) {
        captionLines = std::max(captionLines, WrappedLines(fact.Caption, captionWidth, CaptionStyle, measure).size());
        // One size for all, with which the longest fits.
        const double wanted = measure.TextWidth(fact.Text, figureStyle);
        if (wanted > captionWidth) figureStyle.Size *= captionWidth / wanted;
    }
    const double captionHeight = static_cast<double>(captionLines) * line;
    const double figureHeight = measure.LineHeight(FigureStyle);
    const double height = captionHeight + figureHeight + 8;
    const double y = pages.Take(height);
    pages.DrawRule(y, ReportRule);
    pages.DrawRule(y + height, ReportRule);
    double x = pages.Left();
    for (const Fact& fact : figures) {
        double top = y + 4;
        for (const std::string& caption : WrappedLines(fact.Caption, captionWidth, CaptionStyle, measure)) {
            pages.DrawText({x, top, captionWidth, line}, caption, CaptionStyle);
            top += line;
        }
        pages.DrawText({x, y + 4 + captionHeight, captionWidth, figureHeight}, fact.Text, figureStyle);
        x += width;
    }
    pages.Skip(SectionGap);
}

std::string Distance(const ReportData& data, std::int32_t feet) {
    return feet == 0 ? NoFigure : std::to_string(UnitsOf(data.Settings).WholeLength(feet));
}

/// A star tells the speeds that the user set.
std::string IdealSpeedText(const ReportData& data, const StudyRunEntry& entry) {
    return entry.IdealSpeedUser == 0 ? SpeedText(data, entry.IdealSpeedCalc)
                                     : "* " + SpeedText(data, entry.IdealSpeedUser);
}

std::string StatusOf(const ReportRun& run) {
    if (!run.Problem.empty()) return run.Problem;
    return StateWord(run.Row.State) + std::string(run.Row.Warnings.empty() ? "" : ", warning");
}

std::vector<std::string> RunRow(const ReportData& data, const ReportRun& run) {
    const StudyRunEntry& entry = data.Contents.Entries[run.Number];
    const bool isCounted = run.Row.State == RunState::Counted;
    const auto ifCounted = [&](const std::string& text) { return isCounted ? OrNoFigure(text) : NoFigure; };
    std::vector<std::string> row = {
        std::to_string(run.Number),      std::string(Trim(run.Row.RunName)),
        OrNoFigure(run.Row.RunDate),     OrNoFigure(run.Row.RunTime),
        OrNoFigure(run.Row.RunType),     Distance(data, entry.CDStartDist),
        Distance(data, entry.CDEndDist), ifCounted(IdealSpeedText(data, entry)),
        ifCounted(run.Row.ControlDelay), ifCounted(run.Row.LOSGrade),
    };
    if (data.Settings.EnableStopDelay != 0) row.push_back(ifCounted(run.Row.StopDelay));
    for (std::string& text : row) text = Trim(text);
    row.push_back(StatusOf(run));
    return row;
}

std::vector<std::string> AverageRow(const ReportData& data) {
    const auto text = [](const std::optional<std::string>& label) { return OrNoFigure(label.value_or("")); };
    constexpr std::size_t ColumnsBefore = 8;
    std::vector<std::string> row(ColumnsBefore);
    row[1] = "Average";
    row.push_back(text(data.Labels.AvgControlDelay));
    row.push_back(text(data.Labels.LOSGrade));
    if (data.Settings.EnableStopDelay != 0) row.push_back(text(data.Labels.AvgStopDelay));
    row.emplace_back();
    return row;
}

ReportTable RunTable(const ReportData& data) {
    const Units units = UnitsOf(data.Settings);
    const std::string length = std::string(" (") + units.LengthLabel() + ")";
    const std::string speed = std::string(" (") + units.SpeedLabel() + ")";
    constexpr TextSide Right = TextSide::Right;
    ReportTable table;
    table.Columns = {{"No.", Right},
                     {"Run", TextSide::Left, true},
                     {"Date"},
                     {"Time"},
                     {"Type"},
                     {"Start" + length, Right},
                     {"End" + length, Right},
                     {"Ideal Speed" + speed, Right},
                     {"Control Delay (s)", Right},
                     {"LOS Grade", TextSide::Centre}};
    if (data.Settings.EnableStopDelay != 0) table.Columns.push_back({"Stop Delay (s)", Right});
    table.Columns.push_back({"Status", TextSide::Left, true});
    for (const ReportRun& run : data.Runs) table.Rows.push_back(RunRow(data, run));
    table.Rows.push_back(AverageRow(data));
    table.HasTotal = true;
    return table;
}

/// What keeps the figures from meaning what they seem to.
void AddWarnings(ReportPages& pages, const ReportData& data) {
    std::vector<std::string> lines;
    for (const ReportRun& run : data.Runs)
        if (!run.Row.Warnings.empty())
            lines.push_back(RunTitle(data, run, true) + ": " + Joined(run.Row.Warnings, "; "));
    if (!data.WithoutWarned.empty()) lines.push_back("Average control delay: " + data.WithoutWarned + ".");
    if (data.Settings.EnableStopDelay != 0 && !data.OtherThresholds.empty() && data.StopDelayNow)
        lines.push_back("Stop delay: " + data.OtherThresholds + "; with the one printed above the average is " +
                        std::to_string(*data.StopDelayNow) + " s.");
    if (const std::string corridor = CorridorWarning(data); !corridor.empty()) lines.push_back(corridor);
    if (lines.empty()) return;
    pages.AddHeading("Warnings", 2 * pages.Measure().LineHeight(BodyStyle));
    for (const std::string& line : lines) pages.AddText(line, BodyStyle);
    pages.Skip(SectionGap / 2);
}

void AddRunTable(ReportPages& pages, const ReportData& data) {
    if (data.Runs.empty()) return pages.AddText("This study has no runs.", BodyStyle);
    pages.AddHeading("Runs", 4 * pages.Measure().LineHeight(BodyStyle) + SectionGap);
    AddTable(pages, RunTable(data));
    pages.Skip(SectionGap / 2);
    AddWarnings(pages, data);
    pages.AddText(
        "A run is counted when both its control delay boundaries, Start and End, are set; they are distances from the "
        "start of the run. Averages are those of the counted runs. * Ideal speed set by the user. LOS: level of "
        "service by average control delay (Highway Capacity Manual, signalized intersections); at exactly 10, 20, 35, "
        "55 "
        "and 80 s the manual gives the better grade.",
        CaptionStyle);
}

}  // namespace

void AddStudySummary(ReportPages& pages, const ReportData& data) {
    AddStudyFields(pages, data);
    AddResults(pages, data);
    AddRunTable(pages, data);
}

}  // namespace vantor
