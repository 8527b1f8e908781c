#include <gmock/gmock.h>

#include "TableClicks.h"
#include "core/RunRecords.h"
#include "counter/forms/frmDeleteTDCFiles.h"
#include "counter/forms/frmDeleteTempRuns.h"
#include "fakes/FakePorts.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string Temp = "/start/Temp/";
const std::string FieldData = "/start/Field Data Files/";
const std::string EndMark = "::::::::::::::::::::\r\n";

/// The Delete key works in the active window only.
void PressDelete(QWidget& form, const char* table) {
    form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    QTest::keyClick(&Find<Table>(form, table), Qt::Key_Delete);
}

class frmDeleteTempRunsTest : public testing::Test {
protected:
    frmDeleteTempRunsTest() {
        PutRun("MAINNB01", DateOf(2008, 3, 11), TimeOf(6, 53), 5280, 132);
        PutRun("MAINNB02", DateOf(1999, 12, 31), TimeOf(17, 30), 100, 9);
        PutRun("MAINNB03", DateOf(2008, 3, 12), TimeOf(0, 5), 0, 0);
        Program.Files.PutText(Temp + "MAINNB01.rd2", "no version 1 run");
    }

    void PutRun(const std::string& name, Date date, Date time, std::int32_t length, std::int16_t duration) {
        Ver1RunHeader header;
        header.RunDate = date;
        header.RunTime = time;
        header.RunLength = length;
        header.Duration = duration;
        Program.Files.Put(Temp + name + ".rdf", EncodeRecord(header, Ver1RunHeaderFields));
    }
    std::vector<std::string> OnDisk() {
        std::vector<std::string> names;
        for (const FileInfo& info : Program.Files.List(Temp)) names.push_back(info.Name);
        return names;
    }
    static std::string Title(QWidget& form) { return FromQt(Find<QGroupBox>(form, "frRunList").title()); }

    TestProgram Program;
    const std::vector<std::string> All{"MAINNB01.rd2", "MAINNB01.rdf", "MAINNB02.rdf", "MAINNB03.rdf"};
};

TEST_F(frmDeleteTempRunsTest, ListsTheVersion1RunsWithTheirValues) {
    frmDeleteTempRuns form(Program.Context);
    form.show();
    EXPECT_EQ(form.windowTitle(), "Select Temp Runs To Delete");
    EXPECT_EQ(Title(form), "3 Runs in Temp Path: /start/Temp/");
    EXPECT_THAT(Heads(form, "vaSelRuns"), ElementsAre("Name", "Date", "Time", "Length (ft)", "Duration (s)"));
    EXPECT_THAT(Row(form, "vaSelRuns", 0), ElementsAre("MAINNB01 ", "03/11/08", "06:53", "5280", "132"));
    EXPECT_THAT(Row(form, "vaSelRuns", 1), ElementsAre("MAINNB02 ", "12/31/99", "17:30", "100", "9"));
    Click(form, "cmdHelp");
    EXPECT_THAT(Program.DesktopServices.Opened, ElementsAre("/program/VANTOR.HLP#44"));

    Program.State.Settings.MetricUnits = -1;
    frmDeleteTempRuns metric(Program.Context);
    EXPECT_EQ(Heads(metric, "vaSelRuns")[3], "Length (ft)");
    EXPECT_EQ(Row(metric, "vaSelRuns", 0)[3], "1609 m");
}

TEST_F(frmDeleteTempRunsTest, CancelAndEscDeleteNothing) {
    for (const bool byKey : {false, true}) {
        frmDeleteTempRuns form(Program.Context);
        form.show();
        Click(form, "btnSelectAll");
        Click(form, "BtnDelete");
        EXPECT_THAT(Column(form, "vaSelRuns", 0), IsEmpty());
        EXPECT_EQ(Title(form), "0 Runs in Temp Path: /start/Temp/");
        if (byKey)
            QTest::keyClick(&form, Qt::Key_Escape);
        else
            Click(form, "BtnCancel");
        EXPECT_FALSE(form.isVisible());
        EXPECT_EQ(OnDisk(), All);
    }
}

