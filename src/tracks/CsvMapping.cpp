#include "tracks/CsvMapping.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <utility>

#include "core/CsvCells.h"
#include "core/Progress.h"
#include "core/Text.h"
#include "tracks/CsvHead.h"
#include "tracks/TrackLines.h"
#include "tracks/TrackTexts.h"

namespace vantor {
namespace {

constexpr std::array<const char*, CsvColumnKinds> ColumnNames = {
    "",      "latitude", "longitude",  "north/south", "east/west", "time", "date",
    "speed", "course",   "satellites", "hdop",        "fix",       "node", "segment"};
constexpr std::array UnitNames = {"m/s", "km/h", "mph", "knots"};
constexpr std::array TimeFormNames = {"text", "epoch", "elapsed s", "elapsed ms"};
constexpr std::array DayOrderNames = {"unknown", "day first", "month first"};
constexpr std::array Delimiters = {'\t', ';', ',', '|', ' '};
constexpr std::size_t MostColumns = 1000;
/// What may stand above the head.
constexpr std::size_t MostLinesAbove = 60;

template <class Enum, class Names>
bool ReadName(const nlohmann::json& value, const Names& names, Enum& into) {
    if (!value.is_string()) return false;
    const auto found = std::ranges::find(names, value.get_ref<const std::string&>());
    if (found == names.end()) return false;
    into = static_cast<Enum>(found - names.begin());
    return true;
}

using HeadCells = std::vector<CsvHeadCell>;

HeadCells HeadCellsOf(std::string_view line, char delimiter) {
    std::vector<std::string_view> cells;
    std::string unquoted;
    SplitCells(line, delimiter, cells, unquoted);
    HeadCells heads;
    if (cells.size() > MostColumns) return heads;
    for (const std::string_view cell : cells) heads.push_back(CsvHeadOf(cell));
    return heads;
}

/// How many kinds of columns are recognised; 0 where they are not enough.
int RecognisedIn(const HeadCells& heads) {
    std::map<CsvColumn, int> count;
    for (const CsvHeadCell& head : heads) ++count[head.Column];
    const auto has = [&](CsvColumn column) { return count.contains(column); };
    const bool isEnough = (has(CsvColumn::Latitude) && has(CsvColumn::Longitude)) ||
                          (has(CsvColumn::Speed) && (has(CsvColumn::Time) || has(CsvColumn::Date)));
    return isEnough ? static_cast<int>(count.size()) - (has(CsvColumn::Other) ? 1 : 0) : 0;
}

/// Where the head is, by how many of its columns are recognised.
struct FoundHead {
    std::size_t Line = 0;
    char Delimiter = ',';
    HeadCells Cells;
    int Recognised = 0;
};

FoundHead FindHead(const std::vector<std::string>& lines) {
    FoundHead found;
    for (std::size_t i = 0; i < std::min(lines.size(), MostLinesAbove); ++i)
        for (const char delimiter : Delimiters) {
            if (lines[i].find(delimiter) == std::string::npos) continue;
            HeadCells cells = HeadCellsOf(lines[i], delimiter);
            const int recognised = RecognisedIn(cells);
            if (recognised > found.Recognised) found = {i, delimiter, std::move(cells), recognised};
        }
    return found;
}

/// Puts the best column of each kind into the mapping; returns what their heads tell.
std::map<CsvColumn, CsvHeadCell> ChooseColumns(const HeadCells& heads, CsvMapping& mapping) {
    std::map<CsvColumn, std::size_t> best;
    for (std::size_t i = 0; i < heads.size(); ++i) {
        const auto [entry, isNew] = best.try_emplace(heads[i].Column, i);
        if (!isNew && heads[i].Rank > heads[entry->second].Rank) entry->second = i;
    }
    best.erase(CsvColumn::Other);
    mapping.Columns.assign(heads.size(), CsvColumn::Other);
    std::map<CsvColumn, CsvHeadCell> chosen;
    for (const auto& [column, index] : best) {
        mapping.Columns[index] = column;
        chosen[column] = heads[index];
    }
    return chosen;
}

template <class Use>
void ForEachCell(const CsvPreview& preview, CsvColumn column, Use use) {
    for (std::size_t i = 0; i < preview.Mapping.Columns.size(); ++i)
        if (preview.Mapping.Columns[i] == column)
            for (const auto& row : preview.Rows)
                if (i < row.size() && !row[i].empty()) use(row[i]);
}

/// What the times of the first rows tell.
struct TimesSeen {
    bool AllNumbers = true;
    double Largest = 0;
    bool HasDay = false;
    bool HasZone = false;
    bool IsAmbiguous = false;
    DayOrder Proved = DayOrder::Unknown;
};

TimesSeen SeeTimes(const CsvPreview& preview) {
    TimesSeen seen;
    const auto see = [&](const std::string& cell, bool isDate) {
        const auto number = NumberOfCell(cell, preview.Mapping.HasDecimalComma);
        const auto time = CellTimeOf(cell, DayOrder::Unknown, isDate);
        // "161418" is a time of day.
        seen.AllNumbers = seen.AllNumbers && number && !(time && preview.Mapping.Has(CsvColumn::Date));
        if (number) seen.Largest = std::max(seen.Largest, *number);
        if (!time) return;
        seen.HasDay = seen.HasDay || time->Day;
        seen.HasZone = seen.HasZone || time->ZoneOffset;
        seen.IsAmbiguous = seen.IsAmbiguous || time->IsAmbiguous;
        if (time->Proves != DayOrder::Unknown) seen.Proved = time->Proves;
        // Only there do days come first without exception.
        if (time->IsAmbiguous && seen.Proved == DayOrder::Unknown && cell.find('.') < cell.find(':') &&
            cell.find('/') == std::string::npos)
            seen.Proved = DayOrder::DayFirst;
    };
    ForEachCell(preview, CsvColumn::Time, [&](const std::string& cell) { see(cell, false); });
    ForEachCell(preview, CsvColumn::Date, [&](const std::string& cell) { see(cell, true); });
    return seen;
}

void GuessTimes(CsvPreview& preview, const std::map<CsvColumn, CsvHeadCell>& heads) {
    CsvMapping& mapping = preview.Mapping;
    if (!mapping.Has(CsvColumn::Time) && !mapping.Has(CsvColumn::Date)) return;
    const TimesSeen seen = SeeTimes(preview);
    const auto head = heads.contains(CsvColumn::Time) ? heads.at(CsvColumn::Time) : heads.at(CsvColumn::Date);
    if (seen.AllNumbers && !preview.Rows.empty()) {
        const bool isEpoch = seen.Largest >= FirstTrackTime && !head.IsElapsed;
        mapping.TimeForm = isEpoch               ? CsvTimeForm::Epoch
                           : head.IsMilliseconds ? CsvTimeForm::ElapsedMilliseconds
                                                 : CsvTimeForm::Elapsed;
        if (!isEpoch) preview.Questions.push_back(CsvQuestion::Start);
        return;
    }
    mapping.DayOrder = seen.Proved;
    if (seen.IsAmbiguous && seen.Proved == DayOrder::Unknown) preview.Questions.push_back(CsvQuestion::DayOrder);
    if (!seen.HasDay) preview.Questions.push_back(CsvQuestion::Start);
    if (!seen.HasZone && !head.IsUtc) preview.Questions.push_back(CsvQuestion::Zone);
}

bool IsCommaNumber(const std::string& cell) {
    return cell.find(',') != std::string::npos && cell.find('.') == std::string::npos && NumberOfCell(cell, true);
}

void GuessNumbers(CsvPreview& preview) {
    const auto see = [&](const std::string& cell) {
        if (IsCommaNumber(cell)) preview.Mapping.HasDecimalComma = true;
    };
    if (preview.Mapping.Delimiter == ',') return;
    for (const CsvColumn column : {CsvColumn::Latitude, CsvColumn::Longitude, CsvColumn::Speed})
        ForEachCell(preview, column, see);
}

/// The cells of the head and of the rows below it, by the mapping.
void SplitRows(const std::vector<std::string>& lines, CsvPreview& preview) {
    const auto head = static_cast<std::size_t>(preview.Mapping.HeadLine);
    std::vector<std::string_view> cells;
    std::string unquoted;
    for (std::size_t i = head == 0 ? 0 : head - 1; i < lines.size(); ++i) {
        SplitCells(lines[i], preview.Mapping.Delimiter, cells, unquoted);
        std::vector<std::string> texts;
        texts.reserve(cells.size());
        for (const std::string_view cell : cells) texts.push_back(TextOfCell(cell));
        if (i + 1 == head)
            preview.HeadCells = std::move(texts);
        else if (preview.Rows.size() < CsvPreviewRows)
            preview.Rows.push_back(std::move(texts));
    }
}

std::vector<std::string> FirstLines(const FileSystem& files, const std::string& path) {
    const Progress progress;
    TrackLines reader(files.Open(path), progress);
    std::vector<std::string> lines;
    for (std::string_view line; lines.size() < MostLinesAbove + CsvPreviewRows && reader.Next(line);)
        lines.emplace_back(lines.empty() ? WithoutMark(line) : line);
    return lines;
}

bool HasComma(const std::vector<std::string>& row) { return std::ranges::any_of(row, IsCommaNumber); }

/// Of a file whose head is not recognised: the delimiter that its first line has most, and whether that is a head.
void GuessHead(const std::vector<std::string>& lines, CsvMapping& mapping) {
    if (lines.empty()) return;
    std::ptrdiff_t most = 0;
    for (const char delimiter : Delimiters)
        if (const auto count = std::ranges::count(lines.front(), delimiter); count > most && delimiter != ' ') {
            most = count;
            mapping.Delimiter = delimiter;
        }
    const bool hasDigit = std::ranges::any_of(lines.front(), IsDigit);
    mapping.HeadLine = hasDigit ? 0 : 1;
}

CsvPreview PreviewOf(const std::vector<std::string>& lines) {
    CsvPreview preview;
    const FoundHead head = FindHead(lines);
    const bool isFound = head.Recognised > 0;
    preview.Mapping.Delimiter = head.Delimiter;
    preview.Mapping.HeadLine = isFound ? static_cast<int>(head.Line) + 1 : 0;
    if (!isFound) GuessHead(lines, preview.Mapping);
    SplitRows(lines, preview);
    if (!isFound) {
        preview.Mapping.HasDecimalComma =
            preview.Mapping.Delimiter != ',' && std::ranges::any_of(preview.Rows, HasComma);
        if (!lines.empty()) preview.Head = TextOfCell(lines.front());
        preview.Questions.push_back(CsvQuestion::Columns);
        return preview;
    }
    preview.Head = TextOfCell(lines[head.Line]);
    const auto heads = ChooseColumns(head.Cells, preview.Mapping);
    GuessNumbers(preview);
    GuessTimes(preview, heads);
    if (const auto speed = heads.find(CsvColumn::Speed); speed != heads.end()) {
        preview.Mapping.SpeedUnit = speed->second.Unit.value_or(CsvSpeedUnit::MetresPerSecond);
        if (!speed->second.Unit) preview.Questions.push_back(CsvQuestion::SpeedUnit);
    }
    return preview;
}

}  // namespace

bool CsvMapping::Has(CsvColumn column) const { return std::ranges::find(Columns, column) != Columns.end(); }

std::string CsvMappingText(const CsvMapping& mapping) {
    nlohmann::ordered_json columns = nlohmann::ordered_json::array();
    for (const CsvColumn column : mapping.Columns) columns.push_back(ColumnNames[static_cast<std::size_t>(column)]);
    return nlohmann::ordered_json{{"delimiter", std::string(1, mapping.Delimiter)},
                                  {"decimalComma", mapping.HasDecimalComma},
                                  {"headLine", mapping.HeadLine},
                                  {"columns", std::move(columns)},
                                  {"speedUnit", UnitNames[static_cast<std::size_t>(mapping.SpeedUnit)]},
                                  {"timeForm", TimeFormNames[static_cast<std::size_t>(mapping.TimeForm)]},
                                  {"dayOrder", DayOrderNames[static_cast<std::size_t>(mapping.DayOrder)]},
                                  {"zone", mapping.Zone},
                                  {"start", mapping.Start}}
        .dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

std::optional<CsvMapping> CsvMappingOf(std::string_view text) {
    const auto json = nlohmann::json::parse(text, nullptr, false);
    if (!json.is_object()) return std::nullopt;
    const auto value = [&](const char* name) { return json.value(name, nlohmann::json()); };
    const auto delimiter = value("delimiter");
    const auto columns = value("columns");
    CsvMapping mapping;
    const bool isRead = delimiter.is_string() && delimiter.get_ref<const std::string&>().size() == 1 &&
                        value("decimalComma").is_boolean() && value("headLine").is_number_unsigned() &&
                        columns.is_array() && columns.size() <= MostColumns && value("zone").is_string() &&
                        value("start").is_number() && ReadName(value("speedUnit"), UnitNames, mapping.SpeedUnit) &&
                        ReadName(value("timeForm"), TimeFormNames, mapping.TimeForm) &&
                        ReadName(value("dayOrder"), DayOrderNames, mapping.DayOrder);
    if (!isRead || value("headLine").get<std::uint64_t>() > MostLinesAbove) return std::nullopt;
    mapping.Delimiter = delimiter.get_ref<const std::string&>()[0];
    mapping.HasDecimalComma = value("decimalComma").get<bool>();
    mapping.HeadLine = value("headLine").get<int>();
    mapping.Zone = value("zone").get<std::string>();
    mapping.Start = value("start").get<double>();
    for (const auto& column : columns) {
        mapping.Columns.push_back(CsvColumn::Other);
        if (!ReadName(column, ColumnNames, mapping.Columns.back())) return std::nullopt;
    }
    return mapping;
}

const char* CsvQuestionText(CsvQuestion question) {
    switch (question) {
        case CsvQuestion::Columns: return "Which columns hold the positions, or the times and speeds?";
        case CsvQuestion::DayOrder: return "Does the day or the month come first in the dates?";
        case CsvQuestion::SpeedUnit: return "What unit are the speeds in? They are taken as meters per second.";
        case CsvQuestion::Zone: return "What time zone are the times in? They are taken as UTC.";
        case CsvQuestion::Start: break;
    }
    return "On what day, and when, did the log begin? Its times do not say.";
}

CsvPreview PreviewCsv(const FileSystem& files, const std::string& path) { return PreviewOf(FirstLines(files, path)); }

void SplitAgain(const FileSystem& files, const std::string& path, CsvPreview& preview) {
    preview.HeadCells.clear();
    preview.Rows.clear();
    SplitRows(FirstLines(files, path), preview);
}

bool LooksLikeCsv(std::string_view head, std::string_view) {
    std::vector<std::string> lines;
    for (std::size_t end = 0; !head.empty() && lines.size() < MostLinesAbove; head.remove_prefix(end)) {
        end = std::min(head.find('\n'), head.size() - 1) + 1;
        lines.emplace_back(lines.empty() ? WithoutMark(head.substr(0, end)) : head.substr(0, end));
    }
    return FindHead(lines).Recognised > 0;
}

}  // namespace vantor
