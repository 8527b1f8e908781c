#include <gmock/gmock.h>

#include "analysis/ReportTable.h"
#include "analysis/ReportText.h"
#include "fakes/RecordingCanvas.h"

namespace vantor {
namespace {

using testing::ElementsAre;

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
