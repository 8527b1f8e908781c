#include "counter/DelimitedReader.h"

#include <gmock/gmock.h>

#include "fakes/MemoryFileSystem.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::ElementsAre;

DelimitedReader ReaderOf(const std::string& text) {
    MemoryFileSystem files;
    files.PutText("/start/fields", text);
    return DelimitedReader(files.Open("/start/fields"));
}

/// All fields up to the end of the file, which must be error 62.
std::vector<std::string> FieldsOf(const std::string& text) {
    DelimitedReader reader = ReaderOf(text);
    std::vector<std::string> fields;
    const auto readOn = [&] {
        for (;;) fields.emplace_back(reader.Next().Text);
    };
    EXPECT_ERROR(InputPastEndOfFile, readOn());
    return fields;
}

TEST(DelimitedReader, EndsFieldsAtCommasAndAnyLineEnd) {
    EXPECT_THAT(FieldsOf("a,b\r\nc\rd\ne"), ElementsAre("a", "b", "c", "d", "e"));
    EXPECT_THAT(FieldsOf("a,,b\r\n\r\nc\n\n"), ElementsAre("a", "", "b", "", "c", ""));
    EXPECT_THAT(FieldsOf("a\n\rb"), ElementsAre("a", "", "b"));
    EXPECT_THAT(FieldsOf("a,\r\nb,"), ElementsAre("a", "", "b"));
    EXPECT_THAT(FieldsOf(""), ElementsAre());
    EXPECT_THAT(FieldsOf("a\r\n   "), ElementsAre("a"));
}

TEST(DelimitedReader, DropsLeadingBlanksAndQuotesOnly) {
    EXPECT_THAT(FieldsOf("  a b  ,   \r\n b"), ElementsAre("a b  ", "", "b"));
    EXPECT_THAT(FieldsOf("\"a,b\", \" c \" \r\n\"\",d\"e\""), ElementsAre("a,b", " c ", "", "d\"e\""));
    EXPECT_THAT(FieldsOf("\"a\"b,c"), ElementsAre("a", "c"));
    EXPECT_THAT(FieldsOf("\"never closed,b\r\nc"), ElementsAre("never closed,b", "c"));
    EXPECT_THAT(FieldsOf("a,\"b"), ElementsAre("a", "b"));
}

TEST(DelimitedReader, KeepsTheStartOfALongFieldAndCountsItWhole) {
    const std::string longField(3000000, 'x');
    DelimitedReader reader = ReaderOf(longField + ",\"" + longField + "\"\r\nshort");
    for (int i = 0; i < 2; ++i) {
        const DelimitedField field = reader.Next();
        EXPECT_EQ(field.Text, std::string(DelimitedReader::LongestKept, 'x'));
        EXPECT_EQ(field.Length, 3000000u);
    }
    EXPECT_EQ(reader.Next().Text, "short");
    EXPECT_EQ(reader.Position(), reader.Size());
}

}  // namespace
}  // namespace vantor
