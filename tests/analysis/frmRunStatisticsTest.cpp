#include "analysis/forms/frmRunStatistics.h"

#include <gmock/gmock.h>

#include "core/RunDecoding.h"
#include "fakes/FormScene.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

using testing::ElementsAre;

class frmRunStatisticsTest : public FormScene<frmRunStatistics> {
protected:
    frmRunStatisticsTest() {
        // 88 feet with one stop for the signal, then 22 feet.
        SetSamples({44, 16 << 8, NodeFlag | 44, 22});
        AppendRun(State.CurrentStudy, "NB-001");
        State.CurrentStudy.Entries[1] = {"NB-001", 1, 110, 0, 0, 42, "D"};
        State.Paths.LastStudyGroupPath = "/start/Study Groups/Main St/";
    }
    void SetSamples(const std::vector<int>& values) {
        RunRecord& run = State.CurrentRun = RunOfValues(values);
        DecodeRunSamples(run);
        run.Header.RunName = "NB-001";
        run.Header.SectionName[1] = "=Oak, St";
    }
    std::vector<std::string> Cells(int column) { return Column(*Window, "vaRunStatistics", column); }
};

TEST_F(frmRunStatisticsTest, ShowsDisplayUnits) {
    State.Settings.MetricUnits = -1;
    Open(1);
    EXPECT_EQ(Get<Table>("vaRunStatistics").horizontalHeaderItem(3)->text(), "Length\n(m)");
    EXPECT_THAT(Cells(3), ElementsAre("27", "7", "34"));
}

TEST_F(frmRunStatisticsTest, TheWholeRunStaysLast) {
    Open(1);
    auto& table = Get<Table>("vaRunStatistics");
    ClickHead(table, 3);
    EXPECT_THAT(Cells(0), ElementsAre("2", "1", "Total"));
    ClickHead(table, 3);
    EXPECT_THAT(Cells(0), ElementsAre("1", "2", "Total"));
    table.horizontalHeader()->setSortIndicator(1, Qt::DescendingOrder);
    EXPECT_THAT(Cells(1), ElementsAre("[Start]", "=Oak, St", "[Start]"));
    table.horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    EXPECT_THAT(Cells(0), ElementsAre("1", "2", "Total"));
}

TEST_F(frmRunStatisticsTest, CopiesAndSavesTheTable) {
    Open(1);
    Press("BtnCopy");
    EXPECT_THAT(DesktopServices.Copied,
                testing::EndsWith("\n2\t'=Oak, St\t[End]\t22\t1\t1\t0\t0\t15.0\t0\t0\t\t\n"
                                  "Total\t[Start]\t[End]\t110\t4\t3\t1\t1\t25.0\t1\t0\t42\tD\n"));

    const auto files = Files.AllFiles();
    Press("BtnSaveCsv");
    EXPECT_EQ(DesktopServices.AskedFrom, "/start/Study Groups/Main St/NB-001 statistics.csv");
    EXPECT_EQ(Files.AllFiles(), files) << "the user named no file";
    DesktopServices.FileToSave = "/start/out.csv";
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    Messages.Expect("Run-time error '61':\nDisk full\n\n/start/out.csv");
    Press("BtnSaveCsv");
    Press("BtnSaveCsv");
    const auto bytes = Files.Bytes("/start/out.csv").value();
    EXPECT_THAT(std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()),
                testing::HasSubstr("\r\n2,\"'=Oak, St\",[End],22,1,1,0,0,15.0,0,0,,\r\n"));
}

TEST_F(frmRunStatisticsTest, ARunWithoutSamplesHasNoColumnsOfAnotherRun) {
    Open(1).close();
    SetSamples({});
    Open(1);
    EXPECT_EQ(Get<Table>("vaRunStatistics").horizontalHeader()->count(), 10);
    QTest::keyClick(Window.get(), Qt::Key_Escape);
    EXPECT_TRUE(Window->isHidden());
}

}  // namespace
}  // namespace vantor
