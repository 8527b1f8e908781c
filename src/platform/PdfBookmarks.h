#pragma once

#include <cstddef>
#include <vector>

#include "core/ports/DocumentWriter.h"

namespace vantor {

/// A PDF file with bookmarks that lead to its pages, shown beside them when it is opened. Those of pages that it has
/// not are left out.
std::vector<std::byte> WithBookmarks(const std::vector<std::byte>& pdf, const std::vector<Bookmark>& bookmarks);

}  // namespace vantor
