#include "cli/CommandLine.h"

#include <algorithm>
#include <new>
#include <ostream>

#include "cli/Commands.h"
#include "cli/PrintableStream.h"
#include "cli/StandardInput.h"
#include "core/RunTimeError.h"
#include "core/Settings.h"
#include "core/Text.h"

namespace vantor {
namespace {

/// Messages of a program without a window: lines on standard error. Questions are answered with yes: who gave the
/// command has decided.
class PrintedMessages : public MessageBoxes {
public:
    explicit PrintedMessages(std::ostream& err) : err_(err) {}
    MessageAnswer Ask(const Prompt& prompt) override {
        err_ << prompt.Text << '\n';
        return prompt.Buttons == MessageButtons::YesNo ? MessageAnswer::Yes : MessageAnswer::Ok;
    }

private:
    std::ostream& err_;
};

class NoDesktop : public Desktop {
public:
    void Beep() override {}
    void OpenWebPage(const std::string&) override {}
    void ViewText(const std::string&) override {}
    void OpenHelp(const std::string&, int) override {}
    std::string DocumentsFolder() const override { return {}; }
    std::string ChooseFolder(const std::string&) override { return {}; }
    std::string ChooseFileToSave(const std::string&, const std::string&, const std::vector<FileKind>&) override {
        return {};
    }
    std::string ChooseFileToOpen(const std::string&, const std::string&, const std::string&,
                                 const std::vector<std::string>&) override {
        return {};
    }
    std::vector<std::string> ChooseFilesToOpen(const std::string&, const std::string&, const std::string&,
                                               const std::vector<std::string>&) override {
        return {};
    }
    void CopyText(const std::string&) override {}
    void CopyPicture(const std::vector<std::byte>&) override {}
    bool Print(const PagedDocument&) override { return false; }
};

struct CommandEnded {};

class PrintedEnd : public ApplicationEnd {
public:
    explicit PrintedEnd(std::ostream& err) : err_(err) {}
    [[noreturn]] void EndAtOnce(const FatalFormatFault& fault) override {
        err_ << fault.File << ": record " << fault.Record << ": expected " << fault.Expected << '\n';
        throw CommandEnded{};
    }

private:
    std::ostream& err_;
};

}  // namespace

CLI::App& AddCommand(CLI::App& parent, CommandAction& chosen, const std::string& name, const std::string& description,
                     CommandAction action) {
    CLI::App* command = parent.add_subcommand(name, description);
    command->fallthrough();
    command->callback([&chosen, action = std::move(action)] { chosen = action; });
    return *command;
}

const CLI::Validator& WholeNumber() {
    static const CLI::Validator validator(
        [](std::string& text) -> std::string {
            const std::size_t sign = !text.empty() && (text.front() == '-' || text.front() == '+') ? 1 : 0;
            const bool isNumber = text.size() > sign &&
                                  std::all_of(text.begin() + static_cast<std::ptrdiff_t>(sign), text.end(), IsDigit);
            if (!isNumber) return "\"" + text + "\" is no whole decimal number";
            // The library takes leading zeros for an octal number.
            const std::size_t first = std::min(text.find_first_not_of('0', sign), text.size() - 1);
            text = (text.front() == '-' ? "-" : "") + text.substr(first);
            return {};
        },
        std::string());
    return validator;
}

namespace {

/// What a command's error says, and its exit status.
int StatusOf(std::ostream& err, const std::function<int()>& command) {
    try {
        return command();
    } catch (const RunTimeError& error) {
        err << error.Message() << '\n';
    } catch (const std::bad_alloc&) {
        err << OutOfMemoryError().Message() << '\n';
    } catch (const CommandEnded&) {
        return FatalFormat;
    } catch (const std::exception& error) {
        err << "The command was abandoned: " << error.what() << '\n';
    }
    return Failed;
}

}  // namespace

int DoEach(CommandContext& context, const std::vector<std::string>& paths, const FileAction& action,
           std::string_view inputExtension) {
    const auto pathOf = [&](const std::string& path) {
        return path == StandardStream && !inputExtension.empty() ? StandardInputPath(inputExtension) : path;
    };
    if (paths.size() == 1) return action(context, pathOf(paths.front()));
    const ApplicationState before = context.State;
    Json all = Json::array();
    int worst = Done;
    for (const std::string& path : paths) {
        Json result;
        context.State = before;
        context.Collected = &result;
        worst = std::max(worst, StatusOf(context.Err, [&] { return action(context, pathOf(path)); }));
        context.Collected = nullptr;
        if (worst == Stopped) return worst;
        if (!context.AsJson && !result.is_null()) {
            context.Out << Printable(path) << ":\n";
            context.Print(result);
            context.Out << '\n';
        }
        all.push_back(std::move(result));
    }
    if (context.AsJson) context.Print(all);
    return worst;
}

namespace {

/// In every command's help.
void AddJsonFlag(CLI::App& app, bool& asJson) {
    app.add_flag("--json", asJson, "Print the result as one JSON value");
    for (CLI::App* command : app.get_subcommands([](const CLI::App* sub) { return !sub->get_name().empty(); }))
        AddJsonFlag(*command, asJson);
}

/// The command that the words name as far as they are known.
const CLI::App& NamedCommand(const CLI::App& program) {
    const CLI::App* command = &program;
    while (!command->get_subcommands().empty()) command = command->get_subcommands().front();
    return *command;
}

/// What can follow the words that are known: commands, or the options of one.
std::string WordsKnown(const CLI::App& command) {
    std::vector<std::string> words;
    for (const CLI::App* sub : command.get_subcommands([](const CLI::App* app) { return !app->get_name().empty(); }))
        words.push_back(sub->get_name());
    if (!words.empty()) return "Choose one of: " + Joined(words, ", ") + ".";
    for (const CLI::Option* option :
         command.get_options([](const CLI::Option* each) { return !each->get_positional(); }))
        words.push_back(option->get_name());
    return "Its options are: " + Joined(words, ", ") + ".";
}

/// Says what is wrong with the words of a command, and which word. The library names wrong values alone.
void TellWrongUsage(const CLI::App& program, const CLI::ParseError& error, std::ostream& err) {
    const std::vector<std::string> unknown = program.remaining(true);
    const CLI::App& command = NamedCommand(program);
    const bool hasCommands = !command.get_subcommands([](const CLI::App*) { return true; }).empty();
    const bool isLacking = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::RequiredError);
    const bool isLeftOver = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError);
    if (!unknown.empty() && unknown.front() == "--theme") {
        err << "--theme opens the window light or dark: \"vantor [STUDY.ld2] --theme dark\".\n";
    } else if (!unknown.empty() && (isLacking || isLeftOver)) {
        err << "\"" << unknown.front() << "\" is not known here. ";
        err << (hasCommands || unknown.front().starts_with('-') ? WordsKnown(command)
                                                                : "A name with blanks needs quotes.")
            << '\n';
    } else if (isLacking && hasCommands) {
        err << "A command is missing. " << WordsKnown(command) << '\n';
    } else {
        err << error.what() << '\n';
    }
    err << "Run with --help for more information.\n";
}

