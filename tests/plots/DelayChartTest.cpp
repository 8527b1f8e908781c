#include "plots/DelayChart.h"

#include <gmock/gmock.h>

#include "fakes/RecordingCanvas.h"
#include "fakes/ThrowsError.h"
#include "plots/TextsApart.h"

namespace vantor {
namespace {

using testing::Contains, testing::DoubleEq, testing::ElementsAre, testing::Field, testing::Not;

void Append(DelaySeries& series, std::int32_t delay) {
    const int number = series.RunCount() + 1;
    series.Append({.Name = "NB-" + std::to_string(number), .Number = number}, delay);
}

DelaySeries SeriesOf(const std::vector<std::int32_t>& delays) {
    DelaySeries series;
    for (const std::int32_t delay : delays) Append(series, delay);
    return series;
}

std::vector<double> AveragesOf(const DelaySeries& series) {
    std::vector<double> averages;
    for (const DelayRun& run : series.Runs()) averages.push_back(run.RunningAverage);
    return averages;
}

TEST(DelaySeriesTest, AxisEndsAtTensAroundTheDelays) {
    const std::tuple<std::vector<std::int32_t>, int, int> cases[] = {
        {{}, 10, 0},      {{0, 0}, 10, 0},        {{9}, 10, 0},        {{10}, 20, 0},
        {{20, 3}, 30, 0}, {{40}, 50, 0},          {{-5}, 10, -10},     {{-10}, 10, -10},
        {{-11}, 10, -20}, {{7, -1, 12}, 20, -10}, {{32759}, 32760, 0}, {{-32760}, 10, -32760},
    };
    for (const auto& [delays, yMax, yMin] : cases) {
        const DelaySeries series = SeriesOf(delays);
        EXPECT_EQ(std::tuple(series.YMax(), series.YMin()), std::tuple(yMax, yMin)) << testing::PrintToString(delays);
    }
    EXPECT_ERROR(Overflow, SeriesOf({32760}).YMax());
    EXPECT_ERROR(Overflow, SeriesOf({-32761}).YMin());
    EXPECT_ERROR(Overflow, SeriesOf({32768}));
    EXPECT_ERROR(Overflow, SeriesOf({-32769}));
}

TEST(DelaySeriesTest, AveragesRunsSoFarFromA32BitSum) {
    Study study;
    study.Record.RunCount = 3;
    for (const std::int32_t delay : {20, 0, -6})
        study.Entries.Append({.EntryRunName = " NB-" + std::to_string(delay) + "  ", .ControlDelay = delay});
    std::vector<RunListRow> rows(3);
    rows[0].State = rows[2].State = RunState::Counted;
    const DelaySeries series(study, rows, DelayRuns::All);
    EXPECT_EQ(series.Runs()[3].Name, "NB--6");
    EXPECT_THAT(AveragesOf(series), ElementsAre(20, 10, DoubleEq(14.0 / 3)));
    EXPECT_TRUE(series.ShowsNotCounted());

    const DelaySeries counted(study, rows, DelayRuns::Counted);
    EXPECT_THAT(AveragesOf(counted), ElementsAre(20, 7)) << "(20 - 6) / 2, the summary's average";
    EXPECT_FALSE(counted.ShowsNotCounted());
    EXPECT_EQ(counted.Runs()[2].Number, 3);

    // 65538 * 32767 = 2147483646
    DelaySeries highest = SeriesOf(std::vector<std::int32_t>(65538, 32767));
    EXPECT_DOUBLE_EQ(highest.Runs()[65538].RunningAverage, 32767);
    EXPECT_ERROR(Overflow, Append(highest, 2));
    Append(highest, 1);
}

TEST(DelayScaleTest, SpreadsRunsWithAFreeStepAtEachEnd) {
    const DelayScale two({50, 350, 300, 0}, SeriesOf({1, 2}));
    EXPECT_EQ(two.XStep(), 100);
    EXPECT_EQ(two.XOf(2), 250);
    EXPECT_EQ(DelayScale({50, 350, 300, 0}, {}).XStep(), 300);

    // Halves go to the even unit.
    const DelayScale nine({0, 25, 300, 0}, SeriesOf(std::vector<std::int32_t>(9)));
    EXPECT_THAT((std::array{nine.XOf(1), nine.XOf(3), nine.XOf(5)}), ElementsAre(2, 8, 12));
    // In single precision 7 / 6 is a little less, so that three steps are less than 3.5.
    EXPECT_EQ(DelayScale({0, 7, 300, 0}, SeriesOf(std::vector<std::int32_t>(5))).XOf(3), 3);
    EXPECT_ERROR(Overflow, DelayScale({32000, 32767, 300, 0}, {}).XOf(2));
}

TEST(DelayScaleTest, PlacesDelaysAndAverages) {
    const DelayScale scale({0, 100, 305, 0}, SeriesOf({1, 3}));
    EXPECT_EQ(scale.YScale(), 30.5F);
    EXPECT_EQ(scale.ValueStep(), 1);
    EXPECT_EQ(scale.WindowStep(), 30);  // of 30.5
    EXPECT_EQ(DelayScale({0, 100, 315, 0}, {}).WindowStep(), 32);
    // 274.5 and 213.5 go to the even unit.
    for (const auto& [seconds, y] : {std::pair{0, 305}, {1, 274}, {3, 214}, {-2, 305}})
        EXPECT_EQ(scale.YOfDelay(static_cast<std::int16_t>(seconds)), y);
    EXPECT_EQ(scale.YOfAverage(-2), 366);
    EXPECT_EQ(scale.YOfAverage(10), 0);

    const DelayScale steep({0, 100, 300, 0}, SeriesOf({-1083}));
    EXPECT_EQ(steep.YOfDelay(-1082), 300) << "at 32760 before it is lifted to the baseline";
    EXPECT_ERROR(Overflow, steep.YOfDelay(-1083));
    EXPECT_EQ(DelayScale({0, 100, 300, 0}, SeriesOf({245})).ValueStep(), 25);
}

class DelayChartDrawingTest : public testing::Test {
protected:
    /// With figures of 5 by 12 this box has its plot area from 20 to 320 and from 23 down to 323.
    void Draw(const std::vector<std::int32_t>& delays, CanvasBox box = {0, 0, 330, 357}) {
        Canvas = {};
        DelayChartStyle style;
        style.TextSize = 10;
        style.HasLegend = false;
        DrawDelayChart(Canvas, box, SeriesOf(delays), style);
    }

