#include "tracks/TrackLines.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

#include "tracks/Utf16File.h"

namespace vantor {
namespace {

constexpr std::size_t PieceSize = 256 * 1024;

}  // namespace

TrackLines::TrackLines(std::unique_ptr<InputFile> file, const Progress& progress)
    : file_(std::move(file)),
      progress_(progress),
      buffer_(std::min<std::uint64_t>(PieceSize, file_->Size()) + LongestLine + 1) {
    Fill();
    if (const std::string_view head(buffer_.data(), end_); IsUtf16(head)) {
        file_ = FromUtf16(std::move(file_), head);
        end_ = 0;
        isLast_ = false;
        Fill();
    }
    const auto begin = buffer_.begin();
    const auto end = begin + static_cast<std::ptrdiff_t>(end_);
    if (std::find(begin, end, '\n') == end && std::find(begin, end, '\r') != end) lineEnd_ = '\r';
}

bool TrackLines::Fill() {
    if (isLast_ || isStopped_) return false;
    std::memmove(buffer_.data(), buffer_.data() + at_, end_ - at_);
    end_ -= at_;
    at_ = 0;
    const auto room = std::span(buffer_).subspan(end_);
    const std::size_t count = file_->Read(std::as_writable_bytes(room));
    isLast_ = count < room.size();
    end_ += count;
    done_ += count;
    isStopped_ = !progress_(std::min(done_, file_->Size()), file_->Size());
    return !isStopped_;
}

bool TrackLines::Next(std::string_view& line) {
    const auto ahead = [&] { return std::string_view(buffer_.data() + at_, end_ - at_); };
    std::size_t length = ahead().find(lineEnd_);
    while (length == std::string_view::npos && (isCut_ || ahead().size() <= LongestLine)) {
        if (isCut_) at_ = end_;
        if (!Fill()) break;
        length = ahead().find(lineEnd_);
    }
    if (std::exchange(isCut_, false)) {
        if (length == std::string_view::npos) return false;
        at_ += length + 1;
        return Next(line);
    }
    if (isStopped_ || ahead().empty()) return false;
    ++number_;
    line = ahead().substr(0, std::min(length, LongestLine));
    isCut_ = line.size() < std::min(length, ahead().size());
    at_ += line.size() + (isCut_ || length == std::string_view::npos ? 0 : 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return true;
}

}  // namespace vantor
