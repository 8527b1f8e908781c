#include <map>
#include <set>
#include <unordered_set>

#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "platform/DiskFileSystem.h"
#include "platform/NativeFile.h"

namespace vantor {
namespace {

/// The names in the folders of a batch, letter case ignored. Each folder is listed once: looking a new name up would
/// list it for every file.
class KnownNames {
public:
    explicit KnownNames(const FileSystem& files) : files_(files) {}

    bool Has(const std::string& path) { return NamesIn(FolderOf(path)).contains(FoldCase(LastComponent(path))); }
    void Move(const FileMove& move) {
        NamesIn(FolderOf(move.From)).erase(FoldCase(LastComponent(move.From)));
        NamesIn(FolderOf(move.To)).insert(FoldCase(LastComponent(move.To)));
    }

private:
    std::unordered_set<std::string>& NamesIn(const std::string& folder) {
        const auto [known, isNew] = names_.try_emplace(folder);
        if (isNew)
            for (const FileInfo& info : files_.List(folder.empty() ? "." : folder))
                known->second.insert(FoldCase(info.Name));
        return known->second;
    }

    const FileSystem& files_;
    std::map<std::string, std::unordered_set<std::string>> names_;
};

}  // namespace

bool DiskFileSystem::RenameAll(const std::vector<FileMove>& moves, const Progress& progress) {
    KnownNames names(*this);
    std::set<std::filesystem::path> folders;
    std::size_t done = 0;
    const auto flushFolders = [&] {
        for (const auto& folder : folders) FlushFolder(folder);
    };
    const auto takeBack = [&] {
        while (done-- > 0) {
            try {
                Place(moves[done].To, moves[done].From);
            } catch (const RunTimeError&) {
                // It keeps its new name: there is nothing else to do about it.
            }
        }
        flushFolders();
    };
    try {
        for (; done < moves.size(); ++done) {
            const FileMove& move = moves[done];
            if (!progress(done, moves.size())) {
                takeBack();
                return false;
            }
            Place(move.From, move.To, !names.Has(move.To));
            names.Move(move);
            folders.insert(NativePath(move.To).parent_path());
            folders.insert(NativePath(move.From).parent_path());
        }
    } catch (const RunTimeError&) {
        takeBack();
        throw;
    }
    flushFolders();
    return true;
}

}  // namespace vantor
