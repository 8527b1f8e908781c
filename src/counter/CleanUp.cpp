#include "counter/CleanUp.h"

#include <utility>

#include "core/RunTimeError.h"

namespace vantor {

PendingDeletions::PendingDeletions(std::string folder, std::string extension)
    : folder_(std::move(folder)), extension_(std::move(extension)) {}

void PendingDeletions::DeleteAll(FileSystem& files, MessageBoxes& messages) {
    constexpr int MostNamed = 8;
    std::string told;
    int failed = 0;
    for (const std::string& name : std::exchange(names_, {})) {
        const std::string path = folder_ + name + extension_;
        try {
            files.Delete(path);
        } catch (const RunTimeError& error) {
            if (++failed <= MostNamed) told += "\n" + path + ": " + ErrorText(error.Number());
        }
    }
    if (failed == 0) return;
    if (failed > MostNamed) told += "\nand " + std::to_string(failed - MostNamed) + " more";
    messages.Tell("These files could not be deleted:" + told, MessageIcon::Warning);
}

}  // namespace vantor
