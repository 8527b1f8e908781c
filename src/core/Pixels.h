#pragma once

#include <cstdint>
#include <vector>

namespace vantor {

/// A decoded picture: its points row by row from the upper left, each 0xAARRGGBB with its colours multiplied by AA.
struct Pixels {
    int Width = 0;
    int Height = 0;
    std::vector<std::uint32_t> Points;
};

}  // namespace vantor
