#include <QScrollBar>
#include <QTimer>

#include "core/RunFile.h"

#include "ReviewScreen.h"

namespace vantor {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

using LogReviewTest = ReviewScreen;

TEST_F(LogReviewTest, EachKindHasItsScreen) {
    const LogBytes gps = PrefixBytes(2).Add(GpsHeaderBytes()).Add(GpsRecord(1, LogDay + 0.5));
    Program.Files.PutText(Folder + "drive.gd2", gps.Bytes());
    Open(LogKind::GpsLaptop, ".gd2");
    EXPECT_EQ(Form->objectName(), "frmGPSViewData");
    EXPECT_EQ(Form->windowTitle(), "GPS Data");
    EXPECT_EQ(Grid().objectName(), "vaGPSData");
    EXPECT_EQ(Grid().model()->columnCount(), 13);
    EXPECT_EQ(Find<QLabel>(*Form, "lblStudyName").text(), ToQt("Main St \u00C4"));
    EXPECT_EQ(Find<QLabel>(*Form, "lblStudyDate").text(), "05/14/03");
    EXPECT_EQ(Find<QPushButton>(*Form, "btnExport2Excel").toolTip(), "Export gps data to Excel spreadsheet");
    // The repair of a GPS log works on the column of the dates, where nothing is ever missing.
    Click(*Form, "btnFindMissingData");
    EXPECT_EQ(Status(), "From row 1 on no row has -1 in column Date.");
    Click(*Form, "btnCalcSpeed");
    Click(*Form, "btnFindAndFixAll");
    EXPECT_FALSE(Find<QWidget>(*Form, "btnUndo").isEnabled());
    EXPECT_EQ(Texts(4), std::vector<std::string>{"05/14/03"});

    const LogBytes both = PrefixBytes(2).Add(ObdHeaderBytes()).Add(GpsRecord(1, LogDay)).Add(ObdRecord(1, LogDay));
    Program.Files.PutText(Folder + "drive.ddf", both.Bytes());
    Open(LogKind::GpsObd, ".ddf");
    EXPECT_EQ(Form->objectName(), "frmGPSOBDViewData");
    EXPECT_EQ(Grid().objectName(), "vaGPSOBDData");
    EXPECT_EQ(Find<QLabel>(*Form, "lblStudyName").text(), "  Elm Ave");

    OpenObd({30});
    EXPECT_EQ(Form->objectName(), "frmOBDViewData");
    EXPECT_EQ(Grid().objectName(), "vaOBDData");
    EXPECT_EQ(Form->windowTitle(), "OBD Data");
}

TEST_F(LogReviewTest, ReadsAHandheldLogByItsType) {
    Program.Databases.Path = Folder + "drive.mdb";
    Program.Databases.Table = "GPSData";
    Program.Databases.Records = {{"05/14/2003 06:00:00", "42.5", "-83.5", "31.5", "90", "1.5", "7", "0", "3"}};
    Open(LogKind::GpsHandheld, ".gd2");
    EXPECT_EQ(Form->objectName(), "frmGPSViewData");
    EXPECT_EQ(Texts(RunColumn), std::vector<std::string>{"3"});

    Program.State.SelectedDataIsPdb = true;
    Program.Messages.Expect("Run-time error '53':\nFile not found\n\n" + Folder + "drive.pdb");
    LogReview form(Program.Context, LogKind::GpsHandheld);
    EXPECT_EQ(form.exec(), QDialog::Rejected);
}

TEST_F(LogReviewTest, ClosesAtOnceWhenTheLogCannotBeRead) {
    Program.State.SelectedDataExt = ".gd2";
    Program.Messages.Expect("Run-time error '53':\nFile not found\n\n" + Folder + "drive.gd2");
    LogReview form(Program.Context, LogKind::GpsLaptop);
    EXPECT_TRUE(Program.Messages.IsDone());
    EXPECT_EQ(form.exec(), QDialog::Rejected) << "without waiting for the user";
    EXPECT_FALSE(Program.State.DataFileSelected);
}

TEST_F(LogReviewTest, WithoutAChosenLogThereIsNothingToDo) {
    Program.State.SelectedDataFile.clear();
    Open(LogKind::GpsLaptop, {});
    for (const char* button : {"btnFindMissingData", "btnCalcSpeed", "btnFindAndFixAll", "btnDeleteRow",
                               "btnExport2Excel", "btnExportAs", "btnUndo", "btnRedo"})
        EXPECT_FALSE(Find<QWidget>(*Form, button).isEnabled()) << button;
    Program.Messages.Expect("There is no run to make: no row has a run number of 1 or more.");
    Click(*Form, "BtnOk");
    EXPECT_TRUE(Form->isVisible());
    Click(*Form, "BtnCancel");
    EXPECT_FALSE(Form->isVisible());
    EXPECT_FALSE(Program.State.DataFileSelected);
}

TEST_F(LogReviewTest, TellsHowManyBytesOfALogWereDropped) {
    const LogBytes cut = PrefixBytes(2).Add(GpsHeaderBytes()).Add(GpsRecord(1, LogDay + 0.5)).Raw("12345");
    Program.Files.PutText(Folder + "drive.gd2", cut.Bytes());
    Program.Messages.Expect("The last record of the log is incomplete: 5 bytes at the end of the file are left out.\n" +
                            Folder + "drive.gd2");
    Open(LogKind::GpsLaptop, ".gd2");
    EXPECT_EQ(Grid().model()->rowCount(), 1);
}

TEST_F(LogReviewTest, FindsAGapAndFillsIt) {
    OpenObd(WithGap);
    Click(*Form, "btnFindMissingData");
    EXPECT_EQ(Grid().currentIndex().row(), 1);
    EXPECT_EQ(Grid().currentIndex().column(), SpeedColumn - 1);
    Click(*Form, "btnCalcSpeed");
    EXPECT_THAT(Texts(SpeedColumn), ElementsAre("30.0", "35.0", "40.0", "45.0", "50.0"));
    const QModelIndex computed = Grid().currentIndex();
    EXPECT_EQ(computed.data(Qt::BackgroundRole).value<QColor>(), QColor(0xc0, 0xff, 0xc0));
    EXPECT_EQ(computed.data(Qt::AccessibleTextRole), "35.0, computed");
    EXPECT_FALSE(computed.data(Qt::ToolTipRole).toString().isEmpty());
    EXPECT_FALSE(computed.siblingAtRow(0).data(Qt::BackgroundRole).isValid());

    QTest::keyClick(&Grid(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_THAT(Texts(SpeedColumn), ElementsAre("30.0", "-1", "-1", "-1", "50.0"));
    EXPECT_FALSE(computed.data(Qt::BackgroundRole).isValid());
    QTest::keyClick(&Grid(), Qt::Key_Y, Qt::ControlModifier);
    EXPECT_THAT(Texts(SpeedColumn), ElementsAre("30.0", "35.0", "40.0", "45.0", "50.0"));
    Click(*Form, "btnFindMissingData");
    EXPECT_EQ(Status(), "From row 2 on no row has -1 in column Speed (mph).");
}

TEST_F(LogReviewTest, KeepsThreeRowsInViewAboveWhatIsFound) {
    std::vector<float> speeds(200, 30);
    speeds[19] = -1;
    OpenObd(speeds);
    Click(*Form, "btnFindMissingData");
    EXPECT_EQ(Grid().rowAt(0), 16) << "row 17 on top of row 20";
    EXPECT_EQ(Grid().currentIndex().row(), 19);

    speeds[1] = -1;
    OpenObd(speeds);
    Click(*Form, "btnFindMissingData");
    EXPECT_EQ(Grid().rowAt(0), 1) << "row 2 on top";
}

TEST_F(LogReviewTest, DeletesTheActiveRowAndPutsItBack) {
    OpenObd({10, 20, 30});
    ChooseRow(2, 3);
    QTest::keyClick(&Grid(), Qt::Key_Delete);
    EXPECT_THAT(Texts(SpeedColumn), ElementsAre("10.0", "30.0"));
    EXPECT_EQ(Grid().currentIndex(), Grid().model()->index(1, 2));
    Click(*Form, "btnDeleteRow");
    EXPECT_EQ(Grid().currentIndex().row(), 0) << "the last row was deleted";
    Click(*Form, "btnDeleteRow");
    EXPECT_FALSE(Find<QWidget>(*Form, "btnDeleteRow").isEnabled());
    QTest::keyClick(&Grid(), Qt::Key_Delete);
    for (int i = 0; i < 3; ++i) Click(*Form, "btnUndo");
    EXPECT_THAT(Texts(SpeedColumn), ElementsAre("10.0", "20.0", "30.0"));
    EXPECT_EQ(Grid().currentIndex().row(), 1);
}

TEST_F(LogReviewTest, SortsByValueAndBackToTheOrderOfTheLog) {
    FieldLog log = ObdLog({9, 100, 30, 9});
    log.Points[3].Obd.RunNumber = 2;
    OpenObd(log);
    ClickHead(SpeedColumn);
    EXPECT_THAT(Texts(SpeedColumn), ElementsAre("9.0", "9.0", "30.0", "100.0")) << "as numbers, not as texts";
    EXPECT_THAT(Texts(RunColumn), ElementsAre("1", "2", "1", "1"));
    ClickHead(SpeedColumn);
    EXPECT_THAT(Texts(SpeedColumn), ElementsAre("100.0", "30.0", "9.0", "9.0"));
    EXPECT_THAT(Texts(RunColumn), ElementsAre("1", "1", "1", "2")) << "equal ones in the order of the log";
    ClickHead(SpeedColumn);
    EXPECT_THAT(Texts(SpeedColumn), ElementsAre("9.0", "100.0", "30.0", "9.0"));
}

TEST_F(LogReviewTest, WhatIsDoneInASortedGridGoesByTheOrderOfTheLog) {
    OpenObd({50, 40, -1, 30, 20});
    ClickHead(SpeedColumn);
    ASSERT_THAT(Texts(SpeedColumn), ElementsAre("-1", "20.0", "30.0", "40.0", "50.0"));
    ChooseRow(1);
    Click(*Form, "btnCalcSpeed");
    EXPECT_THAT(Texts(SpeedColumn), ElementsAre("20.0", "30.0", "35.0", "40.0", "50.0")) << "between 40 and 30";
    EXPECT_EQ(Grid().currentIndex().row(), 2) << "the filled row stays the active one";
    ChooseRow(1);
    Click(*Form, "btnDeleteRow");
    EXPECT_THAT(Texts(SpeedColumn), ElementsAre("30.0", "35.0", "40.0", "50.0"));
    Click(*Form, "BtnOk");
    std::vector<float> speeds;
    for (const LogPoint& point : Written().Points) speeds.push_back(point.Obd.Speed);
    EXPECT_THAT(speeds, ElementsAre(50, 40, 35, 30));
}

/// Gaps of 10 and of 11 rows.
std::vector<float> ShortAndLongGap() {
    std::vector<float> speeds(24, -1);
    speeds[0] = 0;
    speeds[11] = 11;
    speeds[23] = 23;
    return speeds;
}

TEST_F(LogReviewTest, ListsGapsAndFillsThemOtherwise) {
    LogBytes gps = PrefixBytes(2).Add(GpsHeaderBytes());
    for (const int second : {0, 10, 11, 15}) gps.Add(GpsRecord(1, LogDay + 0.5 + second / 86400.0));
    Program.Files.PutText(Folder + "drive.gd2", gps.Bytes());
    Open(LogKind::GpsLaptop, ".gd2");
    auto& gaps = Find<QTableView>(*Form, "vaGaps");
    const auto row = [&](int number) {
        std::vector<std::string> texts;
        for (int column = 0; column < gaps.model()->columnCount(); ++column)
            texts.push_back(FromQt(gaps.model()->index(number, column).data().toString()));
        return texts;
    };
    // 31.5 mph are 46.2 feet a second; the positions are the same.
    EXPECT_THAT(row(0), ElementsAre("1", "12:00:00 PM", "12:00:10 PM", "10", "0", "462", "by position"));
    EXPECT_FALSE(Find<QWidget>(*Form, "btnFillStanding").isEnabled());
    QTest::mouseClick(gaps.viewport(), Qt::LeftButton, {}, gaps.visualRect(gaps.model()->index(1, 0)).center());
    EXPECT_EQ(Grid().currentIndex().row(), 2) << "the row before the gap";
    Click(*Form, "btnFillStanding");
    EXPECT_THAT(row(1), ElementsAre("1", "12:00:11 PM", "12:00:15 PM", "4", "0", "185", "as standing"));
    EXPECT_TRUE(gaps.selectionModel()->isRowSelected(1));
    EXPECT_FALSE(gaps.selectionModel()->isRowSelected(0));
    QTest::mouseClick(gaps.horizontalHeader()->viewport(), Qt::LeftButton, {}, {gaps.columnViewportPosition(3) + 5, 5});
    EXPECT_EQ(row(0)[3], "4") << "sorted by their seconds";
    EXPECT_TRUE(gaps.selectionModel()->isRowSelected(0));
    Click(*Form, "BtnOk");
    EXPECT_EQ(ReadRun(Program.Files, Temp + "Main-R001.rd2").Run.Header.Notes,
              "Direction EB; gaps: 1 standing 4 s, 1 by position 10 s");

    OpenObd({30});
    EXPECT_FALSE(Find<QWidget>(*Form, "fraGaps").isVisible());
}

TEST_F(LogReviewTest, FixesAllShortGapsInOneStep) {
    OpenObd(ShortAndLongGap());
    Click(*Form, "btnFindAndFixAll");
    EXPECT_EQ(Texts(SpeedColumn)[10], "10.0");
    EXPECT_EQ(Texts(SpeedColumn)[12], "-1");
    EXPECT_FALSE(Find<QWidget>(*Form, "btnStop").isVisible());
    EXPECT_TRUE(Grid().hasFocus());
    Click(*Form, "btnUndo");
    EXPECT_EQ(Texts(SpeedColumn)[10], "-1");
}

TEST_F(LogReviewTest, StopsAndLeavesWithoutASelection) {
    const auto stopWith = [&](const std::function<void()>& stop) {
        OpenObd(ShortAndLongGap());
        Program.State.DataFileSelected = true;
        bool wasAsked = false;
        QTimer::singleShot(0, &*Form, [&] {
            wasAsked = true;
            for (const char* button : {"btnFindAndFixAll", "btnDeleteRow", "BtnOk", "BtnCancel", "btnUndo"})
                EXPECT_FALSE(Find<QWidget>(*Form, button).isEnabled()) << button;
            QTest::keyClick(&*Form, Qt::Key_Z, Qt::ControlModifier);
            stop();
        });
        Click(*Form, "btnFindAndFixAll");
        EXPECT_TRUE(wasAsked);
        EXPECT_FALSE(Form->isVisible());
        EXPECT_EQ(Form->result(), QDialog::Rejected);
        EXPECT_FALSE(Program.State.DataFileSelected);
        EXPECT_TRUE(IsLogAsBefore());
    };
    stopWith([&] { Click(*Form, "btnStop"); });
    stopWith([&] { QTest::keyClick(&*Form, Qt::Key_Escape); });
    stopWith([&] { Form->close(); });

    OpenObd(ShortAndLongGap());
    Click(*Form, "btnDeleteRow");
    QTimer::singleShot(0, &*Form, [&] { Click(*Form, "btnStop"); });
    Program.Messages.Expect(Discard, MessageAnswer::No);
    Click(*Form, "btnFindAndFixAll");
    EXPECT_TRUE(Form->isVisible()) << "a row was deleted before";
    EXPECT_TRUE(Find<QWidget>(*Form, "BtnOk").isEnabled());
    EXPECT_FALSE(Find<QWidget>(*Form, "btnGoOn").isVisible());
}

}  // namespace
}  // namespace vantor
