#include "tracks/Utf16File.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

#include "core/Windows1252.h"

namespace vantor {
namespace {

constexpr char32_t Replacement = 0xFFFD;

bool IsHigh(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLow(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

/// Turns UTF-16 into UTF-8 piece by piece; half of a pair alone becomes U+FFFD.
class Utf16Decoder {
public:
    explicit Utf16Decoder(std::string_view head)
        : isBigEndian_(head.starts_with("\xFE\xFF") || (head.size() > 1 && head[0] == '\0')) {}

    void Append(std::string_view bytes, std::string& text) {
        for (const char byte : bytes) {
            const auto value = static_cast<unsigned char>(byte);
            if (std::exchange(hasHalf_, !hasHalf_))
                Take(isBigEndian_ ? half_ * 256U + value : value * 256U + half_, text);
            else
                half_ = value;
        }
    }

private:
    void Take(char32_t unit, std::string& text) {
        const char32_t high = std::exchange(high_, 0);
        if (high != 0 && IsLow(unit)) {
            AppendUtf8(text, 0x10000 + (high - 0xD800) * 0x400 + (unit - 0xDC00));
            return;
        }
        if (high != 0) AppendUtf8(text, Replacement);
        if (IsHigh(unit))
            high_ = unit;
        else
            AppendUtf8(text, IsLow(unit) ? Replacement : unit);
    }

    bool isBigEndian_;
    bool hasHalf_ = false;
    unsigned half_ = 0;
    char32_t high_ = 0;
};

class Utf16File : public InputFile {
public:
    Utf16File(std::unique_ptr<InputFile> file, std::string_view head) : file_(std::move(file)), decoder_(head) {
        decoder_.Append(head, text_);
    }

    std::size_t Read(std::span<std::byte> into) override {
        std::array<char, 16 * 1024> piece{};
        while (text_.size() - at_ < into.size() && !isLast_) {
            text_.erase(0, std::exchange(at_, 0));
            const std::size_t count = file_->Read(std::as_writable_bytes(std::span(piece)));
            isLast_ = count < piece.size();
            decoder_.Append({piece.data(), count}, text_);
        }
        const auto part = std::as_bytes(std::span(text_)).subspan(at_, std::min(into.size(), text_.size() - at_));
        std::ranges::copy(part, into.begin());
        at_ += part.size();
        return part.size();
    }
    std::uint64_t Size() const override { return file_->Size(); }

private:
    std::unique_ptr<InputFile> file_;
    Utf16Decoder decoder_;
    std::string text_;
    std::size_t at_ = 0;
    bool isLast_ = false;
};

}  // namespace

bool IsUtf16(std::string_view head) {
    return head.starts_with("\xFF\xFE") || head.starts_with("\xFE\xFF") ||
           (head.size() > 1 && (head[0] == '\0') != (head[1] == '\0'));
}

std::string Utf8Head(std::string_view head) {
    if (!IsUtf16(head)) return std::string(head);
    std::string text;
    Utf16Decoder(head).Append(head, text);
    return text;
}

std::unique_ptr<InputFile> FromUtf16(std::unique_ptr<InputFile> file, std::string_view head) {
    return std::make_unique<Utf16File>(std::move(file), head);
}

}  // namespace vantor
