#pragma once

#include <ostream>
#include <streambuf>
#include <string_view>

#include "core/Text.h"

namespace vantor {

/// Passes what is written to another stream, with control characters made printable.
class PrintableBuffer : public std::streambuf {
public:
    explicit PrintableBuffer(std::ostream& to) : to_(to) {}

private:
    int_type overflow(int_type character) override {
        if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
        const char text = traits_type::to_char_type(character);
        return xsputn(&text, 1) == 1 ? character : traits_type::eof();
    }
    std::streamsize xsputn(const char* text, std::streamsize count) override {
        to_ << Printable({text, static_cast<std::size_t>(count)});
        return to_ ? count : 0;
    }
    int sync() override { return to_.flush() ? 0 : -1; }

    std::ostream& to_;
};

}  // namespace vantor
