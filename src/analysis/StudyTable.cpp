#include "analysis/StudyTable.h"

#include <algorithm>
#include <array>

#include "analysis/StudyResults.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/modMain.h"

namespace vantor {
namespace {

/// A run of the study, with its header where its file can be read.
struct TableRun {
    StudyRunEntry Entry;
    std::optional<RunHeader> Header;
};

struct TableColumn {
    SheetColumn Sheet;
    SheetCell (*Value)(const TableRun& run);
};

constexpr const char* DayFormat = "mm/dd/yy";
constexpr const char* TimeFormat = "hh:mm";

template <class Value>
SheetCell OfHeader(const TableRun& run, Value value) {
    return run.Header ? SheetCell(value(*run.Header)) : SheetCell();
}

template <std::int32_t StudyRunEntry::*Figure>
SheetCell FigureOf(const TableRun& run) {
    return run.Header ? SheetCell(static_cast<double>(run.Entry.*Figure)) : SheetCell();
}

SheetCell StateOf(const TableRun& run) {
    if (!run.Header) return "Missing";
    return HasBothBoundaries(run.Entry) ? "Counted" : "Not counted";
}

const std::array Columns = {
    TableColumn{{"Run Name", "General", 34}, [](const TableRun& run) { return SheetCell(RunFileName(run.Entry)); }},
    TableColumn{{"Date", DayFormat, 10},
                [](const TableRun& run) { return OfHeader(run, [](const RunHeader& h) { return h.RunDate; }); }},
    TableColumn{{"Time", TimeFormat, 8},
                [](const TableRun& run) { return OfHeader(run, [](const RunHeader& h) { return h.RunTime; }); }},
    TableColumn{{"Type", "General", 11},
                [](const TableRun& run) {
                    return OfHeader(run, [](const RunHeader& h) { return RunTypeText(h.HeaderWord1); });
                }},
    TableColumn{{"Start Boundary (ft)", "0", 19}, FigureOf<&StudyRunEntry::CDStartDist>},
    TableColumn{{"End Boundary (ft)", "0", 18}, FigureOf<&StudyRunEntry::CDEndDist>},
    TableColumn{{"Ideal Speed (mph)", "0", 18}, FigureOf<&StudyRunEntry::IdealSpeedCalc>},
    TableColumn{{"User Ideal Speed (mph)", "0", 22}, FigureOf<&StudyRunEntry::IdealSpeedUser>},
    TableColumn{{"Control Delay (s)", "0", 17}, FigureOf<&StudyRunEntry::ControlDelay>},
    TableColumn{{"LOS Grade", "General", 11},
                [](const TableRun& run) {
                    return run.Header ? SheetCell(std::string(TrimRight(run.Entry.LOSGrade))) : SheetCell();
                }},
    TableColumn{{"Stop Delay (s)", "0", 15}, FigureOf<&StudyRunEntry::StopDelay>},
    TableColumn{{"Status", "General", 13}, StateOf},
};

template <std::size_t Count>
SheetCell ItemCell(const std::array<const char*, Count>& items, std::int16_t position) {
    const auto item = static_cast<std::size_t>(position);
    return item < Count ? SheetCell(items[item]) : SheetCell();
}

SheetCell NumberCell(const std::optional<std::string>& label) { return label ? SheetCell(Val(*label)) : SheetCell(); }

Sheet StudySheet(const StudyRecord& record, const std::string& folder, const ResultLabels& labels, int counted) {
    return {"Study",
            {{"Field", "General", 24}, {"Value", "General", 44}},
            {{"Study Name", std::string(Trim(record.StudyName))},
             {"Study Group", LastComponent(folder)},
             {"Study Date", ShortDate(record.StudyDate)},
             {"Street Name", std::string(Trim(record.StreetName))},
             {"Direction", ItemCell(DirectionItems, record.Direction)},
             {"Critical Lane", ItemCell(CritLaneItems, record.CritLane)},
             {"Study Notes", std::string(Trim(record.StudyNotes))},
             {"Runs", static_cast<double>(record.RunCount)},
             {"Runs Counted", static_cast<double>(counted)},
             {"Avg. Control Delay (s)", NumberCell(labels.AvgControlDelay)},
             {"LOS Grade", labels.LOSGrade ? SheetCell(*labels.LOSGrade) : SheetCell()},
             {"Avg. Stop Delay (s)", NumberCell(labels.AvgStopDelay)},
             {"Ratio of Control to Stop Delay", NumberCell(labels.Ratio)}}};
}

/// As the program shows it, in a file of texts.
SheetField FieldOf(const SheetCell& cell, const SheetColumn& column) {
    if (const auto* text = std::get_if<std::string>(&cell)) return {*text, false};
    if (const auto* number = std::get_if<double>(&cell)) return {std::to_string(Round32(*number)), true};
    if (const auto* date = std::get_if<Date>(&cell))
        return {column.Format == DayFormat ? ShortDate(*date) : ShortTime(*date), true};
    return {};
}

}  // namespace

OutgoingTable StudyTable(const Study& study, const FileSystem& files, const std::string& folder,
                         const Progress& progress) {
    std::vector<TableRun> runs;
    std::vector<RunListRow> rows;
    const auto count = static_cast<std::uint64_t>(study.Record.RunCount);
    for (int i = 1; i <= study.Record.RunCount && progress(static_cast<std::uint64_t>(i - 1), count); ++i) {
        runs.push_back({study.Entries[i], HeaderOf(study.Entries[i], files, folder)});
        rows.push_back(MakeRunListRow(runs.back().Entry, runs.back().Header));
    }
    Study computed = study;
    ResultLabels labels;
    ComputeStudyResults(computed, rows, labels);
    const auto counted = std::ranges::count(rows, RunState::Counted, &RunListRow::State);
    const Sheet studySheet = StudySheet(computed.Record, folder, labels, static_cast<int>(counted));

    return {[runs, studySheet] {
                Sheet list{"Runs", {}, {}};
                for (const TableColumn& column : Columns) list.Columns.push_back(column.Sheet);
                for (const TableRun& run : runs) {
                    auto& row = list.Rows.emplace_back();
                    for (const TableColumn& column : Columns) row.push_back(column.Value(run));
                }
                return std::vector{list, studySheet};
            },
            [runs] {
                std::vector<SheetRow> texts(1);
                for (const TableColumn& column : Columns) texts.front().push_back({column.Sheet.Head});
                for (const TableRun& run : runs) {
                    SheetRow& row = texts.emplace_back();
                    for (const TableColumn& column : Columns) row.push_back(FieldOf(column.Value(run), column.Sheet));
                }
                return texts;
            }};
}

}  // namespace vantor
