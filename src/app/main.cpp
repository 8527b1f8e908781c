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
#include "cli/CommandContext.h"
#include "cli/CommandLine.h"
#include "core/Paths.h"
#include "core/forms/Job.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "platform/DiskFileSystem.h"
#include "platform/MdbDatabase.h"
#include "platform/MountedDevice.h"
#include "platform/NativeFile.h"
#include "platform/QtDesktop.h"
#include "platform/QtDocumentWriter.h"
#include "platform/QtMessageBoxes.h"
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
    ThemeChoice Theme = ThemeChoice::Desktop;
};

/// Nothing when the arguments are a command.
std::optional<WindowArguments> ReadWindowArguments(const std::vector<std::string>& arguments) {
    WindowArguments window;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (HasExtension(arguments[i], StudyExtension)) {
            window.StudyPath = arguments[i];
        } else if (arguments[i] == "--theme" && i + 1 < arguments.size()) {
            const std::string& theme = arguments[++i];
            if (theme != "light" && theme != "dark") return std::nullopt;
            window.Theme = theme == "dark" ? ThemeChoice::Dark : ThemeChoice::Light;
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

/// Lost data and files that cannot be counter files end the window at once, without a message; unsaved changes are
/// kept.
class WindowEnd : public ApplicationEnd {
public:
    std::function<void()> BeforeEnd;
    [[noreturn]] void EndAtOnce(const FatalFormatFault&) override {
        if (BeforeEnd) BeforeEnd();
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

int RunWindow(QApplication& application, const WindowArguments& arguments, FileSystem& files, Clock& clock,
              const DatabaseEngine& databases, const Spreadsheet& sheets, const DocumentWriter& documents) {
    ApplyTheme(application, arguments.Theme);
    ApplicationState state;
    QtMessageBoxes messages;
    QtDesktop desktop;
    WindowEnd end;
    QtWindowMemory memory(files.SettingsFolder());
    QtSerialPort serial;
    const auto device = MakeRemoteApi(files);
    AppScreens screens;
    const auto makeFiles = [] { return std::make_unique<DiskFileSystem>(ExecutableFolder()); };
    Job work(messages, makeFiles);
    AppContext context{state,  files,  messages, screens,   desktop, clock,     end,
                       memory, serial, *device,  databases, sheets,  documents, work};
    screens.Use(context);

    frmMain window(context);
    const auto keepChanges = [&window] { window.KeepChanges(); };
    end.BeforeEnd = keepChanges;
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &window, keepChanges, Qt::DirectConnection);
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
    vantor::DiskFileSystem files(vantor::ExecutableFolder());
    vantor::SystemClock clock;
    vantor::MdbDatabase databases(files);
    vantor::SpreadsheetWriter sheets;
    vantor::QtDocumentWriter documents;
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const auto window = vantor::ReadWindowArguments(arguments);
    if (!window) {
        const int status = vantor::RunCommandLine(
            arguments, {files, clock, databases, sheets, documents, vantor::TerminalProgress()}, std::cout, std::cerr);
        return status == vantor::Stopped ? status + vantor::StoppingSignal() : status;
    }
    if (!vantor::HasDisplay()) {
        std::cerr << "There is no display for the window. \"vantor --help\" lists the commands that need none.\n";
        return 1;
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vantor"));
    QApplication::setDesktopFileName(QStringLiteral("vantor"));
    return vantor::RunWindow(application, *window, files, clock, databases, sheets, documents);
}
