#include "reports/modReports.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "core/Settings.h"
#include "fakes/FakeTiles.h"
#include "fakes/MemoryFileSystem.h"
#include "fakes/RecordingCanvas.h"
#include "reports/ReportStudies.h"
#include "reports/ReportTable.h"
#include "reports/ReportText.h"

namespace vantor {
namespace {

using testing::AllOf, testing::Contains, testing::ElementsAre, testing::HasSubstr, testing::IsEmpty, testing::Not;

const std::string Folder = "/start/Main NB/";

class modReportsTest : public testing::Test {
protected:
    modReportsTest() {
        Files.CreateFolder(Folder);
        TheStudy = PutReportedStudy(Files, Folder, 3);
        Settings.SpeedFactor = static_cast<float>(3600.0 / FeetPerMile);
        Settings.ReportHeading[1] = "City of Springfield";
        Settings.ReportHeading[3] = "Traffic Division";
        Settings.ShowPageNumbers = -1;
        Settings.ShowRunNamesOnStats = -1;
    }

    ReportData Load() {
        ReportData data = LoadReportData(TheStudy, Settings, Files, Folder, DateOf(2008, 4, 1));
        data.UnderMap = BaseMap;
        return data;
    }

    using Reports = decltype(ReportChoice::Reports);
    const std::vector<RecordingCanvas>& Print(const Reports& reports = ReportChoice().Reports,
                                              Paper paper = Paper::Letter, bool isLandscape = false) {
        Writer.Pdf(MakeReport(Load(), {{paper, isLandscape}, reports}, Writer.Measure()));
        return Writer.Pages;
    }

    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const RecordingCanvas& page : Writer.Pages)
            for (const auto& text : page.Texts) texts.push_back(text.Shown);
        return texts;
    }
    /// The texts of the table row that begins with this one, each with a "|" behind it.
    std::string RowOf(const std::string& first) const {
        std::string row;
        for (const RecordingCanvas& page : Writer.Pages) {
            const auto isCell = [](const auto& text) { return text.Style.Size == 8; };
            const auto begin =
                std::ranges::find_if(page.Texts, [&](const auto& text) { return isCell(text) && text.Shown == first; });
            if (begin == page.Texts.end()) continue;
            for (const auto& text : page.Texts)
                if (isCell(text) && text.Box.Y == begin->Box.Y) row += text.Shown + "|";
            break;
        }
        return row;
    }

    MemoryFileSystem Files;
    AppSettings Settings;
    Study TheStudy;
    BaseMapFile BaseMap;
    FakeDocumentWriter Writer;
};

constexpr auto Only(ReportKind kind) {
    decltype(ReportChoice::Reports) reports{};
    reports[static_cast<std::size_t>(kind)] = true;
    return reports;
}
constexpr decltype(ReportChoice::Reports) Everything = {true, true, true, true, true, true, true, true, true, true};
constexpr auto Summary = Only(ReportKind::Summary);
constexpr auto Statistics = Only(ReportKind::Statistics);
constexpr auto Profiles = Only(ReportKind::Profiles);
/// The margin, room for four digits of 7 points, and two thirds of these, on a whole point.
constexpr double PlotLeft = 50 + 18;

TEST_F(modReportsTest, SummaryTellsTheStudyItsResultsAndEveryRun) {
    TheStudy.Entries[2].CDEndDist = 0;
    TheStudy.Entries[3].IdealSpeedUser = 35;
    Print(Summary);
    EXPECT_THAT(Texts(), AllOf(Contains("City of Springfield"), Contains("Traffic Division"), Contains("Main Street"),
                               Contains("SB").Times(0), Contains("EB"), Contains("Rain"), Contains("Main NB"),
                               Contains("24 s"), Contains("2 of 3"), Contains("Printed 04/01/08 00:00")));
    EXPECT_EQ(RowOf("1"), "1|NB-1|03/14/08|07:30|Primary|300|2000|30|24|C|Counted|");
    EXPECT_EQ(RowOf("2"), "2|NB-2|03/14/08|07:30|Primary|300|–|–|–|–|Not counted|");
    EXPECT_THAT(RowOf("3"), HasSubstr("|2000|* 35|24|"));
    EXPECT_THAT(Texts(), Not(Contains("Average Stop Delay")));

    Settings.EnableStopDelay = -1;
    Settings.MetricUnits = -1;
    Settings.StopSpeedThreshold = 5;
    Print(Summary);
    // A metre is 5280 / 1609 feet.
    EXPECT_EQ(RowOf("1"), "1|NB-1|03/14/08|07:30|Primary|91|609|48|24|C|5|Counted|");
    EXPECT_THAT(Texts(), AllOf(Contains("Average Stop Delay"), Contains("5 s"), Contains("4.8"), Contains("8 KPH"),
                               Contains(HasSubstr("(m)")), Not(Contains(HasSubstr("(ft)")))));
    for (int run = 1; run <= 3; ++run) TheStudy.Entries[run].ControlDelay = 15;
    Print(Summary);
    EXPECT_THAT(Texts(), Contains("3.0")) << "of which the window's label shows \"3.\"";
    EXPECT_EQ(LoadReportData({}, Settings, Files, "", {}).StudyGroup, "start") << "the current folder's name";
}

