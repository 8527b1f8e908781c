#include "counter/forms/frmUploadData.h"

#include <gmock/gmock.h>

#include "TableClicks.h"
#include "fakes/FakePorts.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string Temp = "/start/Temp/";
const std::string Groups = "/start/Study Groups/";
const std::string FieldData = "/start/Field Data Files/";
const std::string EndMark = "::::::::::::::::::::\r\n";

class frmUploadDataTest : public testing::Test {
protected:
    void PutRuns(const std::string& folder, const std::vector<std::string>& names) {
        for (const std::string& name : names) Program.Files.PutText(folder + name + ".rd2", "was " + name);
    }

    frmUploadData& Open() {
        Form = std::make_unique<frmUploadData>(Program.Context);
        Form->show();
        return *Form;
    }
    void SelectRows(const std::vector<int>& rows) {
        Find<LongList>(*Form, "vaSelRuns").clearSelection();
        for (const int row : rows) ClickRow(*Form, "vaSelRuns", row, Qt::ControlModifier);
    }
    void RenameAs(const QString& baseName, const std::vector<int>& rows) {
        Type(*Form, "txtTemplateBaseName", baseName);
        SelectRows(rows);
        Click(*Form, "btnRename");
    }
    void EnterGroup(const QString& name) {
        Type(*Form, "TxtStudyGroup", name);
        QTest::keyClick(&Find<QLineEdit>(*Form, "TxtStudyGroup"), Qt::Key_Return);
    }