    std::string Dots() const {
        std::string found;
        for (const auto& dot : Canvas.Dots) {
            EXPECT_EQ(dot.Diameter, 6);
            found += dot.Ink == Colour{255, 0, 0} ? "red" : dot.Ink == Colour{0, 0x80, 0xC0} ? "blue" : "?";
            found += PointText(dot.Centre) + " ";
        }
        return found;
    }

    std::string AverageLine() const {
        std::string found;
        for (const auto& line : Canvas.Lines)
            if (line.Style.Ink == Colour{0, 0, 0} && line.Style.Width == 2)
                found += PointText(line.Points[0]) + "-" + PointText(line.Points[1]) + " ";
        return found;
    }

    static std::string PointText(CanvasPoint point) {
        return "(" + std::to_string(static_cast<int>(point.X)) + "," + std::to_string(static_cast<int>(point.Y)) + ")";
    }

    RecordingCanvas Canvas;
};

testing::Matcher<const RecordingCanvas::Text&> Shows(const std::string& text) {
    return Field(&RecordingCanvas::Text::Shown, text);
}

TEST_F(DelayChartDrawingTest, DrawsDelaysThenTheAverageFromTheSecondRun) {
    Draw({20, 0, -6, 26});
    EXPECT_EQ(Dots(), "red(80,123) red(140,323) red(200,323) red(260,63) blue(200,276) blue(260,223) ");
    EXPECT_EQ(AverageLine(), "(140,223)-(200,276) (200,276)-(260,223) ");
    EXPECT_THAT(Canvas.Texts, Contains(Shows("Negative delays are drawn at 0.")));

    Draw({-6, -6, -6});
    EXPECT_EQ(Dots(), "red(95,210) red(170,210) red(245,210) blue(245,318) ")
        << "averages are not lifted, they get room: 300 / 1.6 above the baseline, the rest below";

    Draw({26, 2});
    EXPECT_EQ(Dots(), "red(120,63) red(220,303) ");
    EXPECT_EQ(AverageLine(), "");
    EXPECT_THAT(Canvas.Texts, Not(Contains(Shows("Negative delays are drawn at 0."))));

    Draw({});
    EXPECT_EQ(Dots(), "");
    EXPECT_THAT(Canvas.Texts, Contains(Shows("There is no run to show.")));
}

TEST_F(DelayChartDrawingTest, AxisValuesStandAtTheirStepsAndNeverOverlap) {
    Draw({26, 2});
    std::map<std::string, double> middles;
    for (const auto& text : Canvas.Texts) middles[text.Shown] = text.Box.Y + text.Box.Height / 2;
    EXPECT_EQ(middles["0"], 323);
    EXPECT_EQ(middles["3"], 293);
    EXPECT_EQ(middles["30"], 23);

    for (const int runs : {1, 3, 40, 200, 5000})
        for (const double height : {120.0, 357.0}) {
            SCOPED_TRACE(std::to_string(runs) + " runs, " + std::to_string(height));
            Draw(std::vector<std::int32_t>(static_cast<std::size_t>(runs), 31000), {0, 0, 330, height});
            ExpectTextsApart(Canvas, 330, height);
        }
}

TEST_F(DelayChartDrawingTest, PicturesHaveATitleAndALegend) {
    const FakeDocumentWriter writer;
    for (const int delay : {31000, -40}) {
        DelayChartPicture(writer, SeriesOf(std::vector<std::int32_t>(40, delay)), "AM Peak", PictureFormat::Png);
        Canvas = writer.Pages.at(0);
        for (const char* text :
             {"AM Peak", "Running Avg. of Control Delay", "Control Delay Values", "Control Delay (s)"})
            EXPECT_THAT(Canvas.Texts, Contains(Shows(text)));
        ExpectTextsApart(Canvas, DelayPictureSize.Width, DelayPictureSize.Height);
    }
}

TEST_F(DelayChartDrawingTest, LayersLieUnderTheDelaysAndMoveNothing) {
    Draw({20, 0, -6, 26});
    const std::string dots = Dots();
    DelayChartStyle style{.TextSize = 10, .HasLegend = false};
    style.Layers = {.RunningInterval = {{}, {{-40, 60}}, {{2, 7}}, {{3, 9}}}, .Corridor = {{6, 12}}};
    style.Layers.Grades = {{10, "A"}, {20, "B"}, {35, "C"}, {0, "D"}};
    Canvas = {};
    DrawDelayChart(Canvas, {0, 0, 330, 357}, SeriesOf({20, 0, -6, 26}), style);
    EXPECT_EQ(Dots(), dots);
    std::string corners;
    for (const CanvasPoint& corner : Canvas.Shapes.back().Outline) corners += PointText(corner);
    EXPECT_EQ(corners, "(140,-277)(200,253)(260,233)(260,293)(200,303)(140,723)") << "10 units to the second";
    const auto dashed =
        std::ranges::count(Canvas.Lines, LinePattern::Dashed, [](auto& line) { return line.Style.Pattern; });
    EXPECT_EQ(dashed, 2);
    for (const char* grade : {"A", "B", "C"}) EXPECT_THAT(Canvas.Texts, Contains(Shows(grade)));
    EXPECT_THAT(Canvas.Texts, Not(Contains(Shows("D")))) << "the axis ends at 30 s";

    style.HasLegend = true;
    style.Title = "AM Peak";
    Canvas = {};
    style.Layers.Grades.clear();
    DrawDelayChart(Canvas, {0, 0, 600, 357}, SeriesOf({20, 0, 26}), style);
    for (const char* caption : {"Interval of the average", "Permitted error", "Control Delay Values"})
        EXPECT_THAT(Canvas.Texts, Contains(Shows(caption)));
    ExpectTextsApart(Canvas, 600, 357);
}

TEST(DelayChartTest, FindsTheRunOfAPoint) {
    const DelaySeries series = SeriesOf({20, 0, -6, 26});
    const DelayScale scale({20, 320, 322, 22}, series);
    const PlotMap map = PlotMap::OnWholeUnits({20, 22, 300, 300}, {20, 322}, scale.XStep(), scale.YScale());
    const auto near = [&](CanvasPoint place, double reach) {
        return FindItem(DelayPlot(series, ""), map, place, reach).Item;
    };
    EXPECT_EQ(near({82, 119}, 6), 1);
    EXPECT_EQ(near({200, 277}, 6), 3) << "its average";
    EXPECT_EQ(near({140, 222}, 6), 0) << "the second average has no point";
    EXPECT_EQ(near({145, 322}, 100), 2);
}

TEST(DelayChartTest, WritesValuesAsATable) {
    EXPECT_EQ(TabSeparatedText(DelaySheet(SeriesOf({20, -21, 0}))),
              "Run\tRun Name\tControl Delay (s)\tRunning Avg. (s)\tStatus\n"
              "1\tNB-1\t20\t20.0\tCounted\n2\tNB-2\t-21\t-0.5\tCounted\n3\tNB-3\t0\t-0.3\tCounted\n");
}

}  // namespace
}  // namespace vantor
