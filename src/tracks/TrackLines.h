#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "core/Progress.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// The lines of a text through one buffer, whatever the file's length. Lines end with LF, CR LF or, where the first
/// piece of the file has no LF, CR; the last one may lack its end. UTF-16 becomes UTF-8.
class TrackLines {
public:
    /// Of a longer line the rest is passed over.
    static constexpr std::size_t LongestLine = 32 * 1024;

    /// `progress` has to live as long.
    TrackLines(std::unique_ptr<InputFile> file, const Progress& progress);

    /// False at the end of the file, and when the progress stopped it. The line holds until the next call.
    bool Next(std::string_view& line);
    std::uint64_t Number() const { return number_; }  ///< of the line, from 1
    bool IsCut() const { return isCut_; }             ///< the line was longer
    bool IsStopped() const { return isStopped_; }

private:
    bool Fill();

    std::unique_ptr<InputFile> file_;
    const Progress& progress_;
    std::vector<char> buffer_;
    std::size_t at_ = 0;
    std::size_t end_ = 0;
    std::uint64_t done_ = 0;
    std::uint64_t number_ = 0;
    char lineEnd_ = '\n';
    bool isLast_ = false;
    bool isCut_ = false;
    bool isStopped_ = false;
};

}  // namespace vantor
