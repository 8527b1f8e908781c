#include "core/AppContext.h"
#include "workspace/StudyCommands.h"
#include "workspace/forms/MainMenu.h"
#include "workspace/forms/frmMain.h"

namespace vantor {

std::vector<MenuEntry> frmMain::MenuEntries() {
    const auto to = [this](void (frmMain::*command)()) { return [this, command] { (this->*command)(); }; };
    const auto onRun = [this](void (Screens::*open)(int)) { return [this, open] { ShowActiveRun(open); }; };
    const auto log = [this](LogKind kind) { return [this, kind] { ProcessLog(kind); }; };
    using Keys = QKeySequence;
    return {
        {"&File", "mnuFileNew", "Start a &New Study", "new-study", Keys("Ctrl+N"), 1, "New",
         to(&frmMain::StartNewStudy)},
        {"&File", "mnuFileOpen", "Open &Existing Study", "open-study", Keys("Ctrl+O"), 2, "Open",
         to(&frmMain::OpenExistingStudy)},
        {"&File", "mnuFileSave", "&Save Study Now", "save-study", Keys("Ctrl+S"), 3, "Save", to(&frmMain::SaveNow)},
        {"&File", "mnuFileSaveAs", "Save Study As...", "save-study-as", Keys("Ctrl+Shift+S"), 0, "",
         to(&frmMain::SaveAs)},
        {"&File", "", "", ""},
        {"&File", "mnuReadTDC", "&Read TDC Counter", "read-counter", {}, 5, "Read TDC", to(&frmMain::ReadCounter)},
        {"&File",
         "mnuFileProcessRuns",
         "Process Runs in Temp Folder",
         "process-runs",
         {},
         0,
         "",
         to(&frmMain::ProcessRuns)},
        {"&File", "mnuFileRoamlap", "Process Roamlap Data", "gps-log", {}, 0, "", log(LogKind::GpsLaptop)},
        {"&File", "mnuFileRoampad", "Process Roampad Data", "handheld", {}, 0, "", log(LogKind::GpsHandheld)},
        {"&File", "mnuFileRevlap", "Process Revlap Data", "obd-log", {}, 0, "", log(LogKind::ObdLaptop)},
        {"&File", "mnuFileRevpad", "Process Revpad Data", "handheld-obd", {}, 0, "", log(LogKind::ObdHandheld)},
        {"&File", "", "", ""},
        {"",
         "",
         "Show Details: the speed profile of the run",
         "show-details",
         {},
         ShowDetailsButton,
         "Details",
         to(&frmMain::ShowDetails)},
        {"&File", "mnuFilePrint", "&Print Report", "print", Keys("Ctrl+P"), 9, "Print",
         [this] { context_.OtherScreens.ShowReportPreview(); }},
        {"&File", "mnuFilePrefs", "Preferences", "preferences", {}, 11, "Preferences", to(&frmMain::ShowPreferences)},
        {"&File",
         "mnuFileStartUp",
         "StartUp Options",
         "start-up",
         {},
         13,
         "Start-Up",
         to(&frmMain::ShowStartUpOptions)},
        {"&File", "", "", ""},
        {"&File", "mnuFileExit", "E&xit", "exit", Keys("Ctrl+Q"), 0, "", [this] { close(); }},
        {"&View", "mnuViewStatistics", "Study Statistics", "statistics", {}, 0, "", to(&frmMain::ShowStudyStatistics)},
        {RunMenu, "mnuRunUndo", "&Undo", "undo", Keys("Ctrl+Z"), 0, "", to(&frmMain::Undo)},
        {RunMenu, "mnuRunShow", "Show &Details", "show-details", {}, 0, "", to(&frmMain::ShowDetails)},
        {RunMenu, "mnuRunDetails", "&Run Details", "edit", {}, 0, "", onRun(&Screens::ShowRunEditor)},
        {RunMenu, "mnuRunSensorData", "Edit &Sensor Data", "de-spike", {}, 0, "", onRun(&Screens::ShowSensorData)},
        {RunMenu, "mnuRunFile", "Edit Run &File", "run", {}, 0, "", onRun(&Screens::ShowRunFileEditor)},
        {RunMenu, "mnuRunStatistics", "Run S&tatistics", "statistics", {}, 0, "", onRun(&Screens::ShowRunStatistics)},
        {"&Utilities",
         "mnuUtilDeleteRuns",
         "Delete Runs in Temp Folder",
         "delete-runs",
         {},
         0,
         "",
         [this] { context_.OtherScreens.ShowDeleteTempRuns(); }},
        {"&Utilities",
         "mnuUtilDeleteTDC",
         "Delete Data Files in TDC Data Folder",
         "delete-data",
         {},
         0,
         "",
         [this] { context_.OtherScreens.ShowDeleteTDCFiles(); }},
        {"&Utilities",
         "mnuUtilExport",
         "Export to Excel",
         "export-spreadsheet",
         {},
         0,
         "",
         [this] { ExportRunList(context_); }},
        {"&Help", "mnuHelpTopics", "Help Topics", "help", Keys("F1"), 0, "", to(&frmMain::ShowHelpTopics)},
        {"&Help", "mnuHelpSupport", "Support Site", "support", {}, 15, "Support", to(&frmMain::OpenSupportSite)},
        {"&Help", "mnuHelpAbout", "About Vantor", "about", {}, 0, "", to(&frmMain::ShowAbout)},
    };
}

void frmMain::CarryOut(StartUpChoice choice) {
    switch (choice) {
        case StartUpChoice::None: return RefreshStudyResults();
        case StartUpChoice::NewStudy: return StartNewStudy();
        case StartUpChoice::OpenStudy: return OpenExistingStudy();
        case StartUpChoice::LastStudy: return OpenLastStudy();
        case StartUpChoice::ProcessTdcData: return ProcessRuns();
        case StartUpChoice::ProcessTempRuns: return ProcessTemporaryRuns();
        case StartUpChoice::ReadCounter: return ReadCounter();
        case StartUpChoice::Preferences: return ShowPreferences();
        case StartUpChoice::Exit: close(); return;
        case StartUpChoice::ProcessRoamlap: return ProcessLog(LogKind::GpsLaptop);
        case StartUpChoice::ProcessRoampad: return ProcessLog(LogKind::GpsHandheld);
        case StartUpChoice::ProcessRevlap: return ProcessLog(LogKind::ObdLaptop);
        case StartUpChoice::ProcessRevpad: return ProcessLog(LogKind::ObdHandheld);
        case StartUpChoice::ProcessCombined: return ProcessLog(LogKind::GpsObd);
        case StartUpChoice::ProcessBattelle: return ProcessLog(LogKind::Battelle);
    }
}

}  // namespace vantor
