#include "core/Paths.h"
#include "counter/forms/frmUploadData.h"
#include "editing/forms/frmEditPulseData.h"
#include "editing/forms/frmEditRunFile.h"
#include "editing/forms/frmRunDetails.h"
#include "fakes/Clicks.h"
#include "faults/FaultHarness.h"
#include "gpsobd/forms/LogReview.h"
#include "reports/forms/frmReportPreview.h"
#include "statistics/forms/frmContDelayVsAvg.h"
#include "workspace/forms/frmMain.h"
#include "workspace/forms/frmStudySaveAs.h"

namespace vantor {
namespace {

using Scene = FaultScene;

template <class Form, class... Arguments>
std::function<void(Scene&)> Opens(Arguments... arguments) {
    return [=](Scene& scene) {
        auto form = std::shared_ptr<Form>(new Form(scene.Program, arguments...), [](Form* shown) {
            shown->hide();
            delete shown;
        });
        form->show();
        scene.Object = std::shared_ptr<QWidget>(form);
    };
}

QWidget& FormOf(Scene& scene) { return scene.As<QWidget>(); }

std::function<void(Scene&)> Clicks(const char* button) {
    return [=](Scene& scene) { Click(FormOf(scene), button); };
}
/// Types a text and clicks a button.
std::function<void(Scene&)> Types(const char* field, const char* text, const char* button) {
    return [=](Scene& scene) {
        Type(FormOf(scene), field, text);
        Click(FormOf(scene), button);
    };
}

// Temporary runs: the list shows what lies in the folder.

void ExpectListAgrees(Scene& scene) {
    std::vector<std::string> onDisk;
    for (const FileInfo& info : FilesWithExtension(scene.Files, scene.Temp, RunExtension))
        onDisk.push_back(BaseName(info.Name));
    std::vector<std::string> shown = Column(FormOf(scene), "vaSelRuns", 0);
    std::sort(shown.begin(), shown.end());
    EXPECT_EQ(shown, onDisk);
}

void SelectAllRuns(Scene& scene) { Find<QTableView>(FormOf(scene), "vaSelRuns").selectAll(); }

void RenameAll(Scene& scene) {
    Type(FormOf(scene), "txtTemplateBaseName", "Main");
    SelectAllRuns(scene);
    Click(FormOf(scene), "btnRename");
}

void OpenRenamed(Scene& scene) {
    Opens<frmUploadData>()(scene);
    RenameAll(scene);
    Find<QLineEdit>(FormOf(scene), "TxtStudyGroup").setText("Main");
}

// The review of a log: its runs, then the log itself.

const Operation ReviewsLog{"LogReviewed",
                           [](Scene& scene) {
                               FieldLog log =
                                   NewFieldLog(FormatOf(LogKind::ObdLaptop), "/start/Field Data Files/drive.od2");
                               for (int i = 0; i < 5; ++i) {
                                   ObdPoint& point = log.Obd.emplace_back();
                                   point.RunNumber = static_cast<std::int16_t>(i < 3 ? 1 : 2);
                                   point.Speed = 30;
                                   point.DateTime = {DateOf(2008, 3, 14).Days + TimeOf(7, 5, i).Days};
                               }
                               WriteFieldLog(scene.Files, log);
                               Opens<LogReview>(std::cref(FormatOf(LogKind::ObdLaptop)),
                                                LogChoice{"/start/Field Data Files/", "drive", ".od2"})(scene);
                           },
                           Clicks("BtnOk"),
                           [](Scene& scene) {
                               // Closed means on to the runs in the temporary folder.
                               if (!FormOf(scene).isHidden()) return;
                               for (const char* name : {"drive-R001", "drive-R002"}) scene.StoredRun(scene.Temp, name);
                           }};

// Files that the user names, each over an older one.

Operation Exports(const std::string& name, std::function<void(Scene&)> open, const char* button) {
    return {name,
            [open = std::move(open)](Scene& scene) {
                scene.DesktopServices.FileToSave = "/start/out.pdf";
                scene.Files.PutText("/start/out.pdf", "an older export");
                open(scene);
            },
            Clicks(button), [](Scene& scene) { EXPECT_TRUE(FormOf(scene).isVisible()); }};
}

const Operation OfForms[] = {
    // Temporary runs.
    {"RunsRenamed", Opens<frmUploadData>(), RenameAll, ExpectListAgrees},
    {"RenamingUndone", OpenRenamed, Clicks("btnRename"), ExpectListAgrees},
    {"RunsMoved", OpenRenamed, Clicks("btnMoveRuns"), ExpectListAgrees},
    {"RunsDeleted",
     [](Scene& scene) {
         Opens<frmUploadData>()(scene);
         SelectAllRuns(scene);
     },
     Clicks("BtnDelete"), ExpectListAgrees, true},
    // Editors of a run.
    {"DetailsEdited", Opens<frmRunDetails>(1), Types("RunDetailsNotes", "wet", "RunDetailsSave"), ExpectRunAgrees},
    {"RunFileEdited", Opens<frmEditRunFile>(1), Types("RunName", "Other", "RunDetailsSave"), ExpectRunAgrees},
    {"SensorDataEdited", Opens<frmEditPulseData>(1),
     [](Scene& scene) {
         Type(FormOf(scene), "txtEditDataPoint", "20");
         QTest::keyClick(&Find<QWidget>(FormOf(scene), "txtEditDataPoint"), Qt::Key_Return);
         Click(FormOf(scene), "btnSave");
     },
     ExpectRunAgrees},
    // The main window and its dialogs.
    {"SavedInWindow",
     [](Scene& scene) {
         scene.State.Settings.UseStartUpScreen = 0;
         SaveSettings(scene.State, scene.Files);
         Opens<frmMain>()(scene);
         static_cast<frmMain&>(FormOf(scene)).Start();
         Type(FormOf(scene), "StudyNotes", "rain");
     },
     [](Scene& scene) { Find<QAction>(FormOf(scene), "mnuFileSave").trigger(); },
     [](Scene& scene) {
         ExpectStudyAgrees(scene);
         EXPECT_EQ(Find<QLabel>(FormOf(scene), "lblSaved").text() == "Saved", scene.State.StudyUnchanged);
     }},
    {"SavedInNewGroup",
     [](Scene& scene) {
         scene.State.StudyUnchanged = false;
         Opens<frmStudySaveAs>()(scene);
         Type(FormOf(scene), "txtStudyGroup", "Elm");
         Type(FormOf(scene), "txtStudyName", "PM");
     },
     Clicks("BtnSave"), ExpectStudyAgrees},
    // The review of a log and files that the user names.
    ReviewsLog,
    Exports("ChartExported", Opens<frmContDelayVsAvg>(), "BtnSave"),
    Exports("ReportExported", Opens<frmReportPreview>(), "BtnSavePdf"),
    Exports("RowsExported", ReviewsLog.Prepare, "btnExport2Excel")};
INSTANTIATE_TEST_SUITE_P(Forms, FaultTest, testing::ValuesIn(OfForms), NameOfOperation);

}  // namespace
}  // namespace vantor
