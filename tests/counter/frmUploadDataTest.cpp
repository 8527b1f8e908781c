#include "counter/forms/frmUploadData.h"

#include <gmock/gmock.h>

#include "CounterTexts.h"
#include "fakes/FormScene.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

using testing::ElementsAre;

const std::string GroupProblem = "Check the Current Study Group selected. There seems to be a problem.";

class frmUploadDataTest : public FormScene<frmUploadData> {
protected:
    void PutRuns(const std::vector<std::string>& names) {
        for (const std::string& name : names) Files.PutText(Temp + name + ".rd2", name);
    }
    void SelectRows(const std::vector<int>& rows) {
        Get<LongList>("vaSelRuns").clearSelection();
        for (const int row : rows) ClickRow(*Window, "vaSelRuns", row, Qt::ControlModifier);
    }
    void RenameAs(const QString& baseName, const std::vector<int>& rows) {
        TypeInto("txtTemplateBaseName", baseName);
        SelectRows(rows);
        Press("btnRename");
    }
    void ExpectOn(const char* button, const std::string& message) {
        Messages.Expect(message);
        Press(button);
    }
    std::vector<std::string> Listed() { return Column(*Window, "vaSelRuns", 0); }
};

TEST_F(frmUploadDataTest, FieldsOfTheTemplateHaveTheirWidths) {
    Open();
    for (const char* field : {"txtTemplateBaseName", "txtTemplateDir", "txtTemplateRunNumber"})
        TypeInto(field, "1234567890123456789012345");
    EXPECT_EQ(Text("lblNextName"), "Next name: 12345678901234567890-12-123");
    ExpectOn("BtnEditTemplate", "This function is not implemented yet.");
    Press("btnUploadOk");
    EXPECT_TRUE(IsAccepted());
}

TEST_F(frmUploadDataTest, ConvertsTheChosenFileAndListsItsGoodRuns) {
    Files.PutText(FieldData + "Day.tdc", Record("T,001,001") + "T,1");
    Messages.Expect("Run-time error '62':\nInput past end of file\n\n" + FieldData +
                    "Day.tdc, record 2\nThe file ends without its end mark (twenty colons). Dump the counter "
                    "again to get all of it. The runs before this record were kept.");
    Open(Upload{UploadOf::CounterFile, CounterFileChoice{FieldData, "Day"}});
    EXPECT_THAT(Listed(), ElementsAre("S001R001-SITE0001-1"));
}

TEST_F(frmUploadDataTest, RenamesTheSelectionInTheOrderShownAndUndoes) {
    PutRuns({"A", "B", "C", "D"});
    Open();
    TypeInto("txtTemplateRunNumber", "999");
    Get<LongList>("vaSelRuns").sortByColumn(0, Qt::DescendingOrder);
    RenameAs("  Main St ", {0, 1, 3});
    EXPECT_THAT(Listed(), ElementsAre("Main St-NB-999", "Main St-NB-001", "Main St-NB-000", "B"));
    EXPECT_EQ(TextsIn(Files, Temp), "B=B, Main St-NB-000=C, Main St-NB-001=A, Main St-NB-999=D");
    EXPECT_EQ(Text("txtTemplateRunNumber"), "002");
    EXPECT_EQ(Text("lblNextName"), "Next name: Main St-NB-002");
    EXPECT_EQ(Text("btnRename"), "  Undo  ");

    SelectRows({1, 2, 3});
    Press("btnRename");
    EXPECT_EQ(Text("btnRename"), " Rename ");
    EXPECT_THAT(Listed(), ElementsAre("Main St-NB-999", "C", "B", "A"));
    EXPECT_EQ(TextsIn(Files, Temp), "A=A, B=B, C=C, Main St-NB-999=D");
}

TEST_F(frmUploadDataTest, ARefusedRenamingRenamesNone) {
    PutRuns({"A", "B", "Main-NB-002"});
    Open();
    Messages.Expect("You must enter a Base Name for the new run names.");
    RenameAs("   ", {0});
    RenameAs("Main", {});
    EXPECT_EQ(DesktopServices.Beeps, 1);
    Messages.Expect("Run-time error '58':\nFile already exists\n\n/start/Temp/Main-NB-002.rd2");
    RenameAs("Main", {0, 1});
    EXPECT_THAT(Listed(), ElementsAre("A", "B", "Main-NB-002"));
    EXPECT_EQ(Text("txtTemplateRunNumber"), "001");
    EXPECT_EQ(Text("btnRename"), " Rename ");
}

TEST_F(frmUploadDataTest, DeletesTheSelectionWithoutAsking) {
    PutRuns({"A", "B", "C"});
    Open();
    Press("BtnDelete");
    EXPECT_EQ(DesktopServices.Beeps, 1);
    SelectRows({0, 2});
    Files.FailChangeAfter(1, ErrorNumber::PermissionDenied);
    ExpectOn("BtnDelete", "Run-time error '70':\nPermission denied\n\n/start/Temp/C.rd2");
    EXPECT_THAT(Listed(), ElementsAre("B", "C"));
    Press("BtnDelete");  // C is still selected
    EXPECT_THAT(Listed(), ElementsAre("B"));
    EXPECT_EQ(TextsIn(Files, Temp), "B=B");
}

