#include "core/Backup.h"

#include <algorithm>
#include <limits>
#include <map>

#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "core/modMain.h"

namespace vantor {
namespace {

constexpr std::string_view BackupExtension = ".bak";

/// The number of a backup by what follows the name of its file: ".bak" is 1, ".bak2" is 2; 0 for anything else.
int BackupNumber(std::string_view rest) {
    if (!rest.starts_with(BackupExtension)) return 0;
    rest.remove_prefix(BackupExtension.size());
    if (rest.empty()) return 1;
    const int number = CountOfText(rest, std::numeric_limits<int>::max()).value_or(0);
    return number > 1 ? number : 0;
}

/// The backups beside a file, by their numbers.
std::map<int, std::string> NumberedBackups(const FileSystem& files, const std::string& path) {
    std::map<int, std::string> backups;
    const std::string folder = FolderOf(path);
    const std::string listed = folder.empty() ? files.CurrentFolder() : folder;
    if (!FolderExists(files, listed)) return backups;
    const std::string name = FoldCase(LastComponent(path));
    for (const FileInfo& info : files.List(listed)) {
        const std::string folded = FoldCase(info.Name);
        if (!folded.starts_with(name)) continue;
        if (const int number = BackupNumber(std::string_view(folded).substr(name.size())); number != 0)
            backups[number] = folder + info.Name;
    }
    return backups;
}

}  // namespace

std::string FreeBackupPath(const FileSystem& files, const std::string& path) {
    const auto backups = NumberedBackups(files, path);
    const int number = backups.empty() ? 1 : backups.rbegin()->first + 1;
    return path + std::string(BackupExtension) + (number > 1 ? std::to_string(number) : std::string());
}

KeptFile AddBackup(WriteBatch& batch, const FileSystem& files, const std::string& path) {
    KeptFile kept{FreeBackupPath(files, path), {}};
    const std::vector<std::byte> bytes = ReadWholeFile(files, path);
    kept.Original = Expected::Unchanged(StampOf(bytes));
    batch.Add(kept.Backup, bytes, Expected::Nothing());
    return kept;
}

bool WriteKeepingOld(FileSystem& files, const std::string& path, std::span<const std::byte> bytes,
                     const Progress& progress) {
    const auto batch = files.BeginWrites();
    Expected there = AsItStands(files, path);
    if (there.File == StampOf(bytes)) return true;
    if (there.File) there = AddBackup(*batch, files, path).Original;
    batch->Add(path, bytes, there);
    return batch->Commit(progress);
}

std::vector<std::string> BackupsOf(const FileSystem& files, const std::string& path) {
    std::vector<std::string> backups;
    for (const auto& [number, backup] : NumberedBackups(files, path)) backups.push_back(backup);
    std::ranges::reverse(backups);
    const std::string olderForm = FolderOf(path) + BaseName(path) + std::string(BackupExtension);
    if (FileExists(files, olderForm)) backups.push_back(olderForm);
    return backups;
}

}  // namespace vantor
