#pragma once

#include "core/AppContext.h"
#include "gpsobd/ReviewGrid.h"

namespace vantor {

/// Makes runs of a reviewed log in the folder of temporary runs, its gaps filled as the grid says, and writes the log
/// back. Asks before a run is left out that is too long and about runs that were made of the log before. False where
/// the user stays with the review; nothing is written then.
bool WriteReview(AppContext& context, const ReviewGrid& grid);

}  // namespace vantor