TEST_F(frmDeleteTempRunsTest, OkDeletesWhatWasTakenOffAndWhatIsSelected) {
    frmDeleteTempRuns form(Program.Context);
    form.show();
    Find<Table>(form, "vaSelRuns").sortByColumn(0, Qt::DescendingOrder);
    ClickRow(form, "vaSelRuns", 2);
    PressDelete(form, "vaSelRuns");
    EXPECT_THAT(Column(form, "vaSelRuns", 0), ElementsAre("MAINNB03 ", "MAINNB02 "));
    EXPECT_EQ(Title(form), "2 Runs in Temp Path: /start/Temp/");
    EXPECT_EQ(OnDisk(), All);
    ClickRow(form, "vaSelRuns", 0);
    Click(form, "btnOk");
    EXPECT_EQ(form.result(), QDialog::Accepted);
    EXPECT_THAT(OnDisk(), ElementsAre("MAINNB01.rd2", "MAINNB02.rdf"));
}

TEST_F(frmDeleteTempRunsTest, EnterInTheListTakesRunsOffAndDeletesNothing) {
    frmDeleteTempRuns form(Program.Context);
    form.show();
    ClickRow(form, "vaSelRuns", 0);
    ClickRow(form, "vaSelRuns", 2, Qt::ControlModifier);
    QTest::keyClick(&Find<Table>(form, "vaSelRuns"), Qt::Key_Return);
    EXPECT_TRUE(form.isVisible());
    EXPECT_THAT(Column(form, "vaSelRuns", 0), ElementsAre("MAINNB02 "));
    EXPECT_EQ(OnDisk(), All);
    Click(form, "btnOk");
    EXPECT_THAT(OnDisk(), ElementsAre("MAINNB01.rd2", "MAINNB02.rdf"));
}

TEST_F(frmDeleteTempRunsTest, AFileThatCannotBeDeletedDoesNotKeepTheOthers) {
    frmDeleteTempRuns form(Program.Context);
    form.show();
    Click(form, "btnSelectAll");
    Program.Files.FailChangeAfter(0, ErrorNumber::PermissionDenied);
    Program.Messages.Expect("These files could not be deleted:\n" + Temp + "MAINNB01.rdf: Permission denied");
    Click(form, "btnOk");
    EXPECT_FALSE(form.isVisible());
    EXPECT_THAT(OnDisk(), ElementsAre("MAINNB01.rd2", "MAINNB01.rdf"));
}

TEST_F(frmDeleteTempRunsTest, AnUnreadableRunCanBeDeletedAndAMissingFolderIsEmpty) {
    Ver1RunHeader header;
    header.SampleCount = 40000;  // more than a run can have
    Program.Files.Put(Temp + "LONG.rdf", EncodeRecord(header, Ver1RunHeaderFields));
    frmDeleteTempRuns form(Program.Context);
    form.show();
    EXPECT_THAT(Row(form, "vaSelRuns", 0), ElementsAre("LONG ", "Not readable", "", "", ""));
    EXPECT_TRUE(Find<Table>(form, "vaSelRuns").item(0, 0)->toolTip().startsWith("Run-time error '6':\nOverflow"));
    ClickRow(form, "vaSelRuns", 0);
    Click(form, "btnOk");
    EXPECT_EQ(OnDisk(), All);

    Program.State.Paths.TempRunsPath = "/start/A & B";
    frmDeleteTempRuns empty(Program.Context);
    empty.show();
    EXPECT_EQ(Title(empty), "0 Runs in Temp Path: /start/A && B/");  // a title shows "&&" as "&"
    Click(empty, "BtnDelete");
    Click(empty, "btnOk");
    EXPECT_FALSE(empty.isVisible());
}

class frmDeleteTDCFilesTest : public testing::Test {
protected:
    frmDeleteTDCFilesTest() {
        const std::string one = "T,001,001,SITE0001,0653,031108,01246\r\n012 001\r\n00001\r\n";
        const std::string two = "T,002,001,MAINSTNB,1730,123199,01246\r\n00000\r\n";
        Program.Files.PutText(FieldData + "a.tdc", one + one + two + EndMark);
        Program.Files.PutText(FieldData + "b.TDC", two + EndMark);
        Program.Files.PutText(FieldData + "cut.tdc", one);
        Program.Files.PutText(FieldData + "a.txt", "no counter file");
        Program.Files.Modified[FieldData + "a.tdc"] = DateOf(2008, 3, 14);
    }

    std::vector<std::string> OnDisk() {
        std::vector<std::string> names;
        for (const FileInfo& info : Program.Files.List(FieldData)) names.push_back(info.Name);
        return names;
    }
    static std::string Title(QWidget& form) { return FromQt(Find<QGroupBox>(form, "frTDCFiles").title()); }
    static std::string ActiveFile(QWidget& form) { return FromQt(Find<QLabel>(form, "lblActiveFile").text()); }