/// A result that nobody gets is none.
int AfterWriting(int status, std::ostream& out, std::ostream& err) {
    if (out.flush()) return status;
    err << "The output could not be written. Check where it goes and whether there is room.\n";
    return status == Done ? Failed : status;
}

}  // namespace

int RunCommandLine(const std::vector<std::string>& arguments, const CommandPorts& ports, std::ostream& out,
                   std::ostream& rawErr) {
    PrintableBuffer printable(rawErr);
    std::ostream err(&printable);
    PrintedMessages messages(err);
    NoDesktop desktop;
    PrintedEnd end(err);
    FilesAndInput files(ports.Files, ports.In);
    CommandContext context{{},
                           files,
                           messages,
                           desktop,
                           ports.Time,
                           ports.Databases,
                           ports.Sheets,
                           ports.Documents,
                           ports.OtherPrograms,
                           ports.Tiles,
                           end,
                           out,
                           err};
    context.Work = ports.Work;

    CLI::App program(
        "Vantor: delay and level of service from instrumented runs.\n"
        "\"vantor [STUDY.ld2] [--theme light|dark]\" opens the window.",
        "vantor");
    program.set_version_flag("--version", std::string("Vantor ") + VANTOR_VERSION);
    program.require_subcommand(1);
    CommandAction chosen;
    AddSettingsCommands(program, chosen);
    AddRunCommands(program, chosen);
    AddCounterCommands(program, chosen);
    AddLogCommands(program, chosen);
    AddTrackCommands(program, chosen);
    AddCorridorCommands(program, chosen);
    AddStudyCommands(program, chosen);
    AddJsonFlag(program, context.AsJson);

    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        program.parse(std::move(reversed));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return AfterWriting((program.exit(error, out, err), Done), out, err);
        TellWrongUsage(program, error, err);
        return AfterWriting(WrongUsage, out, err);
    }
    return StatusOf(err, [&] {
        LoadSettings(context.State, ports.Files);
        return AfterWriting(chosen(context), out, err);
    });
}

}  // namespace vantor