TEST_F(modReportsTest, StatisticsGoSectionBySectionInDisplayUnits) {
    Print(Statistics);
    EXPECT_EQ(RowOf("2"), "2|Oak|Node 2|660|20|15|5|1|30.0|5|");
    EXPECT_EQ(RowOf("Total"), "Total|[Start]|[End]|2420|60|55|5|1|30.0|5|");
    EXPECT_THAT(Texts(), Contains("Run 2   NB-2"));
    Settings.ShowRunNamesOnStats = 0;
    Settings.MetricUnits = -1;
    Print(Statistics);
    EXPECT_THAT(Texts(), AllOf(Contains("Run 2"), Not(Contains(HasSubstr("NB-2")))));
    EXPECT_EQ(RowOf("1"), "1|[Start]|Oak|268|20|20|0|0|48.3|0|");
}

TEST_F(modReportsTest, PageNumbersStandOnlyWhereTheyAreWanted) {
    EXPECT_EQ(Print().size(), 8u);
    EXPECT_THAT(Texts(), AllOf(Contains("Page 1 of 8"), Contains("Page 8 of 8")));
    Settings.ShowPageNumbers = 0;
    Print();
    EXPECT_THAT(Texts(), Not(Contains(testing::StartsWith("Page "))));
}

TEST_F(modReportsTest, ProfilesMarkNodesAndBoundaries) {
    const RecordingCanvas page = Print(Profiles).at(0);
    ASSERT_EQ(page.Polylines.size(), 3u);
    const auto& trace = page.Polylines[0].Points;
    ASSERT_EQ(trace.size(), 60u);
    // The plot is as wide as the page without its margins and the scale at the left; the run ends at its right edge.
    constexpr double left = PlotLeft;
    constexpr double width = 612 - 50 - left;
    EXPECT_NEAR(trace[0].X, left + 44.0 / 2420 * width, 1e-6);
    EXPECT_NEAR(trace[59].X, left + width, 1e-6);
    const auto upright = [&](double feet) {
        const double x = left + feet / 2420 * width;
        return std::count_if(page.Lines.begin(), page.Lines.end(), [&](const RecordingCanvas::Line& line) {
            return std::abs(line.Points[0].X - x) < 1e-6 && line.Points[0].X == line.Points[1].X;
        });
    };
    for (const double feet : {880.0, 1540.0, 300.0}) EXPECT_EQ(upright(feet), 3) << feet;
    EXPECT_EQ(upright(2000), 6) << "a boundary and a mark of the scale";
    EXPECT_THAT(Texts(),
                AllOf(Contains("Oak").Times(3), Contains("Node 2").Times(3), Contains("Start 300 ft").Times(3),
                      Contains("End 2000 ft").Times(3), Contains("Distance from start of run (ft)"), Contains("MPH")));
    // 30 MPH, with room for a tenth more: the axis ends at 35.
    const double bottom = trace[30].Y;  // at rest
    const auto top = std::find_if(page.Lines.begin(), page.Lines.end(), [&](const RecordingCanvas::Line& line) {
        return line.Points[0].Y == line.Points[1].Y && line.Points[0].X == left && line.Points[0].Y < trace[0].Y - 1;
    });
    ASSERT_NE(top, page.Lines.end());
    EXPECT_NEAR((bottom - trace[0].Y) / (bottom - top->Points[0].Y), 30.0 / 35, 1e-3);
}

