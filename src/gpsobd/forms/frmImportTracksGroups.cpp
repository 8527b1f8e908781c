#include <QSignalBlocker>
#include <algorithm>
#include <set>

#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyGroupFolders.h"
#include "core/Text.h"
#include "core/forms/Named.h"
#include "core/modMain.h"
#include "gpsobd/forms/frmImportTracks.h"

namespace vantor {

// Which Study Group the run of a track goes to.

/// Where the Study Groups are.
std::string frmImportTracks::GroupRoot() const {
    return corridor_ ? FolderOf(corridor_->Path) : context_.State.Paths.StudyGroupRootPath;
}

std::string frmImportTracks::Group() const { return std::string(Trim(FromQt(cmbGroup_->currentText()))); }

std::string frmImportTracks::GroupOf(std::size_t index) const {
    return rows_[index].OwnGroup.empty() ? Group() : rows_[index].OwnGroup;
}

/// Those that are there and those that rows have.
std::vector<std::string> frmImportTracks::KnownGroups() const {
    std::set<std::string> groups;
    for (int i = 0; i < cmbGroup_->count(); ++i) groups.insert(FromQt(cmbGroup_->itemText(i)));
    for (std::size_t i = 0; i < rows_.size(); ++i) groups.insert(GroupOf(i));
    groups.erase(std::string());
    return {groups.begin(), groups.end()};
}

void frmImportTracks::TakeGroup() {
    if (Group() == shownGroup_) return;
    Regroup();
}

/// The selected rows take the group that was entered in one of them; none is that above the list.
void frmImportTracks::TakeGroupOf(std::size_t index, const std::string& group) {
    std::vector<int> rows = vaTracks_->SelectedRows();
    const int row = static_cast<int>(index);
    if (std::ranges::find(rows, row) == rows.end()) rows = {row};
    for (const int taking : rows) rows_[static_cast<std::size_t>(taking)].OwnGroup = group == Group() ? "" : group;
    Regroup();
}

/// A track is ticked or not anew where its group changes whether something is to be looked at.
void frmImportTracks::Regroup() {
    std::vector<bool> hadFlags;
    for (std::size_t i = 0; i < rows_.size(); ++i) hadFlags.push_back(!IsWithoutFlags(i));
    FindSameRuns();
    for (std::size_t i = 0; i < rows_.size(); ++i)
        if (hadFlags[i] == IsWithoutFlags(i)) rows_[i].IsTaken = IsWithoutFlags(i);
    ShowGroups();
}

/// Looks for the tracks among the runs that lie in their groups, and among each other.
void frmImportTracks::FindSameRuns() {
    shownGroup_ = Group();
    std::vector<std::string> groups;
    std::vector<std::string> folders;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        rows_[i].SameAs.clear();
        groups.push_back(GroupOf(i));
        const bool isName = IsSafeName(groups.back());
        folders.push_back(isName ? GroupFolder(GroupRoot(), groups.back()) : "");
    }
    namesInGroups_.clear();
    std::vector<SameRun> same;
    const auto look = [&](FileSystem& files, const Progress& progress) {
        for (std::size_t i = 0; i < groups.size(); ++i) {
            if (folders[i].empty() || namesInGroups_.contains(groups[i])) continue;
            std::vector<std::string>& names = namesInGroups_[groups[i]];
            if (!FolderExists(files, folders[i])) continue;
            for (const FileInfo& info : files.List(folders[i], RunExtension)) names.push_back(BaseName(info.Name));
        }
        same = SameRuns(files, folders, tracks_, progress);
    };
    context_.Work.Run("Comparing the tracks with the runs of the group", look);
    for (const SameRun& run : same) rows_[run.Track].SameAs = run.Name;
}

/// What a row's group decides; the rows stay as they are selected.
void frmImportTracks::ShowGroups() {
    {
        const QSignalBlocker blocker(vaTracks_);
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            const int row = static_cast<int>(i);
            vaTracks_->item(row, GroupOfRow)->setText(ToQt(GroupOf(i)));
            vaTracks_->item(row, Flags)->setText(ToQt(Joined(FlagsOf(i), "; ")));
            vaTracks_->SetTick(row, i, rows_[i].IsTaken);
        }
    }
    ShowNames();
    ShowNotes();
}

/// Begins to edit a cell of the current row; the rows stay selected.
void frmImportTracks::EditChosen(Column column) {
    const int row = vaTracks_->currentRow();
    if (row < 0) return;
    const QModelIndex cell = vaTracks_->model()->index(row, column);
    vaTracks_->setFocus();
    vaTracks_->selectionModel()->setCurrentIndex(cell, QItemSelectionModel::NoUpdate);
    vaTracks_->edit(cell);
}

/// Space is for the tick again, and F2 for the name.
void frmImportTracks::LeaveCell(QAbstractItemDelegate::EndEditHint hint) {
    if (hint == QAbstractItemDelegate::EditNextItem || hint == QAbstractItemDelegate::EditPreviousItem) return;
    const QModelIndex first = vaTracks_->model()->index(vaTracks_->currentRow(), File);
    vaTracks_->selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
}

}  // namespace vantor
