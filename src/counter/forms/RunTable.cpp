#include "counter/forms/RunTable.h"

#include <map>
#include <set>

#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/Text.h"
#include "core/forms/Named.h"
#include "core/forms/Table.h"
#include "core/modMain.h"

namespace vantor {

RunTable::RunTable(LongList& list, LongWork& work, const Units& units) : list_(list), work_(work) {
    const auto text = [this](auto textOf) {
        return [this, textOf](int row) { return At(row).Problem.empty() ? ToQt(textOf(At(row))) : QString(); };
    };
    const auto number = [this](auto member) { return [this, member](int row) { return double(At(row).*member); }; };
    const auto digits = [](auto member) { return [member](const Row& row) { return std::to_string(row.*member); }; };
    const QStringList heads = RunColumns(units);
    list_.SetColumns({
        {heads[0], [this](int row) { return ToQt(Trim(At(row).Run.Name)); }},
        {heads[1], text([](const Row& row) { return ShortDate(row.RunDate); }),
         [this](int row) { return At(row).RunDate.Days; }},
        {heads[2], text([](const Row& row) { return ShortTime(row.RunTime); }),
         [this](int row) { return At(row).RunTime.Days; }},
        {heads[3], text([](const Row& row) { return std::string(RunTypeText(row.TypeFlag)); })},
        {heads[4], text([units](const Row& row) { return units.LengthCell(row.Length); }), number(&Row::Length), true},
        {heads[5], text(digits(&Row::Duration)), number(&Row::Duration), true},
        {heads[6], text(digits(&Row::Sections)), number(&Row::Sections), true},
        {heads[7], text([](const Row& row) { return std::string(BeforeAfterText(row.Before)); })},
        {heads[8],
         [this](int row) {
             const Row& run = At(row);
             return run.Problem.empty() ? ToQt(run.Notes) : ToQt(run.Problem).simplified();
         }},
    });
    const int notes = static_cast<int>(heads.size()) - 1;
    list_.SetNotes([this, notes](int row, int column) {
        return column == 0 || column == notes ? ToQt(At(row).Problem) : QString();
    });
    list_.SortIn(work);
}

RunTable::Row RunTable::ReadRow(const FileSystem& files, const std::string& folder, const std::string& name) {
    Row row;
    row.Run.Name = name;
    const RunReading reading = ReadRun(files, folder, name, RunPart::Header);
    if (!reading) {
        row.Problem = reading.Fault->Message();
        return row;
    }
    const RunHeader& header = reading.Run.Header;
    row.RunDate = header.RunDate;
    row.RunTime = header.RunTime;
    row.TypeFlag = header.HeaderWord1;
    row.Length = header.RunLength;
    row.Duration = header.Duration;
    row.Sections = header.NumberOfSections;
    row.Before = header.Before;
    row.Notes = TrimRight(header.Notes);
    return row;
}

void RunTable::ShowFolder(const std::string& folder) {
    std::vector<Row> rows;
    work_.Run("Reading the runs", [&rows, folder](FileSystem& files, const Progress& progress) {
        const auto found = FilesWithExtension(files, folder, RunExtension);
        for (const FileInfo& info : found) {
            if (progress(rows.size(), found.size())) {
                rows.push_back(ReadRow(files, folder, BaseName(info.Name)));
            } else {
                rows.emplace_back().Run.Name = BaseName(info.Name);
                rows.back().Problem = ListingStoppedText;
            }
        }
    });
    std::map<std::string, std::string> previousNames;
    for (const Row& row : rows_)
        if (!row.Run.PreviousName.empty()) previousNames[row.Run.Name] = row.Run.PreviousName;
    std::set<std::string> selected;
    for (const UploadRun* run : SelectedRuns()) selected.insert(run->Name);
    list_.Show(0);
    rows_ = std::move(rows);
    list_.Show(static_cast<int>(rows_.size()));
    if (previousNames.empty() && selected.empty()) return;
    std::vector<int> selectedRows;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        UploadRun& run = rows_[i].Run;
        if (const auto previous = previousNames.find(run.Name); previous != previousNames.end())
            run.PreviousName = previous->second;
        if (selected.contains(run.Name)) selectedRows.push_back(static_cast<int>(i));
    }
    list_.SelectRows(selectedRows);
}

std::vector<UploadRun*> RunTable::SelectedRuns() {
    std::vector<UploadRun*> selected;
    for (const int row : list_.SelectedRows()) selected.push_back(&RunAt(row));
    return selected;
}

}  // namespace vantor
