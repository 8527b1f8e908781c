#include "counter/CleanUp.h"

#include <utility>

#include "core/RunTimeError.h"

namespace vantor {

PendingDeletions::PendingDeletions(std::string folder, std::string extension)
    : folder_(std::move(folder)), extension_(std::move(extension)) {}

void PendingDeletions::DeleteAll(LongWork& work, MessageBoxes& messages) {
    constexpr int MostNamed = 8;
    const std::vector<std::string> names = std::exchange(names_, {});
    std::string told;
    int failed = 0;
    const auto deleteAll = [&](FileSystem& files, const Progress& progress) {
        for (std::size_t i = 0; i < names.size() && progress(i, names.size()); ++i) {
            const std::string path = folder_ + names[i] + extension_;
            try {
                files.Delete(path);
            } catch (const RunTimeError& error) {
                if (++failed <= MostNamed) told += "\n" + path + ": " + ErrorText(error.Number());
            }
        }
    };
    work.Run("Deleting " + std::to_string(names.size()) + (names.size() == 1 ? " file" : " files"), deleteAll);
    if (failed == 0) return;
    if (failed > MostNamed) told += "\nand " + std::to_string(failed - MostNamed) + " more";
    messages.Tell("These files could not be deleted:" + told, MessageIcon::Warning);
}

}  // namespace vantor
