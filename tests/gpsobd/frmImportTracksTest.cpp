#include "gpsobd/forms/frmImportTracks.h"

#include <gmock/gmock.h>
#include <QApplication>
#include <QSpinBox>
#include <QTimer>

#include "Tracks.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/StudyGroupFolders.h"
#include "core/Text.h"
#include "core/modMain.h"
#include "corridor/CorridorFile.h"
#include "fakes/FormScene.h"
#include "gpsobd/TrackChoices.h"
#include "gpsobd/forms/frmTrackColumns.h"

namespace vantor {
namespace {

using testing::ElementsAre, testing::EndsWith, testing::HasSubstr, testing::IsEmpty, testing::StartsWith;
using Names = std::vector<std::string>;

class ImportTracksTest : public FormScene<frmImportTracks> {
protected:
    static constexpr int Start = 2, Nodes = 4, Group = 7, Name = 8, Flags = 9;
    const std::string Main = "/start/Study Groups/Main/", Elm = "/start/Study Groups/Elm/";

    /// Two drives to the north, the second with a jump, and one to the east.
    void OpenInbox() {
        Files.PutText("/t/a.gpx", Gpx({}));
        Files.PutText("/t/b.gpx", Gpx({.Minute = 5, .JumpAt = 30}));
        Files.PutText("/t/c.gpx", Gpx({.Minute = 9, .IsNorth = false}));
        Open(Names{"/t/a.gpx", "/t/b.gpx", "/t/c.gpx"});
    }
    void ChooseGroup(const char* group) {
        Get<QComboBox>("cmbGroup").setFocus();
        Get<QComboBox>("cmbGroup").setEditText(QLatin1String(group));
        PressKey(Qt::Key_Return);
    }
    Names NamesShown() { return Column(*Window, "vaTracks", Name); }
    /// "FOLDER NAME NAME;" of each group that the study is offered runs of.
    std::string Taken() {
        std::string text;
        for (const RunsForStudy& runs : Window->ForStudy()) text += runs.Folder + " " + Joined(runs.Names, " ") + ";";
        return text;
    }
    TickList& List() { return Get<TickList>("vaTracks"); }
    std::string Notes() { return FromQt(Get<QPlainTextEdit>("txtNotes").toPlainText()); }
};

TEST_F(ImportTracksTest, RunsGoToANewGroupUnderTheirNames) {
    OpenInbox();
    EXPECT_EQ(Text("lblCount"), "2 of 3 runs") << "without the one that jumps";
    EXPECT_THAT(NamesShown(), ElementsAre("", "", "")) << "no group yet";
    Messages.Expect("The runs need a Study Group.\nEnter its name above the list.");
    Press("btnOk");
    ChooseGroup("../Main");
    Messages.Expect(
        "\"../Main\" cannot be used as a name.\nLeave out \"..\" and the characters / \\ : * ? \" < > | and "
        "try again.");
    Press("btnOk");
    ChooseGroup("Main");
    EXPECT_TRUE(List().hasFocus()) << "Enter takes the group and leaves the screen open";
    EXPECT_THAT(NamesShown(), ElementsAre("Main-NB-001", "", "Main-EB-001"));
    EXPECT_TRUE(IsShown("picMap"));
    PressKey(Qt::Key_Down);
    EXPECT_THAT(Notes(), testing::AllOf(StartsWith("b.gpx, 1, to be looked at:"), HasSubstr("speed jumps at 15:05:")));
    EXPECT_EQ(Get<MapView>("picMap").ChosenItem(), 2);
    PressKey(Qt::Key_Space);
    TypeInto("txtBaseName", "Elm");
    EXPECT_THAT(NamesShown(), ElementsAre("Elm-NB-001", "Elm-NB-002", "Elm-EB-001"));
    Press("btnAcceptUnflagged");
    EXPECT_EQ(Text("lblCount"), "2 of 3 runs");
    Press("btnOk");
    EXPECT_TRUE(IsAccepted());
    EXPECT_EQ(Taken(), Main + " Elm-NB-001 Elm-EB-001;");
    EXPECT_TRUE(ReadRun(Files, Main, "Elm-EB-001", RunPart::Whole));
    EXPECT_EQ(LastGroupOfRuns(State.Choices), "Main");
}

TEST_F(ImportTracksTest, TypedNamesAreKeptAndChecked) {
    OpenInbox();
    ChooseGroup("Main");
    List().item(0, Name)->setText(QStringLiteral("Main-EB-001"));
    EXPECT_THAT(NamesShown(), ElementsAre("Main-EB-001", "", "Main-EB-002")) << "the others make room";
    List().item(1, 0)->setCheckState(Qt::Checked);
    auto& gap = Get<QSpinBox>("spnGap");
    gap.setFocus();
    gap.selectAll();
    QTest::keyClicks(&gap, QStringLiteral("20"));
    PressKey(Qt::Key_Return);
    EXPECT_TRUE(Window->isVisible());
    EXPECT_EQ(ChoiceOf(State.Choices, TrackGapKey), "20");
    EXPECT_THAT(NamesShown(), ElementsAre("Main-EB-001", "Main-NB-001", "Main-EB-002")) << "read again";
    List().item(2, Name)->setText(QStringLiteral("MAIN-eb-001"));
    Messages.Expect("Two runs would be called MAIN-eb-001.\nType another name (F2), or none for the next free number.");
    Press("btnOk");
    const std::string asks =
        "Names or Study Groups of runs were typed, and no run was made.\nDo you want to discard them?";
    Messages.Expect(asks, MessageAnswer::No);
    PressKey(Qt::Key_Escape);
    EXPECT_TRUE(Window->isVisible());
    Messages.Expect(asks, MessageAnswer::Yes);
    PressKey(Qt::Key_Escape);
    EXPECT_FALSE(FolderExists(Files, Main));
}

TEST_F(ImportTracksTest, RowsGoToGroupsOfTheirOwn) {
    OpenInbox();
    List().item(1, 0)->setCheckState(Qt::Checked);
    ChooseGroup("Main");
    PressKey(Qt::Key_Down, Qt::ShiftModifier);
    Press("btnGroupOfRows");
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("Elm"));
    PressKey(Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_TRUE(Window->isVisible());
    EXPECT_THAT(Column(*Window, "vaTracks", Group), ElementsAre("Elm", "Elm", "Main")) << "all that were selected";
    EXPECT_THAT(NamesShown(), ElementsAre("Elm-NB-001", "Elm-NB-002", "Main-EB-001"));
    List().setCurrentCell(0, 0);
    PressKey(Qt::Key_F2);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("Mine"));
    PressKey(Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_THAT(NamesShown(), ElementsAre("Mine", "Elm-NB-001", "Main-EB-001")) << "F2 is for the name";
    ChooseGroup("Oak");
    EXPECT_THAT(Column(*Window, "vaTracks", Group), ElementsAre("Elm", "Elm", "Oak"));
    PressKey(Qt::Key_Return);
    EXPECT_TRUE(IsAccepted()) << "Enter in the list is OK";
    EXPECT_EQ(Taken(), "/start/Study Groups/Oak/ Oak-EB-001;" + Elm + " Mine Elm-NB-001;");
    Open(Names{"/t/a.gpx"});
    EXPECT_THAT(Column(*Window, "vaTracks", Flags), ElementsAre("")) << "the drive lies in another group than this";
    ChooseGroup("Elm");
    EXPECT_THAT(Column(*Window, "vaTracks", Flags), ElementsAre("same drive as Mine"));
    EXPECT_EQ(Text("lblCount"), "0 of 1 runs");
    Press("btnGroupOfRows");
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("Oak"));
    PressKey(Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_TRUE(Window->isVisible());
    EXPECT_THAT(Column(*Window, "vaTracks", Group), ElementsAre("Oak")) << "one that is there";
}

TEST_F(ImportTracksTest, ADriveThatTheGroupHasIsNotTakenTwice) {
    OpenInbox();
    ChooseGroup("Main");
    Press("btnOk");
    Open(Names{"/t/a.gpx", "/t/a.gpx", "/t/none.gpx"});
    EXPECT_EQ(List().rowCount(), 1) << "a file is read once";
    EXPECT_THAT(Column(*Window, "vaTracks", Flags), ElementsAre("same drive as Main-NB-001"));
    EXPECT_EQ(Text("lblRemarks"), "none.gpx: File not found");
    EXPECT_FALSE(IsEnabled("btnOk"));
    ChooseGroup("Other");
    EXPECT_THAT(NamesShown(), ElementsAre("Other-NB-001"));
    auto& zones = Get<QComboBox>("cmbZone");
    zones.setFocus();
    zones.lineEdit()->selectAll();
    QTest::keyClicks(zones.lineEdit(), QStringLiteral("nowhere"));
    PressKey(Qt::Key_Return);
    EXPECT_EQ(Text("cmbZone"), "this computer's, UTC");
    Pick("cmbZone", "West");
    EXPECT_THAT(Column(*Window, "vaTracks", Start), ElementsAre("03/04/26 10:00"));
}

TEST_F(ImportTracksTest, ColumnsAreSaidOnceForAllFilesWithTheirHead) {
    Files.PutText("/t/a.csv", Csv("Zeit;Breite;Weite;Tempo", {}));
    Files.PutText("/t/b.csv", Csv("Zeit;Breite;Weite;Tempo", {.Minute = 9}));
    Open(Names{"/t/a.csv", "/t/b.csv"});
    EXPECT_THAT(Text("lblRemarks"), StartsWith("a.csv: Neither columns of latitude"));
    EXPECT_EQ(List().rowCount(), 0);
    QTimer::singleShot(0, Window.get(), [this] {
        auto& form = Find<frmTrackColumns>(*Window, "frmTrackColumns");
        EXPECT_EQ(TextOf(form, "cmbDelimiter"), "semicolon");
        EXPECT_FALSE(Find<QPushButton>(form, "btnOk").isEnabled());
        Choose(form, "cmbKind1", "Time");
        Choose(form, "cmbKind2", "Latitude");
        Choose(form, "cmbKind3", "Latitude");
        EXPECT_EQ(TextOf(form, "cmbKind2"), "-") << "one column of a kind";
        Choose(form, "cmbKind3", "Longitude");
        Choose(form, "cmbKind2", "Latitude");
        EXPECT_EQ(TextOf(form, "lblOutcome"),
                  "Read so, the first point is at 2026-03-04T15:00:00 (UTC) at 42.00000, -83.00000.");
        Choose(form, "cmbKind4", "Speed");
        EXPECT_THAT(TextOf(form, "lblOutcome"), EndsWith("with 111.8 mph.")) << "50 m/s";
        Choose(form, "cmbUnit", "km/h");
        EXPECT_THAT(TextOf(form, "lblOutcome"), EndsWith("with 31.1 mph."));
        Find<QSpinBox>(form, "spnHead").setValue(0);
        EXPECT_THAT(TextOf(form, "lblOutcome"), HasSubstr("1 cannot be read, the first in line 1"));
        Find<QSpinBox>(form, "spnHead").setValue(1);
        Click(form, "btnOk");
    });
    Press("btnColumns");
    EXPECT_EQ(List().rowCount(), 2);
    EXPECT_THAT(Column(*Window, "vaTracks", Flags), ElementsAre("", ""));
}

/// Elapsed seconds get the day and the hour that the user says, in the zone that he says.
TEST_F(ImportTracksTest, TheStartOfALogIsSaid) {
    Files.PutText("/t/a.csv", "elapsed (s),speed (mph)\n0,30\n1,30\n2,30\n");
    frmTrackColumns form(Context, {"/t/a.csv"});
    form.show();
    EXPECT_EQ(TextOf(form, "cmbTimes"), "seconds since the start");
    EXPECT_THAT(TextOf(form, "lblOutcome"), StartsWith("The times of the file have no day."));
    Choose(form, "cmbZone", "West");
    Find<QDateTimeEdit>(form, "dteStart").setDateTime(QDateTime({2026, 3, 4}, {8, 30}, Qt::UTC));
    EXPECT_EQ(TextOf(form, "lblOutcome"), "Read so, the first point is at 2026-03-04T08:30:00 (West) with 30.0 mph.");
    Click(form, "btnOk");
    Open(Names{"/t/a.csv"});
    EXPECT_THAT(Notes(), HasSubstr("its times have no day; they are taken to begin on 2026-03-04T08:30:00"));
}

/// A street of 60 x 0.00012 degrees, its nodes at steps 15 and 45; the bands and the lead fit in 60 steps of 44 ft.
TEST_F(ImportTracksTest, ACorridorTakesThePassesAlongIt) {
    Corridor street;
    street.Nodes.resize(2);
    for (int i = 0; i < 2; ++i)
        street.Nodes[i] = {"Node " + std::to_string(i), Position{42 + 0.00012 * (15 + 30 * i), -83}, {}, 1313.0 * i};
    const std::string path = "/start/Study Groups/Harbor St.corridor.geojson";
    SaveCorridor(Files, path, street, Expected::Nothing());
    OpenInbox();
    TypeInto("txtBaseName", "Mine");
    Pick("cmbCorridor", "Harbor St");
    EXPECT_THAT(Column(*Window, "vaTracks", Nodes), ElementsAre("2 of 2"));
    EXPECT_EQ(Text("lblRemarks"),
              "b.gpx: it does not drive along Harbor St past two nodes.\n"
              "c.gpx: it does not drive along Harbor St past two nodes.")
        << "one jumps past a node, one drives across";
    EXPECT_FALSE(IsShown("chkForStudy") || IsEnabled("btnReview"));
    Pick("cmbCorridor", "(none)");
    EXPECT_EQ(Text("txtBaseName") + Text("cmbGroup"), "Mine") << "as it was";
    EXPECT_EQ(List().rowCount(), 3);
    Pick("cmbCorridor", "Harbor St");
    Pick("cmbCondition", "After");
    EXPECT_THAT(NamesShown(), ElementsAre("Harbor St-NB-001"));
    street.Runs.push_back({"Elm", "Other"});
    Files.Delete(path);
    SaveCorridor(Files, path, street, Expected::Nothing());
    Press("btnOk");
    EXPECT_EQ(Taken(), "") << "the study takes none";
    const Corridor taken = LoadCorridor(Files, path).Corridor;
    ASSERT_EQ(taken.Runs.size(), 2U) << "beside one that was taken meanwhile";
    EXPECT_EQ(taken.Runs[1].Group + "/" + taken.Runs[1].Name, "Harbor St/Harbor St-NB-001");
    EXPECT_FALSE(taken.Runs[1].IsBefore);
    EXPECT_TRUE(ReadRun(Files, "/start/Study Groups/Harbor St/", "Harbor St-NB-001", RunPart::Whole).Run.Header.After);
    Open(Names{"/t/a.gpx"}, path);
    EXPECT_EQ(Text("lblRemarks"), "Harbor St has 1 pass of these files already; it is not listed.");
    EXPECT_EQ(List().rowCount(), 0);
}

TEST_F(ImportTracksTest, AReviewedFileGivesItsRunsAndLeavesTheList) {
    OpenInbox();
    OtherScreens.Log = {"/t/", "a", ".gpx"};
    OtherScreens.Moved = {Main, {"Main-NB-007"}};
    Press("btnReview");
    EXPECT_THAT(OtherScreens.Shown, ElementsAre("review a.gpx")) << "left without runs";
    EXPECT_EQ(List().rowCount(), 3);
    OtherScreens.OnShow["review a.gpx"] = [] { return true; };
    Press("btnReview");
    EXPECT_EQ(OtherScreens.Shown.back(), "frmUploadData");
    EXPECT_EQ(List().rowCount(), 2);
    OtherScreens.Log = {"/t/", "b", ".gpx"};
    OtherScreens.Moved = {Elm, {"Elm-NB-001"}};
    OtherScreens.OnShow["review b.gpx"] = [] { return true; };
    Press("btnReview");
    ChooseGroup("Main");
    Press("btnOk");
    EXPECT_EQ(Taken(), Main + " Main-EB-001 Main-NB-007;" + Elm + " Elm-NB-001;");
}

}  // namespace
}  // namespace vantor
