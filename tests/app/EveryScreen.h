#pragma once

#include <QCoreApplication>
#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "analysis/forms/frmRunStatistics.h"
#include "corridor/CorridorFile.h"
#include "corridor/CorridorNodes.h"
#include "corridor/CorridorTaking.h"
#include "corridor/forms/frmCorridor.h"
#include "corridor/forms/frmCorridorSettings.h"
#include "corridor/forms/frmSignalTimings.h"
#include "counter/forms/frmDeleteTDCFiles.h"
#include "counter/forms/frmDeleteTempRuns.h"
#include "counter/forms/frmReadTDC.h"
#include "counter/forms/frmUploadData.h"
#include "counter/forms/frmUploadRunList.h"
#include "counter/forms/frmUploadSelectTDC.h"
#include "editing/forms/frmEditPulseData.h"
#include "editing/forms/frmEditRunFile.h"
#include "editing/forms/frmNodePlaces.h"
#include "editing/forms/frmPlotRunSpeedProfileHoriz.h"
#include "editing/forms/frmProposeBoundaries.h"
#include "editing/forms/frmRunDetails.h"
#include "editing/forms/frmUseBoundaries.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"
#include "gpsobd/forms/LogReview.h"
#include "gpsobd/forms/LogSelect.h"
#include "gpsobd/forms/frmImportTracks.h"
#include "gpsobd/forms/frmTrackColumns.h"
#include "platform/HelpWindow.h"
#include "reports/ReportStudies.h"
#include "reports/forms/frmCompareStudies.h"
#include "reports/forms/frmReportPreview.h"
#include "statistics/forms/frmContDelayVsAvg.h"
#include "statistics/forms/frmStatisticsOptions.h"
#include "statistics/forms/frmStudyStatistics.h"
#include "workspace/forms/frmMain.h"
#include "workspace/forms/frmPrefs.h"
#include "workspace/forms/frmRunSelect.h"
#include "workspace/forms/frmStartUp.h"
#include "workspace/forms/frmStudyOpen.h"
#include "workspace/forms/frmStudySaveAs.h"

namespace vantor {

/// Answers every question so that nothing happens.
struct DecliningMessageBoxes : MessageBoxes {
    MessageAnswer Ask(const Prompt& prompt) override {
        if (prompt.Buttons == MessageButtons::YesNo) return MessageAnswer::No;
        return prompt.Buttons == MessageButtons::Ok ? MessageAnswer::Ok : MessageAnswer::Cancel;
    }
};

/// A program to open screens in: with nothing on its disk but the folders, or with something to see on every screen.
struct ShownProgram : TestProgram {
    const std::string Group = "/start/Study Groups/Main Street/";
    const std::string Logs = "/start/Field Data Files/";
    DecliningMessageBoxes Declining;
    AppContext Program{State,  Files,  Declining, OtherScreens, DesktopServices, Time,          End,  Memory,
                       Serial, Device, Databases, Sheets,       Documents,       OtherPrograms, Work, Tiles};

