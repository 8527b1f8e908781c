#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "core/StudyRecords.h"

namespace vantor {

/// A study as the bytes of its file: the record, then entries 1 to RunCount.
std::vector<std::byte> EncodeStudy(const Study& study);

/// The study of a file's bytes, whose RunCount is 0 or more. Missing bytes at the end read as zero.
Study DecodeStudy(std::span<const std::byte> file);

/// The bytes of the name of entry `index` (from 1), no more than a run file's name has.
std::span<const std::byte> StoredRunName(std::span<const std::byte> file, int index);

}  // namespace vantor
