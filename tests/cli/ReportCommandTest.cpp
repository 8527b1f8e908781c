#include <gmock/gmock.h>

#include "analysis/ReportStudies.h"
#include "cli/CommandRunner.h"

namespace vantor {
namespace {

class ReportCommandTest : public testing::Test {
protected:
    ReportCommandTest() {
        Runner.Files.CreateFolder("/start/NB");
        PutReportedStudy(Runner.Files, "/start/NB/", 3);
    }
    nlohmann::json Report(std::vector<std::string> options) {
        options.insert(options.begin(), {"study", "report", "/start/NB/AM Peak.ld2", "--output", "/start/out.pdf"});
        return Runner.Json(options);
    }

    CommandRunner Runner;
};

TEST_F(ReportCommandTest, WritesTheChosenReportsOnTheChosenPaper) {
    EXPECT_EQ(Report({}), nlohmann::json({{"pages", 4}}));
    EXPECT_EQ(Runner.Documents.Document.Page.Width, 612);
    EXPECT_EQ(Runner.Files.Bytes("/start/out.pdf"), BytesOf("%P"));
    EXPECT_EQ(Report({"--only", "statistics", "--paper", "a4", "--landscape", "--only", "chart"})["pages"], 2);
    EXPECT_EQ(Runner.Documents.Document.Page.Width, 842);
    EXPECT_EQ(Runner.Documents.Document.Title, "AM Peak");
    const auto& texts = Runner.Documents.Pages.at(0).Texts;
    const auto hasTitle = [&](const char* title) {
        return std::any_of(texts.begin(), texts.end(), [&](const auto& text) { return text.Shown == title; });
    };
    EXPECT_TRUE(hasTitle("Detailed Statistics by Run"));
}

TEST_F(ReportCommandTest, TellsWhatItCannotDo) {
    const auto run = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"study", "report"});
        return Runner.Run(arguments);
    };
    const std::string study = "/start/NB/AM Peak.ld2";
    const auto files = Runner.Files.AllFiles();
    EXPECT_EQ(run({study, "--output", "/start/out.doc"}), 2);
    EXPECT_EQ(run({study}), 2);
    EXPECT_EQ(run({study, "--output", "/start/out.pdf", "--paper", "a5"}), 2);
    EXPECT_EQ(run({study, "--output", "/start/out.pdf", "--only", "everything"}), 2);
    EXPECT_EQ(run({"/start/NB/None.ld2", "--output", "/start/out.pdf"}), 1);
    EXPECT_EQ(Runner.Err, "Missing Study File: None\n");
    Runner.Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    EXPECT_EQ(run({study, "--output", "/start/out.pdf"}), 1);
    EXPECT_EQ(Runner.Err, "Run-time error '61':\nDisk full\n\n/start/out.pdf\n");
    EXPECT_EQ(Runner.Out, "");
    EXPECT_EQ(Runner.Files.AllFiles(), files);

    Runner.Files.Delete("/start/NB/NB-2.rd2");
    EXPECT_EQ(run({study, "--output", "/start/out.pdf", "--json"}), 1);
    EXPECT_EQ(Runner.Err, "Missing Run File: NB-2\n");
    EXPECT_EQ(nlohmann::json::parse(Runner.Out)["pages"], 4);
    EXPECT_TRUE(Runner.Files.Bytes("/start/out.pdf"));
}

}  // namespace
}  // namespace vantor
