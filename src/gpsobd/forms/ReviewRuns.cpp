#include "gpsobd/forms/ReviewRuns.h"

#include <algorithm>
#include <optional>
#include <string>

#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "gpsobd/LogRuns.h"

namespace vantor {
namespace {

bool MayGoOn(MessageBoxes& messages, const std::vector<std::string>& tooLong, std::size_t runs) {
    std::string text;
    for (const std::string& line : tooLong) text += line + "\n";
    if (runs == 0) {
        text += tooLong.empty() ? "There is no run to make: no row has a run number of 1 or more."
                                : "Delete the rows whose times are wrong.";
        messages.Tell(text, MessageIcon::Warning);
        return false;
    }
    return tooLong.empty() || messages.Confirm(text + "Do you want to make the other runs, without what is too long?");
}

/// Nothing where the user wants to stay.
std::optional<MadeBefore> AskAboutRunsMadeBefore(AppContext& context, const FieldLog& edited) {
    const std::string& folder = context.State.Paths.TempRunsPath;
    const std::vector<std::string> there = RunsMadeBefore(context.Files, edited, folder);
    if (there.empty()) return MadeBefore::Kept;
    constexpr std::size_t mostNames = 5;
    std::string names;
    for (std::size_t i = 0; i < std::min(there.size(), mostNames); ++i) names += (i == 0 ? "" : ", ") + there[i];
    if (there.size() > mostNames) names += " and " + std::to_string(there.size() - mostNames) + " more";
    const MessageAnswer answer = context.Messages.Ask(
        {"These runs are in Temp already: " + names +
             ".\n\nDo you want to replace them?\nYes keeps the old files as .bak. No keeps both, the "
             "new ones with a number behind the name.\n\n" +
             AsFolder(folder),
         MessageButtons::YesNoCancel, MessageIcon::Question});
    if (answer == MessageAnswer::Cancel) return std::nullopt;
    return answer == MessageAnswer::Yes ? MadeBefore::Replaced : MadeBefore::Kept;
}

void WriteLogBack(AppContext& context, const FieldLog& edited, std::size_t runs) {
    MessageAnswer answer = MessageAnswer::Retry;
    while (answer == MessageAnswer::Retry) {
        std::string problem;
        try {
            context.Work.Run("Writing log " + edited.Name,
                             [&](FileSystem& files, const Progress&) { WriteFieldLog(files, edited); });
            return;
        } catch (const RunTimeError& error) {
            problem = error.Message();
        }
        answer = context.Messages.Ask({"The runs were made (" + std::to_string(runs) + ", in " +
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

bool WriteReview(AppContext& context, const FieldLog& edited, const std::vector<LogGap>& gaps) {
    const std::vector<std::string> tooLong = RunsTooLong(edited);
    const std::size_t runs = PointsOfRuns(edited).size() - tooLong.size();
    if (!MayGoOn(context.Messages, tooLong, runs)) return false;
    const std::optional<MadeBefore> before = AskAboutRunsMadeBefore(context, edited);
    if (!before) return false;
    const auto make = [&, settings = context.State.Settings, folder = context.State.Paths.TempRunsPath](
                          FileSystem& files, const Progress& progress) {
        WriteLogRuns(files, edited, gaps, folder, settings, *before, progress);
    };
    try {
        if (!context.Work.Run("Making the runs of log " + edited.Name, make)) return false;
    } catch (const RunTimeError& error) {
        // Runs that are left out end in this error when the others are written; that was agreed to.
        if (tooLong.empty() || error.Number() != ErrorNumber::Overflow) throw;
    }
    WriteLogBack(context, edited, runs);
    return true;
}

}  // namespace vantor
