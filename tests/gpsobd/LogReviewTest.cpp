#include "gpsobd/forms/LogReview.h"

#include <QScreen>
#include <QTimer>

#include "Logs.h"
#include "core/RunFile.h"
#include "fakes/FormScene.h"
#include "gpsobd/LaptopLog.h"

namespace vantor {
namespace {

using testing::ElementsAre;

const std::string Folder = "/start/Field Data Files/";
const std::string Temp = "/start/Temp/";
const std::string LogPath = Folder + "drive.od2";
const std::string Discard = "The rows of log: " + LogPath + "\nhave changed. Do you want to discard the changes?";
constexpr int RunColumn = 0;
constexpr int SpeedColumn = 5;
const std::vector<float> WithGap = {30, -1, -1, -1, 50};

class LogReviewTest : public FormScene<LogReview> {
protected:
    void OpenObd(const FieldLog& log) {
        WriteFieldLog(Files, log);
        Before = *Files.Bytes(LogPath);
        Open(FormatOf(LogKind::ObdLaptop), LogChoice{Folder, "drive", ".od2"});
    }
    void OpenObd(const std::vector<float>& speeds) { OpenObd(ObdLog(speeds)); }
    void OpenGps(const std::string& records) {
        Files.PutText(Folder + "drive.gd2", Prefix(2) + GpsHeader() + records);
        Open(FormatOf(LogKind::GpsLaptop), LogChoice{Folder, "drive", ".gd2"});
    }
    void OpenAndFillGap() {
        OpenObd(WithGap);
        ChooseRow(1);
        Press("btnCalcSpeed");
    }
    void DeleteFirstRow() {
        ChooseRow(0);
        Press("btnDeleteRow");
    }

    ReviewTable& Grid() { return *Window->findChild<ReviewTable*>(); }
    void ChooseRow(int row) { ClickCell(Grid(), row, RunColumn); }
    std::vector<std::string> Speeds() { return Column(*Window, "vaOBDData", SpeedColumn); }
    std::vector<std::string> Runs() { return Column(*Window, "vaOBDData", RunColumn); }
    std::vector<float> WrittenSpeeds() {
        std::vector<float> speeds;
        const PalmDatabase devices(Files);
        const LogSources sources{Files, Databases, devices, Time};
        for (const ObdPoint& point : ReadFieldLog(sources, FormatOf(LogKind::ObdLaptop), LogPath).Obd)
            speeds.push_back(point.Speed);
        return speeds;
    }
    bool HasRun(const std::string& name) { return Files.Bytes(Temp + name + ".rd2").has_value(); }
    bool IsLogAsBefore() { return Files.Bytes(LogPath) == Before; }