TEST_F(modReportsTest, CaptionsOfCloseBoundariesStandSideBySide) {
    for (const auto& [start, end] : {std::pair{300, 310}, {1, 2}, {2400, 2410}, {1500, 300}}) {
        TheStudy.Entries[1].CDStartDist = start;
        TheStudy.Entries[1].CDEndDist = end;
        const RecordingCanvas& page = Print(Profiles).at(0);
        const auto boxOf = [&](const std::string& caption) {
            for (const auto& text : page.Texts)
                if (text.Shown == caption) return text.Box;
            ADD_FAILURE() << caption;
            return CanvasBox{};
        };
        CanvasBox left = boxOf("Start " + std::to_string(start) + " ft");
        CanvasBox right = boxOf("End " + std::to_string(end) + " ft");
        if (end < start) std::swap(left, right);
        EXPECT_LE(left.X + left.Width, right.X) << start;
        EXPECT_GE(left.X, PlotLeft) << start;
        EXPECT_LE(right.X + right.Width, 612 - 50) << start;
    }
}

TEST_F(modReportsTest, LongProfilesAreReducedWithoutLosingTheirExtremes) {
    std::vector<int> values;
    for (int i = 1; i <= 32767; ++i) values.push_back(i == 20000 ? 200 : i == 10000 ? 0 : 40 + i % 5);
    const ReportProfile profile = MakeReportProfile(RunOfValues(values), Settings);
    EXPECT_LE(profile.Points.size(), 4u * 801);
    const auto [slowest, fastest] = std::minmax_element(profile.Points.begin(), profile.Points.end(),
                                                        [](auto& a, auto& b) { return a.Speed < b.Speed; });
    EXPECT_EQ(slowest->Speed, 0.0F);
    EXPECT_NEAR(fastest->Speed, 200 * 0.6818182, 1e-3);
    EXPECT_NEAR(fastest->X / profile.Feet, 20000.0 / 32767, 0.01);
}

TEST_F(modReportsTest, TheMapHasTheRunsWithPositionsAndTheNodesOfOne) {
    Print(Only(ReportKind::Map));
    EXPECT_THAT(Texts(), Contains(testing::StartsWith("No run of this study has positions")));
    RunRecord run = ReportedRun();
    for (int i = 1; i <= run.RunSamples.LastIndex(); ++i)
        run.RunSamples[i] = {.Latitude = 33.7, .Longitude = -84.4 + i * 1e-4, .Speed = 30};
    PutRunFile(Files, run, Folder, "NB-1");
    Print(Only(ReportKind::Map));
    EXPECT_THAT(Texts(), AllOf(Contains("Oak"), Contains("MPH"), Contains("N"),
                               Contains(testing::StartsWith("1 of 3 runs have positions"))));

    FakeTiles tiles;
    tiles.Path = "/maps/Streets.mbtiles";
    tiles.Tiles[{0, 0, 0}] = {1, 1, {0xFF00FF00}};
    for (const char* path : {"/maps/Streets.mbtiles", "/maps/gone.mbtiles"}) {
        BaseMap = OpenBaseMap(tiles, path);
        Print(Only(ReportKind::Map));
        EXPECT_THAT(Texts(), Contains("(c) Surveyors").Times(BaseMap.Source ? 1 : 0));
        EXPECT_THAT(Texts(), Contains(testing::StartsWith("No base map (gone.mbtiles)")).Times(BaseMap.Source ? 0 : 1));
    }
}

TEST_F(modReportsTest, RunsThatCannotBeReadAreNamedAndTheOthersPrinted) {
    Files.Delete(Folder + "NB-1.rd2");
    auto bytes = Files.Bytes(Folder + "NB-2.rd2").value();
    bytes[53] = std::byte{0x7F};  // its count of samples
    Files.Put(Folder + "NB-2.rd2", bytes);
    EXPECT_THAT(Load().Problems,
                ElementsAre("Missing Run File: NB-1",
                            testing::StartsWith("Damaged Run File: NB-2\nThe file tells of 2130706492 samples")));
    Print(Everything);
    EXPECT_THAT(RowOf("1"), testing::EndsWith("|Missing Run File|"));
    EXPECT_THAT(RowOf("2"), testing::EndsWith("|Damaged Run File|"));
    EXPECT_THAT(Texts(), AllOf(Contains("Missing Run File").Times(3), Contains("Run 3   NB-3").Times(2)));
    EXPECT_THAT(Texts(), Contains("1 of 3"));

    TheStudy = {};
    EXPECT_EQ(Print().size(), 1u);
    EXPECT_THAT(Texts(), Contains("This study has no runs."));
    Print({});
    EXPECT_THAT(Writer.Pages, IsEmpty());
}

