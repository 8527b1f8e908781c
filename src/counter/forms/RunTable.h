#pragma once

#include <string>
#include <vector>

#include "core/RunRecords.h"
#include "core/Units.h"
#include "core/forms/LongList.h"
#include "counter/modUpload.h"

namespace vantor {

/// The run files (".rd2") of a folder in a list, in the order of the folder's listing. A run that cannot be read has
/// only its name and says why.
class RunTable {
public:
    /// The list lives as long as this.
    RunTable(LongList& list, LongWork& work, const Units& units);
    RunTable(const RunTable&) = delete;
    RunTable& operator=(const RunTable&) = delete;

    /// Reads and shows the runs of a folder, which ends in a separator. Runs that were shown before stay selected and
    /// keep their previous names.
    void ShowFolder(const std::string& folder);
    /// Shows the names anew.
    void Refresh() { list_.Refresh(); }

    /// The list's rows count from 0. The runs are the caller's to rename until the next ShowFolder.
    std::size_t RowCount() const { return rows_.size(); }
    UploadRun& RunAt(int row) { return rows_[static_cast<std::size_t>(row)].Run; }
    const UploadRun& RunAt(int row) const { return At(row).Run; }
    const std::string& NotesAt(int row) const { return At(row).Notes; }
    /// From top to bottom as they are shown.
    std::vector<UploadRun*> SelectedRuns();

private:
    /// What the list shows of a run: of the 200 MB dump of a counter there are more than a hundred thousand.
    struct Row {
        UploadRun Run;
        Date RunDate;
        Date RunTime;
        std::int16_t TypeFlag = 0;
        std::int32_t Length = 0;  ///< feet
        std::int16_t Duration = 0;
        std::int16_t Sections = 0;
        std::int16_t Before = 0;
        std::string Notes;
        std::string Problem;  ///< why it cannot be read; empty when it can
    };
    static Row ReadRow(const FileSystem& files, const std::string& folder, const std::string& name);
    const Row& At(int row) const { return rows_[static_cast<std::size_t>(row)]; }

    LongList& list_;
    LongWork& work_;
    std::vector<Row> rows_;
};

}  // namespace vantor
