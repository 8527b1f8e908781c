#include "core/Text.h"

#include <gtest/gtest.h>

#include "core/Csv.h"
#include "core/Windows1252.h"
#include "fakes/MemoryFileSystem.h"

namespace vantor {
namespace {

TEST(Text, EveryStoredByteSurvivesAReadAndAWrite) {
    std::vector<std::byte> bytes;
    for (int i = 0; i < 256; ++i) bytes.push_back(static_cast<std::byte>(i));
    EXPECT_EQ(BytesOf(Windows1252FromUtf8(Utf8FromWindows1252(bytes))), bytes);
}

TEST(Text, StoresWindows1252) {
    EXPECT_EQ(Windows1252FromUtf8("Caf\u00e9 \u20ac"), "Caf\xe9 \x80");
    EXPECT_EQ(Windows1252FromUtf8("\u0416\u4e2d"), "??");
    EXPECT_EQ(Utf8FromWindows1252(BytesOf("\x99")), "\u2122");
    EXPECT_EQ(Windows1252FromUtf8("a\xff\xc3"), "a??") << "bytes that are no UTF-8";
}

TEST(Text, ComparesNamesWithoutLetterCase) {
    EXPECT_TRUE(EqualIgnoringCase("S001R001.RD2", "s001r001.rd2"));
    EXPECT_TRUE(EqualIgnoringCase("\u00c9COLE \u0160", "\u00e9cole \u0161"));
    EXPECT_FALSE(EqualIgnoringCase("a\u00d7", "a\u00f7")) << "the signs of times and division are no letters";
    EXPECT_FALSE(EqualIgnoringCase("ab", "abc"));
    EXPECT_EQ(FoldCase("\U0001F6A6 \u4e2d A"), "\U0001F6A6 \u4e2d a") << "what cannot be stored stays as it is";
}

TEST(Text, TrimsBlanksAndPaddingBytes) {
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(TrimRight(std::string_view("ab \0\0", 5)), "ab");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(FirstCharacters("\u00e9\u00e9\u00e9", 2), "\u00e9\u00e9");
    EXPECT_EQ(FirstCharacters("ab", 5), "ab");
}

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
