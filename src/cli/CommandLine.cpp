#include "cli/CommandLine.h"

#include <algorithm>
#include <new>
#include <ostream>

#include "cli/Commands.h"
#include "cli/PrintableStream.h"
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

int ShowEach(CommandContext& context, const std::vector<std::string>& paths,
             const std::function<int(CommandContext&, const std::string& path)>& show) {
    if (paths.size() == 1) return show(context, paths.front());
    Json all = Json::array();
    int worst = Done;
    for (const std::string& path : paths) {
        Json shown;
        context.Collected = context.AsJson ? &shown : nullptr;
        try {
            worst = std::max(worst, show(context, path));
        } catch (const RunTimeError& error) {
            context.Err << error.Message() << '\n';
            worst = std::max<int>(worst, Failed);
        }
        context.Collected = nullptr;
        all.push_back(std::move(shown));
        if (!context.AsJson) context.Out << '\n';
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

/// What the library's message does not say: the word that nothing is known of.
void NameWrongWord(const CLI::App& program, std::ostream& err) {
    const std::vector<std::string> unknown = program.remaining(true);
    if (!unknown.empty()) err << "\"" << unknown.front() << "\" is not known here.\n";
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
    CommandContext context{{},           ports.Files,     messages, desktop, ports.Time, ports.Databases,
                           ports.Sheets, ports.Documents, end,      out,     err};
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
    AddStudyCommands(program, chosen);
    AddJsonFlag(program, context.AsJson);

    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        program.parse(std::move(reversed));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0) NameWrongWord(program, err);
        return AfterWriting(program.exit(error, out, err) == 0 ? Done : WrongUsage, out, err);
    }
    try {
        LoadSettings(context.State, ports.Files);
        return AfterWriting(chosen(context), out, err);
    } catch (const RunTimeError& error) {
        err << error.Message() << '\n';
        return Failed;
    } catch (const std::bad_alloc&) {
        err << OutOfMemoryError().Message() << '\n';
        return Failed;
    } catch (const CommandEnded&) {
        return FatalFormat;
    } catch (const std::exception& error) {
        err << "The command was abandoned: " << error.what() << '\n';
        return Failed;
    }
}

}  // namespace vantor
