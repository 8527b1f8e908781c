#include <memory>

#include "cli/Commands.h"
#include "core/Paths.h"
#include "counter/CounterCheck.h"
#include "counter/CounterFile.h"

namespace vantor {
namespace {

int ShowStudies(CommandContext& context, const std::string& path) {
    TakeApart(path, CounterFileExtension, "counter file");
    Json result = Json::array();
    for (const CounterStudy& study : CounterStudies(context.Files, path, context.End))
        result.push_back({{"Study", study.Study},
                          {"SiteCode", study.SiteCode},
                          {"Date", study.Date},
                          {"Time", study.Time},
                          {"Runs", study.Runs}});
    context.Print(result);
    return Done;
}

int CheckFile(CommandContext& context, const std::string& path) {
    TakeApart(path, CounterFileExtension, "counter file");
    const CounterCheck check = CheckCounterFile(context.Files, path);
    Json result = {{"runs", check.Runs}, {"fault", nullptr}};
    if (check.Fault) result["fault"] = {{"record", check.Fault->Record}, {"reason", check.Fault->Reason}};
    context.Print(result);
    return Done;
}

int ConvertFile(CommandContext& context, const std::string& path, const std::string& folder) {
    TakeApart(path, CounterFileExtension, "counter file");
    const auto names =
        ConvertCounterFile(context.Files, path, AsFolder(folder), context.State.CurrentRun, context.Work);
    if (names.empty() && !context.Work(1, 1)) return Stopped;
    context.Print(names);
    return Done;
}

}  // namespace

void AddCounterCommands(CLI::App& program, CommandAction& chosen) {
    CLI::App* group = program.add_subcommand("counter", "The dump of a traffic counter");
    group->fallthrough()->require_subcommand(1);

    auto paths = std::make_shared<std::vector<std::string>>();
    const char* const fileHelp = "Counter files (.tdc); - is standard input";
    auto folder = std::make_shared<std::string>();
    CLI::App& studies =
        AddCommand(*group, chosen, "studies", "The studies of a counter file",
                   [=](CommandContext& context) { return DoEach(context, *paths, ShowStudies, CounterFileExtension); });
    studies.add_option("FILE", *paths, fileHelp)->required();

    CLI::App& check =
        AddCommand(*group, chosen, "check", "The whole runs of a counter file, and what is hurt in it",
                   [=](CommandContext& context) { return DoEach(context, *paths, CheckFile, CounterFileExtension); });
    check.add_option("FILE", *paths, fileHelp)->required();

    CLI::App& convert =
        AddCommand(*group, chosen, "convert", "Make a run file of every record", [=](CommandContext& context) {
            const auto convertOne = [&](CommandContext& each, const std::string& path) {
                return ConvertFile(each, path, *folder);
            };
            return DoEach(context, *paths, convertOne, CounterFileExtension);
        });
    convert.add_option("FILE", *paths, fileHelp)->required();
    convert.add_option("--to", *folder, "The folder for the run files")->required();
}

}  // namespace vantor
