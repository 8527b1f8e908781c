#include "counter/KeptDumps.h"

#include <algorithm>

#include "core/Counted.h"
#include "core/Paths.h"
#include "core/modMain.h"
#include "counter/CounterFile.h"

namespace vantor {
namespace {

constexpr const char* KeptExtension = ".cancelled";
constexpr double DaysKept = 7;

std::string KeptFolder(const std::string& fieldDataFolder) {
    return AsFolder(AsFolder(fieldDataFolder) + "Cancelled dumps");
}

/// None where they cannot be listed: nothing of the download depends on them.
std::vector<FileInfo> KeptIn(const FileSystem& files, const std::string& folder) {
    try {
        return FilesWithExtension(files, folder, KeptExtension);
    } catch (const RunTimeError&) {
        return {};
    }
}

std::string FreeName(const FileSystem& files, const std::string& folder, std::string name, const char* extension) {
    while (FileExists(files, folder + name + extension)) name = NextName(name);
    return name;
}

}  // namespace

void KeepDump(FileSystem& files, const std::string& counterFile) {
    const std::string folder = KeptFolder(FolderOf(counterFile));
    files.CreateFolder(folder);
    files.Rename(counterFile, folder + FreeName(files, folder, BaseName(counterFile), KeptExtension) + KeptExtension);
}

std::optional<KeptDump> LastKeptDump(const FileSystem& files, const std::string& fieldDataFolder) {
    const std::string folder = KeptFolder(fieldDataFolder);
    const auto found = KeptIn(files, folder);
    const auto last = std::ranges::max_element(found, {}, [](const FileInfo& info) { return info.Modified.Days; });
    if (last == found.end()) return std::nullopt;
    return KeptDump{folder + last->Name, BaseName(last->Name), last->Modified, last->Size};
}

std::string BringBack(FileSystem& files, const std::string& fieldDataFolder, const KeptDump& dump) {
    const std::string folder = AsFolder(fieldDataFolder);
    std::string name = FreeName(files, folder, dump.Name, CounterFileExtension);
    files.Rename(dump.Path, folder + name + CounterFileExtension);
    return name;
}

void DeleteOldDumps(FileSystem& files, const std::string& fieldDataFolder, Date now) {
    const std::string folder = KeptFolder(fieldDataFolder);
    for (const FileInfo& info : KeptIn(files, folder)) {
        if (now.Days - info.Modified.Days <= DaysKept) continue;
        try {
            files.Delete(folder + info.Name);
        } catch (const RunTimeError&) {
            // It is in nobody's way until then.
        }
    }
}

std::string CountOfBytes(std::uint64_t count) { return Counted(count, "byte"); }

}  // namespace vantor
