#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/AppContext.h"
#include "core/Settings.h"
#include "core/ports/Spreadsheet.h"
#include "fakes/FakeDatabases.h"
#include "fakes/FakeLongWork.h"
#include "fakes/FakeRemoteApi.h"
#include "fakes/FakeSerialPort.h"
#include "fakes/FakeTiles.h"
#include "fakes/MemoryFileSystem.h"
#include "fakes/RecordingCanvas.h"
#include "fakes/ScriptedMessageBoxes.h"

namespace vantor {

class FixedClock : public Clock {
public:
    Date Moment{39521.5};  ///< 14 March 2008, noon
    Date Now() const override { return Moment; }
    /// "Summer" is an hour ahead of UTC, from 28 March 2021, 01:00 UTC, two, and from 31 October, 01:00 UTC, one again;
    /// "West" is five hours behind it.
    std::vector<std::string> ZoneNames() const override { return {"Summer", "UTC", "West"}; }
    std::string OwnZone() const override { return "UTC"; }
    std::optional<int> ZoneOffset(const std::string& zone, std::int64_t utc) const override {
        if (zone == "Summer") return utc < 1616893200 || utc >= 1635642000 ? 3600 : 7200;
        if (zone == "West") return -18000;
        return zone == "UTC" ? std::optional(0) : std::nullopt;
    }
};

class FakeDesktop : public Desktop {
public:
    int Beeps = 0;
    std::vector<std::string> Opened;
    std::string AskedFrom;       ///< where the last choice of a folder or a file began
    std::string FolderToChoose;  ///< what the user chooses there
    std::string FileToOpen;      ///< what the user chooses there
    std::string KindsOffered;    ///< to name a file of: "*.xls*.xlsx"
    std::string FileToSave;      ///< what the user names there
    std::string Copied;          ///< what lies on the clipboard
    std::vector<std::byte> CopiedPicture;
    PagedDocument Printed;
    bool Prints = true;        ///< false where the user cancels printing
    std::string PrinterFault;  ///< what printing fails with; empty where it goes well
    void Beep() override { ++Beeps; }
    void OpenWebPage(const std::string& address) override { Opened.push_back(address); }
    void ViewText(const std::string& path) override { Opened.push_back(path); }
    void OpenHelp(const std::string& helpFile, int context) override {
        Opened.push_back(helpFile + "#" + std::to_string(context));
    }
    std::string DocumentsFolder() const override { return Native("/home/me/Documents"); }
    std::string ChooseFolder(const std::string& start) override {
        AskedFrom = start;
        return FolderToChoose;
    }
    std::string ChooseFileToSave(const std::string& start, const std::string&,
                                 const std::vector<FileKind>& kinds) override {
        AskedFrom = start;
        KindsOffered.clear();
        for (const FileKind& kind : kinds) KindsOffered += "*" + kind.Extension;
        return FileToSave;
    }
    std::string ChooseFileToOpen(const std::string& start, const std::string&, const std::string&,
                                 const std::vector<std::string>&) override {
        AskedFrom = start;
        return FileToOpen;
    }
    std::vector<std::string> ChooseFilesToOpen(const std::string& start, const std::string&, const std::string&,
                                               const std::vector<std::string>&) override {
        AskedFrom = start;
        return FileToOpen.empty() ? std::vector<std::string>() : std::vector{FileToOpen};
    }
    void CopyText(const std::string& text) override { Copied = text; }
    void CopyPicture(const std::vector<std::byte>& png) override { CopiedPicture = png; }
    bool Print(const PagedDocument& document) override {
        if (!PrinterFault.empty()) throw RunTimeError(ErrorNumber::PrinterError, PrinterFault);
        if (Prints) Printed = document;
        return Prints;
    }
};

/// A program that has written what it is told.
class FakeProgram : public RunningProgram {
public:
    FakeProgram(std::string output, ProgramEnd end) : output_(std::move(output)), end_(std::move(end)) {}
    std::size_t Read(std::span<std::byte> into) override {
        const auto bytes = std::as_bytes(std::span(output_)).subspan(read_);
        const auto part = bytes.first(std::min(into.size(), bytes.size()));
        std::ranges::copy(part, into.begin());
        read_ += part.size();
        return part.size();
    }
    ProgramEnd End() override { return end_; }

private:
    std::string output_;
    ProgramEnd end_;
    std::size_t read_ = 0;
};

/// A computer without other programs, or with one that has answers by its third argument, "" where it gets less.
class FakePrograms : public Programs {
public:
    std::map<std::string, std::pair<std::string, ProgramEnd>> Answers;
    std::unique_ptr<RunningProgram> Start(const std::string&, const std::vector<std::string>& arguments,
                                          const ProgramLimits&) const override {
        const auto answer = Answers.find(arguments.size() < 3 ? "" : arguments[2]);
        if (answer == Answers.end()) return nullptr;
        return std::make_unique<FakeProgram>(answer->second.first, answer->second.second);
    }
};

/// Thrown where the real program would end at once.
struct ApplicationEnded {
    FatalFormatFault Fault;
};

class ThrowingEnd : public ApplicationEnd {
public:
    [[noreturn]] void EndAtOnce(const FatalFormatFault& fault) override { throw ApplicationEnded{fault}; }
};

/// Records which screens were opened, in order; `OnShow` may act as the user in one of them and tells whether it was
/// accepted. What is chosen then stands in the members.
class FakeScreens : public Screens {
public:
    std::vector<std::string> Shown;
    std::map<std::string, std::function<bool()>> OnShow;
    StartUpChoice StartUp = StartUpChoice::None;
    CounterFileChoice CounterFile{"/start/Field Data Files/", "dump"};
    LogChoice Log{"/start/Field Data Files/", "drive", ".gd2"};
    StudyChoices Options;        ///< of the statistics
    StatisticsVisit Statistics;  ///< its LastRun is the first
    std::map<int, StudyRunEntry> Proposals;
    ProfileChanges Profiles;                           ///< by the speed profile; its LastRun is the first
    RunsForStudy Moved;                                ///< in the screen that names runs
    std::vector<RunsForStudy> Imported;                ///< in the screen that imports tracks
    std::vector<std::string> TracksHanded;             ///< to the screen that imports tracks
    std::vector<Upload> Uploads;                       ///< what was handed to the screen that names runs
    std::shared_ptr<const ReportedCorridor> Reported;  ///< what was handed to the reports

