#pragma once

#include <string>

#include "core/ApplicationState.h"
#include "core/RunFile.h"

namespace vantor {

/// Reads run `name` of the Study Group with its samples and makes it the current run. One that cannot be read leaves
/// the current run as it was. The outcome is that of ReadRun; the run itself is in the state.
RunReading ReadCurrentRun(ApplicationState& state, const FileSystem& files, const std::string& name);

}  // namespace vantor