    std::vector<std::byte> Before;
};

TEST_F(LogReviewTest, ClosesAtOnceWhenTheLogCannotBeRead) {
    for (const auto& [kind, extension] : {std::pair{LogKind::ObdLaptop, ".od2"}, {LogKind::GpsHandheld, ".pdb"}}) {
        Messages.Expect("Run-time error '53':\nFile not found\n\n" + Folder + "drive" + extension);
        LogReview form(Context, FormatOf(kind), LogChoice{Folder, "drive", extension});
        EXPECT_TRUE(Messages.IsDone());
        EXPECT_EQ(form.exec(), QDialog::Rejected) << "without waiting for the user";
    }
}

TEST_F(LogReviewTest, WithoutAChosenLogThereIsNothingToDo) {
    Open(FormatOf(LogKind::GpsLaptop), LogChoice{Folder, "", ".gd2"});
    EXPECT_EQ(Grid().accessibleDescription(), "No log was chosen.");
    Messages.Expect("There is no run to make: no row has a run number of 1 or more.");
    Press("BtnOk");
    EXPECT_TRUE(Window->isVisible());
    Press("BtnCancel");
    EXPECT_FALSE(Window->isVisible() || IsAccepted());
}

TEST_F(LogReviewTest, TellsHowManyBytesOfALogWereDropped) {
    Messages.Expect("The last record of the log is incomplete: 5 bytes at the end of the file are left out.\n" +
                    Folder + "drive.gd2");
    OpenGps(GpsRecord(1, LogDay + 0.5) + "12345");
    EXPECT_EQ(Grid().model()->rowCount(), 1);
}

TEST_F(LogReviewTest, FindsAGapAndFillsIt) {
    std::vector<float> speeds(200, 30);
    speeds[19] = speeds[20] = -1;
    speeds[21] = 45;
    OpenObd(speeds);
    Press("btnFindMissingData");
    EXPECT_EQ(Grid().rowAt(0), 16) << "three rows stay in view above what is found";
    const QModelIndex found = Grid().currentIndex();
    EXPECT_EQ(found, Grid().model()->index(19, SpeedColumn));
    const auto isMarked = [&](int row) { return found.siblingAtRow(row).data(Qt::BackgroundRole).isValid(); };
    const auto expectFilled = [&](const std::string& first, const std::string& second) {
        EXPECT_EQ(Speeds()[19] + "|" + Speeds()[20], first + "|" + second);
        EXPECT_EQ(isMarked(19), first != "-1");
    };
    Press("btnCalcSpeed");
    expectFilled("35.0", "40.0");
    EXPECT_EQ(found.data(Qt::BackgroundRole).value<QColor>(), QColor(0xc0, 0xff, 0xc0));
    EXPECT_EQ(found.data(Qt::AccessibleTextRole), "35.0, computed");
    EXPECT_FALSE(found.data(Qt::ToolTipRole).toString().isEmpty());
    EXPECT_FALSE(isMarked(0));
    PressKey(Qt::Key_Z, Qt::ControlModifier);
    expectFilled("-1", "-1");
    PressKey(Qt::Key_Y, Qt::ControlModifier);
    expectFilled("35.0", "40.0");
    Press("btnFindMissingData");
    EXPECT_EQ(Text("lblStatus"), "From row 17 on no row has -1 in column Speed (MPH).");
}

/// The screen of the tests is a small one; a laptop's of 1366 pixels leaves half of them at twice the size.
TEST_F(LogReviewTest, FitsASmallScreenInWidth) {
    constexpr int Room = 1366 / 2 - 8;
    OpenObd(WithGap);
    ASSERT_LT(Window->screen()->availableGeometry().width(), 900);
    EXPECT_LE(Window->minimumSizeHint().width(), Room);
    Press("btnViews");
    EXPECT_TRUE(IsShown("tabViews"));
    EXPECT_LE(Window->minimumSizeHint().width(), Room);
}

TEST_F(LogReviewTest, DeletesTheActiveRowAndPutsItBack) {
    OpenObd({10, 20});
    ClickCell(Grid(), 1, 2);
    PressKey(Qt::Key_Delete);
    EXPECT_THAT(Speeds(), ElementsAre("10.0"));
    EXPECT_EQ(Grid().currentIndex(), Grid().model()->index(0, 2)) << "the last row was deleted";
    Press("btnDeleteRow");
    EXPECT_FALSE(IsEnabled("btnDeleteRow"));
    QTest::keyClick(&Grid(), Qt::Key_Delete);
    for (int i = 0; i < 2; ++i) Press("btnUndo");
    EXPECT_THAT(Speeds(), ElementsAre("10.0", "20.0"));
    EXPECT_EQ(Grid().currentIndex().row(), 1);
}

TEST_F(LogReviewTest, SortsByValueAndBackToTheOrderOfTheLog) {
    FieldLog log = ObdLog({9, 100, 30, 9});
    log.Obd[3].RunNumber = 2;
    OpenObd(log);
    ClickHead(Grid(), SpeedColumn);
    EXPECT_THAT(Speeds(), ElementsAre("9.0", "9.0", "30.0", "100.0")) << "as numbers, not as texts";
    EXPECT_THAT(Runs(), ElementsAre("1", "2", "1", "1"));
    ClickHead(Grid(), SpeedColumn);
    EXPECT_THAT(Speeds(), ElementsAre("100.0", "30.0", "9.0", "9.0"));
    EXPECT_THAT(Runs(), ElementsAre("1", "1", "1", "2")) << "equal ones in the order of the log";
    ClickHead(Grid(), SpeedColumn);
    EXPECT_THAT(Speeds(), ElementsAre("9.0", "100.0", "30.0", "9.0"));
    ClickHead(Grid(), SpeedColumn);
    Window->close();
    OpenObd({3, 2, 1, 0, 0});
    EXPECT_THAT(Speeds(), ElementsAre("3.0", "2.0", "1.0", "0.0", "0.0")) << "opens so whatever was remembered";
    EXPECT_EQ(Grid().rowHeight(4), Grid().rowHeight(0));
}

TEST_F(LogReviewTest, WhatIsDoneInASortedGridGoesByTheOrderOfTheLog) {
    OpenObd({50, 40, -1, 30, 20});
    ClickHead(Grid(), SpeedColumn);
    ASSERT_THAT(Speeds(), ElementsAre("-1", "20.0", "30.0", "40.0", "50.0"));
    ChooseRow(0);
    Press("btnCalcSpeed");
    EXPECT_THAT(Speeds(), ElementsAre("20.0", "30.0", "35.0", "40.0", "50.0")) << "between 40 and 30";
    EXPECT_EQ(Grid().currentIndex().row(), 2) << "the filled row stays the active one";
    DeleteFirstRow();
    EXPECT_THAT(Speeds(), ElementsAre("30.0", "35.0", "40.0", "50.0"));
    Press("BtnOk");
    EXPECT_THAT(WrittenSpeeds(), ElementsAre(50, 40, 35, 30));
}

TEST_F(LogReviewTest, MarksProblemsAndWalksThroughThem) {
    OpenObd({30, -1, 31, 32, 60, 61});
    EXPECT_EQ(Text("lblStatus"), "6 rows. With a problem: 2.");
    const auto isMarked = [&](int row) {
        return !Grid().model()->headerData(row, Qt::Vertical, Qt::DecorationRole).isNull();
    };
    EXPECT_TRUE(isMarked(1) && isMarked(4) && !isMarked(0) && !isMarked(3));
    PressKey(Qt::Key_F8);
    EXPECT_EQ(Text("lblStatus"), "Row 2: no speed.");
    EXPECT_EQ(Grid().currentIndex().row(), 1);
    Press("btnCalcSpeed");
    EXPECT_FALSE(isMarked(1)) << "it is filled";
    for (const int row : {4, 4}) {
        Press("btnNextProblem");
        EXPECT_EQ(Grid().currentIndex().row(), row);
    }
    EXPECT_EQ(Text("lblStatus"), "Row 5: the speed changes by 28 MPH a second.");
    Press("btnDeleteRow");
    ChooseRow(4);
    Press("btnDeleteRow");
    Press("btnNextProblem");
    EXPECT_EQ(Text("lblStatus"), "No row has a problem.");
}

TEST_F(LogReviewTest, DeletesARangeAndKeepsThePlaceInASortedGrid) {
    OpenObd({50, 40, 10, 30, 20, 60});
    ClickHead(Grid(), SpeedColumn);
    ASSERT_THAT(Speeds(), ElementsAre("10.0", "20.0", "30.0", "40.0", "50.0", "60.0"));
    ChooseRow(1);
    ClickCell(Grid(), 3, RunColumn, Qt::ShiftModifier);
    PressKey(Qt::Key_Delete);
    EXPECT_THAT(Speeds(), ElementsAre("10.0", "50.0", "60.0"));
    EXPECT_EQ(Text("lblStatus"), "3 rows are deleted.");
    EXPECT_EQ(Grid().currentIndex().row(), 1);
    Press("btnUndo");
    EXPECT_EQ(Speeds().size(), 6U);
}

TEST_F(LogReviewTest, ListsGapsAndFillsThemOtherwise) {
    std::string records;
    for (const int second : {0, 10, 11, 15}) records += GpsRecord(1, LogDay + 0.5 + second / 86400.0);
    OpenGps(records);
    auto& gaps = Get<QTableView>("vaGaps");
    // 31.5 mph are 46.2 feet a second; the positions are the same.
    EXPECT_THAT(Rows(*Window, "vaGaps"), ElementsAre("1|12:00:00 PM|12:00:10 PM|10|0|462|by position",
                                                     "1|12:00:11 PM|12:00:15 PM|4|0|185|by position"));
    EXPECT_FALSE(IsEnabled("btnFillStanding"));
    ClickCell(gaps, 1, 0);
    EXPECT_EQ(Grid().currentIndex().row(), 2) << "the row before the gap";
    Press("btnFillStanding");
    EXPECT_EQ(CellText(gaps, 1, 6), "as standing");
    const auto isSelected = [&](int row) { return gaps.selectionModel()->isRowSelected(row); };
    EXPECT_TRUE(isSelected(1) && !isSelected(0));
    ClickHead(gaps, 3);
    EXPECT_EQ(CellText(gaps, 0, 3), "4") << "sorted by their seconds";
    EXPECT_TRUE(isSelected(0));
    Press("BtnOk");
    EXPECT_EQ(ReadRun(Files, Temp + "Main-R001.rd2").Run.Header.Notes,
              "Direction EB; gaps: 1 standing 4 s, 1 by position 10 s");
    OpenObd({30});
    EXPECT_FALSE(IsShown("fraGaps"));
}

TEST_F(LogReviewTest, StopsAndLeavesWithoutASelection) {
    std::vector<float> speeds(24, -1);  // with gaps of 10 and of 11 rows
    for (const std::size_t row : {0, 11, 23}) speeds[row] = static_cast<float>(row);
    const std::function<void()> waysToStop[] = {
        [&] { Press("btnStop"); }, [&] { QTest::keyClick(Window.get(), Qt::Key_Escape); }, [&] { Window->close(); }};
    for (const auto& stop : waysToStop) {
        OpenObd(speeds);
        bool wasAsked = false;
        QTimer::singleShot(0, Window.get(), [&] {
            wasAsked = true;
            for (const char* button : {"btnFindAndFixAll", "btnDeleteRow", "BtnOk", "BtnCancel", "btnUndo"})
                EXPECT_FALSE(IsEnabled(button)) << button;
            QTest::keyClick(Window.get(), Qt::Key_Z, Qt::ControlModifier);
            stop();
        });
        Press("btnFindAndFixAll");
        EXPECT_TRUE(wasAsked);
        EXPECT_FALSE(Window->isVisible() || IsAccepted());
        EXPECT_TRUE(IsLogAsBefore());
    }
    OpenObd(speeds);
    Press("btnDeleteRow");
    QTimer::singleShot(0, Window.get(), [&] { Press("btnStop"); });
    Messages.Expect(Discard, MessageAnswer::No);
    Press("btnFindAndFixAll");
    EXPECT_TRUE(Window->isVisible()) << "a row was deleted before";
    EXPECT_TRUE(IsEnabled("BtnOk"));
    EXPECT_FALSE(IsShown("btnGoOn"));
    Press("btnUndo");
    Press("btnFindAndFixAll");
    EXPECT_EQ(Speeds()[10] + Speeds()[12], "10.0-1") << "this time to the end";
    EXPECT_FALSE(IsShown("btnStop"));
    EXPECT_TRUE(Grid().hasFocus());
    Press("btnUndo");
    EXPECT_EQ(Speeds()[10], "-1") << "in one step";
}

TEST_F(LogReviewTest, ExportsTheRowsToTheFileOfTheLogsName) {
    OpenObd(WithGap);
    Messages.Expect("Excel File Successfully Exported.");
    Press("btnExport2Excel");
    EXPECT_TRUE(Files.Bytes(Folder + "drive.xls"));
    EXPECT_EQ(Sheets.Format, WorkbookFormat::Xls);
    ASSERT_EQ(Sheets.Sheets.size(), 1U);
    EXPECT_EQ(Sheets.Sheets.front().Name, "");
    EXPECT_EQ(Sheets.Sheets.front().Rows.size(), 5U);
    Sheets.Fails = true;
    Messages.Expect("Problem Exporting File. Contact Technical Support.");
    Press("btnExport2Excel");
}

TEST_F(LogReviewTest, ExportsToAFileThatTheUserNames) {
    FieldLog log = ObdLog({30});
    log.Obd.front().Comment = "=1+1";
    OpenObd(log);
    const auto exportTo = [&](const std::string& path) {
        DesktopServices.FileToSave = path;
        Press("btnExportAs");
        return Files.Bytes(path);
    };
    EXPECT_FALSE(exportTo(""));
    EXPECT_EQ(DesktopServices.AskedFrom, Folder + "drive.xlsx");
    EXPECT_EQ(DesktopServices.KindsOffered, "*.xls*.xlsx*.csv");
    EXPECT_TRUE(exportTo("/start/out.xlsx"));
    EXPECT_EQ(Sheets.Format, WorkbookFormat::Xlsx);
    Messages.Expect(
        "Run-time error '13':\nType mismatch\n\n/start/out.txt\nGive the file a name that ends in .xls, .xlsx or "
        ".csv.");
    EXPECT_FALSE(exportTo("/start/out.txt"));
    EXPECT_EQ(exportTo("/start/out.csv"),
              BytesOf("\xEF\xBB\xBFRun #,Direction,Node,Date,Time,Speed (MPH),Engine Speed (rpm),Load (%),Throttle (%),"
                      "Coolant (\u00B0F),Intake Air (\u00B0F),Air Flow (g/s),Fuel Rate (gal/h),Delay #,Trouble Codes,"
                      "Monitor Status,Comment\r\n1,,0,05/14/03,6:00:00 AM,30,0,0,0,0,0,0,0,0,,,'=1+1\r\n"));
}

TEST_F(LogReviewTest, OffersAnXlsxFileForMoreRowsThanAnXlsFileHolds) {
    const std::string offer =
        "The log has 65536 rows, an .xls file holds 65535.\nDo you want to export it to this "
        "file instead?\n" +
        Folder + "drive.xlsx";
    OpenObd(std::vector<float>(65536, 30));
    Messages.Expect(offer, MessageAnswer::No);
    Press("btnExport2Excel");
    Messages.Expect(offer, MessageAnswer::Yes);
    Messages.Expect("Excel File Successfully Exported.");
    Press("btnExport2Excel");
    EXPECT_EQ(Sheets.Format, WorkbookFormat::Xlsx);
    EXPECT_THAT(Files.AllFiles(), ElementsAre(LogPath, Folder + "drive.xlsx"));
}

TEST_F(LogReviewTest, OkMakesTheRunsAndWritesTheLogBack) {
    OpenAndFillGap();
    Press("BtnOk");
    EXPECT_TRUE(IsAccepted());
    const RunRecord run = ReadRun(Files, Temp + "drive-R001.rd2").Run;
    EXPECT_EQ(run.Header.SampleCount, 5);
    EXPECT_EQ(run.RunSamples[2].Speed, 35);
    EXPECT_THAT(WrittenSpeeds(), ElementsAre(30, 35, 40, 45, 50));
    EXPECT_EQ(Files.Bytes(LogPath + ".bak"), Before);
}

TEST_F(LogReviewTest, WhenTheLogCannotBeWrittenTheRunsStand) {
    const std::string problem =
        "The runs were made (1, in " + Temp +
        "), but the reviewed log could not be written back. It stands as it was before the review.\n\n"
        "Run-time error '61':\nDisk full\n\n" +
        LogPath + ".bak\n\nChoose Retry to write the log again, or Cancel to go on with the runs alone.";
    OpenAndFillGap();
    Files.FailChangeAfter(2, ErrorNumber::DiskFull);
    Messages.Expect(problem, MessageAnswer::Cancel);
    Press("BtnOk");
    EXPECT_TRUE(IsAccepted() && HasRun("drive-R001") && IsLogAsBefore());

    OpenAndFillGap();
    Files.FailChangeAfter(2, ErrorNumber::DiskFull);
    const std::string again =
        "These runs are in Temp already: drive-R001.\n\nDo you want to replace them?\nYes keeps the old "
        "files as .bak. No keeps both, the new ones with a number behind the name.\n\n" +
        Temp;
    Messages.Expect(again, MessageAnswer::Cancel);
    Press("BtnOk");
    EXPECT_TRUE(Window->isVisible());
    Messages.Expect(again, MessageAnswer::No);
    Messages.Expect(problem, MessageAnswer::Retry);
    Press("BtnOk");
    EXPECT_TRUE(IsAccepted());
    EXPECT_EQ(Files.Bytes(LogPath + ".bak"), Before);
    EXPECT_TRUE(HasRun("drive-R001-1") && !HasRun("drive-R001-2")) << "no run is made twice by a retry";
}

TEST_F(LogReviewTest, ARunThatIsTooLongIsLeftOutOnlyWithConsent) {
    FieldLog log = ObdLog({30, 30, 30});
    log.Obd[1].RunNumber = log.Obd[2].RunNumber = 2;
    log.Obd[2].DateTime = {LogDay + 2.5};
    OpenObd(log);
    const std::string tooLong =
        "Run 2 goes from 2003-05-14T06:00:01 to 2003-05-16T12:00:00; a run holds at most 32767 seconds.\n";
    const std::string question = tooLong + "Do you want to make the other runs, without what is too long?";
    Messages.Expect(question, MessageAnswer::No);
    Press("BtnOk");
    EXPECT_TRUE(Window->isVisible() && !HasRun("drive-R001"));

    DeleteFirstRow();
    Messages.Expect(tooLong + "Delete the rows whose times are wrong.");
    Press("BtnOk");
    EXPECT_TRUE(Window->isVisible());

    Press("btnUndo");
    Messages.Expect(question, MessageAnswer::Yes);
    Press("BtnOk");
    EXPECT_TRUE(IsAccepted() && HasRun("drive-R001") && !HasRun("drive-R002"));
}

TEST_F(LogReviewTest, CancelAsksBeforeChangesAreLostAndWritesNothing) {
    OpenObd(WithGap);
    Press("btnDeleteRow");
    Messages.Expect(Discard, MessageAnswer::No);
    Press("BtnCancel");
    EXPECT_TRUE(Window->isVisible());
    Messages.Expect(Discard, MessageAnswer::Yes);
    PressKey(Qt::Key_Escape);
    EXPECT_FALSE(Window->isVisible() || IsAccepted());
    EXPECT_TRUE(IsLogAsBefore());
    EXPECT_THAT(Files.AllFiles(), ElementsAre(LogPath));

    OpenObd(WithGap);
    Press("btnDeleteRow");
    Press("btnUndo");
    Window->close();
    EXPECT_FALSE(Window->isVisible()) << "what was undone is no change";
}

}  // namespace
}  // namespace vantor
