#include "ReviewScreen.h"
#include "core/RunFile.h"
#include "gpsobd/LogRuns.h"

namespace vantor {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

using LogReviewOutputTest = ReviewScreen;

TEST_F(LogReviewOutputTest, ExportsTheRowsToTheFileOfTheLogsName) {
    OpenObd(WithGap);
    Program.Messages.Expect("Excel File Successfully Exported.");
    Click(*Form, "btnExport2Excel");
    EXPECT_TRUE(Program.Files.Bytes(Folder + "drive.xls"));
    EXPECT_EQ(Program.Sheets.Format, WorkbookFormat::Xls);
    ASSERT_EQ(Program.Sheets.Sheets.size(), 1U);
    EXPECT_EQ(Program.Sheets.Sheets.front().Name, "");
    EXPECT_EQ(Program.Sheets.Sheets.front().Rows.size(), 5U);

    Program.Sheets.Fails = true;
    Program.Messages.Expect("Problem Exporting File. Contact Technical Support.");
    Click(*Form, "btnExport2Excel");
    Program.Sheets.Fails = false;
    Program.Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    Program.Messages.Expect("Problem Exporting File. Contact Technical Support.");
    Click(*Form, "btnExport2Excel");
    EXPECT_THAT(Texts(SpeedColumn), ElementsAre("30.0", "-1", "-1", "-1", "50.0"));
}

TEST_F(LogReviewOutputTest, ExportsToAFileThatTheUserNames) {
    FieldLog log = ObdLog({30});
    log.Points.front().Obd.Comment = "=1+1";
    OpenObd(log);
    Click(*Form, "btnExportAs");
    EXPECT_EQ(Program.DesktopServices.AskedFrom, Folder + "drive.xlsx");
    EXPECT_EQ(Program.DesktopServices.KindsOffered, "*.xls*.xlsx*.csv");

    Program.DesktopServices.FileToSave = "/start/out.xlsx";
    Click(*Form, "btnExportAs");
    EXPECT_EQ(Program.Sheets.Format, WorkbookFormat::Xlsx);
    EXPECT_TRUE(Program.Files.Bytes("/start/out.xlsx"));

    Program.DesktopServices.FileToSave = "/start/out.txt";
    Program.Messages.Expect(
        "Run-time error '13':\nType mismatch\n\n/start/out.txt\nGive the file a name that ends in .xls, .xlsx or "
        ".csv.");
    Click(*Form, "btnExportAs");
    EXPECT_FALSE(Program.Files.Bytes("/start/out.txt"));

    Program.DesktopServices.FileToSave = "/start/out.csv";
    Click(*Form, "btnExportAs");
    EXPECT_EQ(Program.Files.Bytes("/start/out.csv"),
              BytesOf("\xEF\xBB\xBFRun #,Direction,Node,Date,Time,Speed (mph),Engine Speed (rpm),Load (%),Throttle (%),"
                      "Coolant (\u00B0F),Intake Air (\u00B0F),Air Flow (g/s),Fuel Rate (gal/h),Delay #,Trouble Codes,"
                      "Monitor Status,Comment\r\n1,,0,05/14/03,6:00:00 AM,30,0,0,0,0,0,0,0,0,,,'=1+1\r\n"));
}

TEST_F(LogReviewOutputTest, OffersAnXlsxFileForMoreRowsThanAnXlsFileHolds) {
    const std::string offer =
        "The log has 65536 rows, an .xls file holds 65535.\nDo you want to export it to this "
        "file instead?\n" +
        Folder + "drive.xlsx";
    OpenObd(std::vector<float>(65536, 30));
    Program.Messages.Expect(offer, MessageAnswer::No);
    Click(*Form, "btnExport2Excel");
    Program.Messages.Expect(offer, MessageAnswer::Yes);
    Program.Messages.Expect("Excel File Successfully Exported.");
    Click(*Form, "btnExport2Excel");
    EXPECT_EQ(Program.Sheets.Format, WorkbookFormat::Xlsx);
    EXPECT_TRUE(Program.Files.Bytes(Folder + "drive.xlsx"));
    EXPECT_FALSE(Program.Files.Bytes(Folder + "drive.xls"));
}

TEST_F(LogReviewOutputTest, OkMakesTheRunsAndWritesTheLogBack) {
    Program.State.DataFileSelected = false;
    OpenObd(WithGap);
    ChooseRow(2);
    Click(*Form, "btnCalcSpeed");
    Click(*Form, "BtnOk");
    EXPECT_FALSE(Form->isVisible());
    EXPECT_EQ(Form->result(), QDialog::Accepted);
    EXPECT_TRUE(Program.State.DataFileSelected);
    RunRecord run;
    ASSERT_TRUE(ReadRunFile(Program.Files, Program.Messages, run, Temp, "drive-R001", true));
    EXPECT_EQ(run.Header.SampleCount, 5);
    EXPECT_EQ(run.RunSamples[2].Speed, 35);
    EXPECT_EQ(Written().Points[1].Obd.Speed, 35);
    EXPECT_EQ(Program.Files.Bytes(Folder + "drive.od2.bak"), Before);
}

TEST_F(LogReviewOutputTest, WhenTheLogCannotBeWrittenTheRunsStand) {
    OpenObd(WithGap);
    const std::string problem =
        "The runs were made (1, in " + Temp +
        "), but the reviewed log could not be written back. It stands as it was before the review.\n\n"
        "Run-time error '61':\nDisk full\n\n" +
        Folder +
        "drive.od2.bak\n\n"
        "Choose Retry to write the log again, or Cancel to go on with the runs alone.";
    ChooseRow(2);
    Click(*Form, "btnCalcSpeed");
    Program.Files.FailChangeAfter(2, ErrorNumber::DiskFull);
    Program.Messages.Expect(problem, MessageAnswer::Cancel);
    Click(*Form, "BtnOk");
    EXPECT_TRUE(Program.State.DataFileSelected);
    EXPECT_TRUE(Program.Files.Bytes(Temp + "drive-R001.rd2"));
    EXPECT_TRUE(IsLogAsBefore());

    Program.Files.Delete(Folder + "drive.od2");
    OpenObd(WithGap);
    ChooseRow(2);
    Click(*Form, "btnCalcSpeed");
    Program.Files.FailChangeAfter(2, ErrorNumber::DiskFull);
    const std::string again =
        "These runs are in Temp already: drive-R001.\n\nDo you want to replace them?\nYes keeps the old "
        "files as .bak. No keeps both, the new ones with a number behind the name.\n\n" +
        Temp;
    Program.Messages.Expect(again, MessageAnswer::Cancel);
    Click(*Form, "BtnOk");
    EXPECT_TRUE(Form->isVisible());
    Program.Messages.Expect(again, MessageAnswer::No);
    Program.Messages.Expect(problem, MessageAnswer::Retry);
    Click(*Form, "BtnOk");
    EXPECT_EQ(Form->result(), QDialog::Accepted);
    EXPECT_EQ(Program.Files.Bytes(Folder + "drive.od2.bak"), Before);
    EXPECT_TRUE(Program.Files.Bytes(Temp + "drive-R001-1.rd2")) << "no run is made twice by a retry";
    EXPECT_FALSE(Program.Files.Bytes(Temp + "drive-R001-2.rd2"));
}

TEST_F(LogReviewOutputTest, WhenTheRunsCannotBeWrittenTheScreenStays) {
    OpenObd(WithGap);
    Program.Files.FailChangeAfter(1, ErrorNumber::DiskFull);
    Program.Messages.Expect("Run-time error '61':\nDisk full\n\n" + Temp + "drive-R001.rd2");
    Click(*Form, "BtnOk");
    EXPECT_TRUE(Form->isVisible());
    EXPECT_TRUE(IsLogAsBefore());
}

TEST_F(LogReviewOutputTest, ARunThatIsTooLongIsLeftOutOnlyWithConsent) {
    FieldLog log = ObdLog({30, 30, 30});
    log.Points[1].Obd.RunNumber = 2;
    log.Points[2].Obd.RunNumber = 2;
    log.Points[2].Obd.DateTime = {LogDay + 2.5};
    OpenObd(log);
    const std::string tooLong =
        "Run 2 goes from 2003-05-14T06:00:01 to 2003-05-16T12:00:00; a run holds at most 32767 seconds.\n";
    const std::string question = tooLong + "Do you want to make the other runs, without what is too long?";
    Program.Messages.Expect(question, MessageAnswer::No);
    Click(*Form, "BtnOk");
    EXPECT_TRUE(Form->isVisible());
    EXPECT_FALSE(Program.Files.Bytes(Temp + "drive-R001.rd2"));

    ChooseRow(1);
    Click(*Form, "btnDeleteRow");
    Program.Messages.Expect(tooLong + "Delete the rows whose times are wrong.");
    Click(*Form, "BtnOk");
    EXPECT_TRUE(Form->isVisible());

    Click(*Form, "btnUndo");
    Program.Messages.Expect(question, MessageAnswer::Yes);
    Click(*Form, "BtnOk");
    EXPECT_EQ(Form->result(), QDialog::Accepted);
    EXPECT_TRUE(Program.Files.Bytes(Temp + "drive-R001.rd2"));
    EXPECT_FALSE(Program.Files.Bytes(Temp + "drive-R002.rd2"));
}

TEST_F(LogReviewOutputTest, CancelAsksBeforeChangesAreLostAndWritesNothing) {
    OpenObd(WithGap);
    Click(*Form, "btnDeleteRow");
    Program.Messages.Expect(Discard, MessageAnswer::No);
    Click(*Form, "BtnCancel");
    EXPECT_TRUE(Form->isVisible());
    EXPECT_TRUE(Program.State.DataFileSelected);
    Program.Messages.Expect(Discard, MessageAnswer::Yes);
    QTest::keyClick(&Grid(), Qt::Key_Escape);
    EXPECT_FALSE(Form->isVisible());
    EXPECT_FALSE(Program.State.DataFileSelected);
    EXPECT_TRUE(IsLogAsBefore());
    EXPECT_THAT(Program.Files.AllFiles(), Not(Contains(Folder + "drive.od2.bak")));

    OpenObd(WithGap);
    Click(*Form, "btnDeleteRow");
    Click(*Form, "btnUndo");
    Form->close();
    EXPECT_FALSE(Form->isVisible()) << "what was undone is no change";
}

TEST_F(LogReviewOutputTest, OpensInTheOrderOfTheLogWhateverWasRemembered) {
    OpenObd({30, 20, 10});
    ClickHead(SpeedColumn);
    Form->close();
    OpenObd({3, 2, 1, 0});
    EXPECT_THAT(Texts(SpeedColumn), ElementsAre("3.0", "2.0", "1.0", "0.0"));
    EXPECT_EQ(Grid().verticalHeader()->count(), 4);
    EXPECT_EQ(Grid().rowHeight(3), Grid().rowHeight(0));
}

}  // namespace
}  // namespace vantor
