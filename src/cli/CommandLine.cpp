#include "cli/CommandLine.h"

#include <algorithm>
#include <new>
#include <ostream>

#include "cli/Commands.h"
#include "cli/PrintableStream.h"
#include "core/RunTimeError.h"
#include "core/Settings.h"

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

int RunCommandLine(const std::vector<std::string>& arguments, const CommandPorts& ports, std::ostream& out,
                   std::ostream& rawErr) {
    PrintableBuffer printable(rawErr);
    std::ostream err(&printable);
    PrintedMessages messages(err);
    NoDesktop desktop;
    PrintedEnd end(err);
    CommandContext context{{},           ports.Files,     messages, desktop, ports.Time, ports.Databases,
                           ports.Sheets, ports.Documents, end,      out,     err};
    context.Work = ports.Work;

    CLI::App program(
        "Vantor: delay and level of service from instrumented runs.\n"
        "\"vantor [STUDY.ld2] [--theme light|dark]\" opens the window.",
        "vantor");
    program.set_version_flag("--version", std::string("Vantor ") + VANTOR_VERSION);
    program.add_flag("--json", context.AsJson, "Print the result as one JSON value");
    program.require_subcommand(1);
    CommandAction chosen;
    AddSettingsCommands(program, chosen);
    AddRunCommands(program, chosen);
    AddCounterCommands(program, chosen);
    AddLogCommands(program, chosen);
    AddStudyCommands(program, chosen);

    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        program.parse(std::move(reversed));
    } catch (const CLI::ParseError& error) {
        return program.exit(error, out, err) == 0 ? Done : WrongUsage;
    }
    try {
        LoadSettings(context.State, ports.Files);
        return chosen(context);
    } catch (const RunTimeError& error) {
        err << error.Message() << '\n';
        return Failed;
    } catch (const std::bad_alloc&) {
        err << OutOfMemoryError().Message() << '\n';
        return Failed;
    } catch (const CommandEnded&) {
        return FatalFormat;
    }
}

}  // namespace vantor