    explicit ShownProgram(bool isFilled) {
        State.Settings.UseStartUpScreen = 0;
        State.Settings.EnableStopDelay = -1;
        if (isFilled) Fill();
        SaveSettings(State, Files);
        State.MainFormLoaded = false;
    }

private:
    void Fill() {
        Files.CreateFolder(Group);
        Files.CreateFolder("/start/Study Groups/Oak Avenue/");
        State.CurrentStudy = PutReportedStudy(Files, Group, 4);
        State.CurrentStudy.Entries[2].CDEndDist = 0;
        State.CurrentStudy.Entries[3].EntryRunName = State.CurrentStudy.RunNames[3] = "Gone";
        PutStudyFile(Files, State.CurrentStudy, Group, "AM Peak");
        State.Paths.LastStudyGroupPath = Group;
        State.Paths.LastStudyName = "AM Peak";
        State.CurrentRun = ReportedRun();
        State.CurrentRun.Header.RunName = "NB-1";
        State.CurrentRun.Header.ButtonWord[2] = -1;
        State.CurrentRun.Header.ButtonLabel[2] = "Congestion";
        RunRecord waiting = ReportedRun();
        for (const char* name : {"Upload01", "Upload02"}) PutRunFile(Files, waiting, "/start/Temp/", name);
        Files.PutText("/start/Temp/OLD.rdf", "too short to be a run");
        std::ifstream counter(VANTOR_SAMPLES "Corridor.tdc", std::ios::binary);
        Files.PutText(Logs + "Corridor.tdc", {std::istreambuf_iterator<char>(counter), {}});
        for (const auto& [kind, extension] :
             {std::pair(LogKind::GpsLaptop, ".gd2"), {LogKind::ObdLaptop, ".od2"}, {LogKind::GpsObd, ".ddf"}})
            PutLog(kind, Logs + "drive" + extension);
        Files.PutText(Logs + "phone.csv",
                      "time,lat,lon,speed\n2026-03-04T15:00:00Z,42.0,-83.0,10\n2026-03-04T15:00:01Z,42.0001,-83.0,11\n"
                      "2026-03-04T15:00:02Z,42.0002,-83.0,11\n");
    }

