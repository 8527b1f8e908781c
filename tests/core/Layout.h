#pragma once

#include <string>
#include <string_view>

namespace vantor {

/// Puts fields together the way a file has them.
class Layout {
public:
    explicit Layout(std::size_t size, char fill = '\0') : bytes_(size, fill) {}
    Layout& Text(std::size_t offset, std::string text, std::size_t width) {
        text.resize(width, ' ');
        return Bytes(offset, text);
    }
    Layout& Bytes(std::size_t offset, std::string_view literal) {
        bytes_.replace(offset, literal.size(), literal);
        return *this;
    }
    operator std::string() const { return bytes_; }

private:
    std::string bytes_;
};

}  // namespace vantor
