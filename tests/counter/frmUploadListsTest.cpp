#include <gmock/gmock.h>

#include "CounterTexts.h"
#include "counter/forms/frmUploadRunList.h"
#include "counter/forms/frmUploadSelectTDC.h"
#include "fakes/FormScene.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class frmUploadSelectTDCTest : public FormScene<frmUploadSelectTDC> {
protected:
    frmUploadSelectTDCTest() {
        Files.PutText(FieldData + "a.TDC", TwoStudies);
        Files.PutText(FieldData + "cut.tdc", Record("T,001,001"));
        Files.PutText(FieldData + "z.tdc", DumpEnd);
        Files.PutText(FieldData + "a.txt", "no counter file");
        Files.PutText(Temp + "old.tdc", DumpEnd);
    }
    std::vector<std::string> Listed() { return Rows(*Window, "vaSelTDCFile"); }
    std::vector<std::string> Studies() { return Rows(*Window, "vaStudyInfo"); }
};

TEST_F(frmUploadSelectTDCTest, ListsTheFieldDataFolderAndTheStudiesOfAFile) {
    Open();
    EXPECT_THAT(Listed(), ElementsAre("a |2", "cut |", "z |0"));
    EXPECT_THAT(Studies(), ElementsAre("001|SITE0001|03/11/08  06:53|2", "002|MAINSTNB|12/31/99  17:30|1"));
    EXPECT_FALSE(IsShown("lblProblem"));

    ClickRow(*Window, "vaSelTDCFile", 1);
    EXPECT_THAT(Studies(), IsEmpty());
    EXPECT_TRUE(IsShown("lblProblem"));
    EXPECT_THAT(Text("lblProblem"),
                StartsWith("Run-time error '62':\nInput past end of file\n\n" + FieldData + "cut.tdc, record 2\n"));
    EXPECT_EQ(FromQt(Get<Table>("vaSelTDCFile").item(1, 1)->toolTip()), Text("lblProblem"));
    ClickRow(*Window, "vaSelTDCFile", 0);
    EXPECT_FALSE(IsShown("lblProblem"));
    ClickRow(*Window, "vaSelTDCFile", 1);
    Press("BtnSelect");  // its good runs can still be had
    EXPECT_EQ(Window->Choice().ToConvert->Name, "cut");
}

TEST_F(frmUploadSelectTDCTest, ChoosesByButtonEnterAndDoubleClick) {
    const std::vector<std::function<void()>> ways = {[this] { Press("BtnSelect"); },
                                                     [this] { PressKey(Qt::Key_Return); },
                                                     [this] { DoubleClickRow(*Window, "vaSelTDCFile", 2); }};
    for (const auto& choose : ways) {
        Open();
        Get<Table>("vaSelTDCFile").sortByColumn(0, Qt::DescendingOrder);
        ClickRow(*Window, "vaSelTDCFile", 2);
        choose();
        EXPECT_TRUE(IsAccepted());
        EXPECT_EQ(Window->Choice().ToConvert, (CounterFileChoice{FieldData, "a"}));
    }
}

TEST_F(frmUploadSelectTDCTest, GoesOnWithTheRunsThatWaitAndTellsWhichAreInStudyGroups) {
    Open();
    EXPECT_FALSE(IsEnabled("btnWaiting"));
    EXPECT_EQ(Text("lblInGroups"), "");
    RunRecord last;
    ConvertCounterFile(Files, FieldData + "a.TDC", Temp, last);
    Files.CreateFolder(Groups + "Main");
    Files.Rename(Temp + "S001R002-SITE0001-1.rd2", Groups + "Main/Main-NB-001.rd2");
    Open();
    EXPECT_EQ(Text("lblInGroups"), "1 of its 3 runs is in Study Groups already: Main");
    ClickRow(*Window, "vaSelTDCFile", 1);
    EXPECT_EQ(Text("lblInGroups"), "") << "its run has another number";
    EXPECT_EQ(Text("lblWaiting"), "2 runs are waiting in Temp.");
    Press("btnWaiting");
    EXPECT_TRUE(IsAccepted());
    EXPECT_TRUE(Window->Choice().Of == UploadOf::TemporaryRuns && !Window->Choice().ToConvert);
}

TEST_F(frmUploadSelectTDCTest, ReachesOtherFolders) {
    Open();
    ClickFolder(*Window, "treTDCPath", "Study Groups");
    EXPECT_THAT(Listed(), IsEmpty());
    EXPECT_THAT(Studies(), IsEmpty());
    EXPECT_FALSE(IsEnabled("BtnSelect"));
    ClickFolder(*Window, "treTDCPath", "Temp");
    EXPECT_THAT(Listed(), ElementsAre("old |0"));
    Press("BtnSelect");
    EXPECT_EQ(Window->Choice().ToConvert->Folder, Temp);
}

TEST_F(frmUploadSelectTDCTest, CancelAndEscChooseNothing) {
    for (const bool byKey : {false, true}) {
        Open();
        byKey ? PressKey(Qt::Key_Escape) : Press("BtnCancel");
        EXPECT_FALSE(Window->isVisible() || IsAccepted());
    }
}

TEST_F(frmUploadSelectTDCTest, AFileOfAnotherFormatEndsTheApplication) {
    Files.PutText(FieldData + "not.tdc", "<html>");
    EXPECT_THROW(Open(), ApplicationEnded);
}

TEST_F(frmUploadSelectTDCTest, OpensWithoutItsFolder) {
    State.Paths.FieldDataPath = "/gone/";
    Open();
    EXPECT_FALSE(IsEnabled("BtnSelect"));
    ClickFolder(*Window, "treTDCPath", "/");
}

using frmUploadRunListTest = FormScene<frmUploadRunList>;

TEST_F(frmUploadRunListTest, ListsTheRunsOfTheGroup) {
    Files.CreateFolder(Groups + "Main St");
    RunRecord run;
    run.Header = {.RunDate = DateOf(2008, 3, 11),
                  .RunTime = TimeOf(6, 53),
                  .HeaderWord1 = -1,
                  .RunLength = 5280,
                  .Duration = 95,
                  .NumberOfSections = 7,
                  .Notes = "Dry"};
    PutRunFile(Files, run, Groups + "Main St/", "Main-NB-001");
    Files.PutText(Groups + "Main St/Morning.ld2", "no run");
    Files.PutText(Groups + "Main St/odd..name.rd2", "");

    Open("Main St");
    EXPECT_EQ(Rows(*Window, "vaShowRuns").front(), "Main-NB-001|03/11/08|06:53|Primary|5280|95|7|After|Dry");
    // A run that no name of the program reaches is listed all the same.
    EXPECT_THAT(Column(*Window, "vaShowRuns", 0), ElementsAre("Main-NB-001", "odd..name"));
    EXPECT_NE(Get<QTableView>("vaShowRuns").model()->index(1, 0).data(Qt::ToolTipRole).toString(), "");
    Press("BtnUploadOk");
    EXPECT_FALSE(Window->isVisible());

    State.Settings.MetricUnits = -1;
    Open("Main St");
    EXPECT_EQ(Row(*Window, "vaShowRuns", 0)[4], "1609 m");
    Open("of no folder");
    EXPECT_THAT(Rows(*Window, "vaShowRuns"), IsEmpty());
}

}  // namespace
}  // namespace vantor
