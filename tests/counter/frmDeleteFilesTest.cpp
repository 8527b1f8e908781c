#include <gmock/gmock.h>

#include "CounterTexts.h"
#include "core/RunRecords.h"
#include "counter/forms/frmDeleteTDCFiles.h"
#include "counter/forms/frmDeleteTempRuns.h"
#include "fakes/FormScene.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

template <class Form>
class DeletionScene : public FormScene<Form> {
protected:
    DeletionScene(const char* table, const char* frame) : table_(table), frame_(frame) {}

    std::vector<std::string> Listed() { return Rows(*this->Window, table_); }
    void ClickListed(int row) { ClickRow(*this->Window, table_, row); }
    QString Title() { return this->template Get<QGroupBox>(frame_).title(); }
    /// The names of all files: "A.rd2 A.rdf".
    std::string OnDisk() {
        std::string names;
        for (const std::string& path : this->Files.AllFiles())
            names += (names.empty() ? "" : " ") + LastComponent(path);
        return names;
    }

private:
    const char* table_;
    const char* frame_;
};

class frmDeleteTempRunsTest : public DeletionScene<frmDeleteTempRuns> {
protected:
    frmDeleteTempRunsTest() : DeletionScene("vaSelRuns", "frRunList") { PutRuns(); }

    void PutRuns() {
        PutRun("A", {.RunDate = DateOf(2008, 3, 11), .RunTime = TimeOf(6, 53), .RunLength = 5280, .Duration = 132});
        PutRun("B", {.RunDate = DateOf(1999, 12, 31), .RunTime = TimeOf(17, 30), .RunLength = 100, .Duration = 9});
        PutRun("C", {});
        Files.PutText(Temp + "A.rd2", "no version 1 run");
    }
    void PutRun(const std::string& name, const RunHeader& header) {
        Files.Put(Temp + name + ".rdf", EncodeRecord(header, Ver1RunHeaderFields));
    }

    const std::string All = "A.rd2 A.rdf B.rdf C.rdf";
};

TEST_F(frmDeleteTempRunsTest, ListsTheVersion1RunsWithTheirValues) {
    Open();
    EXPECT_EQ(Title(), "3 Runs in Temp Path: /start/Temp/");
    EXPECT_THAT(Listed(),
                ElementsAre("A |03/11/08|06:53|5280|132", "B |12/31/99|17:30|100|9", "C |12/30/99|00:00|0|0"));
    State.Settings.MetricUnits = -1;
    Open();
    EXPECT_EQ(Listed().front(), "A |03/11/08|06:53|1609 m|132");
    EXPECT_EQ(Get<Table>("vaSelRuns").horizontalHeaderItem(3)->text(), "Length (ft)");
}

TEST_F(frmDeleteTempRunsTest, CancelAndEscDeleteNothing) {
    for (const bool byKey : {false, true}) {
        Open();
        Press("btnSelectAll");
        Press("BtnDelete");
        EXPECT_THAT(Listed(), IsEmpty());
        EXPECT_EQ(Title(), "0 Runs in Temp Path: /start/Temp/");
        byKey ? PressKey(Qt::Key_Escape) : Press("BtnCancel");
        EXPECT_FALSE(Window->isVisible());
        EXPECT_EQ(OnDisk(), All);
    }
}

TEST_F(frmDeleteTempRunsTest, OkDeletesWhatAKeyTookOffAndWhatIsSelected) {
    for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Return}) {
        PutRuns();
        Open();
        Get<Table>("vaSelRuns").sortByColumn(0, Qt::DescendingOrder);
        ClickListed(2);
        PressKey(key);
        EXPECT_THAT(Column(*Window, "vaSelRuns", 0), ElementsAre("C ", "B "));
        EXPECT_EQ(Title(), "2 Runs in Temp Path: /start/Temp/");
        EXPECT_TRUE(Window->isVisible());
        EXPECT_EQ(OnDisk(), All);
        ClickListed(0);
        Press("btnOk");
        EXPECT_TRUE(IsAccepted());
        EXPECT_EQ(OnDisk(), "A.rd2 B.rdf");
    }
}

