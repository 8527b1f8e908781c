#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/StudyRecords.h"

namespace vantor {

/// Extension of the file beside a study that keeps what the study file has no room for: how the figures of its runs
/// came about, and how its statistics are made. A missing one means that nothing is known and all is as usual.
inline constexpr const char* CompanionExtension = ".study.json";

/// The companion of a study as the bytes of its file. Members of later versions are carried through.
std::vector<std::byte> EncodeCompanion(const Study& study);

/// Takes what the companion tells of a study over into it. False for a file that is no companion: nothing is known
/// then.
[[nodiscard]] bool DecodeCompanion(std::span<const std::byte> file, Study& study);

/// True when there is something to keep.
bool NeedsCompanion(const Study& study);

/// A study with all that is known of it in one file: the bytes of the study file, then the companion's, which also
/// tells the file that the study was read from.
std::vector<std::byte> EncodeWholeStudy(const Study& study);
/// Nothing for a file that is damaged. One of an earlier version ends with the study file's bytes.
std::optional<Study> DecodeWholeStudy(std::span<const std::byte> file);

}  // namespace vantor
