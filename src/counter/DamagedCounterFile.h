#pragma once

#include "core/AppContext.h"

namespace vantor {

/// Names the counter file that ended the program the last time and offers to set it aside or to go on with the whole
/// runs before its fault, which opens the upload screen. A file that is gone or sound by now is passed over; one that
/// the user leaves as it is is named again at the next start.
void OfferDamagedCounterFile(AppContext& context);

/// Checks a counter file that no list has read. What is hurt in it is told, with what can be done about it; false then,
/// and when the check was stopped.
bool IsWholeCounterFile(AppContext& context, const std::string& path);

}  // namespace vantor
