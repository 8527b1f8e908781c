#pragma once

#include <string>

#include "core/UserChoices.h"
#include "gpsobd/LogFormat.h"

namespace vantor {

// How the user's tracks are read, as it was chosen last.

inline constexpr const char* TrackZoneKey = "track-zone";  ///< empty: the computer's own
inline constexpr const char* TrackGapKey = "track-gap";    ///< seconds, empty as TrackCuts has it

/// The longest time between two points of one run, seconds.
double TrackGapOf(const UserChoices& choices);
/// Copies the choices; the programs must outlive it.
TrackSources TrackSourcesOf(const UserChoices& choices, const Programs& programs);

/// The choice that keeps how the columns of CSV files with this head are read.
UserChoices KeptMapping(const std::string& head, const CsvMapping& mapping);

}  // namespace vantor
