#include "counter/forms/RunTable.h"

#include <QHeaderView>

#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/forms/Accessible.h"
#include "core/forms/Named.h"

namespace vantor {
namespace {

constexpr int RunIndexRole = Qt::UserRole;

void ShowRun(Table& table, int row, const FileSystem& files, const std::string& folder, const std::string& name,
             const Units& units) {
    table.SetText(row, 0, ToQt(name));
    const RunReading reading = ReadRun(files, folder, name, RunPart::Header);
    if (reading) return SetRunRow(table, row, reading.Run.Header, units);
    const int notes = table.columnCount() - 1;
    const QString problem = ToQt(reading.Fault->Message());
    table.SetText(row, notes, problem.simplified());
    for (const int column : {0, notes}) SetCellNote(*table.item(row, column), problem);
}

}  // namespace

void SetRunColumns(Table& table, const Units& units) {
    table.horizontalHeader()->setDefaultSectionSize(table.horizontalHeader()->minimumSectionSize());
    table.SetColumns(RunColumns(units));
}

std::vector<std::string> ListRunFiles(Table& table, const FileSystem& files, const std::string& folder,
                                      const Units& units) {
    std::vector<std::string> names;
    table.BeginFilling();
    for (const FileInfo& info : FilesWithExtension(files, folder, RunExtension)) {
        const int row = table.AddRow();
        names.push_back(BaseName(info.Name));
        ShowRun(table, row, files, folder, names.back(), units);
        table.item(row, 0)->setData(RunIndexRole, row);
    }
    table.EndFilling();
    return names;
}

std::size_t RunIndexOf(const Table& table, int row) {
    return static_cast<std::size_t>(table.item(row, 0)->data(RunIndexRole).toInt());
}

}  // namespace vantor
