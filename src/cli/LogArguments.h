#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "cli/CommandContext.h"
#include "core/LoggerChoices.h"
#include "gpsobd/LogFormat.h"
#include "gpsobd/PalmDatabase.h"
#include "gpsobd/TrackChoices.h"

namespace vantor {

/// What the command line says of a log.
struct LogArguments {
    std::string Path;
    bool HasSignedCoordinates = false;
    // Of tracks, which know neither zones nor runs.
    std::string TimeZone = {};
    std::optional<std::int32_t> CutSeconds = {};
};

/// The ways to read a log, for the length of a command.
struct CommandSources {
    CommandSources(const CommandContext& context, const LogArguments& arguments)
        : Palm(context.Files),
          All{context.Files,
              context.Databases,
              Palm,
              context.Time,
              arguments.HasSignedCoordinates || HasSignedCoordinates(context.State.Choices),
              TrackSourcesOf(context.State.Choices, context.OtherPrograms)} {
        if (!arguments.TimeZone.empty()) All.Tracks.Zone = arguments.TimeZone;
        if (arguments.CutSeconds) All.Tracks.Cuts.GapSeconds = *arguments.CutSeconds;
    }

    PalmDatabase Palm;
    LogSources All;
};

}  // namespace vantor
