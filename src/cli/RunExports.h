#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/CommandContext.h"
#include "tracks/RunExport.h"

namespace vantor {

/// What the command line says of an export of samples.
struct ExportArguments {
    std::string Output;    ///< a .gpx, .geojson or .csv file; "-" is CSV on standard output
    std::string TimeZone;  ///< of the runs' local times; this computer's where it is empty
};

/// Writes runs to the output in the form of its extension, and tells how many.
int PutRuns(CommandContext& context, const std::vector<ExportedRun>& runs, const ExportArguments& arguments);

inline constexpr const char* TimeZoneHelp = "The zone of the local times, \"Europe/Berlin\"; this computer's at first";

}  // namespace vantor
