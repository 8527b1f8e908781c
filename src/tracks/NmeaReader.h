#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/Progress.h"
#include "core/ports/FileSystem.h"
#include "tracks/TrackPoint.h"

namespace vantor {

// NMEA 0183: sentences RMC, GGA, VTG and ZDA of any talker, whatever stands before their "$" in the line. Sentences of
// one time of day make one point. Other sentences are passed over.

/// True for a text whose first lines hold such a sentence.
bool LooksLikeNmea(std::string_view head, std::string_view name);

/// The points of a file. RMC and ZDA tell the day; until then it is `day` (days since 1970), and without it points have
/// no time. Where the time of day falls back by more than twelve hours and no sentence tells the day, the next one has
/// begun. Years 80 to 99 are 19xx. Error 13 for a file without any of these sentences.
TrackSummary ReadNmea(const FileSystem& files, const std::string& path, const TrackSink& sink,
                      const Progress& progress = {}, std::optional<std::int64_t> day = std::nullopt);

}  // namespace vantor
