#pragma once

#include "core/ports/WindowMemory.h"

namespace vantor {

/// Whether the user's loggers write the signs of positions: these stay as read then. Off at first: longitudes are taken
/// for western ones.
inline constexpr const char* SignedCoordinatesKey = "Loggers/SignedCoordinates";
inline bool HasSignedCoordinates(const WindowMemory& memory) { return memory.Recall(SignedCoordinatesKey) == "yes"; }
inline void StoreSignedCoordinates(WindowMemory& memory, bool isSigned) {
    if (isSigned != HasSignedCoordinates(memory)) memory.Store(SignedCoordinatesKey, isSigned ? "yes" : "");
}

}  // namespace vantor
