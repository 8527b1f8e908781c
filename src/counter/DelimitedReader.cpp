#include "counter/DelimitedReader.h"

#include <algorithm>
#include <utility>

#include "core/RunTimeError.h"

namespace vantor {
namespace {

constexpr std::size_t BufferSize = 256 * 1024;

}  // namespace

DelimitedReader::DelimitedReader(std::unique_ptr<InputFile> file) : file_(std::move(file)), buffer_(BufferSize) {
    kept_.reserve(LongestKept);
}

bool DelimitedReader::Fill() {
    bufferStart_ += end_;
    at_ = 0;
    end_ = file_->Read(std::as_writable_bytes(std::span(buffer_)));
    return end_ > 0;
}

template <class Predicate>
void DelimitedReader::PassUntil(Predicate isEnd, bool keep) {
    while (HasMore()) {
        const std::string_view ahead = Ahead();
        const auto found = std::find_if(ahead.begin(), ahead.end(), isEnd);
        const auto count = static_cast<std::size_t>(found - ahead.begin());
        at_ += count;
        if (keep) {
            kept_.append(ahead.substr(0, std::min(count, LongestKept - kept_.size())));
            length_ += count;
        }
        if (found != ahead.end()) return;
    }
}

void DelimitedReader::PassFieldEnd() {
    if (!HasMore()) return;
    const bool mayBePair = buffer_[at_++] == '\r';
    if (mayBePair && HasMore() && buffer_[at_] == '\n') ++at_;
}

DelimitedField DelimitedReader::Next() {
    kept_.clear();
    length_ = 0;
    PassUntil([](char c) { return c != ' '; }, false);
    if (!HasMore()) throw RunTimeError(ErrorNumber::InputPastEndOfFile);
    if (buffer_[at_] == '"') {
        ++at_;
        // A line end closes a field whose quote was never closed, so that only this line is lost.
        PassUntil([](char c) { return c == '"' || c == '\r' || c == '\n'; }, true);
        PassUntil([](char c) { return IsFieldEnd(c); }, false);
    } else {
        PassUntil([](char c) { return IsFieldEnd(c); }, true);
    }
    PassFieldEnd();
    return {kept_, length_};
}

}  // namespace vantor
