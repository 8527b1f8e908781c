#include "gpsobd/ReviewGrid.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "Logs.h"
#include "gpsobd/LogPoints.h"

namespace vantor {
namespace {

using testing::ElementsAre;

constexpr int Speed = 6;
const Date Day = DateOf(2008, 3, 14);

Date Moment(double seconds) { return {Day.Days + seconds / 86400}; }

struct Timed {
    Date Time;
    std::int16_t Run = 1;
};

/// Points in one place, numbered by their satellites.
FieldLog GpsLog(const std::vector<Timed>& points) {
    FieldLog log = NewFieldLog(FormatOf(LogKind::GpsLaptop), "/f/Trip.gd2");
    for (const auto& [time, run] : points) {
        GpsPoint& point = log.Gps.emplace_back();
        point.RunNumber = run;
        point.SatUsed = static_cast<std::int16_t>(log.PointCount());
        point.DateTime = time;
        point.Latitude = point.Longitude = 42;
    }
    return log;
}

/// The texts of a column from top to bottom, with a blank behind each.
std::string Texts(const ReviewGrid& grid, int column = Speed) {
    std::string texts;
    for (int row = 1; row <= grid.RowCount(); ++row) texts += grid.Text(row, column) + " ";
    return texts;
}
std::string Times(const std::vector<Timed>& points) { return Texts(ReviewGrid(GpsLog(points)), 5); }

bool GoOn() { return true; }

/// What the user does in a row.
void CalculateIn(ReviewGrid& grid, int row) {
    grid.SetActive(row, 1);
    grid.CalculateSpeed();
}
void Delete(ReviewGrid& grid, int row) { grid.DeleteRows({row}); }
void DeleteActive(ReviewGrid& grid) { Delete(grid, grid.ActiveRow()); }

TEST(ReviewGrid, LoadsRowsInOrderAndRepairsTheirTimes) {
    const std::vector<Timed> points{{Moment(30), -2}, {Moment(86400)}, {Moment(10.4)}, {Moment(0)},
                                    {Moment(9.6), 2}, {Date{0}},       {Moment(10)},   {Moment(9.4)}};
    const ReviewGrid grid(GpsLog(points));
    EXPECT_EQ(Texts(grid, 13), "6 4 8 3 7 5 1 2 ") << "by rounded time, then run number, then as in the file";
    EXPECT_EQ(Times(points),
              "12:00:07 AM 12:00:08 AM 12:00:09 AM 12:00:10 AM 12:00:10 AM 12:00:10 AM 12:00:30 AM 12:00:11 AM ");
    EXPECT_EQ(Texts(grid, 4), "03/14/08 03/14/08 03/14/08 03/14/08 03/14/08 03/14/08 03/14/08 03/14/08 ")
        << "the row of the next midnight goes by its run";
    EXPECT_EQ(grid.Edited().Gps[7].DateTime, Moment(11));

    EXPECT_EQ(Times({{Moment(43199)}, {Moment(43200)}, {Moment(46800)}}), "11:59:59 AM 12:00:00 PM 1:00:00 PM ");
    EXPECT_EQ(Times({{Moment(75600)}, {Moment(86400), 2}, {Moment(86401), 2}, {Moment(0), 3}, {Moment(86400), 3}}),
              "8:59:59 PM 9:00:00 PM 12:00:00 AM 12:00:01 AM 12:00:01 AM ")
        << "a run that begins at midnight stays; one without any time goes by its neighbours";
    EXPECT_EQ(Times({{Day}, {Date{0}}}), "12:00:00 AM 12:00:00 AM ") << "without any time the log stays as it is";
    EXPECT_EQ(Texts(ReviewGrid(GpsLog({{Date{0}}, {Date{1.0 / 86400}}})), 4), "12/30/99 12/30/99 ");
    EXPECT_EQ(Times({{Date{std::numeric_limits<double>::infinity()}}, {Moment(5)}}), "12:00:04 AM 12:00:05 AM ");
}

TEST(ReviewGrid, WholeSecondsHoldBeforeDayZero) {
    EXPECT_EQ(WholeSecondsOf(Date{-1.25}), -86400 + 21600);
    EXPECT_EQ(DateOfSeconds(-86400 + 21600), Date{-1.25});
    EXPECT_EQ(WholeSecondsOf(Moment(86399.7)), WholeSecondsOf(Moment(86400)));
}

TEST(ReviewGrid, ShowsAGpsPoint) {
    FieldLog log = GpsLog({});
    log.Gps = {{12, 2, 30.3F, 12.25F, {Day.Days + 47109.0 / 86400}, 42.1234567, -83.5, 7, 1.04F, 3, -1, 4}};
    const ReviewGrid grid(log);
    std::string texts;
    for (int column = 1; column <= grid.ColumnCount(); ++column) texts += grid.Text(1, column) + "|";
    EXPECT_EQ(texts, "12|EB|3|03/14/08|1:05:09 PM|30.3|12.3|-1|42.123457|-83.500000|1.0|2|7|");
    const Sheet sheet = grid.AsSheet();
    EXPECT_EQ(sheet.Columns[4].Format, "h:mm:ss AM/PM");
    EXPECT_THAT(std::vector(sheet.Rows[0].begin() + 1, sheet.Rows[0].begin() + 6),
                ElementsAre(SheetCell("EB"), SheetCell(3.0), SheetCell(Day), SheetCell(TimeOf(13, 5, 9)),
                            SheetCell(30.3)))  // not 30.299999237060547
        << "with their types";
    EXPECT_ERROR(SubscriptOutOfRange, grid.Text(2, 1));
    EXPECT_ERROR(SubscriptOutOfRange, grid.Text(1, 14));
}

TEST(ReviewGrid, CalculatesTheSpeedsOfAGap) {
    struct Case {
        std::vector<float> Speeds;
        int Row;
        const char* Filled;
    };
    for (const auto& [speeds, row, filled] : {Case{{30, -1, -1, -1, 50}, 2, "30.0 35.0 40.0 45.0 50.0 "},
                                              {{30, -1, -1, -1, 50}, 3, "30.0 -1 16.7 33.3 50.0 "},
                                              {{-1, -1, 30}, 1, "10.0 20.0 30.0 "},
                                              {{-2, -1, 8}, 2, "-2.0 4.0 8.0 "},
                                              {{9, -1, -1}, 2, "9.0 6.0 3.0 "},
                                              {{0, -1, -2}, 2, "0.0 -1 -2.0 "},
                                              {{30, 40}, 1, "30.0 40.0 "},
                                              {{0, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 6},  // eleven rows
                                               2,
                                               "0.0 0.5 1.0 1.5 2.0 2.5 3.0 3.5 4.0 4.5 5.0 5.5 6.0 "}}) {
        ReviewGrid grid(ObdLog(speeds));
        CalculateIn(grid, row);
        EXPECT_EQ(Texts(grid), filled);
        EXPECT_EQ(Texts(ReviewGrid(grid.Edited())), filled);
        EXPECT_EQ(grid.IsComputed(row, Speed), speeds[static_cast<std::size_t>(row - 1)] == -1);
        EXPECT_EQ(grid.SearchRow(), 1);
    }
}

TEST(ReviewGrid, KeepsTheStepInSinglePrecisionAndTheCompanionInDouble) {
    constexpr int node = 3;
    constexpr int time = 5;
    constexpr int delay = 14;
    FieldLog log = ObdLog({0, 0, 0, 0});
    for (const std::size_t point : {1, 2}) log.Obd[point].Node = -1;
    log.Obd[3].Node = 1;
    log.Obd[0].DelayNumber = -5;
    log.Obd[3].DelayNumber = -4;
    ReviewLayout layout = ObdReviewLayout();
    layout.RepairColumn = node;
    const auto repaired = [&](int companion) {
        layout.CompanionColumn = companion;
        ReviewGrid grid(log, layout);
        CalculateIn(grid, 2);
        return grid;
    };
    const ReviewGrid grid = repaired(delay);
    EXPECT_EQ(grid.Text(2, node), "0.333333343267441") << "a third in single precision";
    EXPECT_EQ(grid.Text(3, node), "0.666666686534882");
    EXPECT_EQ(grid.Text(2, delay), "-4.66666666666667") << "negative values before the gap count in the companion";
    EXPECT_TRUE(grid.IsComputed(2, delay));

    const ReviewGrid times = repaired(time);
    EXPECT_EQ(times.Text(3, time), "6") << "the hour that the times around the gap begin with";
    EXPECT_EQ(times.Value(3, time), SheetCell(6.0));
    EXPECT_EQ(times.Edited().Obd[2].DateTime, DateOfSeconds(WholeSecondsOf({LogDay + 21602.0 / 86400})))
        << "the point keeps its time";
}

TEST(ReviewGrid, LeavesTheSpeedsOfGpsLogsAlone) {
    FieldLog log = GpsLog({{Moment(10)}, {Moment(11)}, {Moment(12)}});
    log.Gps[1].Speed = -1;
    for (const LogKind kind : {LogKind::GpsLaptop, LogKind::GpsHandheld, LogKind::Battelle}) {
        log.Format = &FormatOf(kind);
        ReviewGrid grid(log);
        EXPECT_EQ(grid.Column(log.Format->Columns().RepairColumn).Caption, "Date");
        CalculateIn(grid, 2);
        EXPECT_TRUE(grid.FindAndFixAll(GoOn));
        EXPECT_EQ(grid.Text(2, Speed), "-1");
        EXPECT_FALSE(grid.CanUndo());
    }
}

TEST(ReviewGrid, RepairsTheVehiclesSpeedOfCombinedLogs) {
    FieldLog log = GpsLog({{Moment(10)}, {Moment(11)}});
    log.Format = &FormatOf(LogKind::GpsObd);
    log.Obd.resize(2);
    log.Obd[0].Speed = -1;
    log.Obd[1].Speed = 20;
    ReviewGrid grid(log);
    EXPECT_EQ(grid.ColumnCount(), 13 + 14);
    ASSERT_TRUE(grid.FindNextMissing());
    EXPECT_EQ(grid.Column(grid.ActiveColumn()).Caption, "OBD Speed (MPH)");
    grid.CalculateSpeed();
    EXPECT_EQ(grid.Edited().Obd[0].Speed, 10.0F);
    EXPECT_EQ(grid.Edited().Gps[0].Speed, 0.0F);
    log.Obd[1].RunNumber = 1;
    ReviewGrid split(log);
    EXPECT_EQ(split.SplitRunAt(2), 2);
    EXPECT_EQ(split.Edited().Obd[1].RunNumber, 2) << "both halves tell it";
}

TEST(ReviewGrid, FindsMissingSpeedsAndScrollsToThem) {
    for (const auto& [row, top] : {std::pair{2, 2}, {3, 3}, {4, 1}, {20, 17}}) {
        std::vector<float> speeds(25, 5);
        speeds[static_cast<std::size_t>(row - 1)] = -1;
        ReviewGrid grid(ObdLog(speeds));
        for (int search = 0; search < 2; ++search) {  // the second begins above it
            ASSERT_TRUE(grid.FindNextMissing());
            EXPECT_EQ(std::pair(grid.ActiveRow(), grid.ActiveColumn()), std::pair(row, Speed));
            EXPECT_EQ(std::pair(grid.TopRow(), grid.SearchRow()), std::pair(top, top));
        }
    }
    std::vector<float> farAway(32772, 5);
    farAway[32769] = -1;
    ReviewGrid grid(ObdLog(farAway));
    EXPECT_TRUE(grid.FindNextMissing());
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
    const std::string before = Texts(grid);
    int steps = 0;
    EXPECT_TRUE(grid.FindAndFixAll([&] { return ++steps > 0; }));
    EXPECT_EQ(steps, 8);
    for (const auto& [row, text] : {std::pair{2, "15.0"}, {13, "120.0"}, {15, "-1"}, {25, "-1"}, {27, "3.5"}})
        EXPECT_EQ(grid.Text(row, Speed), text) << row;
    EXPECT_EQ(grid.SearchRow(), 1);
    grid.Undo();
    EXPECT_EQ(Texts(grid), before) << "all of it is one step";
    EXPECT_FALSE(grid.CanUndo());

    for (const int asked : {1, 2, 3}) {
        ReviewGrid stopped(ObdLog(speeds));
        steps = 0;
        EXPECT_FALSE(stopped.FindAndFixAll([&] { return ++steps < asked; }));
        EXPECT_EQ(stopped.Text(2, Speed) + stopped.Text(4, Speed), asked == 1 ? "-1-1" : "15.0-1");
        EXPECT_EQ(stopped.SearchRow(), 1);
        EXPECT_EQ(stopped.CanUndo(), asked > 1);
    }
    ReviewGrid stays(ObdLog({0, -1, -2, -1, 6}));
    EXPECT_TRUE(stays.FindAndFixAll(GoOn)) << "a computed -1 is not looked for again";
    EXPECT_EQ(Texts(stays), "0.0 -1 -2.0 3.0 6.0 ");
}

/// What each gap is filled as.
std::vector<GapFill> Fills(const ReviewGrid& grid) {
    std::vector<GapFill> fills;
    for (const LogGap& gap : grid.Gaps()) fills.push_back(gap.Filled);
    return fills;
}

TEST(ReviewGrid, FillsGapsAsTheUserSays) {
    using enum GapFill;
    ReviewGrid grid(GpsLog({{Moment(100)}, {Moment(110)}, {Moment(114)}}));
    EXPECT_THAT(Fills(grid), ElementsAre(Standing, Standing));
    EXPECT_EQ(grid.RowBefore(grid.Gaps()[1]), 2);
    grid.FillGapsAs(std::vector{grid.Gaps()[1]}, GapFill::Speed);
    EXPECT_THAT(Fills(grid), ElementsAre(Standing, GapFill::Speed));
    Delete(grid, 2);
    EXPECT_THAT(Fills(grid), ElementsAre(Standing)) << "another gap";
    grid.Undo();
    EXPECT_THAT(Fills(grid), ElementsAre(Standing, GapFill::Speed));
    grid.Undo();
    EXPECT_THAT(Fills(grid), ElementsAre(Standing, Standing));
    grid.Redo();
    EXPECT_THAT(Fills(grid), ElementsAre(Standing, GapFill::Speed));
    EXPECT_TRUE(ReviewGrid(ObdLog({30, 30})).Gaps().empty());
}

TEST(ReviewGrid, AGapKeepsItsFillWhenTheRowAtItsEndIsDeleted) {
    ReviewGrid grid(GpsLog({{Moment(98)}, {Moment(100)}, {Moment(110)}, {Moment(111)}}));
    grid.FillGapsAs(grid.Gaps(), GapFill::Position);
    for (const int seconds : {12, 13}) {
        Delete(grid, 2);
        EXPECT_THAT(Fills(grid), ElementsAre(GapFill::Position));
        EXPECT_EQ(grid.Gaps()[0].Seconds(), seconds);
    }
    for (int step = 0; step < 2; ++step) grid.Undo();
    EXPECT_THAT(Fills(grid), ElementsAre(GapFill::Position));
    EXPECT_EQ(grid.Gaps()[0].Seconds(), 10);
}

TEST(ReviewGrid, TakesEveryStepBackAndDoesItAgain) {
    ReviewGrid grid(ObdLog({10, -1, 30, 40}));
    CalculateIn(grid, 2);
    DeleteActive(grid);
    EXPECT_EQ(Texts(grid), "10.0 30.0 40.0 ");
    EXPECT_EQ(grid.ActiveRow(), 2);
    EXPECT_EQ(grid.Edited().PointCount(), 3U) << "the fill of a deleted row goes with it";
    Delete(grid, 3);
    EXPECT_EQ(grid.ActiveRow(), 2);
    for (const char* before : {"10.0 30.0 40.0 ", "10.0 20.0 30.0 40.0 ", "10.0 -1 30.0 40.0 "}) {
        grid.Undo();
        EXPECT_EQ(Texts(grid), before);
    }
    EXPECT_EQ(grid.ActiveRow(), 2);
    EXPECT_FALSE(grid.CanUndo());
    for (const char* after : {"10.0 20.0 30.0 40.0 ", "10.0 30.0 40.0 ", "10.0 30.0 "}) {
        grid.Redo();
        EXPECT_EQ(Texts(grid), after);
    }
    EXPECT_FALSE(grid.CanRedo());
    grid.Undo();
    grid.CalculateSpeed();
    EXPECT_TRUE(grid.CanRedo()) << "nothing was filled";
    DeleteActive(grid);
    EXPECT_FALSE(grid.CanRedo());
    for (int row = 0; row < 2; ++row) DeleteActive(grid);
    EXPECT_EQ(std::pair(grid.RowCount(), grid.ActiveRow()), std::pair(0, 0));
    EXPECT_FALSE(grid.FindNextMissing());
    grid.CalculateSpeed();
    grid.Undo();
    EXPECT_EQ(Texts(grid), "10.0 ");
    EXPECT_EQ(grid.ActiveRow(), 1);
}

TEST(ReviewGrid, DeletesSeveralRowsAsOneStep) {
    // Of the three gaps from second 10 to 30, which become one, two were filled otherwise.
    const std::vector<Timed> points{{Moment(1)}, {Moment(10)}, {Moment(15)}, {Moment(20)}, {Moment(30)}, {Moment(31)}};
    ReviewGrid grid(GpsLog(points));
    grid.FillGapsAs(std::vector{grid.Gaps()[1], grid.Gaps()[2]}, GapFill::Speed);
    const std::string before = Texts(grid, 5);
    const std::vector<LogGap> gaps = grid.Gaps();
    grid.DeleteRows({4, 6, 3});
    EXPECT_EQ(Texts(grid, 5), "12:00:01 AM 12:00:10 AM 12:00:30 AM ");
    EXPECT_EQ(grid.ActiveRow(), 3) << "what took the place of the first";
    EXPECT_EQ(grid.Gaps().back().Seconds(), 20);
    grid.Undo();
    EXPECT_EQ(Texts(grid, 5), before);
    EXPECT_EQ(grid.Gaps(), gaps) << "filled as they were";
    grid.Redo();
    EXPECT_EQ(grid.RowCount(), 3);
    grid.Undo();
    EXPECT_EQ(grid.Gaps(), gaps);
}

/// Seconds 1 to 9 of run 1, a gap and seconds 20 and 30, with two points of run 2 between.
FieldLog TwoRuns() {
    return GpsLog({{Moment(1)},
                   {Moment(2)},
                   {Moment(2), 2},
                   {Moment(3)},
                   {Moment(4)},
                   {Moment(5), 2},
                   {Moment(9)},
                   {Moment(20)},
                   {Moment(30)}});
}

TEST(ReviewGrid, StartsAndEndsARunAtARow) {
    ReviewGrid grid(TwoRuns());
    EXPECT_EQ(grid.StartRunAt(4), 2);
    EXPECT_EQ(Texts(grid, 1), "2 1 1 2 1 1 1 ");
    EXPECT_EQ(grid.Text(grid.ActiveRow(), 5), "12:00:03 AM") << "the row stays the active one";
    EXPECT_EQ(grid.EndRunAt(3), 3);
    EXPECT_EQ(Texts(grid, 5), "12:00:02 AM 12:00:03 AM 12:00:04 AM 12:00:05 AM ");
    EXPECT_EQ(grid.EndRunAt(3) + grid.StartRunAt(1), 0);
    grid.Undo();
    grid.Undo();
    EXPECT_EQ(Texts(grid, 1), "1 1 2 1 1 2 1 1 1 ");
    EXPECT_FALSE(grid.CanUndo()) << "what deletes nothing is no step";
}

TEST(ReviewGrid, SplitsARunAtARow) {
    ReviewGrid grid(TwoRuns());
    grid.FillGapsAs(grid.Gaps(), GapFill::Speed);
    EXPECT_EQ(grid.SplitRunAt(1), 0);
    EXPECT_EQ(grid.SplitRunAt(8), 3) << "run 2 is there";
    EXPECT_EQ(Texts(grid, 1), "1 1 2 1 1 2 1 3 3 ");
    const auto expectGaps = [&](const char* expected) {
        std::string gaps;
        for (const LogGap& gap : grid.Gaps())
            gaps += std::to_string(gap.RunNumber) + ":" + std::to_string(gap.Seconds()) +
                    (gap.Filled == GapFill::Speed ? " " : "? ");
        EXPECT_EQ(gaps, expected);
    };
    expectGaps("1:5 2:3 3:10 ");
    EXPECT_EQ(grid.SplitRunAt(4), 4);
    EXPECT_EQ(Texts(grid, 1), "1 1 2 4 4 2 4 3 3 ");
    grid.Undo();
    grid.Undo();
    expectGaps("1:5 1:11 1:10 2:3 ");
    grid.Redo();
    expectGaps("1:5 2:3 3:10 ");
}

}  // namespace
}  // namespace vantor
