#include "platform/BiffStream.h"

namespace vantor {

void BiffStream::ExtendText(std::u16string_view text, bool isWide) {
    const std::size_t width = isWide ? 2 : 1;
    std::size_t at = bytes_.size();
    bytes_.resize(at + width * text.size());
    for (const char16_t unit : text) {
        bytes_[at] = static_cast<std::byte>(unit & 0xFF);
        if (isWide) bytes_[at + 1] = static_cast<std::byte>(unit >> 8);
        at += width;
    }
    UpdateLength();
}

}  // namespace vantor