    StartUpChoice ShowStartUp() override { return Show("frmStartUp") ? StartUp : StartUpChoice::None; }
    bool ShowStudyOpen() override { return Show("frmStudyOpen"); }
    bool ShowStudySaveAs() override { return Show("frmStudySaveAs"); }
    bool ShowRunSelect() override { return Show("frmRunSelect"); }
    ProfileChanges ShowSpeedProfile(const ProfileVisit& visit) override {
        Profiles.LastRun = visit.Run;
        Show("frmPlotRunSpeedProfileHoriz");
        return Profiles;
    }
    std::map<int, StudyRunEntry> ShowBoundaryProposals() override {
        Show("frmProposeBoundaries");
        return Proposals;
    }
    bool ShowNodePlaces() override { return Show("frmNodePlaces"); }
    void ShowRunEditor(int) override { Show("frmRunDetails"); }
    void ShowSensorData(int) override { Show("frmEditPulseData"); }
    void ShowRunFileEditor(int) override { Show("frmEditRunFile"); }
    void ShowRunStatistics(int) override { Show("frmRunStatistics"); }
    void ShowDelayChart() override { Show("frmContDelayVsAvg"); }
    StatisticsVisit ShowStudyStatistics(int run) override {
        Statistics.LastRun = run;
        Show("frmStudyStatistics");
        return Statistics;
    }
    std::optional<StudyChoices> ShowStatisticsOptions(const StudyChoices&) override {
        return If(Show("frmStatisticsOptions"), Options);
    }
    void ShowCompareStudies() override { Show("frmCompareStudies"); }
    void ShowReportPreview() override { Show("frmReportPreview"); }
    void ShowCorridorReport(std::shared_ptr<const ReportedCorridor> corridor) override {
        Reported = std::move(corridor);
        Show("report on a corridor");
    }
    void ShowPreferences() override { Show("frmPrefs"); }
    std::optional<CounterFileChoice> ShowReadTDC() override { return If(Show("frmReadTDC"), CounterFile); }
    std::optional<Upload> ShowUploadSelect() override {
        return If(Show("frmUploadSelectTDC"), Upload{UploadOf::CounterFile, CounterFile});
    }
    std::optional<LogChoice> ShowLogSelect(LogKind kind) override { return If(Show("select " + NameOf(kind)), Log); }
    bool ShowLogReview(std::optional<LogKind> kind, const LogChoice& log) override {
        EXPECT_EQ(log, Log);
        return Show("review " + (kind ? NameOf(*kind) : log.File + log.Extension));
    }
    RunsForStudy ShowUploadData(const Upload& upload) override {
        Uploads.push_back(upload);
        Show("frmUploadData");
        return Moved;
    }
    std::vector<RunsForStudy> ShowImportTracks(const std::vector<std::string>& paths, const std::string&) override {
        TracksHanded = paths;
        Show("frmImportTracks");
        return Imported;
    }
    void ShowDamagedCounterFile() override { Show("damaged counter file"); }
    void ShowUploadRunList(const std::string&) override { Show("frmUploadRunList"); }
    void ShowDeleteTempRuns() override { Show("frmDeleteTempRuns"); }
    void ShowDeleteTDCFiles() override { Show("frmDeleteTDCFiles"); }
    void ShowCorridor(const std::optional<std::string>&) override { Show("frmCorridor"); }

private:
    template <class Choice>
    static std::optional<Choice> If(bool accepted, const Choice& choice) {
        return accepted ? std::optional(choice) : std::nullopt;
    }
    static std::string NameOf(LogKind kind) {
        constexpr const char* Names[] = {"GPS laptop",   "OBD laptop",  "GPS handheld",
                                         "OBD handheld", "GPS and OBD", "Battelle"};
        return Names[static_cast<int>(kind)];
    }
    bool Show(const std::string& name) {
        Shown.push_back(name);
        const auto action = OnShow.find(name);
        return action != OnShow.end() && action->second();
    }
};

class FakeWindowMemory : public WindowMemory {
public:
    std::map<std::string, std::string> Values;
    std::string Recall(const std::string& key) const override {
        const auto value = Values.find(key);
        return value == Values.end() ? std::string() : value->second;
    }
    void Store(const std::string& key, const std::string& value) override { Values[key] = value; }
};

/// Keeps the sheets it is given; fails when told to.
class FakeSpreadsheet : public Spreadsheet {
public:
    mutable std::vector<Sheet> Sheets;
    mutable WorkbookFormat Format = WorkbookFormat::Xls;
    bool Fails = false;
    std::vector<std::byte> Encode(const std::vector<Sheet>& sheets, WorkbookFormat format,
                                  const Progress&) const override {
        if (Fails) throw RunTimeError(ErrorNumber::Overflow, "too many rows");
        Sheets = sheets;
        Format = format;
        return {std::byte{0xD0}, std::byte{0xCF}};
    }
};

/// A fresh program around a disk in memory: Temp, Study Groups and Field Data Files under /start, settings loaded.
struct TestProgram {
    ApplicationState State;
    MemoryFileSystem Files;
    ScriptedMessageBoxes Messages;
    FakeScreens OtherScreens;
    FakeDesktop DesktopServices;
    FixedClock Time;
    ThrowingEnd End;
    FakeWindowMemory Memory;
    FakeSerialPort Serial;
    FakeRemoteApi Device;
    FakeDatabases Databases;
    FakeSpreadsheet Sheets;
    FakeDocumentWriter Documents;
    FakePrograms OtherPrograms;
    FakeLongWork Work{Files};
    FakeTiles Tiles;
    AppContext Context{State,  Files,  Messages,  OtherScreens, DesktopServices, Time,          End,  Memory,
                       Serial, Device, Databases, Sheets,       Documents,       OtherPrograms, Work, Tiles};

    TestProgram() {
        for (const char* folder : {"/start/Temp", "/start/Study Groups", "/start/Field Data Files"})
            Files.CreateFolder(folder);
        LoadSettings(State, Files);
        State.SettingsWereMissing = false;
    }
};

}  // namespace vantor
