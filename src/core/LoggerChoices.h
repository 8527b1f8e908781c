#pragma once

#include "core/UserChoices.h"

namespace vantor {

/// Whether the user's loggers write the signs of positions: these stay as read then. Not taken at first: longitudes are
/// taken for western ones.
inline constexpr const char* SignedCoordinatesKey = "SignedCoordinates";
inline bool HasSignedCoordinates(const UserChoices& choices) { return IsTaken(choices, SignedCoordinatesKey); }

}  // namespace vantor
