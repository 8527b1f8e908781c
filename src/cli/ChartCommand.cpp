#include <memory>

#include "cli/Commands.h"
#include "cli/RecordJson.h"
#include "cli/StandardInput.h"
#include "core/PictureFile.h"
#include "core/StudyFile.h"
#include "plots/DelayChart.h"

namespace vantor {
namespace {

Json PointsAsJson(const DelaySeries& series, const DelayScale& scale) {
    Json points = Json::array();
    for (int run = 1; run <= series.RunCount(); ++run) {
        const DelayRun& values = series.Runs()[run];
        points.push_back({{"EntryRunName", values.Name},
                          {"ControlDelay", values.ControlDelay},
                          {"RunningAverage", values.RunningAverage},
                          {"counted", values.IsCounted},
                          {"X", scale.XOf(run)},
                          {"Y", scale.YOfDelay(values.ControlDelay)},
                          {"AverageY", scale.YOfAverage(values.RunningAverage)}});
    }
    return points;
}

Json ChartAsJson(const DelaySeries& series, const DelayScale& scale) {
    const DelayPlotEdges& edges = scale.Edges();
    return {{"Left", edges.Left},
            {"Right", edges.Right},
            {"Bottom", edges.Bottom},
            {"Top", edges.Top},
            {"XStep", json::Value(scale.XStep())},
            {"YScale", json::Value(scale.YScale())},
            {"YMax", series.YMax()},
            {"YMin", series.YMin()},
            {"ValueStep", scale.ValueStep()},
            {"WindowStep", scale.WindowStep()},
            {"points", PointsAsJson(series, scale)}};
}

int DrawChart(CommandContext& context, const std::string& path, const std::string& output, DelayRuns shown) {
    const auto format = output == StandardStream ? PictureFormat::Svg : PictureFormatOf(output);
    if (!context.TakesOutput(output, format.has_value(), "A chart is a .png, .svg or .pdf file.")) return WrongUsage;
    const NamedFile file = TakeApart(path, StudyExtension, "study file");
    const auto study = LoadStudy(context.Files, file.Folder, file.Name);
    if (!study) {
        context.Err << "Missing Study File: " << file.Name << '\n';
        return Failed;
    }
    const auto rows = MakeRunListRows(*study, context.Files, file.Folder, context.State.Settings);
    const DelaySeries series(*study, rows, shown);
    const std::string title = DelayChartTitle(*study);
    const Json result = ChartAsJson(series, DelayPictureScale(context.Documents, series, title));
    const ExitStatus status = context.TellOfRuns(rows);
    context.PutOutput(output, DelayChartPicture(context.Documents, series, title, *format), result);
    return status;
}

}  // namespace

void AddChartCommand(CLI::App& studyGroup, CommandAction& chosen) {
    auto path = std::make_shared<std::string>();
    auto output = std::make_shared<std::string>();
    auto countedOnly = std::make_shared<bool>(false);
    CLI::App& chart = AddCommand(
        studyGroup, chosen, "chart", "Draw the control delays and their running average", [=](CommandContext& context) {
            return DrawChart(context, *path, *output, *countedOnly ? DelayRuns::Counted : DelayRuns::All);
        });
    chart.add_option("FILE", *path, "A study file (.ld2)")->required();
    chart.add_option("--output", *output, "The picture: a .png, .svg or .pdf file; - is an SVG on standard output")
        ->required();
    chart.add_flag("--counted", *countedOnly, "Leave out the runs that are not in the study's average");
}

}  // namespace vantor
