#include "counter/forms/RunTable.h"

#include <QHeaderView>

#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/forms/Accessible.h"
#include "core/forms/Named.h"

namespace vantor {
namespace {

constexpr int RunIndexRole = Qt::UserRole;

/// A run file as its header describes it.
struct RunInFile {
    std::string Name;
    RunReading Reading;
};

void ShowRun(Table& table, int row, const RunInFile& run, const Units& units) {
    table.SetText(row, 0, ToQt(run.Name));
    if (run.Reading) return SetRunRow(table, row, run.Reading.Run.Header, units);
    const int notes = table.columnCount() - 1;
    const QString problem = run.Reading.Fault ? ToQt(run.Reading.Fault->Message())
                                              : QStringLiteral("It was not read: the listing was stopped.");
    table.SetText(row, notes, problem.simplified());
    for (const int column : {0, notes}) SetCellNote(*table.item(row, column), problem);
}

}  // namespace

void SetRunColumns(Table& table, const Units& units) {
    table.horizontalHeader()->setDefaultSectionSize(table.horizontalHeader()->minimumSectionSize());
    table.SetColumns(RunColumns(units));
}

std::vector<std::string> ListRunFiles(Table& table, LongWork& work, const std::string& folder, const Units& units) {
    std::vector<RunInFile> runs;
    work.Run("Reading the runs", [&runs, folder](FileSystem& files, const Progress& progress) {
        const auto found = FilesWithExtension(files, folder, RunExtension);
        bool goesOn = true;
        for (const FileInfo& info : found) {
            goesOn = goesOn && progress(runs.size(), found.size());
            RunInFile& run = runs.emplace_back();
            run.Name = BaseName(info.Name);
            if (goesOn) run.Reading = ReadRun(files, folder, run.Name, RunPart::Header);
        }
    });
    std::vector<std::string> names;
    table.BeginFilling();
    for (const RunInFile& run : runs) {
        const int row = table.AddRow();
        ShowRun(table, row, run, units);
        table.item(row, 0)->setData(RunIndexRole, row);
        names.push_back(run.Name);
    }
    table.EndFilling();
    return names;
}

std::size_t RunIndexOf(const Table& table, int row) {
    return static_cast<std::size_t>(table.item(row, 0)->data(RunIndexRole).toInt());
}

}  // namespace vantor
