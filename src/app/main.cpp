#include <QApplication>
#include <QTimer>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <optional>

#include "app/AppScreens.h"
#include "app/BlockedWatch.h"
#include "app/EndSignals.h"
#include "app/MemoryReserve.h"
#include "cli/CommandContext.h"
#include "cli/CommandLine.h"
#include "core/Paths.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/Job.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/modMain.h"
#include "platform/DecodePicture.h"
#include "platform/DiskFileSystem.h"
#include "platform/MbTiles.h"
#include "platform/MdbDatabase.h"
#include "platform/MountedDevice.h"
#include "platform/NativeFile.h"
#include "platform/QtDesktop.h"
#include "platform/QtDocumentWriter.h"
#include "platform/QtMessageBoxes.h"
#include "platform/QtPrograms.h"
#include "platform/QtSerialPort.h"
#include "platform/QtWindowMemory.h"
#include "platform/SpreadsheetWriter.h"
#include "platform/SystemClock.h"
#include "platform/TerminalProgress.h"
#include "workspace/StudyGroups.h"
#include "workspace/forms/frmMain.h"

namespace vantor {
namespace {

/// What the window is started with: a study to open and a theme, both optional.
struct WindowArguments {
    std::string StudyPath;
    std::optional<ThemeChoice> Theme;
};

/// Nothing when the arguments are a command.
std::optional<WindowArguments> ReadWindowArguments(const std::vector<std::string>& arguments) {
    WindowArguments window;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (HasExtension(arguments[i], StudyExtension)) {
            window.StudyPath = arguments[i];
        } else if (arguments[i] == "--theme" && i + 1 < arguments.size()) {
            const std::string& theme = arguments[++i];
            const bool isDark = EqualIgnoringCase(theme, "dark");
            if (!isDark && !EqualIgnoringCase(theme, "light")) return std::nullopt;
            window.Theme = isDark ? ThemeChoice::Dark : ThemeChoice::Light;
        } else {
            return std::nullopt;
        }
    }
    return window;
}

bool HasDisplay() {
#ifdef __linux__
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (const char* value = std::getenv(name); value != nullptr && *value != '\0') return true;
    return false;
#else
    return true;
#endif
}

/// Lost data and files that cannot be counter files end the window at once, without a message; unsaved changes and what
/// the next start needs are kept.
class WindowEnd : public ApplicationEnd {
public:
    std::function<void(const FatalFormatFault&)> BeforeEnd;
    [[noreturn]] void EndAtOnce(const FatalFormatFault& fault) override {
        if (BeforeEnd) BeforeEnd(fault);
        std::_Exit(3);
    }
};

/// What programs that were killed have left in the folders of this one.
void RemoveOldLeftovers(Job& cleaning, const ApplicationState& state) {
    cleaning.Begin([paths = state.Paths](FileSystem& files, const Progress& progress) {
        std::vector<std::string> folders = {paths.TempRunsPath, paths.FieldDataPath, paths.StudyGroupRootPath,
                                            paths.LastStudyGroupPath};
        for (const std::string& group : ListStudyGroups(files, paths.StudyGroupRootPath)) folders.push_back(group);
        RemoveExportFolders();
        for (std::size_t i = 0; i < folders.size() && progress(i, folders.size()); ++i)
            RemoveLeftovers(NativePath(folders[i]));
    });
}

/// What the program is started with again: the same arguments, with the study that is open in place of the first one.
std::vector<std::string> ArgumentsAgain(std::vector<std::string> arguments, const ApplicationState& state,
                                        const FileSystem& files) {
    std::erase_if(arguments, [](const std::string& word) { return HasExtension(word, StudyExtension); });
    const std::string study = StudyGroupFolder(state) + state.Paths.LastStudyName + StudyExtension;
    if (state.CurrentStudy.Record.RunCount > 0 && FileExists(files, study)) arguments.push_back(study);
    return arguments;
}

int RunWindow(QApplication& application, const WindowArguments& arguments, ApplicationState& state, FileSystem& files,
              Clock& clock, const DatabaseEngine& databases, const Spreadsheet& sheets, const DocumentWriter& documents,
              const Programs& programs, const TileFiles& tiles) {
    ApplyTheme(application, arguments.Theme.value_or(ThemeNamed(ChoiceOf(LoadUserChoices(files), ThemeKey))));
    QtMessageBoxes messages;
    QtDesktop desktop;
    WindowEnd end;
    QtWindowMemory memory(files.SettingsFolder());
    QtSerialPort serial;
    const auto device = MakeRemoteApi(files);
    AppScreens screens;
    const auto makeFiles = [] { return std::make_unique<DiskFileSystem>(ExecutableFolder()); };
    Job work(messages, makeFiles);
    AppContext context{state,  files,   messages,  screens, desktop,   clock,    end,  memory,
                       serial, *device, databases, sheets,  documents, programs, work, tiles};
    screens.Use(context);

    frmMain window(context);
    end.BeforeEnd = [&window](const FatalFormatFault& fault) { window.KeepBeforeEnd(fault); };
    const auto keepChanges = [&window] { window.KeepChanges(); };
    QObject::connect(
        &application, &QGuiApplication::commitDataRequest, &window, [&window] { window.KeepForEndOfSession(); },
        Qt::DirectConnection);
    const EndSignals endSignals([&](int number) {
        keepChanges();
        work.StopAll();
        std::_Exit(128 + number);
    });
#ifndef NDEBUG
    const BlockedWatch watch;
#endif
    window.show();
    Job cleaning(messages, makeFiles);
    QTimer::singleShot(0, &window, [&] { window.Start(arguments.StudyPath); });
    // By then the settings are loaded, whatever the start asks the user.
    QTimer::singleShot(std::chrono::seconds(1), &window, [&] { RemoveOldLeftovers(cleaning, state); });
    return QApplication::exec();
}

}  // namespace
}  // namespace vantor

int main(int argc, char** argv) {
    const vantor::MemoryReserve reserve;
    vantor::DiskFileSystem files(vantor::ExecutableFolder());
    vantor::SystemClock clock;
    vantor::MdbDatabase databases(files);
    vantor::SpreadsheetWriter sheets;
    vantor::QtDocumentWriter documents;
    const vantor::QtPrograms programs;
    const vantor::MbTiles tiles(vantor::DecodePicture);
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const auto window = vantor::ReadWindowArguments(arguments);
    if (!window) {
        const int status = vantor::RunCommandLine(
            arguments,
            {files, clock, databases, sheets, documents, programs, tiles, vantor::TerminalProgress(), &std::cin},
            std::cout, std::cerr);
        return status == vantor::Stopped ? status + vantor::StoppingSignal() : status;
    }
    if (!vantor::HasDisplay()) {
        std::cerr << "There is no display for the window. \"vantor --help\" lists the commands that need none.\n";
        return 1;
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vantor"));
    QApplication::setDesktopFileName(QStringLiteral("vantor"));
    vantor::ApplicationState state;
    const int status =
        vantor::RunWindow(application, *window, state, files, clock, databases, sheets, documents, programs, tiles);
    if (state.RestartWanted) vantor::StartProgramAgain(vantor::ArgumentsAgain(arguments, state, files));
    return status;
}
