#include "cli/RunExports.h"

#include "cli/Commands.h"
#include "cli/StandardInput.h"

namespace vantor {

int PutRuns(CommandContext& context, const std::vector<ExportedRun>& runs, const ExportArguments& arguments) {
    const auto form =
        arguments.Output == StandardStream ? std::optional(ExportForm::Csv) : ExportFormOf(arguments.Output);
    if (!context.TakesOutput(arguments.Output, form.has_value(),
                             "Samples are written as a .gpx, .geojson or .csv file."))
        return WrongUsage;
    if (runs.empty()) {
        context.Err << arguments.Output << "\nThere is no run to write. Nothing was written.\n";
        return Failed;
    }
    const std::string zone = arguments.TimeZone.empty() ? context.Time.OwnZone() : arguments.TimeZone;
    const auto bytes = ExportBytes(*form, runs, TrackTimes(context.Time, zone), context.State.Settings);
    std::size_t seconds = 0;
    for (const ExportedRun& run : runs) {
        seconds += form == ExportForm::Csv ? run.Seconds.size() : run.Positions();
        const std::string leftOut = form == ExportForm::Csv ? "" : LeftOutText(run);
        if (!leftOut.empty()) context.Err << leftOut << "\n";
    }
    context.PutOutput(arguments.Output, bytes, {{"runs", runs.size()}, {"seconds", seconds}});
    return Done;
}

}  // namespace vantor
