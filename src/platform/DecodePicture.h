#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "core/Pixels.h"

namespace vantor {

/// Decodes a PNG or JPEG picture of at most 1024 points in width and height; nothing where it is none. On any thread.
std::optional<Pixels> DecodePicture(std::span<const std::byte> file);

}  // namespace vantor