/// A study with everything that takes room.
void MakeItHard(Study& study, AppSettings& settings, FileSystem& files) {
    settings.EnableStopDelay = -1;
    for (int line = 1; line <= 3; ++line) settings.ReportHeading[line] = std::string(64, 'W');
    study = PutReportedStudy(files, Folder, 40);
    study.Record.StudyName = std::string(32, 'W');
    study.Record.StreetName = std::string(40, 'W');
    study.Record.StudyNotes = std::string(128, 'W');
    const std::string longName(32, 'W');
    std::vector<int> values;
    for (int i = 0; i < 400; ++i) values.push_back(i % 5 == 0 ? NodeFlag | 30 : 20);
    for (int key = 9; key <= 32; ++key) values[static_cast<std::size_t>(key * 10 + 1)] = key << 8;
    RunRecord run = RunOfValues(values);
    DecodeNewRun(run);
    for (int node = 0; node < 80; ++node) run.Header.SectionName[node] = longName;
    for (int key = 1; key <= KeySlots; ++key)
        run.Header.ButtonLabel[key] = "Waiting for the bus no. " + std::to_string(key);
    for (const int i : {1, 20, 40}) {
        PutRunFile(files, run, Folder, longName.substr(1) + std::to_string(i % 10));
        study.Entries[i].EntryRunName = longName.substr(1) + std::to_string(i % 10);
        study.Entries[i].ControlDelay = -2000000;
        study.Entries[i].StopDelay = 2000000;
    }
}

TEST_F(modReportsTest, NothingLeavesThePageOrItsColumnAndNoHeadingEndsAPage) {
    MakeItHard(TheStudy, Settings, Files);
    for (const Paper paper : {Paper::Letter, Paper::A4}) {
        for (const bool isLandscape : {false, true}) {
            Print(Everything, paper, isLandscape);
            const CanvasSize size = PageSizeOf(paper, isLandscape);
            const auto isInside = [&](const CanvasBox& box) {
                constexpr double Edge = 36;
                return box.X >= Edge && box.Y >= Edge && box.X + box.Width <= size.Width - Edge &&
                       box.Y + box.Height <= size.Height - Edge;
            };
            for (const RecordingCanvas& page : Writer.Pages) {
                for (const auto& text : page.Texts) {
                    EXPECT_TRUE(isInside(text.Box)) << text.Shown;
                    if (text.Style.Size == 8 && text.Box.Y < size.Height - 60 && text.Box.Y > 50) {
                        EXPECT_LE(PlainMeasure().TextWidth(text.Shown, text.Style), text.Box.Width + 0.1) << text.Shown;
                    }
                }
                for (const auto* lines : {&page.Lines, &page.Polylines})
                    for (const auto& line : *lines)
                        for (const CanvasPoint& point : line.Points) EXPECT_TRUE(isInside({point.X, point.Y, 0, 0}));
                double lowest = 0;
                double lowestHeading = 0;
                for (const auto& text : page.Texts) {
                    if (text.Box.Y > size.Height - 60) continue;
                    lowest = std::max(lowest, text.Box.Y);
                    if (text.Style.Size == 10) lowestHeading = std::max(lowestHeading, text.Box.Y);
                }
                EXPECT_LT(lowestHeading + 8, lowest);
            }
        }
    }
}

std::vector<RecordingCanvas> Drawn(const PagedDocument& document) {
    std::vector<RecordingCanvas> pages(document.Pages.size());
    for (std::size_t page = 0; page < pages.size(); ++page) document.Pages[page](pages[page]);
    return pages;
}

