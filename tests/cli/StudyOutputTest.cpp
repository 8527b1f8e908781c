#include <gmock/gmock.h>

#include "cli/CommandRunner.h"
#include "reports/ReportStudies.h"

namespace vantor {
namespace {

using testing::HasSubstr;

/// What the commands write of a study into a file that the user names: charts, reports and tables.
class StudyOutputTest : public CommandTest {
protected:
    StudyOutputTest() {
        for (const char* folder : {"/out", "/g"}) Files.CreateFolder(folder);
        Study study = PutReportedStudy(Files, "/g/", 3);
        for (const auto& [run, delay] : {std::pair{1, 20}, {2, -5}, {3, 40}}) study.Entries[run].ControlDelay = delay;
        study.Entries[2].CDEndDist = 0;  // not counted
        PutStudyFile(Files, study, "/g/", "AM");
    }
    json Report(const std::string& options) { return Json("study report /g/AM.ld2 --output /out/AM.pdf " + options); }
};

TEST_F(StudyOutputTest, NoCommandLeavesAHalfFileOrWritesWhatItCannot) {
    for (const auto& [name, extension] : {std::pair{"chart", ".png"}, {"report", ".pdf"}, {"export", ".xlsx"}}) {
        SCOPED_TRACE(name);
        const std::string output = std::string("/out/AM") + extension;
        Files.PutText(output, "old");
        const auto files = Files.AllFiles();
        const std::string command = std::string("study ") + name + " /g/AM.ld2";
        Files.FailChangeAfter(0, ErrorNumber::DiskFull);
        EXPECT_EQ(Status(command + " --output " + output), 1);
        EXPECT_EQ(Err, "Run-time error '61':\nDisk full\n\n" + output + "\n");
        EXPECT_EQ(Status(command + " --output /gone/AM" + extension), 1);
        EXPECT_THAT(Err, HasSubstr("/gone/AM"));
        EXPECT_EQ(Status(std::string("study ") + name + " /g/PM.ld2 --output " + output), 1);
        EXPECT_EQ(Err, "Missing Study File: PM\n");
        EXPECT_EQ(Status(command), 2);
        EXPECT_EQ(Status(command + " --output /out/AM.jpg"), 2);
        EXPECT_EQ(Out, "");
        EXPECT_EQ(Files.Bytes(output), BytesOf("old"));
        EXPECT_EQ(Files.AllFiles(), files);
    }
}

TEST_F(StudyOutputTest, TheChartIsDrawnAndItsAxisAndPointsAreTold) {
    const json chart = Json("study chart /g/AM.ld2 --output /out/AM.pdf");
    EXPECT_EQ(Documents.Format, PictureFormat::Pdf);
    EXPECT_EQ(Files.Bytes("/out/AM.pdf"), BytesOf("\x89P"));
    const double width = chart["Right"].get<int>() - chart["Left"].get<int>();
    const double height = chart["Bottom"].get<int>() - chart["Top"].get<int>();
    EXPECT_GT(width, 600);
    EXPECT_GT(height, 300);
    ExpectHas(chart, {{"YMax", 50}, {"YMin", -10}, {"ValueStep", 5}, {"WindowStep", height / 10}});
    EXPECT_FLOAT_EQ(chart["XStep"], static_cast<float>(width / 4));
    EXPECT_FLOAT_EQ(chart["YScale"], static_cast<float>(height / 50));

    ASSERT_EQ(chart["points"].size(), 3);
    const json& second = chart["points"][1];
    ExpectHas(second,
              {{"EntryRunName", "NB-2"}, {"ControlDelay", -5}, {"RunningAverage", 7.5}, {"Y", chart["Bottom"]}});
    EXPECT_NEAR(second["AverageY"], chart["Bottom"].get<double>() - 0.15 * height, 0.5);
    EXPECT_NEAR(second["X"], chart["Left"].get<double>() + width / 2, 0.5);
    EXPECT_NEAR(chart["points"][2]["RunningAverage"], 18.3333333, 1e-6);
    EXPECT_EQ(Json("study chart /g/AM.ld2 --counted --output /out/AM.pdf")["points"].size(), 2);
}

TEST_F(StudyOutputTest, TheTableHasTheFormatOfItsExtension) {
    EXPECT_EQ(Status("study export /g/AM.ld2 --output /out/AM.txt"), 2);
    EXPECT_EQ(Err, "/out/AM.txt\nA run list is an .xls, .xlsx or .csv file.\n");
    // Letters of an extension are alike. What is told of a missing run can be exported without its file.
    Files.Delete("/g/NB-1.rd2");
    EXPECT_EQ(Status("study export /g/AM.ld2 --output /out/AM.XLSX"), 0);
    EXPECT_THAT(Err, HasSubstr("Missing Run File: NB-1."));
    EXPECT_EQ(Sheets.Format, WorkbookFormat::Xlsx);
}

TEST_F(StudyOutputTest, TheChosenReportsStandOnTheChosenPaper) {
    EXPECT_EQ(Report(""), json({{"pages", 8}}));
    EXPECT_EQ(Documents.Document.Page.Width, 612);
    EXPECT_EQ(Files.Bytes("/out/AM.pdf"), BytesOf("%P"));
    EXPECT_EQ(Report("--only statistics --paper a4 --landscape --only chart")["pages"], 2);
    EXPECT_EQ(Documents.Document.Page.Width, 842);
    EXPECT_EQ(Documents.Document.Title, "AM Peak");
    EXPECT_THAT(Documents.Pages.at(1).Texts,
                testing::Contains(testing::Field(&RecordingCanvas::Text::Shown, "Detailed Statistics by Run")));
    for (const std::string wrong : {"--paper a5", "--only everything"})
        EXPECT_EQ(Status("study report /g/AM.ld2 --output /out/AM.pdf " + wrong), 2);

    Files.Delete("/g/NB-2.rd2");
    EXPECT_EQ(Status("study report /g/AM.ld2 --output /out/AM.pdf --json"), 1);
    EXPECT_EQ(Err, "Missing Run File: NB-2\n");
    EXPECT_EQ(json::parse(Out), json({{"pages", 8}}));
}

}  // namespace
}  // namespace vantor
