#include "core/Csv.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(Csv, QuotesWhatWouldEndAFieldAndMarksTheEncoding) {
    EXPECT_EQ(CsvText({}), "\xEF\xBB\xBF");
    const std::vector<SheetRow> rows = {
        {{"From"}, {"Length (ft)"}}, {{"5th \"A\" St, north"}, {"1246", true}}, {{"two\r\nlines"}, {""}}};
    EXPECT_EQ(CsvText(rows),
              "\xEF\xBB\xBF"
              "From,Length (ft)\r\n"
              "\"5th \"\"A\"\" St, north\",1246\r\n"
              "\"two\r\nlines\",\r\n");
}

TEST(Csv, TextsAreNoFormulas) {
    const std::pair<SheetField, const char*> cases[] = {
        {{"=1+1"}, "'=1+1"},          {{"  =1+1"}, "'  =1+1"}, {{"+44"}, "'+44"},        {{"-12"}, "'-12"},
        {{"@SUM(A1)"}, "'@SUM(A1)"},  {{"\t=1"}, "'\t=1"},     {{"-12", true}, "-12"},   {{"-12.5", true}, "-12.5"},
        {{"Elm = Oak"}, "Elm = Oak"}, {{"   "}, "   "},        {{"Calle Ñ"}, "Calle Ñ"},
    };
    for (const auto& [field, expected] : cases)
        EXPECT_EQ(CsvText({{field}}), "\xEF\xBB\xBF" + std::string(expected) + "\r\n") << field.Text;
    EXPECT_EQ(CsvText({{{"=HYPERLINK(\"x\",1)"}}}), "\xEF\xBB\xBF\"'=HYPERLINK(\"\"x\"\",1)\"\r\n");
}

TEST(Csv, ClipboardRowsKeepTheirFields) {
    EXPECT_EQ(TabSeparatedText({{{"a\tb"}, {"c, \"d\""}}, {{"=1"}, {"-1", true}}, {{"e\r\nf"}, {""}}}),
              "a b\tc, \"d\"\n'=1\t-1\ne  f\t\n");
}

}  // namespace
}  // namespace vantor
