// How long the window takes from the opening of a study until its list of runs is drawn, in turns with a plain loop
// that reads the headers of those runs.
//
//   open_study RUNS [ROUNDS]      prints one JSON value; without ROUNDS 7

#include <unistd.h>

#include <QApplication>
#include <QEvent>
#include <QTableView>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <vector>

#include "app/AppScreens.h"
#include "bench/ReadHeaders.h"
#include "bench/SecondsOf.h"
#include "core/RunFile.h"
#include "core/Settings.h"
#include "core/StudyFile.h"
#include "core/forms/Job.h"
#include "core/forms/Theme.h"
#include "platform/DecodePicture.h"
#include "platform/DiskFileSystem.h"
#include "platform/MbTiles.h"
#include "platform/MdbDatabase.h"
#include "platform/MountedDevice.h"
#include "platform/QtDesktop.h"
#include "platform/QtDocumentWriter.h"
#include "platform/QtPrograms.h"
#include "platform/QtSerialPort.h"
#include "platform/QtWindowMemory.h"
#include "platform/SpreadsheetWriter.h"
#include "platform/SystemClock.h"
#include "workspace/forms/frmMain.h"

namespace vantor {
namespace {

/// What would be asked spoils the figures.
class NoMessages : public MessageBoxes {
public:
    MessageAnswer Ask(const Prompt& prompt) override { throw std::runtime_error(prompt.Text); }
};
class NoEnd : public ApplicationEnd {
public:
    [[noreturn]] void EndAtOnce(const FatalFormatFault&) override { std::abort(); }
};

/// Tells when a list with so many rows was painted.
class PaintWatch : public QObject {
public:
    PaintWatch(QTableView& list, int rows) : list_(list), rows_(rows) { list.viewport()->installEventFilter(this); }
    bool IsDrawn() const { return isDrawn_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Paint || list_.model()->rowCount() != rows_) return false;
        list_.viewport()->removeEventFilter(this);
        static_cast<void>(QCoreApplication::sendEvent(watched, event));
        isDrawn_ = true;
        return true;
    }

private:
    QTableView& list_;
    const int rows_;
    bool isDrawn_ = false;
};

/// A program folder with one study of runs of five minutes.
void MakeStudy(DiskFileSystem& files, const std::string& folder, int runs) {
    ApplicationState state;
    LoadSettings(state, files);
    state.Settings.UseStartUpScreen = 0;
    SaveSettings(state, files);
    Study study;
    RunRecord run;
    run.Header.CalConstant = 1000;
    run.Header.SampleCount = 300;
    run.Header.RunDate = DateOf(2008, 3, 14);
    for (int i = 1; i <= 300; ++i) run.SampleValues.Append(static_cast<std::int16_t>(30 + i % 20));
    run.RunSamples.ResizeTo(300);
    const auto batch = files.BeginWrites();
    for (int i = 1; i <= runs; ++i) {
        const std::string name = "Main St-NB-" + std::to_string(i);
        AddRunFile(*batch, run, folder, name, Expected::Nothing());
        AppendRun(study, name);
        study.Entries[i].CDStartDist = 300;
        study.Entries[i].CDEndDist = 7600;
        study.Entries[i].ControlDelay = i % 90;
        study.Entries[i].LOSGrade = "C";
    }
    batch->Commit();
    study.Record.StudyName = "All";
    WriteStudyFile(files, study, folder, "All", Replacing::OwnFile);
}

double SecondsToOpen(const std::string& path, int runs) {
    DiskFileSystem files("/");
    ApplicationState state;
    NoMessages messages;
    QtDesktop desktop;
    NoEnd end;
    SystemClock clock;
    MdbDatabase databases(files);
    SpreadsheetWriter sheets;
    QtDocumentWriter documents;
    QtWindowMemory memory(files.SettingsFolder());
    QtSerialPort serial;
    const MbTiles tiles(DecodePicture);
    const QtPrograms programs;
    MountedDevice device(files, {});
    AppScreens screens;
    Job work(messages, [] { return std::make_unique<DiskFileSystem>("/"); });
    AppContext context{state,  files,  messages,  screens, desktop,   clock,    end,  memory,
                       serial, device, databases, sheets,  documents, programs, work, tiles};
    screens.Use(context);
    frmMain window(context);
    window.show();
    QApplication::processEvents();
    const PaintWatch watch(*window.findChild<QTableView*>(QStringLiteral("vaRunList")), runs);
    return SecondsOf([&] {
        window.Start(path);
        while (!watch.IsDrawn()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    });
}

int Measure(int runs, int rounds) {
    char pattern[] = "/tmp/vantor-bench-XXXXXX";
    const std::string folder = std::string(mkdtemp(pattern)) + "/";
    setenv("VANTOR_PROGRAM_FOLDER", folder.c_str(), 1);
    std::filesystem::current_path(folder);
    {
        DiskFileSystem files("/");
        MakeStudy(files, folder, runs);
    }
    std::vector<double> opening;
    std::vector<double> reading;
    for (int i = 0; i < rounds; ++i) {
        opening.push_back(SecondsToOpen(folder + "All.ld2", runs));
        reading.push_back(SecondsToReadHeaders(folder, runs));
    }
    std::filesystem::remove_all(folder);
    std::printf("{\"runs\": %d", runs);
    Tell("open", opening);
    Tell("read", reading);
    std::printf(", \"ratio\": %.2f}\n", *std::ranges::min_element(opening) / *std::ranges::min_element(reading));
    return 0;
}

}  // namespace
}  // namespace vantor

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication application(argc, argv);
    vantor::ApplyTheme(application, vantor::ThemeChoice::Light);
    try {
        return vantor::Measure(argc > 1 ? std::atoi(argv[1]) : 1000, argc > 2 ? std::atoi(argv[2]) : 7);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
