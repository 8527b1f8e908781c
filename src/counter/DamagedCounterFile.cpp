#include "counter/DamagedCounterFile.h"

#include "core/DamagedFile.h"
#include "core/Paths.h"
#include "core/modMain.h"
#include "counter/CounterCheck.h"

namespace vantor {
namespace {

constexpr const char* SetAsideCaption = "&Set this file aside";
constexpr const char* LeaveCaption = "&Leave it";

std::string RunsText(int runs) {
    if (runs == 0) return "No whole run stands before it.";
    return runs == 1 ? "1 whole run stands before it." : std::to_string(runs) + " whole runs stand before it.";
}

Prompt QuestionOn(const std::string& path, const CounterCheck& check) {
    Prompt prompt;
    prompt.Icon = MessageIcon::Warning;
    prompt.Text = "A counter file ended the program: record " + std::to_string(check.Fault->Record) + " of\n" + path +
                  "\nis damaged. " + check.Fault->Reason + "\n" + RunsText(check.Runs) +
                  "\n\nSet aside, the file gets the name of a backup (.bak), which no list reads. ";
    if (check.Runs > 0) {
        prompt.Text += "Converting its whole runs does that, too, and puts a file of those runs in its place. ";
        prompt.Buttons = MessageButtons::YesNoCancel;
        prompt.Captions = {"&Convert the whole runs before it", SetAsideCaption, LeaveCaption};
    } else {
        prompt.Buttons = MessageButtons::YesNo;
        prompt.Captions = {SetAsideCaption, LeaveCaption};
    }
    prompt.Text += "Left as it is, it ends the program again when a list meets it.";
    return prompt;
}

void ConvertWholeRuns(AppContext& context, const std::string& path, const CounterCheck& check) {
    std::string aside;
    context.Work.Run(
        "Keeping the whole runs of counter file " + BaseName(path),
        [&](FileSystem& files, const Progress& progress) { aside = KeepWholeRuns(files, path, check, progress); });
    if (aside.empty()) return;
    context.State.Choices = ForgetDamagedFile(context.Files);
    // They lie in their Study Group, from where Add Run takes them.
    (void)context.OtherScreens.ShowUploadData(
        {UploadOf::CounterFile, CounterFileChoice{FolderOf(path), BaseName(path)}});
}

void OfferRemedies(AppContext& context, const std::string& path, const CounterCheck& check) {
    const MessageAnswer answer = context.Messages.Ask(QuestionOn(path, check));
    if (answer == MessageAnswer::Cancel || (check.Runs == 0 && answer == MessageAnswer::No)) return;
    if (check.Runs > 0 && answer == MessageAnswer::Yes) return ConvertWholeRuns(context, path, check);
    const std::string aside = SetAside(context.Files, path);
    context.State.Choices = ForgetDamagedFile(context.Files);
    context.Messages.Tell("The damaged counter file is now:\n" + aside);
}

}  // namespace

bool IsWholeCounterFile(AppContext& context, const std::string& path) {
    CounterCheck check;
    const bool isChecked = context.Work.Run(
        "Checking counter file " + BaseName(path),
        [&](FileSystem& files, const Progress& progress) { check = CheckCounterFile(files, path, progress); });
    if (isChecked && check.Fault) OfferRemedies(context, path, check);
    return isChecked && !check.Fault;
}

void OfferDamagedCounterFile(AppContext& context) {
    const auto fault = NotedDamagedFile(context.State.Choices);
    if (!fault) return;
    if (fault->Record != 0 && FileExists(context.Files, fault->File)) {
        if (IsWholeCounterFile(context, fault->File)) context.State.Choices = ForgetDamagedFile(context.Files);
        return;
    }
    context.State.Choices = ForgetDamagedFile(context.Files);
    if (fault->Record == 0)
        context.Messages.Tell("Characters were lost on the serial line, which ended the program. This dump is gone:\n" +
                                  fault->File + "\nDump the counter again.",
                              MessageIcon::Warning);
}

}  // namespace vantor
