#include "gpsobd/ReviewGrid.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "fakes/ThrowsError.h"
#include "gpsobd/LogPoints.h"

namespace vantor {
namespace {

using testing::ElementsAre;

constexpr int Speed = 6;
const Date Day = DateOf(2008, 3, 14);

Date Moment(double seconds) { return {Day.Days + seconds / 86400}; }

/// One point a second of run 1.
FieldLog ObdLog(const std::vector<float>& speeds) {
    FieldLog log;
    log.Kind = LogKind::ObdLaptop;
    for (const float speed : speeds) {
        LogPoint& point = log.Points.emplace_back();
        point.Obd.RunNumber = 1;
        point.Obd.Speed = speed;
        point.Obd.DateTime = Moment(static_cast<double>(3600 + log.Points.size()));
    }
    return log;
}

FieldLog GpsLog(const std::vector<Date>& times) {
    FieldLog log;
    for (const Date time : times) {
        LogPoint& point = log.Points.emplace_back();
        point.Gps.RunNumber = 1;
        point.Gps.SatUsed = static_cast<std::int16_t>(log.Points.size());
        point.Gps.DateTime = time;
    }
    return log;
}

std::vector<std::string> Texts(const ReviewGrid& grid, int column) {
    std::vector<std::string> texts;
    for (int row = 1; row <= grid.RowCount(); ++row) texts.push_back(grid.Text(row, column));
    return texts;
}

bool GoOn() { return true; }

TEST(ReviewGrid, LoadsRowsInOrderAndRepairsTheirTimes) {
    FieldLog log =
        GpsLog({Moment(30), Moment(86400), Moment(10.4), Moment(0), Moment(9.6), Date{0}, Moment(10), Moment(9.4)});
    log.Points[0].Gps.RunNumber = -2;
    log.Points[4].Gps.RunNumber = 2;
    const ReviewGrid grid(log);
    EXPECT_THAT(Texts(grid, 13), ElementsAre("6", "4", "8", "3", "7", "5", "1", "2"))
        << "by rounded time, then run number, then as in the file";
    EXPECT_THAT(Texts(grid, 5), ElementsAre("12:00:07 AM", "12:00:08 AM", "12:00:09 AM", "12:00:10 AM", "12:00:10 AM",
                                            "12:00:10 AM", "12:00:30 AM", "12:00:11 AM"));
    EXPECT_THAT(Texts(ReviewGrid(GpsLog({Moment(43199), Moment(43200), Moment(46800)})), 5),
                ElementsAre("11:59:59 AM", "12:00:00 PM", "1:00:00 PM"));
    EXPECT_THAT(Texts(grid, 4), testing::Each("03/14/08")) << "the row of the next midnight goes by its run";
    EXPECT_EQ(grid.Edited().Points[7].Gps.DateTime, Moment(11));

    FieldLog runs = GpsLog({Moment(75600), Moment(86400), Moment(86401), Moment(0), Moment(86400)});
    for (const std::size_t point : {1, 2}) runs.Points[point].Gps.RunNumber = 2;
    runs.Points[3].Gps.RunNumber = runs.Points[4].Gps.RunNumber = 3;
    EXPECT_THAT(Texts(ReviewGrid(runs), 5),
                ElementsAre("8:59:59 PM", "9:00:00 PM", "12:00:00 AM", "12:00:01 AM", "12:00:01 AM"))
        << "a run that begins at midnight stays; one without any time goes by its neighbours";

    EXPECT_THAT(Texts(ReviewGrid(GpsLog({Day, Date{0}})), 5), ElementsAre("12:00:00 AM", "12:00:00 AM"))
        << "without any time the log stays as it is";
    EXPECT_THAT(Texts(ReviewGrid(GpsLog({Date{0}, Date{1.0 / 86400}})), 4), ElementsAre("12/30/99", "12/30/99"));
    EXPECT_THAT(Texts(ReviewGrid(GpsLog({Date{std::numeric_limits<double>::infinity()}, Moment(5)})), 5),
                ElementsAre("12:00:04 AM", "12:00:05 AM"));
}

TEST(ReviewGrid, WholeSecondsHoldBeforeDayZero) {
    EXPECT_EQ(WholeSecondsOf(Date{-1.25}), -86400 + 21600);
    EXPECT_EQ(DateOfSeconds(-86400 + 21600), Date{-1.25});
    EXPECT_EQ(WholeSecondsOf(Moment(86399.7)), WholeSecondsOf(Moment(86400)));
}

TEST(ReviewGrid, ShowsAGpsPoint) {
    FieldLog log;
    log.Points = {
        {GpsPoint{12, 2, 30.3F, 12.25F, {Day.Days + 47109.0 / 86400}, 42.1234567, -83.5, 7, 1.04F, 3, -1, 4}, {}}};
    const ReviewGrid grid(log);
    std::vector<std::string> texts;
    std::vector<std::string> captions;
    for (int column = 1; column <= grid.ColumnCount(); ++column) {
        texts.push_back(grid.Text(1, column));
        captions.push_back(grid.Column(column).Caption);
    }
    EXPECT_THAT(texts, ElementsAre("12", "EB", "3", "03/14/08", "1:05:09 PM", "30.3", "12.3", "-1", "42.123457",
                                   "-83.500000", "1.0", "2", "7"));
    EXPECT_THAT(captions, ElementsAre("Run #", "Direction", "Node", "Date", "Time", "Speed", "Heading", "Delay #",
                                      "Latitude", "Longitude", "HDOP", "Quality", "Sat Used"));
    const Sheet sheet = grid.AsSheet();
    EXPECT_EQ(sheet.Columns[4].Format, "h:mm:ss AM/PM");
    EXPECT_EQ(sheet.Rows[0][1], SheetCell("EB"));
    EXPECT_EQ(sheet.Rows[0][3], SheetCell(Day));
    EXPECT_EQ(sheet.Rows[0][4], SheetCell(TimeOf(13, 5, 9)));
    EXPECT_EQ(sheet.Rows[0][5], SheetCell(30.3)) << "not 30.299999237060547";
    EXPECT_ERROR(SubscriptOutOfRange, grid.Text(2, 1));
    EXPECT_ERROR(SubscriptOutOfRange, grid.Text(1, 14));
}

TEST(ReviewGrid, CalculatesTheSpeedsOfAGap) {
    struct Case {
        std::vector<float> Speeds;
        int Row;
        std::vector<std::string> Filled;
    };
    const std::vector<Case> cases = {
        {{30, -1, -1, -1, 50}, 2, {"30.0", "35.0", "40.0", "45.0", "50.0"}},
        {{30, -1, -1, -1, 50}, 3, {"30.0", "-1", "16.7", "33.3", "50.0"}},
        {{-1, -1, 30}, 1, {"10.0", "20.0", "30.0"}},
        {{-2, -1, 8}, 2, {"-2.0", "4.0", "8.0"}},
        {{9, -1, -1}, 2, {"9.0", "6.0", "3.0"}},
        {{0, -1, -2}, 2, {"0.0", "-1", "-2.0"}},
        {{30, 40}, 1, {"30.0", "40.0"}},
        {{}, 0, {}},
    };
    for (const Case& gap : cases) {
        ReviewGrid grid(ObdLog(gap.Speeds));
        if (gap.Row != 0) grid.SetActive(gap.Row, 1);
        grid.CalculateSpeed();
        EXPECT_EQ(Texts(grid, Speed), gap.Filled);
        EXPECT_TRUE(gap.Row == 0 ||
                    grid.IsComputed(gap.Row, Speed) == (gap.Speeds[static_cast<std::size_t>(gap.Row - 1)] == -1));
        EXPECT_EQ(grid.SearchRow(), 1);
    }
    std::vector<float> longGap(13, -1);
    longGap.front() = 0;
    longGap.back() = 120;
    ReviewGrid grid(ObdLog(longGap));
    grid.SetActive(2, Speed);
    grid.CalculateSpeed();
    EXPECT_EQ(grid.Text(12, Speed), "110.0") << "a gap of eleven rows, too";
    EXPECT_EQ(grid.Edited().Points[11].Obd.Speed, 110.0F);
}

TEST(ReviewGrid, KeepsTheStepInSinglePrecisionAndTheCompanionInDouble) {
    constexpr int node = 3;
    constexpr int time = 5;
    constexpr int delay = 14;
    FieldLog log = ObdLog({0, 0, 0, 0});
    log.Points[1].Obd.Node = log.Points[2].Obd.Node = -1;
    log.Points[3].Obd.Node = 1;
    log.Points[0].Obd.DelayNumber = -5;
    log.Points[3].Obd.DelayNumber = -4;
    ReviewLayout layout = ReviewLayoutOf(LogKind::ObdLaptop);
    layout.RepairColumn = node;
    layout.CompanionColumn = delay;
    ReviewGrid grid(log, layout);
    grid.SetActive(2, 1);
    grid.CalculateSpeed();
    EXPECT_EQ(grid.Text(2, node), "0.333333343267441") << "a third in single precision";
    EXPECT_EQ(grid.Text(3, node), "0.666666686534882");
    EXPECT_EQ(grid.Text(2, delay), "-4.66666666666667") << "negative values before the gap count in the companion";
    EXPECT_TRUE(grid.IsComputed(2, delay));

    layout.CompanionColumn = time;
    ReviewGrid times(log, layout);
    times.SetActive(2, 1);
    times.CalculateSpeed();
    EXPECT_EQ(times.Text(3, time), "1") << "the hour that the times around the gap begin with";
    EXPECT_EQ(times.Value(3, time), SheetCell(1.0));
    EXPECT_EQ(times.Edited().Points[2].Obd.DateTime, DateOfSeconds(WholeSecondsOf(Moment(3603))))
        << "the point keeps its time";
}

TEST(ReviewGrid, LeavesTheSpeedsOfGpsLogsAlone) {
    FieldLog log = GpsLog({Moment(10), Moment(11), Moment(12)});
    log.Points[1].Gps.Speed = -1;
    for (const LogKind kind : {LogKind::GpsLaptop, LogKind::GpsHandheld, LogKind::Battelle}) {
        log.Kind = kind;
        ReviewGrid grid(log);
        EXPECT_FALSE(grid.FindNextMissing());
        grid.SetActive(2, Speed);
        grid.CalculateSpeed();
        EXPECT_TRUE(grid.FindAndFixAll(GoOn));
        EXPECT_EQ(grid.Text(2, Speed), "-1");
        EXPECT_FALSE(grid.CanUndo());
    }
}

TEST(ReviewGrid, RepairsTheVehiclesSpeedOfCombinedLogs) {
    FieldLog log = GpsLog({Moment(10), Moment(11)});
    log.Kind = LogKind::GpsObd;
    log.Points[0].Obd.Speed = -1;
    log.Points[1].Obd.Speed = 20;
    ReviewGrid grid(log);
    EXPECT_EQ(grid.ColumnCount(), 13 + 14);
    ASSERT_TRUE(grid.FindNextMissing());
    EXPECT_EQ(grid.Column(grid.ActiveColumn()).Caption, "OBD Speed (mph)");
    grid.CalculateSpeed();
    EXPECT_EQ(grid.Edited().Points[0].Obd.Speed, 10.0F);
    EXPECT_EQ(grid.Edited().Points[0].Gps.Speed, 0.0F);
}

TEST(ReviewGrid, FindsMissingSpeedsAndScrollsToThem) {
    for (const auto& [row, top] : {std::pair{2, 2}, {3, 3}, {4, 1}, {20, 17}}) {
        std::vector<float> speeds(25, 5);
        speeds[static_cast<std::size_t>(row - 1)] = -1;
        ReviewGrid grid(ObdLog(speeds));
        ASSERT_TRUE(grid.FindNextMissing());
        EXPECT_EQ(grid.ActiveRow(), row);
        EXPECT_EQ(grid.ActiveColumn(), Speed);
        EXPECT_EQ(grid.TopRow(), top);
        EXPECT_EQ(grid.SearchRow(), top);
        EXPECT_TRUE(grid.FindNextMissing()) << "the next search begins above it";
        EXPECT_EQ(grid.ActiveRow(), row);
    }
    std::vector<float> farAway(32772, 5);
    farAway[32769] = -1;
    ReviewGrid grid(ObdLog(farAway));
    EXPECT_TRUE(grid.FindNextMissing());
    grid.CalculateSpeed();
    farAway[32769] = 5;
    farAway[32770] = -1;
    ReviewGrid behind(ObdLog(farAway));
    EXPECT_ERROR(Overflow, behind.FindNextMissing());
    EXPECT_EQ(behind.SearchRow(), 1);
    EXPECT_TRUE(behind.FindNextMissing(ReviewGrid::Search::OnFromThere));
    EXPECT_EQ(behind.ActiveRow(), 32771);

    farAway.assign(80000, 5);
    for (std::size_t i = 1; i < farAway.size(); i += 2) farAway[i] = -1;
    ReviewGrid day(ObdLog(farAway));
    EXPECT_ERROR(Overflow, day.FindAndFixAll(GoOn));
    EXPECT_EQ(day.Text(32768, Speed) + day.Text(32770, Speed), "5.0-1");
    EXPECT_TRUE(day.FindAndFixAll(GoOn, ReviewGrid::Search::OnFromThere));
    EXPECT_EQ(day.Text(32770, Speed) + day.Text(79998, Speed), "5.05.0");
}

TEST(ReviewGrid, FixesAllGapsOfUpToTenRows) {
    std::vector<float> speeds = {10, -1, 20};
    speeds.insert(speeds.end(), 10, -1);
    speeds.push_back(130);
    speeds.insert(speeds.end(), 11, -1);
    speeds.push_back(7);
    speeds.push_back(-1);
    ReviewGrid grid(ObdLog(speeds));
    const auto before = Texts(grid, Speed);
    int steps = 0;
    EXPECT_TRUE(grid.FindAndFixAll([&] { return ++steps > 0; }));
    EXPECT_EQ(steps, 8);
    EXPECT_EQ(grid.Text(2, Speed), "15.0");
    EXPECT_EQ(grid.Text(13, Speed), "120.0");
    EXPECT_EQ(grid.Text(15, Speed), "-1");
    EXPECT_EQ(grid.Text(25, Speed), "-1");
    EXPECT_EQ(grid.Text(27, Speed), "3.5");
    EXPECT_EQ(grid.SearchRow(), 1);
    grid.Undo();
    EXPECT_EQ(Texts(grid, Speed), before) << "all of it is one step";
    EXPECT_FALSE(grid.CanUndo());

    for (const int asked : {1, 2, 3}) {
        ReviewGrid stopped(ObdLog(speeds));
        steps = 0;
        EXPECT_FALSE(stopped.FindAndFixAll([&] { return ++steps < asked; }));
        EXPECT_EQ(stopped.Text(2, Speed), asked == 1 ? "-1" : "15.0");
        EXPECT_EQ(stopped.Text(4, Speed), "-1");
        EXPECT_EQ(stopped.SearchRow(), 1);
        EXPECT_EQ(stopped.CanUndo(), asked > 1);
    }
    ReviewGrid stays(ObdLog({0, -1, -2, -1, 6}));
    EXPECT_TRUE(stays.FindAndFixAll(GoOn)) << "a computed -1 is not looked for again";
    EXPECT_THAT(Texts(stays, Speed), ElementsAre("0.0", "-1", "-2.0", "3.0", "6.0"));
}

TEST(ReviewGrid, FillsGapsAsTheUserSays) {
    FieldLog log = GpsLog({Moment(100), Moment(110), Moment(114)});
    for (LogPoint& point : log.Points) point.Gps.Latitude = point.Gps.Longitude = 42;
    ReviewGrid grid(log);
    const auto fills = [&] {
        std::vector<GapFill> all;
        for (const LogGap& gap : grid.Gaps()) all.push_back(gap.Filled);
        return all;
    };
    EXPECT_THAT(fills(), ElementsAre(GapFill::Standing, GapFill::Standing));
    EXPECT_EQ(grid.RowBefore(grid.Gaps()[1]), 2);
    grid.FillGapsAs(std::vector{grid.Gaps()[1]}, GapFill::Speed);
    EXPECT_THAT(fills(), ElementsAre(GapFill::Standing, GapFill::Speed));
    grid.SetActive(2, 1);
    grid.DeleteRow();
    EXPECT_THAT(fills(), ElementsAre(GapFill::Standing)) << "another gap";
    grid.Undo();
    EXPECT_THAT(fills(), ElementsAre(GapFill::Standing, GapFill::Speed));
    grid.Undo();
    EXPECT_THAT(fills(), ElementsAre(GapFill::Standing, GapFill::Standing));
    grid.Redo();
    EXPECT_THAT(fills(), ElementsAre(GapFill::Standing, GapFill::Speed));

    log = GpsLog({Moment(98), Moment(100), Moment(110), Moment(111)});
    for (LogPoint& point : log.Points) point.Gps.Latitude = point.Gps.Longitude = 42;
    ReviewGrid beside(log);
    beside.FillGapsAs(beside.Gaps(), GapFill::Position);
    for (int i = 0; i < 2; ++i) {
        beside.SetActive(2, 1);
        beside.DeleteRow();
        ASSERT_EQ(beside.Gaps().size(), 1U);
        EXPECT_EQ(beside.Gaps()[0].Filled, GapFill::Position) << "the row at an end of the gap is deleted";
    }
    EXPECT_EQ(beside.Gaps()[0].Seconds(), 13);
    beside.Undo();
    beside.Undo();
    EXPECT_EQ(beside.Gaps()[0].Seconds(), 10);
    EXPECT_EQ(beside.Gaps()[0].Filled, GapFill::Position);

    ReviewGrid obd(ObdLog({30, 30}));
    EXPECT_TRUE(obd.Gaps().empty());
}

TEST(ReviewGrid, TakesEveryStepBackAndDoesItAgain) {
    ReviewGrid grid(ObdLog({10, -1, 30, 40}));
    std::vector<std::vector<std::string>> states = {Texts(grid, Speed)};
    const auto didStep = [&] { states.push_back(Texts(grid, Speed)); };
    grid.SetActive(2, Speed);
    grid.CalculateSpeed();
    didStep();
    grid.DeleteRow();
    didStep();
    EXPECT_THAT(states.back(), ElementsAre("10.0", "30.0", "40.0"));
    EXPECT_EQ(grid.ActiveRow(), 2);
    EXPECT_EQ(grid.Edited().Points.size(), 3U) << "the fill of a deleted row goes with it";
    grid.SetActive(3, Speed);
    grid.DeleteRow();
    didStep();
    EXPECT_EQ(grid.ActiveRow(), 2);
    for (std::size_t i = 3; i-- > 0;) {
        grid.Undo();
        EXPECT_EQ(Texts(grid, Speed), states[i]);
    }
    EXPECT_EQ(grid.ActiveRow(), 2);
    EXPECT_FALSE(grid.CanUndo());
    for (std::size_t i = 1; i <= 3; ++i) {
        grid.Redo();
        EXPECT_EQ(Texts(grid, Speed), states[i]);
    }
    EXPECT_FALSE(grid.CanRedo());
    grid.Undo();
    grid.CalculateSpeed();
    EXPECT_TRUE(grid.CanRedo()) << "nothing was filled";
    grid.DeleteRow();
    EXPECT_FALSE(grid.CanRedo());
    grid.DeleteRow();
    grid.DeleteRow();
    EXPECT_EQ(grid.RowCount(), 0);
    EXPECT_EQ(grid.ActiveRow(), 0);
    grid.DeleteRow();
    EXPECT_FALSE(grid.FindNextMissing());
    grid.Undo();
    EXPECT_THAT(Texts(grid, Speed), ElementsAre("10.0"));
    EXPECT_EQ(grid.ActiveRow(), 1);
}

}  // namespace
}  // namespace vantor
