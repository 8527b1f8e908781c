#include "gpsobd/forms/ReviewRuns.h"

#include <optional>
#include <string>

#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "gpsobd/LogRuns.h"

namespace vantor {
namespace {

/// What is to be written, and what is asked about before.
struct ReviewedRuns {
    FieldLog Log;
    RunsOfLog Runs;
    std::vector<LogGap> Gaps;
    std::vector<std::string> TooLong;
    std::size_t Count = 0;  ///< without those that are too long
    NamesOfRuns MadeBefore;
};

ReviewedRuns ReviewedRunsOf(const ReviewGrid& grid, const FileSystem& files, const std::string& folder) {
    ReviewedRuns runs{grid.Edited(), {}, grid.Gaps(), {}, 0, {}};
    runs.Runs = RunsOf(runs.Log);
    runs.TooLong = RunsTooLong(runs.Runs);
    runs.Count = RunsAmong(runs.Runs.Points).size() - runs.TooLong.size();
    runs.MadeBefore = RunsMadeBefore(files, runs.Runs, folder);
    return runs;
}

bool MayGoOn(MessageBoxes& messages, const ReviewedRuns& runs) {
    std::string text;
    for (const std::string& line : runs.TooLong) text += line + "\n";
    if (runs.Count == 0) {
        text += runs.TooLong.empty() ? "There is no run to make: no row has a run number of 1 or more."
                                     : "Delete the rows whose times are wrong.";
        messages.Tell(text, MessageIcon::Warning);
        return false;
    }
    return runs.TooLong.empty() ||
           messages.Confirm(text + "Do you want to make the other runs, without what is too long?");
}

/// The run files to be replaced. Nothing where the user wants to stay.
std::optional<NamesOfRuns> AskAboutRunsMadeBefore(AppContext& context, const NamesOfRuns& there) {
    if (there.empty()) return there;
    constexpr std::size_t mostNames = 5;
    std::vector<std::string> names;
    for (const auto& [number, name] : there) names.push_back(name);
    const MessageAnswer answer = context.Messages.Ask(
        {"These runs are in Temp already: " + FirstOf(names, mostNames) +
             ".\n\nDo you want to replace them?\nYes keeps the old files as .bak. No keeps both, the "
             "new ones with a number behind the name.\n\n" +
             AsFolder(context.State.Paths.TempRunsPath),
         MessageButtons::YesNoCancel, MessageIcon::Question});
    if (answer == MessageAnswer::Cancel) return std::nullopt;
    return answer == MessageAnswer::Yes ? there : NamesOfRuns();
}

void WriteLogBack(AppContext& context, const ReviewedRuns& runs) {
    MessageAnswer answer = MessageAnswer::Retry;
    while (answer == MessageAnswer::Retry) {
        bool isWritten = false;
        std::string problem = "The writing was stopped.";
        try {
            context.Work.Run("Writing log " + runs.Log.Name, [&](FileSystem& files, const Progress& progress) {
                isWritten = WriteFieldLog(files, runs.Log, progress);
            });
        } catch (const RunTimeError& error) {
            problem = error.Message();
        }
        if (isWritten) return;
        answer = context.Messages.Ask({"The runs were made (" + std::to_string(runs.Count) + ", in " +
                                           AsFolder(context.State.Paths.TempRunsPath) +
                                           "), but the reviewed log could not be written back. It stands as it was "
                                           "before the review.\n\n" +
                                           problem +
                                           "\n\nChoose Retry to write the log again, or Cancel to go on with the "
                                           "runs alone.",
                                       MessageButtons::RetryCancel, MessageIcon::Warning});
    }
}

}  // namespace

bool WriteReview(AppContext& context, const ReviewGrid& grid) {
    const std::string& folder = context.State.Paths.TempRunsPath;
    ReviewedRuns runs;
    const bool isWhole = context.Work.Run(
        "Looking at the runs of the log",
        [&, folder](FileSystem& files, const Progress&) { runs = ReviewedRunsOf(grid, files, folder); });
    if (!isWhole || !MayGoOn(context.Messages, runs)) return false;
    const std::optional<NamesOfRuns> replaced = AskAboutRunsMadeBefore(context, runs.MadeBefore);
    if (!replaced) return false;
    std::optional<LogRunsWritten> made;
    context.Work.Run("Making the runs of log " + runs.Log.Name,
                     [&, settings = context.State.Settings, folder](FileSystem& files, const Progress& progress) {
                         made = WriteLogRuns(files, runs.Runs, runs.Gaps, folder, settings, *replaced, progress);
                     });
    if (!made) return false;
    WriteLogBack(context, runs);
    return true;
}

}  // namespace vantor
