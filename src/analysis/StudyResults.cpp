#include "analysis/StudyResults.h"

#include "core/Numeric.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/modMain.h"

namespace vantor {
namespace {

/// The rounded mean of one column over the counted rows; nothing when no row counts.
std::optional<std::int32_t> AverageOf(const std::vector<RunListRow>& rows, std::string RunListRow::*column) {
    std::int32_t sum = 0;
    std::int32_t count = 0;
    for (const RunListRow& row : rows) {
        if (row.State != RunState::Counted) continue;
        sum = Add32(sum, IntegerOfText(Trim(row.*column)));
        ++count;
    }
    if (count == 0) return std::nullopt;
    return Round32(static_cast<double>(sum) / count);
}

}  // namespace

std::optional<RunHeader> HeaderOf(const StudyRunEntry& entry, const FileSystem& files, const std::string& folder) {
    try {
        return ReadRunHeader(files, folder, RunFileName(entry));
    } catch (const RunTimeError&) {
        return std::nullopt;
    }
}

RunListRow MakeRunListRow(const StudyRunEntry& entry, const std::optional<RunHeader>& header) {
    RunListRow row;
    row.RunName = std::string(Trim(entry.EntryRunName)) + " ";
    if (!header) {
        row.State = RunState::Missing;
        return row;
    }
    row.RunDate = ShortDate(header->RunDate);
    row.RunTime = ShortTime(header->RunTime);
    row.RunType = RunTypeText(header->HeaderWord1);
    row.ControlDelay = Trim(Str(entry.ControlDelay));
    row.LOSGrade = TrimRight(entry.LOSGrade);
    row.StopDelay = Str(entry.StopDelay);
    row.State = HasBothBoundaries(entry) ? RunState::Counted : RunState::NotCounted;
    return row;
}

std::vector<RunListRow> MakeRunListRows(const Study& study, const FileSystem& files, const std::string& folder) {
    std::vector<RunListRow> rows;
    rows.reserve(study.RunNames.size());
    for (int i = 1; i <= study.Record.RunCount; ++i) {
        rows.push_back(MakeRunListRow(study.Entries[i], HeaderOf(study.Entries[i], files, folder)));
    }
    return rows;
}

void ComputeStudyResults(Study& study, const std::vector<RunListRow>& rows, ResultLabels& labels) {
    const auto controlDelay = AverageOf(rows, &RunListRow::ControlDelay);
    if (controlDelay) {
        labels.AvgControlDelay = Str(*controlDelay);
        study.Record.StudyAvgControlDelay = static_cast<float>(*controlDelay);
        SetRunLOSGrade(study, *controlDelay, 0);
        study.Record.StudyLOSGrade = study.Entries[0].LOSGrade;
        labels.LOSGrade = study.Record.StudyLOSGrade;
    }
    const auto stopDelay = AverageOf(rows, &RunListRow::StopDelay);
    if (!stopDelay) return;
    labels.AvgStopDelay = Str(*stopDelay);
    if (*stopDelay == 0) return;
    // The ratio is made from the rounded average as it is shown, not from the sum.
    labels.Ratio = FormatRatio(static_cast<double>(IntegerOfText(*labels.AvgControlDelay)) / *stopDelay);
}

}  // namespace vantor
