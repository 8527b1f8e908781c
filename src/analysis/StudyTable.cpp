#include "analysis/StudyTable.h"

#include <algorithm>
#include <array>

#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/modMain.h"

namespace vantor {
namespace {

/// A run of the study as the list shows it.
struct TableRun {
    StudyRunEntry Entry;
    RunListRow Row;
    Units Shown;
};

struct TableColumn {
    SheetColumn Sheet;
    SheetCell (*Value)(const TableRun& run);
};

constexpr const char* DayFormat = "mm/dd/yy";
constexpr const char* TimeFormat = "hh:mm";

SheetCell TextOrNothing(const std::string& text) { return text.empty() ? SheetCell() : SheetCell(text); }

template <std::int32_t StudyRunEntry::*Figure>
SheetCell FigureOf(const TableRun& run) {
    return run.Row.Facts.IsRun() ? SheetCell(static_cast<double>(run.Entry.*Figure)) : SheetCell();
}

template <class Value>
SheetCell IfThere(const TableRun& run, Value value) {
    return run.Row.Facts.IsRun() ? SheetCell(std::move(value)) : SheetCell();
}

template <Date (*Shown)(Date)>
SheetCell DateCell(const TableRun& run, Date date) {
    return IsValidDate(date) ? IfThere(run, Shown(date)) : SheetCell();
}

template <std::int32_t StudyRunEntry::*Feet>
SheetCell LengthOf(const TableRun& run) {
    return IfThere(run, static_cast<double>(run.Shown.WholeLength(run.Entry.*Feet)));
}

template <std::int32_t StudyRunEntry::*Mph>
SheetCell SpeedOf(const TableRun& run) {
    return IfThere(run, static_cast<double>(run.Shown.WholeSpeed(run.Entry.*Mph)));
}

const std::array Columns = {
    TableColumn{{"Run Name", "General", 34}, [](const TableRun& run) { return SheetCell(RunFileName(run.Entry)); }},
    TableColumn{{"Date", DayFormat, 10},
                [](const TableRun& run) { return DateCell<ShownDay>(run, run.Row.Facts.RunDate); }},
    TableColumn{{"Time", TimeFormat, 8},
                [](const TableRun& run) { return DateCell<ShownClock>(run, run.Row.Facts.RunTime); }},
    TableColumn{{"Type", "General", 11},
                [](const TableRun& run) { return IfThere(run, RunTypeText(run.Row.Facts.RunTypeFlag)); }},
    TableColumn{{"Start Boundary (ft)", "0", 19}, LengthOf<&StudyRunEntry::CDStartDist>},
    TableColumn{{"End Boundary (ft)", "0", 18}, LengthOf<&StudyRunEntry::CDEndDist>},
    TableColumn{{"Ideal Speed (MPH)", "0", 18}, SpeedOf<&StudyRunEntry::IdealSpeedCalc>},
    TableColumn{{"User Ideal Speed (MPH)", "0", 22}, SpeedOf<&StudyRunEntry::IdealSpeedUser>},
    TableColumn{{"Control Delay (s)", "0", 17}, FigureOf<&StudyRunEntry::ControlDelay>},
    TableColumn{{"LOS Grade", "General", 11},
                [](const TableRun& run) { return IfThere(run, std::string(TrimRight(run.Entry.LOSGrade))); }},
    TableColumn{{"Stop Delay (s)", "0", 15}, FigureOf<&StudyRunEntry::StopDelay>},
    TableColumn{{"Status", "General", 13}, [](const TableRun& run) { return SheetCell(StateWord(run.Row.State)); }},
    TableColumn{
        {"Warnings", "General", 40},
        [](const TableRun& run) { return TextOrNothing(run.Row.Facts.Problem + Joined(run.Row.Warnings, "; ")); }},
};

/// A column whose head, written for feet and miles per hour, names the shown unit.
SheetColumn ColumnIn(const Units& units, SheetColumn column) {
    if (!units.Metric) return column;
    for (const auto& [english, metric] : {std::pair{"(ft)", "(m)"}, std::pair{"(MPH)", "(KPH)"}})
        if (const std::size_t at = column.Head.find(english); at != std::string::npos)
            column.Head.replace(at, std::string_view(english).size(), metric);
    return column;
}

template <std::size_t Count>
SheetCell ItemCell(const std::array<const char*, Count>& items, std::int16_t position) {
    const auto item = static_cast<std::size_t>(position);
    return item < Count ? SheetCell(items[item]) : SheetCell();
}

SheetCell NumberCell(const std::optional<std::string>& label) { return label ? SheetCell(Val(*label)) : SheetCell(); }

bool HasStudyDate(const StudyRecord& record) { return record.StudyDate.Days != 0 && IsValidDate(record.StudyDate); }

Sheet StudySheet(const StudyRecord& record, const std::string& group, const ResultLabels& labels, int counted,
                 const std::string& withoutWarned) {
    return {"Study",
            {{"Field", "General", 24}, {"Value", "General", 44}},
            {{"Study Name", std::string(Trim(record.StudyName))},
             {"Study Group", group},
             {"Study Date", HasStudyDate(record) ? SheetCell(ShownDay(record.StudyDate)) : SheetCell()},
             {"Street Name", std::string(Trim(record.StreetName))},
             {"Direction", ItemCell(DirectionItems, record.Direction)},
             {"Critical Lane", ItemCell(CritLaneItems, record.CritLane)},
             {"Study Notes", std::string(Trim(record.StudyNotes))},
             {"Runs", static_cast<double>(record.RunCount)},
             {"Runs Counted", static_cast<double>(counted)},
             {"Avg. Control Delay (s)", NumberCell(labels.AvgControlDelay)},
             {"Runs with Warnings", TextOrNothing(withoutWarned)},
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

OutgoingTable StudyTable(const Study& study, const std::vector<RunListRow>& rows, const std::string& group,
                         const Units& units) {
    std::vector<TableRun> runs;
    for (int i = 1; i <= study.Record.RunCount; ++i)
        runs.push_back({study.Entries[i], rows[static_cast<std::size_t>(i - 1)], units});
    Study computed = study;
    ResultLabels labels;
    ComputeStudyResults(computed, rows, labels);
    const auto counted = std::ranges::count(rows, RunState::Counted, &RunListRow::State);
    const Sheet studySheet =
        StudySheet(computed.Record, group, labels, static_cast<int>(counted), AverageWithoutWarned(rows));

    return {[runs, studySheet, units](const Progress&) {
                Sheet list{"Runs", {}, {}};
                for (const TableColumn& column : Columns) list.Columns.push_back(ColumnIn(units, column.Sheet));
                for (const TableRun& run : runs) {
                    auto& row = list.Rows.emplace_back();
                    for (const TableColumn& column : Columns) row.push_back(column.Value(run));
                }
                return std::vector{list, studySheet};
            },
            [runs, units](const Progress&) {
                std::vector<SheetRow> texts(1);
                for (const TableColumn& column : Columns) texts.front().push_back({ColumnIn(units, column.Sheet).Head});
                for (const TableRun& run : runs) {
                    SheetRow& row = texts.emplace_back();
                    for (const TableColumn& column : Columns) row.push_back(FieldOf(column.Value(run), column.Sheet));
                }
                return texts;
            }};
}

std::optional<std::vector<RunListRow>> ExportStudy(FileSystem& files, const Study& study, const std::string& folder,
                                                   const AppSettings& settings, const std::string& path,
                                                   const Spreadsheet& sheets, const Progress& progress) {
    constexpr double Read = 0.8;
    std::vector<RunListRow> rows = MakeRunListRows(study, files, folder, settings, progress.Part(0, Read));
    if (!progress.Part(0, Read)(1, 1)) return std::nullopt;
    const std::string group = LastComponent(WholePath(files, folder));
    const OutgoingTable table = StudyTable(study, rows, group, UnitsOf(settings));
    if (!WriteTable(files, path, table, sheets, progress.Part(Read, 1))) return std::nullopt;
    return rows;
}

}  // namespace vantor
