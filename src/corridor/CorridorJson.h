#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "corridor/Corridor.h"

namespace vantor {

/// A corridor as the bytes of its file, GeoJSON; see docs/formats.md. Members of a later version are carried through.
std::vector<std::byte> EncodeCorridor(const Corridor& corridor);

/// A corridor without its name. Error 13, with the reason, the place and the remedy, for a file that is none.
Corridor DecodeCorridor(std::span<const std::byte> file, const std::string& path);

}  // namespace vantor
