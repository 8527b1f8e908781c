#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/ports/FileSystem.h"

namespace vantor {

/// One field of a delimited text. `Text` holds for as long as the next call; of a longer field it has only the first
/// DelimitedReader::LongestKept bytes, `Length` counts them all.
struct DelimitedField {
    std::string_view Text;
    std::uint64_t Length = 0;
};

/// Reads the fields of a delimited text through one buffer, whatever the file's length. A field ends at a comma or at
/// a line end (CR LF, CR or LF); blanks before it are dropped, those behind it belong to it. Quotes around a field are
/// removed; a comma between them belongs to the field, and what stands between the closing quote and the end of the
/// field is dropped. Bytes are taken as they are.
class DelimitedReader {
public:
    static constexpr std::size_t LongestKept = 64;

    explicit DelimitedReader(std::unique_ptr<InputFile> file);

    /// The next field. Error 62 where the file has nothing more but blanks; the last field may end with the file.
    DelimitedField Next();

    /// Bytes of the file that are at hand, the start of the next field first. The last field may go on behind them.
    std::string_view Ahead() const { return {buffer_.data() + at_, end_ - at_}; }
    /// Passes over whole fields at hand, with the commas and line ends behind them.
    void Skip(std::size_t count) { at_ += count; }

    /// Bytes of the file passed over so far, and in all.
    std::uint64_t Position() const { return bufferStart_ + at_; }
    std::uint64_t Size() const { return file_->Size(); }

    static bool IsFieldEnd(char character) { return character == ',' || character == '\r' || character == '\n'; }

private:
    bool Fill();
    bool HasMore() { return at_ < end_ || Fill(); }
    template <class Predicate>
    void PassUntil(Predicate isEnd, bool keep);
    void PassFieldEnd();

    std::unique_ptr<InputFile> file_;
    std::vector<char> buffer_;
    std::size_t at_ = 0;
    std::size_t end_ = 0;
    std::uint64_t bufferStart_ = 0;
    std::string kept_;
    std::uint64_t length_ = 0;
};

}  // namespace vantor