TEST_F(frmUploadDataTest, MovesRenamedRunsAndReportsThoseThatExist) {
    PutRuns({"A", "B", "C", "D"});
    Files.PutText(Groups + "Main/m-nb-002.rd2", "other");
    Open();
    ExpectOn("btnMoveRuns", "You must select some runs before you click Move.");
    SelectRows({0, 1, 2});
    ExpectOn("btnMoveRuns", "You must rename the runs before you click Move.");
    RenameAs("M", {0, 1, 2});
    for (const auto& [group, message] : {std::pair<const char*, std::string>{"", GroupProblem},
                                         {"Elm", GroupProblem},
                                         {"..", UnsafeName("..")},
                                         {" Main ", "Run M-NB-002 exists in the selected Study Group."}}) {
        TypeInto("TxtStudyGroup", group);
        ExpectOn("btnMoveRuns", message);
    }
    EXPECT_EQ(TextsIn(Files, Groups + "Main/"), "M-NB-001=A, m-nb-002=other, M-NB-003=C");
    EXPECT_EQ(TextsIn(Files, Temp), "D=D, M-NB-002=B");
    EXPECT_THAT(Listed(), ElementsAre("D", "M-NB-002"));
    EXPECT_TRUE(Get<LongList>("vaSelRuns").SelectedRows().empty());
    EXPECT_EQ(Text("btnRename"), " Rename ");
    EXPECT_EQ(State.Paths.LastStudyGroupPath, Groups + "Main/");

    EXPECT_EQ(Text("lblStayed"), "Stayed here, for the Study Group has runs of these names: M-NB-002");
    Press("btnRenameThese");
    EXPECT_THAT(Listed(), ElementsAre("D", "M-NB-004"));
    EXPECT_FALSE(IsShown("btnRenameThese"));
    Press("btnMoveRuns");
    EXPECT_EQ(TextsIn(Files, Groups + "Main/"), "M-NB-001=A, m-nb-002=other, M-NB-003=C, M-NB-004=B");
    EXPECT_THAT(Window->ForStudy().Names, ElementsAre("M-NB-001", "M-NB-003", "M-NB-004"));
    EXPECT_EQ(Window->ForStudy().Folder, Groups + "Main/");
    Press("chkForStudy");
    EXPECT_TRUE(Window->ForStudy().Names.empty());
    Open();
    EXPECT_EQ(Text("TxtStudyGroup"), "Main") << "the group used last";
    EXPECT_EQ(Get<FolderTree>("treSDFPath").SelectedFolder(), Groups + "Main/");
}

TEST_F(frmUploadDataTest, OffersTheFreeNumberAndTheDirectionOfTheLog) {
    RunRecord run;
    for (const auto& [name, notes] : {std::pair{"A", "Direction EB; gaps: 1"},
                                      {"B", "Direction EB"},
                                      {"C", ""},
                                      {"D", "Direction WB"},
                                      {"E", "Direction unknown"}}) {
        run.Header.Notes = notes;
        PutRunFile(Files, run, Temp, name);
    }
    PutRuns({"M-EB-004"});
    for (const char* taken : {"m-eb-001", "M-EB-003", "M-EB-1000", "M-NB-002"})
        Files.PutText(Groups + "Main/" + taken + ".rd2", "");
    Open();
    EXPECT_FALSE(IsEnabled("btnFreeNumber"));
    TypeInto("txtTemplateBaseName", "M");
    EXPECT_EQ(Text("btnFreeNumber"), "001 is free");
    EXPECT_FALSE(IsEnabled("btnDirection")) << "two directions";
    SelectRows({0, 1, 2});
    EXPECT_EQ(Text("btnDirection"), "EB (from the log)");
    Press("btnDirection");
    EXPECT_EQ(Text("txtTemplateDir"), "EB");
    ClickFolder(*Window, "treSDFPath", "Main");
    EXPECT_EQ(Text("btnFreeNumber"), "005 is free") << "and 006 and 007";
    SelectRows({0});
    EXPECT_EQ(Text("btnFreeNumber"), "002 is free");
    Press("btnFreeNumber");
    EXPECT_EQ(Text("lblNextName"), "Next name: M-EB-002");
}

TEST_F(frmUploadDataTest, AFullDiskMovesNoneAndLeavesAllRenamedAndSelected) {
    PutRuns({"A", "B"});
    Files.CreateFolder(Groups + "Main");
    Open();
    RenameAs("M", {0, 1});
    TypeInto("TxtStudyGroup", "Main");
    Files.FailChangeAfter(1, ErrorNumber::DiskFull);
    ExpectOn("btnMoveRuns", "Run-time error '61':\nDisk full\n\n" + Temp + "M-NB-002.rd2");
    Press("btnRename");
    EXPECT_EQ(TextsIn(Files, Temp), "A=A, B=B") << "undone";
}

TEST_F(frmUploadDataTest, ChoosesAndMakesStudyGroups) {
    Files.CreateFolder(Groups + "Main");
    Open();
    ClickFolder(*Window, "treSDFPath", "Main");
    EXPECT_EQ(Text("TxtStudyGroup"), "Main");
    TypeInto("TxtStudyGroup", "Elm Ave");
    PressKey(Qt::Key_Return);
    EXPECT_EQ(Get<FolderTree>("treSDFPath").SelectedFolder(), Groups + "Elm Ave/");
    Press("btnStudyGroupDetails");
    EXPECT_THAT(OtherScreens.Shown, ElementsAre("frmUploadRunList"));
    TypeInto("TxtStudyGroup", "Oak");
    ExpectOn("btnStudyGroupDetails", GroupProblem);
    EXPECT_TRUE(Window->isVisible());
    PressKey(Qt::Key_Escape);
    EXPECT_FALSE(Window->isVisible());
}

}  // namespace
}  // namespace vantor
