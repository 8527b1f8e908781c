#pragma once

#include <concepts>
#include <string>
#include <string_view>

namespace vantor {

/// "1 run", "8 runs".
template <std::integral Number>
std::string Counted(Number count, std::string_view what) {
    std::string text = std::to_string(count) + " ";
    text += what;
    return count == 1 ? text : text + "s";
}

}  // namespace vantor
