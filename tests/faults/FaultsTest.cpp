#include <string_view>

#include "analysis/DelayStatistics.h"
#include "core/Paths.h"
#include "counter/CleanUp.h"
#include "counter/CounterDownload.h"
#include "counter/CounterFile.h"
#include "counter/modUpload.h"
#include "editing/SaveRun.h"
#include "editing/TrimRun.h"
#include "fakes/PutFiles.h"
#include "faults/FaultHarness.h"
#include "gpsobd/DeviceCopy.h"
#include "gpsobd/LogPoints.h"
#include "gpsobd/LogRuns.h"
#include "workspace/Preferences.h"
#include "workspace/StudyCommands.h"
#include "workspace/StudyGroups.h"
#include "workspace/StudyRecovery.h"
#include "workspace/StudyWorkspace.h"

namespace vantor {
namespace {

const auto Nothing = [](FaultScene&) {};

std::string NamesIn(const FaultScene& scene, const std::string& folder, std::string_view extension) {
    std::string names;
    for (const FileInfo& info : FilesWithExtension(scene.Files, folder, extension)) names += info.Name + " ";
    return names;
}

// Studies.

void ChangeStudy(FaultScene& scene) {
    scene.State.CurrentStudy.Record.StudyNotes = "rain";
    DeleteRun(scene.State, 2);
}

const Operation SavesStudy{"StudySaved", ChangeStudy, [](FaultScene& scene) { SaveStudy(scene.State, scene.Files); },
                           [](FaultScene& scene) { ExpectStudyAgrees(scene); }};

const Operation SavesStudyAs{"StudySavedAs", ChangeStudy,
                             [](FaultScene& scene) {
                                 scene.Files.CreateFolder("/start/Study Groups/Elm/");
                                 CopyRuns(scene.Files, {"R1", "R2"}, scene.Group, "/start/Study Groups/Elm/");
                                 SaveStudyAs(scene.State, scene.Files, "/start/Study Groups/Elm/", "PM");
                             },
                             [](FaultScene& scene) { ExpectStudyAgrees(scene); }};

const Operation OpensStudy{"StudyOpened",
                           [](FaultScene& scene) {
                               Study study = scene.State.CurrentStudy;
                               study.Record.StudyName = "PM";
                               PutStudyFile(scene.Files, study, scene.Group, "PM");
                           },
                           [](FaultScene& scene) {
                               OpenStudy(scene.State, scene.Files, scene.DesktopServices, scene.Time, scene.Group,
                                         "PM");
                           },
                           [](FaultScene& scene) {
                               EXPECT_EQ(scene.State.CurrentStudy.Record.StudyName, "PM");
                               ExpectStudyAgrees(scene);
                           }};

const Operation KeepsChanges{"ChangesKept",
                             [](FaultScene& scene) {
                                 scene.Object = std::make_shared<StudyRecovery>(scene.Program);
                                 scene.As<StudyRecovery>().Settle();
                                 ChangeStudy(scene);
                                 scene.As<StudyRecovery>().Keep();
                                 scene.State.CurrentStudy.Record.StudyNotes = "snow";
                             },
                             [](FaultScene& scene) { scene.As<StudyRecovery>().Keep(); },
                             [](FaultScene& scene) {
                                 EXPECT_FALSE(scene.State.StudyUnchanged);
                                 EXPECT_EQ(NamesIn(scene, scene.Group, RecoveryExtension), "AM.1.ldr ");
                             },
                             false,
                             true};

const Operation RestoresChanges{"ChangesRestored",
                                [](FaultScene& scene) {
                                    ChangeStudy(scene);
                                    StudyRecovery(scene.Program).Keep();
                                    NewStudy(scene.State, scene.Time);
                                },
                                [](FaultScene& scene) {
                                    StudyRecovery recovery(scene.Program);
                                    recovery.OfferAll();
                                },
                                [](FaultScene& scene) {
                                    EXPECT_EQ(scene.State.CurrentStudy.Record.StudyNotes, "rain");
                                    EXPECT_FALSE(scene.State.StudyUnchanged);
                                },
                                false,
                                true};

const Operation ExportsRunList{"RunListExported",
                               [](FaultScene& scene) {
                                   scene.DesktopServices.FileToSave = "/start/list.xls";
                                   scene.Files.PutText("/start/list.xls", "an older export");
                               },
                               [](FaultScene& scene) { ExportRunList(scene.Program); },
                               [](FaultScene& scene) { ExpectStudyAgrees(scene); }};

// Runs.

RunRecord Shortened(const FaultScene& scene) { return CutRun(scene.State.CurrentRun, 5, 25); }

Operation SavesRun(const std::string& name, const std::string& runName, bool keepsBackup) {
    return {name, [](FaultScene& scene) { scene.Files.PutText(scene.Group + "R1.rd2.bak", "an older copy"); },
            [=](FaultScene& scene) {
                RunRecord edited = Shortened(scene);
                edited.Header.RunName = runName;
                SaveRun(scene.State, scene.Files, edited, {.Entry = 1, .KeepsBackup = keepsBackup});
            },
            ExpectRunAgrees};
}

const Operation RenamesRunOfStudy{"RunOfStudyRenamed", Nothing,
                                  [](FaultScene& scene) {
                                      EXPECT_EQ(RenameCurrentRun(scene.State, scene.Files, 1, "Morning"), "");
                                      scene.State.CurrentRun.Header.RunName = "Morning";
                                  },
                                  [](FaultScene& scene) {
                                      const std::string name = RunFileName(scene.State.CurrentStudy.Entries[1]);
                                      EXPECT_TRUE(scene.Files.Bytes(scene.Group + name + RunExtension)) << name;
                                      EXPECT_EQ(scene.State.CurrentStudy.RunNames[1], name);
                                      ExpectStudyAgrees(scene);
                                  }};

const Operation TrimsRun{
    "RunTrimmed",
    [](FaultScene& scene) { scene.Object = std::make_shared<StudyRunEntry>(scene.State.CurrentStudy.Entries[1]); },
    [](FaultScene& scene) {
        auto& entry = scene.As<StudyRunEntry>();
        RunRecord& run = scene.State.CurrentRun;
        TrimmedRun trimmed = TrimToBoundaries(run, PlacedBoundaries(run, entry), entry);
        ASSERT_EQ(trimmed.Problem, "");
        ReplaceRunFile(scene.Files, trimmed.Run, scene.Group, RunFileName(entry),
                       AsItStands(scene.Files, scene.Group + RunFileName(entry) + RunExtension));
        run = std::move(trimmed.Run);
        entry = std::move(trimmed.Entry);
    },
    [](FaultScene& scene) {
        ExpectRunAgrees(scene);
        const bool isTrimmed = scene.State.CurrentRun.Header.SampleCount < 30;
        EXPECT_EQ(scene.As<StudyRunEntry>().CDStartDist < 100, isTrimmed);
    }};

const Operation ConvertsVer1Run{"Ver1RunConverted",
                                [](FaultScene& scene) {
                                    scene.Files.PutCopyOf(VANTOR_SAMPLES "Version 1 runs/MAINNB01.rdf",
                                                          scene.Group + "M.rdf");
                                },
                                [](FaultScene& scene) {
                                    RunRecord run;
                                    ConvertVer1RunFile(scene.Files, scene.Told, run, scene.Group, "M");
                                    scene.State.CurrentRun = run;
                                },
                                [](FaultScene& scene) {
                                    ExpectRunAgrees(scene);
                                    const auto isThere = [&](const char* extension) {
                                        return scene.Files.Bytes(scene.Group + "M" + extension).has_value();
                                    };
                                    EXPECT_EQ(isThere(".rd2"), isThere(".rdx"));
                                    EXPECT_NE(isThere(".rd2"), isThere(".rdf"));
                                }};

// Counter files and temporary runs.

const Operation ConvertsCounterFile{
    "CounterFileConverted",
    [](FaultScene& scene) { scene.Files.PutCopyOf(VANTOR_SAMPLES "Corridor.tdc", "/start/Field Data Files/C.tdc"); },
    [](FaultScene& scene) {
        ConvertCounterFile(scene.Files, "/start/Field Data Files/C.tdc", scene.Temp, scene.State.CurrentRun);
    },
    Nothing};

const Operation Downloads{"Downloaded", Nothing,
                          [](FaultScene& scene) {
                              CounterDownload download(scene.State, scene.Files, scene.Serial, scene.Time, scene.End);
                              scene.Serial.OnEvent = [&](SerialEvent event) { download.TakeEvent(event); };
                              download.Begin();
                              scene.Serial.Send("T,001,");
                              scene.Serial.Send(std::string(20, ':'));
                              download.Finish();
                          },
                          [](FaultScene& scene) {
                              const std::string names = NamesIn(scene, scene.State.Paths.FieldDataPath, ".tdc");
                              EXPECT_EQ(names.empty(), !scene.State.CounterFileChosen) << names;
                              EXPECT_FALSE(scene.Serial.Opened);
                          }};

const Operation CleansUp{"CleanedUp", Nothing,
                         [](FaultScene& scene) {
                             PendingDeletions deletions(scene.Temp, RunExtension);
                             deletions.Take("TR1");
                             deletions.Take("TR2");
                             deletions.DeleteAll(scene.Work, scene.Told);
                         },
                         Nothing, true};

const Operation CopiesFromDevice{
    "CopiedFromDevice",
    [](FaultScene& scene) {
        scene.Device.Files["\\Program Files\\Roampad\\GPSData.mdb"] = BytesOf("the new log");
        scene.Files.PutText("/start/Field Data Files/GPSData.mdb", "the old log");
    },
    [](FaultScene& scene) {
        CopyFromDevice(scene.Program, {"Roampad", "GPSData.mdb"}, "/start/Field Data Files/", [](std::int16_t) {});
    },
    [](FaultScene& scene) { EXPECT_EQ(scene.Device.OpenHandles(), 0U); }};

// Logs.

/// A log of two runs.
FieldLog LogOfTwoRuns() {
    FieldLog log = NewFieldLog(LogKind::GpsLaptop, "/start/Field Data Files/Trip.gd2");
    log.Folder = "/start/Field Data Files/";
    log.Name = "Trip";
    log.Extension = ".gd2";
    for (int i = 0; i < 6; ++i) {
        GpsPoint& point = log.Points.emplace_back().Gps;
        point.RunNumber = static_cast<std::int16_t>(i < 3 ? 1 : 2);
        point.Speed = 30;
        point.DateTime = {DateOf(2008, 3, 14).Days + TimeOf(7, 5, i).Days};
    }
    return log;
}

const Operation WritesLogRuns{
    "LogRunsWritten", Nothing,
    [](FaultScene& scene) { WriteLogRuns(scene.Files, LogOfTwoRuns(), {}, scene.Temp, scene.State.Settings); },
    Nothing};

const Operation WritesLogBack{
    "LogWrittenBack",
    [](FaultScene& scene) { scene.Files.PutText("/start/Field Data Files/Trip.gd2", "the log before its review"); },
    [](FaultScene& scene) { WriteFieldLog(scene.Files, LogOfTwoRuns()); }, Nothing};

// Settings.

const Operation SavesPreferences{"PreferencesSaved", Nothing,
                                 [](FaultScene& scene) {
                                     Preferences chosen{scene.State.Settings, scene.State.Paths};
                                     chosen.Settings.MetricUnits = -1;
                                     chosen.Paths.TempRunsPath = "/start/Other/";
                                     SavePreferences(scene.State, scene.Files, chosen);
                                 },
                                 [](FaultScene& scene) {
                                     ExpectSettingsAgree(scene);
                                     const bool isMetric = scene.State.Settings.MetricUnits != 0;
                                     EXPECT_EQ(scene.State.Paths.TempRunsPath == "/start/Other/", isMetric);
                                 }};

INSTANTIATE_TEST_SUITE_P(
    Rules, FaultTest,
    testing::Combine(testing::Values(SavesStudy, SavesStudyAs, OpensStudy, KeepsChanges, RestoresChanges,
                                     ExportsRunList, SavesRun("RunSaved", "R1", false),
                                     SavesRun("RunSavedWithCopy", "R1", true), SavesRun("RunSavedAs", "New", true),
                                     RenamesRunOfStudy, TrimsRun, ConvertsVer1Run, ConvertsCounterFile, Downloads,
                                     CleansUp, CopiesFromDevice, WritesLogRuns, WritesLogBack, SavesPreferences),
                     testing::ValuesIn(FaultReasons)),
    NameOfFault);

}  // namespace
}  // namespace vantor