    std::string Caption() { return FromQt(WithoutAccessKey(Find<QPushButton>(*Form, "btnRename").text())); }
    std::string Text(const char* field) { return FromQt(Find<QLineEdit>(*Form, field).text()); }
    std::vector<std::string> Listed() { return Column(*Form, "vaSelRuns", 0); }
    /// Run files with the name they had first: "Main-NB-001 was A".
    std::vector<std::string> OnDisk(const std::string& folder) {
        std::vector<std::string> found;
        for (const FileInfo& info : Program.Files.List(folder)) {
            if (info.IsFolder) continue;
            const auto bytes = *Program.Files.Bytes(folder + info.Name);
            found.push_back(info.Name.substr(0, info.Name.size() - 4) + " " +
                            std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
        }
        return found;
    }

    TestProgram Program;
    std::unique_ptr<frmUploadData> Form;
};

TEST_F(frmUploadDataTest, OpensWithItsCaptionsAndDefaults) {
    frmUploadData& form = Open();
    EXPECT_EQ(form.windowTitle(), "Process Runs in Temp Folder");
    EXPECT_EQ(Find<QLabel>(form, "TxtQuickDirections").text(),
              "1- Enter Base Name in Template\n2- Select runs then click Rename\n"
              "3- Select Study Group or Enter new \nname\n4- Click Move Runs");
    EXPECT_EQ(Caption(), " Rename ");
    EXPECT_EQ(WithoutAccessKey(Find<QPushButton>(form, "btnMoveRuns").text()), "Move\nRuns");
    EXPECT_EQ(Text("txtTemplateBaseName") + Text("txtTemplateDir") + Text("txtTemplateRunNumber"), "NB001");
    for (const auto& [field, width] :
         {std::pair{"txtTemplateBaseName", 20}, {"txtTemplateDir", 2}, {"txtTemplateRunNumber", 3}}) {
        Type(form, field, "1234567890123456789012345");
        EXPECT_EQ(Text(field).size(), static_cast<std::size_t>(width));
    }
    Program.Messages.Expect("This function is not implemented yet.");
    Click(form, "BtnEditTemplate");
    Click(form, "cmdHelp");
    EXPECT_EQ(Program.DesktopServices.Opened.size(), 1u);
    Click(form, "btnUploadOk");
    EXPECT_FALSE(form.isVisible());
}

TEST_F(frmUploadDataTest, ConvertsTheChosenFileOnce) {
    Program.Files.PutText(FieldData + "Day.tdc", "T,1,001,SITE0001,0653,031108,01000\r\n100 128\r\n1\r\n" + EndMark);
    Program.State.CounterFileChosen = true;
    Program.State.ChosenCounterFileFolder = FieldData;
    Program.State.ChosenCounterFileName = "Day";
    Program.State.GpsObdUpload = true;
    Open();
    EXPECT_THAT(Listed(), IsEmpty());

    Program.State.GpsObdUpload = false;
    Open();
    EXPECT_THAT(Row(*Form, "vaSelRuns", 0),
                ElementsAre("S1  R001-SITE0001-1", "03/11/08", "06:53", "Primary", "100", "1", "3", "Before", ""));
    EXPECT_FALSE(Program.State.CounterFileChosen);
    Open();
    EXPECT_THAT(Listed(), ElementsAre("S1  R001-SITE0001-1"));
}

TEST_F(frmUploadDataTest, AFaultyFileIsToldAndItsGoodRunsAreListed) {
    Program.Files.PutText(FieldData + "Cut.tdc", "T,1,001,SITE0001,0653,031108,01000\r\n1\r\nT,1");
    Program.State.CounterFileChosen = true;
    Program.State.ChosenCounterFileFolder = FieldData;
    Program.State.ChosenCounterFileName = "Cut";
    Program.Messages.Expect("Run-time error '62':\nInput past end of file\n\n" + FieldData +
                            "Cut.tdc, record 2\nThe file ends without its end mark (twenty colons). Dump the counter "
                            "again to get all of it. The runs before this record were kept.");
    Open();
    EXPECT_THAT(Listed(), ElementsAre("S1  R001-SITE0001-1"));
    EXPECT_FALSE(Program.State.CounterFileChosen);
}

TEST_F(frmUploadDataTest, RenamesTheSelectionByTheTemplateAndUndoes) {
    PutRuns(Temp, {"A", "B", "C", "D"});
    Open();
    RenameAs("  Main St ", {0, 1, 3});
    EXPECT_THAT(Listed(), ElementsAre("Main St-NB-001", "Main St-NB-002", "C", "Main St-NB-003"));
    EXPECT_THAT(OnDisk(Temp),
                ElementsAre("C was C", "Main St-NB-001 was A", "Main St-NB-002 was B", "Main St-NB-003 was D"));
    EXPECT_EQ(Text("txtTemplateRunNumber"), "004");
    EXPECT_EQ(Caption(), "  Undo  ");

    SelectRows({1, 2, 3});
    Click(*Form, "btnRename");
    EXPECT_EQ(Caption(), " Rename ");
    EXPECT_THAT(Listed(), ElementsAre("Main St-NB-001", "B", "C", "D"));
    Program.Messages.Expect("You must rename the runs before you click Move.");
    Click(*Form, "btnMoveRuns");
    EXPECT_THAT(OnDisk(Temp), ElementsAre("B was B", "C was C", "D was D", "Main St-NB-001 was A"));
}

TEST_F(frmUploadDataTest, RenamesInTheOrderShown) {
    PutRuns(Temp, {"A", "B", "C"});
    Open();
    Type(*Form, "txtTemplateRunNumber", "999");
    Find<LongList>(*Form, "vaSelRuns").sortByColumn(0, Qt::DescendingOrder);
    RenameAs("M", {0, 1});  // C, B: the names sort the other way round than the runs
    EXPECT_THAT(OnDisk(Temp), ElementsAre("A was A", "M-NB-000 was B", "M-NB-999 was C"));
    EXPECT_THAT(Listed(), ElementsAre("M-NB-999", "M-NB-000", "A"));
    EXPECT_EQ(Text("txtTemplateRunNumber"), "001");
    Click(*Form, "btnRename");
    EXPECT_THAT(OnDisk(Temp), ElementsAre("A was A", "B was B", "C was C"));
    EXPECT_THAT(Listed(), ElementsAre("C", "B", "A"));
}

TEST_F(frmUploadDataTest, AsksForWhatRenamingNeeds) {
    PutRuns(Temp, {"A"});
    Open();
    Program.Messages.Expect("You must enter a Base Name for the new run names.");
    RenameAs("   ", {0});
    RenameAs("Main", {});
    EXPECT_EQ(Program.DesktopServices.Beeps, 1);
    Program.Messages.Expect(
        "\"a/b-NB-001\" cannot be used as a name.\n"
        "Leave out \"..\" and the characters / \\ : * ? \" < > | and try again.");
    RenameAs("a/b", {0});
    EXPECT_EQ(Caption(), " Rename ");
    EXPECT_THAT(OnDisk(Temp), ElementsAre("A was A"));
}

TEST_F(frmUploadDataTest, AClashRenamesNone) {
    PutRuns(Temp, {"A", "B", "C", "Main-NB-002"});
    Open();
    Program.Messages.Expect("Run-time error '58':\nFile already exists\n\n/start/Temp/Main-NB-002.rd2");
    RenameAs("Main", {0, 1, 2});
    EXPECT_THAT(Listed(), ElementsAre("A", "B", "C", "Main-NB-002"));
    EXPECT_EQ(Text("txtTemplateRunNumber"), "001");
    EXPECT_EQ(Caption(), " Rename ");
}

TEST_F(frmUploadDataTest, DeletesTheSelectionWithoutAsking) {
    PutRuns(Temp, {"A", "B", "C"});
    Open();
    Click(*Form, "BtnDelete");
    EXPECT_EQ(Program.DesktopServices.Beeps, 1);
    SelectRows({0, 2});
    Program.Files.FailChangeAfter(1, ErrorNumber::PermissionDenied);
    Program.Messages.Expect("Run-time error '70':\nPermission denied\n\n/start/Temp/C.rd2");
    Click(*Form, "BtnDelete");
    EXPECT_THAT(Listed(), ElementsAre("B", "C"));
    Click(*Form, "BtnDelete");  // C is still selected
    EXPECT_THAT(Listed(), ElementsAre("B"));
    EXPECT_THAT(OnDisk(Temp), ElementsAre("B was B"));
}

TEST_F(frmUploadDataTest, MovesRenamedRunsAndReportsThoseThatExist) {
    PutRuns(Temp, {"A", "B", "C", "D"});
    PutRuns(Groups + "Main/", {"m-nb-002"});
    Open();
    const auto expectOnMove = [&](const char* message) {
        Program.Messages.Expect(message);
        Click(*Form, "btnMoveRuns");
    };
    expectOnMove("You must select some runs before you click Move.");
    SelectRows({0, 1, 2});
    expectOnMove("You must rename the runs before you click Move.");
    RenameAs("M", {0, 1, 2});
    expectOnMove("Check the Current Study Group selected. There seems to be a problem.");
    Type(*Form, "TxtStudyGroup", "Elm");
    expectOnMove("Check the Current Study Group selected. There seems to be a problem.");
    Type(*Form, "TxtStudyGroup", "..");
    expectOnMove(
        "\"..\" cannot be used as a name.\n"
        "Leave out \"..\" and the characters / \\ : * ? \" < > | and try again.");

    Type(*Form, "TxtStudyGroup", " Main ");
    expectOnMove("Run M-NB-002 exists in the selected Study Group.");
    EXPECT_THAT(OnDisk(Groups + "Main/"), ElementsAre("M-NB-001 was A", "m-nb-002 was m-nb-002", "M-NB-003 was C"));
    EXPECT_THAT(OnDisk(Temp), ElementsAre("D was D", "M-NB-002 was B"));
    EXPECT_THAT(Listed(), ElementsAre("D", "M-NB-002"));
    EXPECT_TRUE(Find<LongList>(*Form, "vaSelRuns").SelectedRows().empty());
    EXPECT_EQ(Caption(), " Rename ");
    EXPECT_EQ(Program.State.Paths.LastStudyGroupPath, Groups + "Main/");
}

TEST_F(frmUploadDataTest, AStudyWithRunsKeepsItsGroup) {
    PutRuns(Temp, {"A"});
    Program.Files.CreateFolder(Groups + "Main");
    Program.State.CurrentStudy.RunNames.Append("Elm-NB-001");
    Program.State.Paths.LastStudyGroupPath = Groups + "Elm/";
    Open();
    RenameAs("M", {0});
    EnterGroup("Main");
    Click(*Form, "btnMoveRuns");
    EXPECT_THAT(OnDisk(Groups + "Main/"), ElementsAre("M-NB-001 was A"));
    EXPECT_EQ(Program.State.Paths.LastStudyGroupPath, Groups + "Elm/");
}

TEST_F(frmUploadDataTest, AFullDiskMovesNoneAndLeavesAllRenamedAndSelected) {
    PutRuns(Temp, {"A", "B"});
    Program.Files.CreateFolder(Groups + "Main");
    Open();
    RenameAs("M", {0, 1});
    Type(*Form, "TxtStudyGroup", "Main");
    Program.Files.FailChangeAfter(1, ErrorNumber::DiskFull);
    Program.Messages.Expect("Run-time error '61':\nDisk full\n\n" + Temp + "M-NB-002.rd2");
    Click(*Form, "btnMoveRuns");
    EXPECT_THAT(OnDisk(Temp), ElementsAre("M-NB-001 was A", "M-NB-002 was B"));
    EXPECT_EQ(Caption(), "  Undo  ");
    Click(*Form, "btnMoveRuns");
    EXPECT_THAT(OnDisk(Groups + "Main/"), ElementsAre("M-NB-001 was A", "M-NB-002 was B"));
}

TEST_F(frmUploadDataTest, ChoosesAndMakesStudyGroups) {
    Program.Files.CreateFolder(Groups + "Main");
    Open();
    auto& tree = Find<FolderTree>(*Form, "treSDFPath");
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                      tree.visualItemRect(tree.topLevelItem(0)->child(0)).center());
    EXPECT_EQ(Text("TxtStudyGroup"), "Main");
    EnterGroup("MAIN");
    EXPECT_EQ(Program.Files.List(Groups).size(), 1u);

    EnterGroup("Elm Ave");
    EXPECT_TRUE(Form->isVisible());
    EXPECT_TRUE(Program.Files.Find(Groups + "Elm Ave"));
    EXPECT_EQ(tree.SelectedFolder(), Groups + "Elm Ave/");
    EnterGroup("elm ave");
    EXPECT_EQ(Program.Files.List(Groups).size(), 2u);

    Click(*Form, "btnStudyGroupDetails");
    EXPECT_THAT(Program.OtherScreens.Shown, ElementsAre("frmUploadRunList"));
    Program.Messages.Expect("Check the Current Study Group selected. There seems to be a problem.");
    Type(*Form, "TxtStudyGroup", "Oak");
    Click(*Form, "btnStudyGroupDetails");
    QTest::keyClick(Form.get(), Qt::Key_Escape);
    EXPECT_FALSE(Form->isVisible());
}

}  // namespace
}  // namespace vantor