TEST(ReportText, BreaksAtBlanksAndInsideLongWords) {
    const PlainMeasure measure;
    const TextStyle style{10};  // 5 points to the byte
    const auto wrapped = [&](const std::string& text) { return WrappedLines(text, 50, style, measure); };
    EXPECT_THAT(wrapped("one two three"), ElementsAre("one two", "three"));
    EXPECT_THAT(wrapped("exactly te"), ElementsAre("exactly te"));
    EXPECT_THAT(wrapped("a\r\nb"), ElementsAre("a", "b"));
    EXPECT_THAT(wrapped(""), ElementsAre(""));
    EXPECT_THAT(wrapped("x abcdefghijklm"), ElementsAre("x", "abcdefghij", "klm"));
    // Characters of two bytes are not cut through.
    EXPECT_THAT(wrapped("aéééééé"), ElementsAre("aéééé", "éé"));
    EXPECT_EQ(WrappedLines("ab", 0, style, measure).size(), 2u);
}

/// On Letter the body ends at 730. With no headings the rule takes 15 points below the margin of 40, the title 18 and
/// 10 below it: the table begins at 83. A continued page begins at 64.6. Heads and rows are 13.6 high, so that 46 rows
/// go on the first page and 47 on each of the others.
std::vector<int> RowsOnPages(int rows, bool hasTotal) {
    const PlainMeasure measure;
    ReportPages pages({PageSizeOf(Paper::Letter, false), {}, "", "", false}, measure);
    pages.BeginReport("Title");
    ReportTable table{{{"Head"}}, {}, hasTotal};
    for (int i = 0; i < rows; ++i) table.Rows.push_back({"row"});
    AddTable(pages, table);
    std::vector<int> counts;
    for (const RecordingCanvas& page : Drawn(pages.Finish(""))) {
        int heads = 0;
        counts.push_back(0);
        for (const auto& text : page.Texts) {
            heads += text.Shown == "Head" ? 1 : 0;
            counts.back() += text.Shown == "row" ? 1 : 0;
        }
        EXPECT_EQ(heads, 1);
    }
    return counts;
}

TEST(ReportTable, BreaksWithRepeatedHeadsAndKeepsTheTotalInCompany) {
    EXPECT_THAT(RowsOnPages(46, false), ElementsAre(46));
    EXPECT_THAT(RowsOnPages(47, false), ElementsAre(46, 1));
    EXPECT_THAT(RowsOnPages(47, true), ElementsAre(45, 2));
    EXPECT_THAT(RowsOnPages(46 + 47 + 3, true), ElementsAre(46, 47, 3));
}

TEST(ReportTable, AWideOneGoesOnBelowWithItsFirstColumns) {
    const PlainMeasure measure;
    ReportTable table;
    table.Rows.emplace_back();
    for (int column = 0; column < 8; ++column) {
        table.Columns.push_back({std::to_string(column), TextSide::Right});
        table.Rows[0].push_back("1234567890");  // 40 points, and 6 between two
    }
    const auto heads = [&](double width, std::size_t repeated) {
        std::string text;
        for (const ReportTable& part : SplitToWidth(table, width, measure, repeated)) {
            for (const ReportColumn& column : part.Columns) text += column.Head;
            text += part.Rows[0].size() == part.Columns.size() ? " " : "?";
        }
        return text;
    };
    EXPECT_EQ(heads(8 * 46 - 6, 1), "01234567 ");
    EXPECT_EQ(heads(8 * 46 - 7, 1), "0123456 07 ");
    EXPECT_EQ(heads(4 * 46 - 6, 2), "0123 0145 0167 ");
    EXPECT_EQ(heads(10, 1), "01 02 03 04 05 06 07 ");
}

TEST(ReportPages, AHeadingGoesToTheNextPageWithWhatFollows) {
    const PlainMeasure measure;
    ReportPages pages({PageSizeOf(Paper::Letter, true), {}, "", "", false}, measure);
    pages.BeginReport("Title");
    pages.Skip(pages.Room() - 30);
    pages.AddHeading("Heading", 20);  // 12 points by itself
    pages.AddText("text", BodyStyle);
    const auto drawn = Drawn(pages.Finish(""));
    ASSERT_EQ(drawn.size(), 2u);
    EXPECT_EQ(drawn[1].Texts.at(1).Shown, "Heading");
    EXPECT_EQ(drawn[1].Texts.at(0).Shown, "Title (continued)");
}

}  // namespace
}  // namespace vantor
