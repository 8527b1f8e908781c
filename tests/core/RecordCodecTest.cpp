#include "core/RecordCodec.h"

#include <gtest/gtest.h>

#include <random>

#include "core/AppSettings.h"
#include "core/RunRecords.h"
#include "core/StudyRecords.h"
#include "fakes/MemoryFileSystem.h"

namespace vantor {
namespace {

struct Sample {
    std::int16_t Word = 0;
    std::int32_t Long = 0;
    float Single = 0;
    Date Day;
    std::string Text;
    IndexedArray<std::int16_t, 1, 2> List;
    RawBytes<2> Raw{};
};

constexpr auto SampleFields = std::make_tuple(Field{0, "Word", &Sample::Word}, Field{2, "Long", &Sample::Long},
                                              Field{6, "Single", &Sample::Single}, Field{10, "Day", &Sample::Day},
                                              Gap{18, 3}, Field{21, "Text", &Sample::Text, 4},
                                              Field{25, "List", &Sample::List}, Field{29, "Raw", &Sample::Raw});
static_assert(IsGapless(SampleFields) && RecordSize(SampleFields) == 31);
static_assert(!IsGapless(std::make_tuple(Field{0, "Word", &Sample::Word}, Field{3, "Long", &Sample::Long})));

// -2, 0x01020304, 3600 / 5280 in single precision, 1.5 days, blanks, "AB", 1 and -1, two raw bytes.
const std::string SampleBytes(
    "\xfe\xff\x04\x03\x02\x01\xa3\x8b\x2e\x3f\0\0\0\0\0\0\xf8\x3f   AB  \x01\0\xff\xff\x00\x80", 31);

TEST(RecordCodec, WritesLittleEndianFieldsWithoutPaddingAndReadsThemBack) {
    Sample sample{-2,   0x01020304, static_cast<float>(3600.0 / 5280.0), {1.5},
                  "AB", {},         {std::byte{0}, std::byte{0x80}}};
    sample.List[1] = 1;
    sample.List[2] = -1;
    EXPECT_EQ(EncodeRecord(sample, SampleFields), BytesOf(SampleBytes));
    sample = DecodeRecord<Sample>(SampleFields, BytesOf(SampleBytes));
    EXPECT_EQ(std::tuple(sample.Word, sample.Long, sample.Day.Days, sample.Text, sample.List[2], sample.Raw[1]),
              std::tuple(-2, 0x01020304, 1.5, "AB", -1, std::byte{0x80}));
    EXPECT_NEAR(sample.Single, 0.6818182F, 1e-7);
}

TEST(RecordCodec, ShortInputReadsAsZeroAndEmptyTexts) {
    const auto half = DecodeRecord<Sample>(SampleFields, BytesOf(SampleBytes.substr(0, 22)));
    EXPECT_EQ(half.Day.Days, 1.5);
    EXPECT_EQ(half.Text, "A");
    EXPECT_EQ(half.List[1], 0);
    const auto cutNumber = DecodeRecord<Sample>(SampleFields, BytesOf(SampleBytes.substr(0, 4)));
    EXPECT_EQ(cutNumber.Long, 0x0304);
    EXPECT_EQ(DecodeRecord<Sample>(SampleFields, {}).Text, "");
}

TEST(RecordCodec, CutsTextsAtTheirWidthInStoredCharacters) {
    Sample sample;
    sample.Text = "\u00e9\u00e9\u00e9\u00e9\u00e9";
    const auto bytes = EncodeRecord(sample, SampleFields);
    EXPECT_EQ(std::vector(bytes.begin() + 21, bytes.begin() + 25), BytesOf("\xe9\xe9\xe9\xe9"));
}

/// Whatever a file holds, reading and writing a record gives the same bytes again.
template <class Record, class Table>
void ExpectEveryByteSurvives(const Table& table) {
    std::mt19937 random(7);
    for (int round = 0; round < 20; ++round) {
        std::vector<std::byte> bytes(RecordSize(table));
        for (std::byte& byte : bytes) byte = static_cast<std::byte>(random() & 0xFF);
        EXPECT_EQ(EncodeRecord(DecodeRecord<Record>(table, bytes), table), bytes);
    }
}

TEST(RecordCodec, RecordsCarryUnknownBytesUnchanged) {
    ExpectEveryByteSurvives<AppSettings>(AppSettingsFields);
    ExpectEveryByteSurvives<RunHeader>(RunHeaderFields);
    ExpectEveryByteSurvives<RunSample>(RunSampleFields);
    ExpectEveryByteSurvives<StudyRecord>(StudyRecordFields);
    ExpectEveryByteSurvives<StudyRunEntry>(StudyRunEntryFields);
}

}  // namespace
}  // namespace vantor
