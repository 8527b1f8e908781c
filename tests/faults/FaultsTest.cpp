#include <string_view>

#include "analysis/CutRun.h"
#include "analysis/DelayStatistics.h"
#include "core/Paths.h"
#include "counter/CleanUp.h"
#include "counter/CounterDownload.h"
#include "counter/CounterFile.h"
#include "editing/SaveRun.h"
#include "editing/TrimRun.h"
#include "fakes/PutFiles.h"
#include "faults/FaultHarness.h"
#include "gpsobd/DeviceCopy.h"
#include "workspace/Preferences.h"
#include "workspace/StudyCommands.h"
#include "workspace/StudyGroups.h"
#include "workspace/StudyRecovery.h"
#include "workspace/StudyWorkspace.h"

namespace vantor {
namespace {

using Scene = FaultScene;
const auto Nothing = [](Scene&) {};

std::string NamesIn(const Scene& scene, const std::string& folder, std::string_view extension) {
    std::string names;
    for (const FileInfo& info : FilesWithExtension(scene.Files, folder, extension)) names += info.Name + " ";
    return names;
}

void ChangeStudy(Scene& scene) {
    scene.State.CurrentStudy.Record.StudyNotes = "rain";
    DeleteRuns(scene.State, {2});
}

Operation SavesRun(const std::string& name, const std::string& runName, bool keepsBackup) {
    return {name, [](Scene& scene) { scene.Files.PutText(scene.Group + "R1.rd2.bak", "an older copy"); },
            [=](Scene& scene) {
                RunRecord edited = CutRun(scene.State.CurrentRun, 5, 25);
                edited.Header.RunName = runName;
                SaveRun(scene.State, scene.Files, edited, {.Entry = 1, .KeepsBackup = keepsBackup});
            },
            ExpectRunAgrees};
}

const Operation OfRules[] = {
    // Studies.
    {"StudySavedAs", ChangeStudy,
     [](Scene& scene) {
         scene.Files.CreateFolder("/start/Study Groups/Elm/");
         CopyRuns(scene.Files, {"R1", "R2"}, scene.Group, "/start/Study Groups/Elm/");
         SaveStudyAs(scene.State, scene.Files, "/start/Study Groups/Elm/", "PM");
     },
     ExpectStudyAgrees},
    {"StudyOpened",
     [](Scene& scene) {
         Study study = scene.State.CurrentStudy;
         study.Record.StudyName = "PM";
         PutStudyFile(scene.Files, study, scene.Group, "PM");
     },
     [](Scene& scene) { OpenStudy(scene.State, scene.Files, scene.DesktopServices, scene.Time, scene.Group, "PM"); },
     [](Scene& scene) {
         EXPECT_EQ(scene.State.CurrentStudy.Record.StudyName, "PM");
         ExpectStudyAgrees(scene);
     }},
    {"ChangesKept",
     [](Scene& scene) {
         scene.Object = std::make_shared<StudyRecovery>(scene.Program);
         scene.As<StudyRecovery>().Settle();
         ChangeStudy(scene);
         scene.As<StudyRecovery>().Keep();
         scene.State.CurrentStudy.Record.StudyNotes = "snow";
     },
     [](Scene& scene) { scene.As<StudyRecovery>().Keep(); },
     [](Scene& scene) {
         EXPECT_FALSE(scene.State.StudyUnchanged);
         EXPECT_EQ(NamesIn(scene, scene.Group, RecoveryExtension), "AM.1.ldr ");
     },
     false, true},
    {"ChangesRestored",
     [](Scene& scene) {
         ChangeStudy(scene);
         StudyRecovery(scene.Program).Keep();
         NewStudy(scene.State, scene.Time);
     },
     [](Scene& scene) { StudyRecovery(scene.Program).OfferAll(); },
     [](Scene& scene) {
         EXPECT_EQ(scene.State.CurrentStudy.Record.StudyNotes, "rain");
         EXPECT_FALSE(scene.State.StudyUnchanged);
     },
     false, true},
    {"RunListExported",
     [](Scene& scene) {
         scene.DesktopServices.FileToSave = "/start/list.xls";
         scene.Files.PutText("/start/list.xls", "an older export");
     },
     [](Scene& scene) { ExportRunList(scene.Program); }, ExpectStudyAgrees},
    // Runs.
    SavesRun("RunSaved", "R1", false),
    SavesRun("RunSavedWithCopy", "R1", true),
    SavesRun("RunSavedAs", "New", true),
    {"RunOfStudyRenamed", Nothing,
     [](Scene& scene) {
         EXPECT_EQ(RenameRun(scene.State, scene.Files, scene.State.CurrentRun, 1, "Morning"), "");
         scene.State.CurrentRun.Header.RunName = "Morning";
     },
     [](Scene& scene) {
         ExpectEntriesAgree(scene);
         ExpectStudyAgrees(scene);
     }},
    {"RunTrimmed",
     [](Scene& scene) { scene.Object = std::make_shared<StudyRunEntry>(scene.State.CurrentStudy.Entries[1]); },
     [](Scene& scene) {
         auto& entry = scene.As<StudyRunEntry>();
         RunRecord& run = scene.State.CurrentRun;
         TrimmedRun trimmed = TrimToBoundaries(run, PlacedBoundaries(run, entry), entry);
         ASSERT_EQ(trimmed.Problem, "");
         ReplaceRunFile(scene.Files, trimmed.Run, scene.Group, RunFileName(entry),
                        AsItStands(scene.Files, scene.Group + RunFileName(entry) + RunExtension));
         run = std::move(trimmed.Run);
         entry = std::move(trimmed.Entry);
     },
     [](Scene& scene) {
         ExpectRunAgrees(scene);
         const bool isTrimmed = scene.State.CurrentRun.Header.SampleCount < 30;
         EXPECT_EQ(scene.As<StudyRunEntry>().CDStartDist < 100, isTrimmed);
     }},
    {"Ver1RunConverted",
     [](Scene& scene) { scene.Files.PutCopyOf(VANTOR_SAMPLES "Version 1 runs/MAINNB01.rdf", scene.Group + "M.rdf"); },
     [](Scene& scene) {
         scene.State.CurrentRun = ConvertVer1RunFile(scene.Files, scene.Told, scene.Group, "M").value();
     },
     [](Scene& scene) {
         ExpectRunAgrees(scene);
         const std::string names = NamesIn(scene, scene.Group, ".rdf") + NamesIn(scene, scene.Group, ".rdx");
         EXPECT_EQ(names, scene.Files.Bytes(scene.Group + "M.rd2") ? "M.rdx " : "M.rdf ");
     }},
    // Counter files and temporary runs.
    {"CounterFileConverted",
     [](Scene& scene) { scene.Files.PutCopyOf(VANTOR_SAMPLES "Corridor.tdc", "/start/Field Data Files/C.tdc"); },
     [](Scene& scene) {
         ConvertCounterFile(scene.Files, "/start/Field Data Files/C.tdc", scene.Temp, scene.State.CurrentRun);
     },
     Nothing},
    {"Downloaded", Nothing,
     [](Scene& scene) {
         CounterDownload download(scene.State, scene.Files, scene.Serial, scene.Time, scene.End);
         scene.Serial.OnEvent = [&](SerialEvent event) { download.TakeEvent(event); };
         download.Begin();
         scene.Serial.Send("T,001,");
         scene.Serial.Send(std::string(20, ':'));
         scene.State.CounterFileChosen = download.Finish().has_value();
     },
     [](Scene& scene) {
         const std::string names = NamesIn(scene, scene.State.Paths.FieldDataPath, ".tdc");
         EXPECT_EQ(names.empty(), !scene.State.CounterFileChosen) << names;
         EXPECT_FALSE(scene.Serial.Opened);
     },
     false, false, ".cancelled"},
    {"CleanedUp", Nothing,
     [](Scene& scene) {
         PendingDeletions deletions(scene.Temp, RunExtension);
         deletions.Take("TR1");
         deletions.Take("TR2");
         deletions.DeleteAll(scene.Work, scene.Told);
     },
     Nothing, true},
    {"CopiedFromDevice",
     [](Scene& scene) {
         scene.Device.Files["\\Program Files\\Roampad\\GPSData.mdb"] = BytesOf("the new log");
         scene.Files.PutText("/start/Field Data Files/GPSData.mdb", "the old log");
     },
     [](Scene& scene) {
         CopyFromDevice(scene.Program, {"Roampad", "GPSData.mdb"}, "/start/Field Data Files/", [](std::int16_t) {});
     },
     [](Scene& scene) { EXPECT_EQ(scene.Device.OpenHandles(), 0U); }},
    // Settings.
    {"PreferencesSaved", Nothing,
     [](Scene& scene) {
         Preferences chosen{scene.State.Settings, scene.State.Paths};
         chosen.Settings.MetricUnits = -1;
         chosen.Paths.TempRunsPath = "/start/Other/";
         SavePreferences(scene.State, scene.Files, chosen);
     },
     [](Scene& scene) {
         ApplicationState stored;
         LoadSettings(stored, scene.Files);
         EXPECT_EQ(stored.Settings, scene.State.Settings);
         const bool isMetric = scene.State.Settings.MetricUnits != 0;
         EXPECT_EQ(scene.State.Paths.TempRunsPath == "/start/Other/", isMetric);
     }}};
INSTANTIATE_TEST_SUITE_P(Rules, FaultTest, testing::ValuesIn(OfRules), NameOfOperation);

}  // namespace
}  // namespace vantor
