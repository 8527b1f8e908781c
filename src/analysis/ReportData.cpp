#include "analysis/ReportData.h"

#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"

namespace vantor {
namespace {

/// Takes what would be told to the user as the reason why a run is missing from the reports.
class ProblemList : public MessageBoxes {
public:
    explicit ProblemList(std::vector<std::string>& problems) : problems_(problems) {}
    MessageAnswer Ask(const Prompt& prompt) override {
        problems_.push_back(prompt.Text);
        return MessageAnswer::Ok;
    }

private:
    std::vector<std::string>& problems_;
};

void LoadRun(ReportData& data, ReportRun& run, const FileSystem& files, const std::string& folder,
             const std::string& name) {
    ProblemList problems(data.Problems);
    try {
        RunRecord record;
        if (!ReadRunFile(files, problems, record, folder, name, true)) {
            run.Problem = "Missing Run File";
            return;
        }
        run.Statistics = ComputeRunStatistics(record, data.Settings);
        run.Profile = std::make_shared<const ReportProfile>(MakeReportProfile(record, data.Settings));
    } catch (const RunTimeError& error) {
        run.Problem = "Damaged Run File";
        problems.Tell(run.Problem + ": " + name + "\n" + error.Message());
    }
}

}  // namespace

ReportData LoadReportData(const Study& study, const AppSettings& settings, const FileSystem& files,
                          const std::string& folder, Date printed, const Progress& progress) {
    ReportData data;
    data.Contents = study;
    data.StudyGroup = LastComponent(folder);
    data.Settings = settings;
    data.Printed = printed;
    const auto rows = MakeRunListRows(study, files, folder);
    for (int i = 1; i <= study.Record.RunCount; ++i) {
        if (!progress(static_cast<std::uint64_t>(i - 1), static_cast<std::uint64_t>(study.Record.RunCount))) {
            data.Runs.clear();
            return data;
        }
        ReportRun run;
        run.Number = i;
        run.Row = rows[static_cast<std::size_t>(i - 1)];
        LoadRun(data, run, files, folder, RunFileName(study.Entries[i]));
        data.Runs.push_back(std::move(run));
    }
    ComputeStudyResults(data.Contents, rows, data.Labels);
    return data;
}

std::string RunTitle(const ReportData& data, const ReportRun& run, bool withName) {
    std::string title = "Run " + std::to_string(run.Number);
    if (withName) title += "   " + std::string(Trim(data.Contents.Entries[run.Number].EntryRunName));
    return title;
}

std::string RunSummary(const ReportData& data, const ReportRun& run) {
    if (run.Row.State == RunState::Missing) return {};
    std::string text = run.Row.RunDate + " " + run.Row.RunTime;
    if (run.Row.State != RunState::Counted) return text + ", not counted";
    const StudyRunEntry& entry = data.Contents.Entries[run.Number];
    const std::int32_t ideal = entry.IdealSpeedUser != 0 ? entry.IdealSpeedUser : entry.IdealSpeedCalc;
    const ProfileUnits units{data.Settings.MetricUnits != 0};
    text += ", ideal speed " + std::to_string(Round32(units.SpeedOfMph(ideal))) + (units.Metric ? " KPH" : " MPH");
    text += ", control delay " + std::to_string(entry.ControlDelay) + " s";
    const std::string grade(Trim(entry.LOSGrade));
    return grade.empty() ? text : text + ", LOS " + grade;
}

}  // namespace vantor
