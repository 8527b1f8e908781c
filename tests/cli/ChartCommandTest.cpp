#include <gtest/gtest.h>

#include "cli/CommandRunner.h"
#include "core/StudyFile.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

class ChartCommandTest : public testing::Test {
protected:
    ChartCommandTest() {
        Program.Files.CreateFolder("/out");
        Study study;
        for (const std::int32_t delay : {20, -5, 40}) {
            AppendRun(study, "NB-" + std::to_string(study.Record.RunCount + 1));
            study.Entries[study.Record.RunCount].ControlDelay = delay;
        }
        PutStudyFile(Program.Files, study, "/", "AM");
    }

    int Chart(const std::string& output) { return Program.Run({"study", "chart", "/AM.ld2", "--output", output}); }

    CommandRunner Program;
};

TEST_F(ChartCommandTest, DrawsAStudyAndTellsAxisAndPoints) {
    const nlohmann::json chart = Program.Json({"study", "chart", "/AM.ld2", "--output", "/out/AM.pdf"});
    EXPECT_EQ(Program.Documents.Format, PictureFormat::Pdf);
    EXPECT_EQ(Program.Files.Bytes("/out/AM.pdf"), (std::vector{std::byte{0x89}, std::byte{'P'}}));
    EXPECT_EQ(chart["YMax"], 50);
    EXPECT_EQ(chart["YMin"], -10);
    EXPECT_EQ(chart["ValueStep"], 5);
    const double width = chart["Right"].get<int>() - chart["Left"].get<int>();
    const double height = chart["Bottom"].get<int>() - chart["Top"].get<int>();
    EXPECT_GT(width, 600);
    EXPECT_GT(height, 300);
    EXPECT_FLOAT_EQ(chart["XStep"], static_cast<float>(width / 4));
    EXPECT_FLOAT_EQ(chart["YScale"], static_cast<float>(height / 50));
    EXPECT_EQ(chart["WindowStep"], height / 10);

    ASSERT_EQ(chart["points"].size(), 3);
    const nlohmann::json& second = chart["points"][1];
    EXPECT_EQ(second["EntryRunName"], "NB-2");
    EXPECT_EQ(second["ControlDelay"], -5);
    EXPECT_EQ(second["RunningAverage"], 7.5);
    EXPECT_EQ(second["Y"], chart["Bottom"]);
    EXPECT_NEAR(second["AverageY"], chart["Bottom"].get<double>() - 0.15 * height, 0.5);
    EXPECT_NEAR(second["X"], chart["Left"].get<double>() + width / 2, 0.5);
    EXPECT_NEAR(chart["points"][2]["RunningAverage"], 18.3333333, 1e-6);
}

TEST_F(ChartCommandTest, LeavesNoHalfFile) {
    Program.Files.PutText("/out/AM.png", "old");
    Program.Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    EXPECT_EQ(Chart("/out/AM.png"), 1);
    EXPECT_NE(Program.Err.find("/out/AM.png"), std::string::npos) << Program.Err;
    EXPECT_EQ(Program.Files.Bytes("/out/AM.png"), BytesOf("old"));

    const auto files = Program.Files.AllFiles();
    EXPECT_EQ(Chart("/gone/AM.png"), 1);
    EXPECT_NE(Program.Err.find("/gone/AM.png"), std::string::npos) << Program.Err;
    EXPECT_EQ(Chart("/out/AM.jpg"), 2);
    EXPECT_EQ(Program.Run({"study", "chart", "/AM.ld2"}), 2);
    EXPECT_EQ(Program.Run({"study", "chart", "/PM.ld2", "--output", "/out/PM.png"}), 1);
    EXPECT_EQ(Program.Err, "Missing Study File: PM\n");
    EXPECT_EQ(Program.Out, "");
    EXPECT_EQ(Program.Files.AllFiles(), files);
}

}  // namespace
}  // namespace vantor
