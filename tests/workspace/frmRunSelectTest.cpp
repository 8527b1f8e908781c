#include "workspace/forms/frmRunSelect.h"

#include <gmock/gmock.h>

#include "workspace/StudyGroupTest.h"

namespace vantor {
namespace {

using testing::ElementsAre;

class frmRunSelectTest : public StudyGroupTest {
protected:
    void PutVer1Run(const std::string& name) {
        Files.PutCopyOf(VANTOR_SAMPLES "Version 1 runs/MAINNB01.rdf", MainSt + name + ".rdf");
    }

    static std::string ToolTip(QWidget& form, int row, int column = 0) {
        return FromQt(Find<Table>(form, "vaSelRuns").item(row, column)->toolTip());
    }
};

TEST_F(frmRunSelectTest, ListsRunsWithTheirState) {
    PutRun(MainSt, "NB-002", "wet road");
    PutRun(MainSt, "NB-001");
    PutRun(MainSt, "MAINNB02");
    PutVer1Run("MAINNB01");
    PutVer1Run("mainnb02");
    AppendRun(State.CurrentStudy, "nb-001");
    Shown<frmRunSelect> form(Program.Context);
    EXPECT_THAT(Rows(form, "vaSelRuns"),
                ElementsAre("MAINNB01|10/08/96|07:20|Primary|7953|227|7|Before|Dry, light rain later. Signals not "
                            "coordinated.|Version 1",
                            "MAINNB02|03/11/08|07:30|Primary|5280|0|0|Before||",
                            "NB-001|03/11/08|07:30|Primary|5280|0|0|Before||In study",
                            "NB-002|03/11/08|07:30|Primary|5280|0|0|Before|wet road|"));
    EXPECT_EQ(ToolTip(form, 2), "This run is in the study already.");
    EXPECT_EQ(ToolTip(form, 0, 9), "A version 1 run file. It is converted when the run is added.");
    ClickRow(form, "vaSelRuns", 2, true);
    EXPECT_FALSE(IsEnabled(form, "BtnAdd"));
    EXPECT_TRUE(form.isVisible());
    Click(form, "cmdHelp");
    EXPECT_THAT(Program.DesktopServices.Opened, ElementsAre("/program/VANTOR.HLP#18"));

    State.Settings.MetricUnits = -1;
    Shown<frmRunSelect> metric(Program.Context);
    // The title keeps the label of the start, so the value, a mile, names its own unit.
    EXPECT_EQ(Find<Table>(metric, "vaSelRuns").horizontalHeaderItem(4)->text(), "Length (ft)");
    EXPECT_EQ(Find<Table>(metric, "vaSelRuns").Text(3, 4), "1609 m");
    State.LengthUnitLabel = "m";
    Shown<frmRunSelect> next(Program.Context);
    EXPECT_EQ(Find<Table>(next, "vaSelRuns").horizontalHeaderItem(4)->text(), "Length (m)");
    EXPECT_EQ(Find<Table>(next, "vaSelRuns").Text(3, 4), "1609");
}

TEST_F(frmRunSelectTest, AddsByDoubleClickEnterAndButton) {
    for (const char* run : {"NB-001", "NB-002", "NB-003", "NB-004"}) PutRun(MainSt, run);
    {
        Shown<frmRunSelect> form(Program.Context);
        ClickRow(form, "vaSelRuns", 1, true);
        EXPECT_TRUE(form.IsAccepted());
    }
    {
        Shown<frmRunSelect> form(Program.Context);
        ClickRow(form, "vaSelRuns", 3);
        QTest::keyClick(&Find<QWidget>(form, "vaSelRuns"), Qt::Key_Return);
        EXPECT_TRUE(form.IsAccepted());
    }
    {
        Shown<frmRunSelect> form(Program.Context);
        Find<Table>(form, "vaSelRuns").sortByColumn(0, Qt::DescendingOrder);
        Click(form, "BtnSelectAll");
        Click(form, "BtnAdd");
        EXPECT_TRUE(form.IsAccepted());
    }
    EXPECT_THAT(RunsOf(State.CurrentStudy), ElementsAre("NB-002", "NB-004", "NB-003", "NB-001"));
    EXPECT_FALSE(State.StudyUnchanged);
    Shown<frmRunSelect> complete(Program.Context);
    EXPECT_FALSE(IsEnabled(complete, "BtnSelectAll"));
}

TEST_F(frmRunSelectTest, ConvertsVersion1RunsAutomatically) {
    PutVer1Run("OLD1");
    PutVer1Run("OLD2");
    PutRun(MainSt, "NB-001");
    const auto original = Files.Bytes(MainSt + "OLD2.rdf");
    Files.PutText(MainSt + "OLD1.rdx", "converted before");
    State.CurrentRun.Header.RunName = "the one in hand";
    Shown<frmRunSelect> form(Program.Context);
    Click(form, "BtnSelectAll");
    Program.Messages.Expect(
        "Run-time error '58':\nFile already exists\n\n/start/Study Groups/Main St/OLD1.rdx\n"
        "The run was converted before. Move that file away first.");
    Click(form, "BtnAdd");
    EXPECT_TRUE(form.IsAccepted());
    EXPECT_THAT(RunsOf(State.CurrentStudy), ElementsAre("NB-001", "OLD2"));
    EXPECT_TRUE(Files.Bytes(MainSt + "OLD2.rd2"));
    EXPECT_FALSE(Files.Bytes(MainSt + "OLD2.rdf"));
    EXPECT_EQ(Files.Bytes(MainSt + "OLD2.rdx"), original);
    EXPECT_TRUE(Files.Bytes(MainSt + "OLD1.rdf"));
    EXPECT_EQ(State.CurrentRun.Header.RunName, "the one in hand");
}

TEST_F(frmRunSelectTest, AsksBeforeEachConversion) {
    State.Settings.AutoConvertVer1 = 0;
    PutVer1Run("OLD1");
    PutVer1Run("OLD2");
    Shown<frmRunSelect> form(Program.Context);
    for (const auto answer : {MessageAnswer::No, MessageAnswer::Yes}) {
        Click(form, "BtnSelectAll");
        Program.Messages.Expect("Do you want to convert Ver 1 run file OLD1 to a Ver 2 run file?", MessageAnswer::No);
        Program.Messages.Expect("Do you want to convert Ver 1 run file OLD2 to a Ver 2 run file?", answer);
        if (answer == MessageAnswer::Yes)
            Program.Messages.Expect(
                "Ver 1 run file OLD2 (.rdf) converted to a Ver 2 run file (.rd2).\n"
                "The original .rdf file was renamed to an .rdx file.");
        Click(form, "BtnAdd");
        EXPECT_EQ(form.IsAccepted(), answer == MessageAnswer::Yes);
    }
    EXPECT_THAT(RunsOf(State.CurrentStudy), ElementsAre("OLD2"));
    EXPECT_TRUE(Files.Bytes(MainSt + "OLD1.rdf"));
}

TEST_F(frmRunSelectTest, FilesThatAreNoUsableRunsCannotBeAdded) {
    Files.PutText(MainSt + "A.rd2", "short");
    Files.PutText(MainSt + "B.rdf", "short");
    std::vector<std::byte> tooMany(8448);
    tooMany[52] = std::byte{1};  // 65536 samples
    Files.Put(MainSt + "C.rd2", tooMany);
    Files.Put(MainSt + "D has a name of thirty-three chars.rd2", std::vector<std::byte>(8448));
    Shown<frmRunSelect> form(Program.Context);
    const std::string reasons[] = {
        "Input past end of file\n/start/Study Groups/Main St/A.rd2\nThe file is too short for a run. It is damaged.",
        "Input past end of file\n/start/Study Groups/Main St/B.rdf\nThe file is too short for a run. It is damaged.",
        "Overflow\n/start/Study Groups/Main St/C.rd2\nThe file tells of 65536 samples; a run holds at most 32767. It "
        "is damaged.",
        "\"D has a name of thirty-three chars\" cannot be used as a name.\nA name has at most 32 letters, digits and "
        "signs of the Western alphabet and no blank at its ends."};
    for (int row = 0; row < 4; ++row) {
        EXPECT_EQ(Find<Table>(form, "vaSelRuns").Text(row, 9), "Not usable");
        EXPECT_EQ(ToolTip(form, row), "This run cannot be added.\n" + reasons[row]);
        ClickRow(form, "vaSelRuns", row, true);
    }
    QTest::keyClick(&Find<QWidget>(form, "vaSelRuns"), Qt::Key_A, Qt::ControlModifier);
    EXPECT_FALSE(IsEnabled(form, "BtnSelectAll"));
    EXPECT_FALSE(IsEnabled(form, "BtnAdd"));
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(State.CurrentStudy.Record.RunCount, 0);
}

TEST_F(frmRunSelectTest, OnlyAStudyWithoutRunsChoosesItsGroup) {
    PutRun(OakElm, "SB-001");
    State.Paths.LastStudyGroupPath = Root;
    {
        Shown<frmRunSelect> form(Program.Context);
        auto& groups = Find<QComboBox>(form, "cmbStudyGroup");
        EXPECT_EQ(groups.currentText(), "Study Groups");
        EXPECT_EQ(
            EmptyText(form, "vaSelRuns"),
            "There are no runs in this Study Group.\nProcess the runs in the temp folder first and move them here.");
        QTest::keyClick(&groups, Qt::Key_Up);
        EXPECT_EQ(groups.currentText(), "Oak & Elm Ave");
        EXPECT_EQ(State.Paths.LastStudyGroupPath, Root);
        ClickRow(form, "vaSelRuns", 0);
        Click(form, "BtnAdd");
        EXPECT_EQ(State.Paths.LastStudyGroupPath, OakElm);
    }
    Shown<frmRunSelect> form(Program.Context);
    EXPECT_FALSE(IsEnabled(form, "cmbStudyGroup"));
    EXPECT_EQ(Find<QComboBox>(form, "cmbStudyGroup").currentText(), "Oak & Elm Ave");
    QTest::keyClick(&form, Qt::Key_Escape);
    EXPECT_EQ(form.result(), QDialog::Rejected);
    EXPECT_THAT(RunsOf(State.CurrentStudy), ElementsAre("SB-001"));
}

}  // namespace
}  // namespace vantor
