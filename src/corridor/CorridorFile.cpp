#include "corridor/CorridorFile.h"

#include <cstddef>

#include "core/Backup.h"
#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "corridor/CorridorJson.h"
#include "corridor/CorridorRules.h"

namespace vantor {
namespace {

std::string NameOf(const std::string& path) {
    const std::string file = LastComponent(path);
    return HasExtension(file, CorridorExtension)
               ? file.substr(0, file.size() - std::string_view(CorridorExtension).size())
               : BaseName(file);
}

}  // namespace

std::string CorridorPath(const std::string& root, std::string_view name) {
    return AsFolder(root) + std::string(name) + CorridorExtension;
}

std::vector<std::string> ListCorridors(const FileSystem& files, const std::string& root) {
    std::vector<std::string> names;
    try {
        for (const FileInfo& info : FilesWithExtension(files, root, CorridorExtension))
            if (!info.IsHidden) names.push_back(NameOf(info.Name));
    } catch (const RunTimeError&) {
        return {};
    }
    return names;
}

StoredCorridor LoadCorridor(const FileSystem& files, const std::string& path) {
    const std::vector<std::byte> bytes = ReadWholeFile(files, path);
    StoredCorridor stored{DecodeCorridor(bytes, path), StampOf(bytes)};
    stored.Corridor.Name = NameOf(path);
    return stored;
}

SavedCorridor AddCorridor(WriteBatch& batch, FileSystem& files, const std::string& path, const Corridor& corridor,
                          Expected expected) {
    if (const std::string problem = ProblemOf(corridor); !problem.empty())
        throw RunTimeError(ErrorNumber::TypeMismatch, problem + "\n" + path);
    const std::vector<std::byte> bytes = EncodeCorridor(corridor);
    SavedCorridor saved{StampOf(bytes), {}};
    const Expected there = AsItStands(files, path);
    if (there.File == saved.Stamp && expected.File) return saved;
    if (expected.File && there.File != expected.File) {
        expected = there;
        if (there.File) {
            const KeptFile kept = AddBackup(batch, files, path);
            saved.Backup = kept.Backup;
            expected = kept.Original;
        }
    }
    batch.Add(path, bytes, expected);
    return saved;
}

SavedCorridor SaveCorridor(FileSystem& files, const std::string& path, const Corridor& corridor, Expected expected) {
    const auto lock = files.Lock(FolderOf(path));
    const auto batch = files.BeginWrites();
    SavedCorridor saved = AddCorridor(*batch, files, path, corridor, expected);
    batch->Commit();
    return saved;
}

}  // namespace vantor