TEST_F(frmDeleteTempRunsTest, AnUnreadableRunCanBeDeletedAndAMissingFolderIsEmpty) {
    PutRun("0", {.SampleCount = 40000});  // more than a run can have
    Open();
    EXPECT_EQ(Listed().front(), "0 |Not readable|||");
    EXPECT_TRUE(Get<Table>("vaSelRuns").item(0, 0)->toolTip().startsWith("Run-time error '6':\nOverflow"));
    ClickListed(0);
    Press("btnOk");
    EXPECT_EQ(OnDisk(), All);

    State.Paths.TempRunsPath = "/start/A & B";
    Open();
    EXPECT_EQ(Title(), "0 Runs in Temp Path: /start/A && B/");  // a title shows "&&" as "&"
    Press("BtnDelete");
    Press("btnOk");
    EXPECT_FALSE(Window->isVisible());
}

class frmDeleteTDCFilesTest : public DeletionScene<frmDeleteTDCFiles> {
protected:
    frmDeleteTDCFilesTest() : DeletionScene("vaSelTDCFile", "frTDCFiles") {
        Files.PutText(FieldData + "a.tdc", TwoStudies);
        Files.PutText(FieldData + "b.TDC", DumpEnd);
        Files.PutText(FieldData + "cut.tdc", Record("T,001,001"));
        Files.PutText(FieldData + "a.txt", "no counter file");
        Files.Modified[FieldData + "a.tdc"] = DateOf(2008, 3, 14);
    }
    void ExpectStudiesOfA() {
        EXPECT_EQ(Text("lblActiveFile"), "File: a");
        EXPECT_THAT(Rows(*Window, "vaStudyInfo"),
                    ElementsAre("001|SITE0001|03/11/08  06:53|2", "002|MAINSTNB|12/31/99  17:30|1"));
    }

    const std::string All = "a.tdc a.txt b.TDC cut.tdc";
};

TEST_F(frmDeleteTDCFilesTest, ListsTheFilesAndTheStudiesOfTheActiveOneAndEscDeletesNone) {
    Open();
    EXPECT_EQ(Title(), "3 Files in Field Data Path: /start/Field Data Files/");
    EXPECT_EQ(Listed().front(), "a |03/14/08|2");
    ExpectStudiesOfA();
    ClickListed(2);
    EXPECT_EQ(Text("lblActiveFile"), "File: cut");
    EXPECT_THAT(Rows(*Window, "vaStudyInfo"), IsEmpty());
    EXPECT_TRUE(Get<QLabel>("lblProblem").text().startsWith("Run-time error '62':"));

    for (int i = 0; i < 3; ++i) PressKey(Qt::Key_Delete);
    EXPECT_EQ(Title(), "0 Files in Field Data Path: /start/Field Data Files/");
    EXPECT_THAT(Rows(*Window, "vaStudyInfo"), IsEmpty());
    EXPECT_FALSE(IsEnabled("btnDeleteSelected"));
    PressKey(Qt::Key_Escape);
    EXPECT_FALSE(Window->isVisible());
    EXPECT_EQ(OnDisk(), All);
}

TEST_F(frmDeleteTDCFilesTest, OkDeletesTheFilesTakenOffButNotTheActiveOne) {
    Open();
    ClickListed(1);
    Press("btnDeleteSelected");
    EXPECT_EQ(Title(), "2 Files in Field Data Path: /start/Field Data Files/");
    EXPECT_EQ(Text("lblActiveFile"), "File: cut");
    Press("btnDeleteSelected");
    ExpectStudiesOfA();
    EXPECT_EQ(OnDisk(), All);
    Press("btnOk");
    EXPECT_TRUE(IsAccepted());
    EXPECT_EQ(OnDisk(), "a.tdc a.txt");
}

TEST_F(frmDeleteTDCFilesTest, OkDeletesTheSelectedFile) {
    Open();
    Press("btnOk");
    EXPECT_EQ(OnDisk(), All);
    Open();
    PressKey(Qt::Key_Down);
    EXPECT_EQ(Text("lblActiveFile"), "File: b");
    Press("btnOk");
    EXPECT_EQ(OnDisk(), "a.tdc a.txt cut.tdc");
}

}  // namespace
}  // namespace vantor
