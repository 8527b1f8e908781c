#include "counter/CleanUp.h"

#include <utility>

#include "core/Counted.h"
#include "core/RunTimeError.h"
#include "core/Text.h"

namespace vantor {

PendingDeletions::PendingDeletions(std::string folder, std::string extension)
    : folder_(std::move(folder)), extension_(std::move(extension)) {}

void PendingDeletions::DeleteAll(LongWork& work, MessageBoxes& messages) {
    constexpr std::size_t MostNamed = 8;
    const std::vector<std::string> names = std::exchange(names_, {});
    std::vector<std::string> kept;
    const auto deleteAll = [&](FileSystem& files, const Progress& progress) {
        for (std::size_t i = 0; i < names.size() && progress(i, names.size()); ++i) {
            const std::string path = folder_ + names[i] + extension_;
            try {
                files.Delete(path);
            } catch (const RunTimeError& error) {
                kept.push_back(path + ": " + ErrorText(error.Number()));
            }
        }
    };
    work.Run("Deleting " + Counted(names.size(), "file"), deleteAll);
    if (kept.empty()) return;
    messages.Tell("These files could not be deleted:\n" + FirstOf(kept, MostNamed, LineBreak), MessageIcon::Warning);
}

}  // namespace vantor
