#include "analysis/forms/frmRunStatistics.h"

#include <gmock/gmock.h>

#include <QHeaderView>

#include "core/RunDecoding.h"
#include "core/StudyFile.h"
#include "core/forms/Named.h"
#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"

namespace vantor {
namespace {

using testing::ElementsAre;

class frmRunStatisticsTest : public testing::Test {
protected:
    frmRunStatisticsTest() {
        // 88 feet with one stop for the signal, then 22 feet.
        SetSamples({44, 16 << 8, NodeFlag | 44, 22});
        AppendRun(Program.State.CurrentStudy, "NB-001");
        Program.State.Paths.LastStudyGroupPath = "/start/Study Groups/Main St/";
    }

    void SetSamples(const std::vector<int>& values) {
        RunRecord& run = Program.State.CurrentRun;
        run = {};
        run.Header.RunName = "NB-001";
        run.Header.CalConstant = 1000;
        for (const int value : values) run.SampleValues.Append(static_cast<std::int16_t>(value));
        DecodeRunSamples(run);
        run.Header.SectionName[1] = "=Oak, St";
    }

    void SetBoundaries() {
        StudyRunEntry& entry = Program.State.CurrentStudy.Entries[1];
        entry.CDStartDist = 1;
        entry.CDEndDist = 110;
        entry.ControlDelay = 42;
        entry.LOSGrade = "D";
    }

    frmRunStatistics& Open() {
        Form = std::make_unique<frmRunStatistics>(Program.Context, 1);
        Form->show();
        return *Form;
    }

    std::vector<std::string> Column(int column) {
        auto& table = Find<Table>(*Form, "vaRunStatistics");
        std::vector<std::string> texts;
        for (int row = 0; row < table.rowCount(); ++row) texts.push_back(FromQt(table.Text(row, column)));
        return texts;
    }

    std::string Text(const char* label) { return FromQt(Find<QLabel>(*Form, label).text()); }

    TestProgram Program;
    std::unique_ptr<frmRunStatistics> Form;
};

TEST_F(frmRunStatisticsTest, ShowsSectionsInDisplayUnitsAndTheStudysFigures) {
    EXPECT_EQ(Open().windowTitle(), "Run Statistics");
    EXPECT_THAT(Column(3), ElementsAre("88", "22", "110"));
    EXPECT_THAT(Column(9), ElementsAre("1", "0", "1"));
    EXPECT_EQ(Text("lblContDelay"), "Set both boundaries on the speed profile to see the control delay.");
    EXPECT_FALSE(Find<QLabel>(*Form, "lblLOS").isVisible());

    SetBoundaries();
    Program.State.Settings.MetricUnits = -1;
    Open();
    EXPECT_EQ(Find<Table>(*Form, "vaRunStatistics").horizontalHeaderItem(3)->text(), "Length\n(m)");
    EXPECT_THAT(Column(3), ElementsAre("27", "7", "34"));
    EXPECT_EQ(Text("lblContDelay") + Text("lblLOS"), "42D");
}

TEST_F(frmRunStatisticsTest, TheWholeRunStaysLast) {
    Open();
    QHeaderView* header = Find<Table>(*Form, "vaRunStatistics").horizontalHeader();
    const auto clickHead = [header] {
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(3) + 8, header->height() / 2));
    };
    clickHead();
    EXPECT_THAT(Column(0), ElementsAre("2", "1", "Total"));
    clickHead();
    EXPECT_THAT(Column(0), ElementsAre("1", "2", "Total"));
    header->setSortIndicator(1, Qt::DescendingOrder);
    EXPECT_THAT(Column(1), ElementsAre("[Start]", "=Oak, St", "[Start]"));
    header->setSortIndicator(-1, Qt::AscendingOrder);
    EXPECT_THAT(Column(0), ElementsAre("1", "2", "Total"));
}

TEST_F(frmRunStatisticsTest, CopiesAndSavesTheTable) {
    SetBoundaries();
    Open();
    Click(*Form, "BtnCopy");
    EXPECT_EQ(
        Program.DesktopServices.Copied,
        "Section\tFrom\tTo\tLength (ft)\tTravel Time (s)\tRunning Time (s)\tStopped Time (s)\tStops\tMean Running "
        "Speed (MPH)\tSignal (s)\tNo Key (s)\tControl Delay (s)\tLOS Grade\n"
        "1\t[Start]\t'=Oak, St\t88\t3\t2\t1\t1\t30.0\t1\t0\t\t\n"
        "2\t'=Oak, St\t[End]\t22\t1\t1\t0\t0\t15.0\t0\t0\t\t\n"
        "Total\t[Start]\t[End]\t110\t4\t3\t1\t1\t25.0\t1\t0\t42\tD\n");

    const auto files = Program.Files.AllFiles();
    Click(*Form, "BtnSaveCsv");
    EXPECT_EQ(Program.DesktopServices.AskedFrom, "/start/Study Groups/Main St/NB-001 statistics.csv");
    EXPECT_EQ(Program.Files.AllFiles(), files) << "the user named no file";
    Program.DesktopServices.FileToSave = "/start/out.csv";
    Program.Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    Program.Messages.Expect("Run-time error '61':\nDisk full\n\n/start/out.csv");
    Click(*Form, "BtnSaveCsv");
    Click(*Form, "BtnSaveCsv");
    const auto bytes = Program.Files.Bytes("/start/out.csv").value();
    const std::string text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    EXPECT_NE(text.find("\r\n2,\"'=Oak, St\",[End],22,1,1,0,0,15.0,0,0,,\r\n"), std::string::npos) << text;
}

TEST_F(frmRunStatisticsTest, ARunWithoutSamplesSaysSo) {
    // Another run's columns were remembered.
    Open();
    Form->close();
    SetSamples({});
    Open();
    EXPECT_EQ(Find<Table>(*Form, "vaRunStatistics").accessibleDescription(), "This run has no samples.");
    EXPECT_EQ(Find<Table>(*Form, "vaRunStatistics").horizontalHeader()->count(), 10);
    EXPECT_FALSE(Find<QAbstractButton>(*Form, "BtnCopy").isEnabled());
    EXPECT_FALSE(Find<QAbstractButton>(*Form, "BtnSaveCsv").isEnabled());
    QTest::keyClick(Form.get(), Qt::Key_Escape);
    EXPECT_FALSE(Form->isVisible());
}

}  // namespace
}  // namespace vantor