    /// Twelve seconds of run 1 with a gap of two.
    void PutLog(LogKind kind, const std::string& path) {
        FieldLog log = NewFieldLog(FormatOf(kind), path);
        for (int second = 0; second < 12; ++second) {
            LogPoint point;
            const Date moment{DateOf(2008, 3, 14).Days + TimeOf(7, 5, second).Days};
            point.Gps.RunNumber = point.Obd.RunNumber = 1;
            point.Gps.DateTime = point.Obd.DateTime = moment;
            point.Gps.Speed = point.Obd.Speed = second == 4 || second == 5 ? -1.0F : 30.0F;
            log.Add(std::move(point));
        }
        WriteFieldLog(Files, log);
    }
};

/// A screen and how it is opened; `EnterActs` where the Enter key carries the screen's main action out, `Like` for a
/// screen that is another one but for some lines.
struct ScreenCase {
    const char* Name;
    std::function<std::shared_ptr<QWidget>(ShownProgram&)> Open;
    bool EnterActs = true;
    const char* Like = "";
};
inline void PrintTo(const ScreenCase& screen, std::ostream* out) { *out << screen.Name; }

template <class Form, class... Arguments>
std::function<std::shared_ptr<QWidget>(ShownProgram&)> Opens(Arguments... arguments) {
    return [=](ShownProgram& program) { return std::make_shared<Form>(program.Program, arguments...); };
}

/// A screen of the current run.
template <class Form>
std::shared_ptr<QWidget> OpenRun(ShownProgram& program) {
    if (program.State.CurrentStudy.Record.RunCount == 0) AppendRun(program.State.CurrentStudy, "NB-1");
    return std::make_shared<Form>(program.Program, 1);
}

/// The current run's, from which the others are reached.
inline std::shared_ptr<QWidget> OpenProfile(ShownProgram& program) {
    if (program.State.CurrentStudy.Record.RunCount == 0) AppendRun(program.State.CurrentStudy, "NB-1");
    return std::make_shared<frmPlotRunSpeedProfileHoriz>(program.Program, ProfileVisit{.Run = 1, .GoesOn = true});
}

/// The same while boundaries are proposed.
inline std::shared_ptr<QWidget> OpenProposal(ShownProgram& program) {
    auto profile = OpenProfile(program);
    profile->findChild<QAction*>(QStringLiteral("mnuPropose"))->trigger();
    return profile;
}

inline std::shared_ptr<QWidget> OpenUseBoundaries(ShownProgram& program) {
    Study& study = program.State.CurrentStudy;
    if (study.Record.RunCount == 0) AppendRun(study, "NB-1");
    const Bounds bounds{400, 2200, std::nullopt};
    std::vector<int> runs;
    for (int run = 1; run <= study.Record.RunCount; ++run) runs.push_back(run);
    return std::make_shared<frmUseBoundaries>(
        program.Program, PreviewBounds(study, runs, bounds, program.Files, program.Group, program.State.Settings),
        bounds);
}

inline std::shared_ptr<QWidget> OpenProposeBoundaries(ShownProgram& program) {
    const Study& study = program.State.CurrentStudy;
    return std::make_shared<frmProposeBoundaries>(
        program.Program, study, ReadRunsToPropose(study, program.Files, program.Group, program.State.Settings));
}

inline std::shared_ptr<QWidget> OpenNodePlaces(ShownProgram& program) {
    return std::make_shared<frmNodePlaces>(program.Program, program.State.CurrentStudy, program.State.CurrentRun);
}

inline std::function<std::shared_ptr<QWidget>(ShownProgram&)> Reviews(LogKind kind, const char* extension) {
    return [=](ShownProgram& program) {
        return std::make_shared<LogReview>(program.Program, FormatOf(kind),
                                           LogChoice{program.Logs, "drive", extension});
    };
}

/// A log with a gap, and a CSV file whose columns leave a question; both of nothing where there is nothing to see.
inline std::shared_ptr<QWidget> OpenImportTracks(ShownProgram& program) {
    std::vector<std::string> paths;
    for (const char* name : {"drive.gd2", "phone.csv"})
        if (program.Files.Find(program.Logs + name)) paths.push_back(program.Logs + name);
    return std::make_shared<frmImportTracks>(program.Program, paths);
}

/// Of the runs of the current study; one of them is not there.
inline std::shared_ptr<QWidget> OpenCorridorReport(ShownProgram& program) {
    auto corridor = std::make_shared<ReportedCorridor>();
    corridor->Root = "/start/Study Groups/";
    corridor->Of.Name = "Main St";
    corridor->Of.Nodes = {{.Name = "Oak"}, {.Name = "Elm", .DistanceFt = 900}};
    const Study& study = program.State.CurrentStudy;
    for (int run = 1; run <= study.Record.RunCount; ++run)
        corridor->Of.Runs.push_back({.Group = "Main Street", .Name = RunFileName(study.Entries[run])});
    corridor->Runs = ReadCorridorRuns(corridor->Of, program.Files, corridor->Root, program.State.Settings).Runs;
    return std::make_shared<frmReportPreview>(program.Program, corridor);
}

inline std::shared_ptr<QWidget> OpenTrackColumns(ShownProgram& program) {
    if (!program.Files.Find(program.Logs + "phone.csv")) program.Files.PutText(program.Logs + "phone.csv", "");
    return std::make_shared<frmTrackColumns>(program.Program, std::vector{program.Logs + "phone.csv"});
}

/// The nodes of the current run and the runs of its Study Group.
inline Corridor FilledCorridor(ShownProgram& program) {
    Corridor corridor;
    corridor.Name = "Main St";
    if (program.State.CurrentStudy.Record.RunCount == 0) return corridor;
    PutNodes(corridor, NodesFromRun(program.State.CurrentRun, Way::Forward));
    for (const Way way : BothWays) corridor.Of(way).IdealSpeedMph = 35;
    std::vector<std::string> paths;
    for (const FileInfo& file : program.Files.List(program.Group, RunExtension))
        paths.push_back(program.Group + file.Name);
    corridor.Runs = TakeRunFiles(corridor, paths, program.Files, "/start/Study Groups/").Runs;
    return corridor;
}
inline std::shared_ptr<QWidget> OpenCorridor(ShownProgram& program) {
    const Corridor corridor = FilledCorridor(program);
    const std::string path = CorridorPath("/start/Study Groups/", corridor.Name);
    if (!corridor.Nodes.empty() && !program.Files.Find(path))
        SaveCorridor(program.Files, path, corridor, Expected::Nothing());
    return std::make_shared<frmCorridor>(program.Program, std::nullopt);
}
inline std::shared_ptr<QWidget> OpenCorridorSettings(ShownProgram& program) {
    return std::make_shared<frmCorridorSettings>(program.Program, FilledCorridor(program));
}
inline std::shared_ptr<QWidget> OpenSignalTimings(ShownProgram& program) {
    Corridor corridor = FilledCorridor(program);
    if (corridor.Nodes.empty())
        corridor.Nodes.emplace_back().Name = "Oak";
    else
        corridor.Nodes[0].Timings = {{{}, {}, "", 90, 12.5, 40}, {Way::Back, true, "AM", 100, 0, 40}};
    return std::make_shared<frmSignalTimings>(program.Program, corridor, 0);
}

/// What stands before the control that takes the keys, in the first line of a screen's page of text.
inline const QString FocusMark = QStringLiteral("; keys to ");

/// Every screen of the program.
inline std::vector<ScreenCase> EveryScreen() {
    const auto main = [](ShownProgram& program) {
        auto window = std::make_shared<frmMain>(program.Program);
        window->Start();
        return window;
    };
    const auto help = [](ShownProgram&) {
        auto window = std::make_shared<HelpWindow>(QStringLiteral(VANTOR_HELP_FILE));
        window->ShowTopic(static_cast<int>(HelpTopic::MainWindow));
        return window;
    };
    return {
        {"frmMain", main, false},
        {"frmStartUp", Opens<frmStartUp>()},
        {"frmStudyOpen", Opens<frmStudyOpen>()},
        {"frmStudySaveAs", Opens<frmStudySaveAs>()},
        {"frmRunSelect", Opens<frmRunSelect>()},
        {"frmPrefs", Opens<frmPrefs>()},
        {"frmRunDetails", OpenRun<frmRunDetails>},
        {"frmPlotRunSpeedProfileHoriz", OpenProfile},
        {"ProposalBar", OpenProposal, true, "frmPlotRunSpeedProfileHoriz"},
        {"frmUseBoundaries", OpenUseBoundaries},
        {"frmProposeBoundaries", OpenProposeBoundaries},
        {"frmNodePlaces", OpenNodePlaces},
        {"frmEditPulseData", OpenRun<frmEditPulseData>, false},
        {"frmEditRunFile", OpenRun<frmEditRunFile>},
        {"frmRunStatistics", OpenRun<frmRunStatistics>},
        {"frmContDelayVsAvg", Opens<frmContDelayVsAvg>()},
        {"frmStudyStatistics", Opens<frmStudyStatistics>(1)},
        {"frmStatisticsOptions", Opens<frmStatisticsOptions>(StudyChoices{})},
        {"frmCompareStudies", Opens<frmCompareStudies>()},
        {"frmReportPreview", Opens<frmReportPreview>()},
        {"CorridorReport", OpenCorridorReport},
        {"frmReadTDC", Opens<frmReadTDC>()},
        {"frmUploadSelectTDC", Opens<frmUploadSelectTDC>()},
        {"frmUploadData", Opens<frmUploadData>(), false},
        {"frmUploadRunList", Opens<frmUploadRunList>(std::string("Main Street"))},
        {"frmDeleteTempRuns", Opens<frmDeleteTempRuns>()},
        {"frmDeleteTDCFiles", Opens<frmDeleteTDCFiles>()},
        {"SelectGpsLaptop", Opens<LogSelect>(std::cref(FormatOf(LogKind::GpsLaptop)))},
        {"SelectObdHandheld", Opens<LogSelect>(std::cref(FormatOf(LogKind::ObdHandheld)))},
        {"SelectBattelle", Opens<LogSelect>(std::cref(FormatOf(LogKind::Battelle)))},
        {"frmGPSViewData", Reviews(LogKind::GpsLaptop, ".gd2")},
        {"frmOBDViewData", Reviews(LogKind::ObdLaptop, ".od2"), true, "frmGPSViewData"},
        {"frmGPSOBDViewData", Reviews(LogKind::GpsObd, ".ddf"), true, "frmGPSViewData"},
        {"frmImportTracks", OpenImportTracks},
        {"frmTrackColumns", OpenTrackColumns},
        {"frmCorridor", OpenCorridor, false},
        {"frmCorridorSettings", OpenCorridorSettings},
        {"frmSignalTimings", OpenSignalTimings},
        {"frmHelp", help, false},
    };
}

}  // namespace vantor