    TestProgram Program;
    const std::vector<std::string> All{"a.tdc", "a.txt", "b.TDC", "cut.tdc"};
};

TEST_F(frmDeleteTDCFilesTest, ListsTheFilesAndTheStudiesOfTheActiveOne) {
    frmDeleteTDCFiles form(Program.Context);
    form.show();
    EXPECT_EQ(form.windowTitle(), "Select TDC Data Files To Delete");
    EXPECT_EQ(Title(form), "3 Files in Field Data Path: /start/Field Data Files/");
    EXPECT_EQ(Find<QGroupBox>(form, "FrFileDetails").title(), "TDC Data File Details");
    EXPECT_THAT(Heads(form, "vaSelTDCFile"), ElementsAre("File Name", "Date", "Studies"));
    EXPECT_THAT(Row(form, "vaSelTDCFile", 0), ElementsAre("a ", "03/14/08", "2"));
    EXPECT_EQ(ActiveFile(form), "File: a");
    EXPECT_THAT(Heads(form, "vaStudyInfo"), ElementsAre("Study", "Site Code", "Date / Time", "Runs"));
    EXPECT_THAT(Row(form, "vaStudyInfo", 0), ElementsAre("001", "SITE0001", "03/11/08  06:53", "2"));
    EXPECT_THAT(Row(form, "vaStudyInfo", 1), ElementsAre("002", "MAINSTNB", "12/31/99  17:30", "1"));

    ClickRow(form, "vaSelTDCFile", 2);
    EXPECT_EQ(ActiveFile(form), "File: cut");
    EXPECT_THAT(Column(form, "vaStudyInfo", 0), IsEmpty());
    EXPECT_TRUE(Find<QLabel>(form, "lblProblem").text().startsWith("Run-time error '62':"));
}

TEST_F(frmDeleteTDCFilesTest, OkDeletesTheFilesTakenOffButNotTheActiveOne) {
    frmDeleteTDCFiles form(Program.Context);
    form.show();
    ClickRow(form, "vaSelTDCFile", 1);
    Click(form, "btnDeleteSelected");
    EXPECT_EQ(Title(form), "2 Files in Field Data Path: /start/Field Data Files/");
    EXPECT_EQ(ActiveFile(form), "File: cut");
    Click(form, "btnDeleteSelected");
    EXPECT_EQ(ActiveFile(form), "File: a");
    EXPECT_THAT(Row(form, "vaStudyInfo", 0), ElementsAre("001", "SITE0001", "03/11/08  06:53", "2"));
    EXPECT_EQ(OnDisk(), All);
    Click(form, "btnOk");
    EXPECT_EQ(form.result(), QDialog::Accepted);
    EXPECT_THAT(OnDisk(), ElementsAre("a.tdc", "a.txt"));
}

TEST_F(frmDeleteTDCFilesTest, OkDeletesTheSelectedFile) {
    frmDeleteTDCFiles untouched(Program.Context);
    untouched.show();
    Click(untouched, "btnOk");
    EXPECT_EQ(OnDisk(), All);

    frmDeleteTDCFiles form(Program.Context);
    form.show();
    QTest::keyClick(&Find<Table>(form, "vaSelTDCFile"), Qt::Key_Down);
    EXPECT_EQ(ActiveFile(form), "File: b");
    Click(form, "btnOk");
    EXPECT_THAT(OnDisk(), ElementsAre("a.tdc", "a.txt", "cut.tdc"));
}

TEST_F(frmDeleteTDCFilesTest, CancelAndEscDeleteNothing) {
    for (const bool byKey : {false, true}) {
        frmDeleteTDCFiles form(Program.Context);
        form.show();
        for (int i = 0; i < 3; ++i) PressDelete(form, "vaSelTDCFile");
        EXPECT_EQ(Title(form), "0 Files in Field Data Path: /start/Field Data Files/");
        EXPECT_THAT(Column(form, "vaStudyInfo", 0), IsEmpty());
        EXPECT_FALSE(Find<QPushButton>(form, "btnDeleteSelected").isEnabled());
        if (byKey)
            QTest::keyClick(&form, Qt::Key_Escape);
        else
            Click(form, "BtnCancel");
        EXPECT_EQ(OnDisk(), All);
    }
}

TEST_F(frmDeleteTDCFilesTest, AFileOfAnotherFormatEndsTheApplication) {
    Program.Files.PutText(FieldData + "not.tdc", "<html>");
    EXPECT_THROW(frmDeleteTDCFiles(Program.Context).show(), ApplicationEnded);
}

}  // namespace
}  // namespace vantor
