#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>

#include "core/Date.h"
#include "core/IndexedArray.h"
#include "core/RecordCodec.h"

namespace vantor {

/// Extensions of run files: version 2, version 1, and version 1 after its conversion.
inline constexpr const char* RunExtension = ".rd2";
inline constexpr const char* Ver1RunExtension = ".rdf";
inline constexpr const char* ConvertedRunExtension = ".rdx";

/// Characters of a run's name, and so of the name of its file without extension.
inline constexpr std::size_t RunNameWidth = 32;
/// What the notes of a run that was made from a log begin with, where the log tells its direction: "Direction EB", up
/// to the first semicolon.
inline constexpr std::string_view DirectionNote = "Direction ";
/// Keys and events of a run.
inline constexpr int KeySlots = 32;
/// Sections that the decoding of a run's samples fills.
inline constexpr int DecodedSections = 64;

/// The header of a run file. Distances in feet or counter pulses as noted, flags 0 / -1.
struct RunHeader {
    std::int16_t FileVersion = 0;  ///< always written as 1, readers do not test it
    std::string RunName;           ///< on reading replaced by the name the file was opened under
    Date RunDate;
    Date RunTime;
    std::int32_t SampleCount = 0;
    std::string Reserved10;
    std::int16_t CountNumber = 0;
    std::int16_t RunNumber = 0;
    std::string SiteCode;
    std::int16_t CalConstant = 0;  ///< feet per 1000 pulses
    std::int16_t HeaderWord1 = 0;  ///< run type flag: -1 "Primary", 0 "Secondary"
    std::int16_t HeaderWord2 = 0;  ///< the reverse of HeaderWord1
    std::int16_t Before = 0;       ///< -1 for a run before a change
    std::int16_t After = 0;        ///< -1 for a run after a change
    std::int32_t RunLength = 0;    ///< feet
    std::int16_t Duration = 0;     ///< seconds
    std::int16_t NumberOfSections = 0;
    std::int32_t HeaderLong = 0;   ///< trailer value of the counter's record
    std::int16_t HeaderWord3 = 0;  ///< number of events, 0 to 32
    std::int16_t HeaderWord4 = 0;
    std::string Reserved2;
    IndexedArray<std::string, 1, KeySlots> ButtonLabel;   ///< label of key k
    IndexedArray<std::int16_t, 1, KeySlots> ButtonWord;   ///< key k used: 0 / -1
    IndexedArray<std::int32_t, 1, KeySlots> ButtonLong;   ///< position of event e in pulses from the start
    IndexedArray<std::int16_t, 1, KeySlots> ButtonWord2;  ///< key code of event e
    IndexedArray<std::string, 0, 191> SectionName;        ///< name of node n, node 0 is the start of the run
    IndexedArray<std::int32_t, 0, 191> SectionDist;       ///< length of section s in pulses, s from 1
    std::string Notes;

    bool operator==(const RunHeader&) const = default;
};

inline constexpr auto RunHeaderFields = std::make_tuple(
    Field{0, "FileVersion", &RunHeader::FileVersion}, Field{2, "RunName", &RunHeader::RunName, RunNameWidth},
    Field{34, "RunDate", &RunHeader::RunDate}, Field{42, "RunTime", &RunHeader::RunTime},
    Field{50, "SampleCount", &RunHeader::SampleCount}, Field{54, "Reserved10", &RunHeader::Reserved10, 10},
    Field{64, "CountNumber", &RunHeader::CountNumber}, Field{66, "RunNumber", &RunHeader::RunNumber},
    Field{68, "SiteCode", &RunHeader::SiteCode, 32}, Field{100, "CalConstant", &RunHeader::CalConstant},
    Field{102, "HeaderWord1", &RunHeader::HeaderWord1}, Field{104, "HeaderWord2", &RunHeader::HeaderWord2},
    Field{106, "Before", &RunHeader::Before}, Field{108, "After", &RunHeader::After},
    Field{110, "RunLength", &RunHeader::RunLength}, Field{114, "Duration", &RunHeader::Duration},
    Field{116, "NumberOfSections", &RunHeader::NumberOfSections}, Field{118, "HeaderLong", &RunHeader::HeaderLong},
    Field{122, "HeaderWord3", &RunHeader::HeaderWord3}, Field{124, "HeaderWord4", &RunHeader::HeaderWord4},
    Field{126, "Reserved2", &RunHeader::Reserved2, 2}, Field{128, "ButtonLabel", &RunHeader::ButtonLabel, 32},
    Field{1152, "ButtonWord", &RunHeader::ButtonWord}, Field{1216, "ButtonLong", &RunHeader::ButtonLong},
    Field{1344, "ButtonWord2", &RunHeader::ButtonWord2}, Field{1408, "SectionName", &RunHeader::SectionName, 32},
    Field{7552, "SectionDist", &RunHeader::SectionDist}, Field{8320, "Notes", &RunHeader::Notes, 128});

inline constexpr std::size_t RunHeaderSize = 8448;
static_assert(RecordSize(RunHeaderFields) == RunHeaderSize && IsGapless(RunHeaderFields));

/// The event record of one sample. All zero for counter runs, filled for GPS and OBD runs.
struct RunSample {
    double Latitude = 0;   ///< degrees
    double Longitude = 0;  ///< degrees
    float Speed = 0;       ///< mph
    float Heading = 0;     ///< degrees, -1 none
    std::int16_t FixQuality = 0;
    float HDOP = 0;
    std::int16_t SatUsed = 0;
    Date DateTime;
    std::int16_t Node = 0;
    std::int16_t DelayNumber = 0;
    std::int16_t Direction = 0;

    bool operator==(const RunSample&) const = default;
};

inline constexpr auto RunSampleFields =
    std::make_tuple(Field{0, "Latitude", &RunSample::Latitude}, Field{8, "Longitude", &RunSample::Longitude},
                    Field{16, "Speed", &RunSample::Speed}, Field{20, "Heading", &RunSample::Heading},
                    Field{24, "FixQuality", &RunSample::FixQuality}, Field{26, "HDOP", &RunSample::HDOP},
                    Field{30, "SatUsed", &RunSample::SatUsed}, Field{32, "DateTime", &RunSample::DateTime},
                    Field{40, "Node", &RunSample::Node}, Field{42, "DelayNumber", &RunSample::DelayNumber},
                    Field{44, "Direction", &RunSample::Direction});

inline constexpr std::size_t RunSampleSize = 46;
static_assert(RecordSize(RunSampleFields) == RunSampleSize && IsGapless(RunSampleFields));
/// A sample value and its event record.
inline constexpr std::size_t SamplePairSize = 2 + RunSampleSize;

/// A sample value: the low byte counts distance pulses in that second, bit 15 flags a node.
inline constexpr std::uint16_t NodeFlag = 0x8000;
inline int PulsesOf(std::int16_t sampleValue) { return static_cast<std::uint16_t>(sampleValue) & 0xFF; }
inline int HighByteOf(std::int16_t sampleValue) { return static_cast<std::uint16_t>(sampleValue) >> 8; }
inline bool HasNode(std::int16_t sampleValue) { return (static_cast<std::uint16_t>(sampleValue) & NodeFlag) != 0; }

/// A run in memory: the header and its two parallel lists, sample 1 first.
struct RunRecord {
    RunHeader Header;
    OneBased<std::int16_t> SampleValues;
    OneBased<RunSample> RunSamples;

    bool operator==(const RunRecord&) const = default;
};

/// The header of a version 1 run file, read only. Its 3840 bytes may be followed by four unused ones.
inline constexpr int Ver1Sections = 64;
inline constexpr auto Ver1RunHeaderFields = std::make_tuple(
    Field{0, "FileVersion", &RunHeader::FileVersion}, Field{2, "RunName", &RunHeader::RunName, RunNameWidth},
    Field{34, "RunDate", &RunHeader::RunDate}, Field{42, "RunTime", &RunHeader::RunTime},
    Field{50, "SampleCount", &RunHeader::SampleCount}, Gap{54, 6}, Field{60, "CountNumber", &RunHeader::CountNumber},
    Field{62, "RunNumber", &RunHeader::RunNumber}, Field{64, "SiteCode", &RunHeader::SiteCode, 32},
    Field{96, "CalConstant", &RunHeader::CalConstant}, Field{98, "HeaderWord1", &RunHeader::HeaderWord1},
    Field{100, "HeaderWord2", &RunHeader::HeaderWord2}, Field{102, "Before", &RunHeader::Before},
    Field{104, "After", &RunHeader::After}, Field{106, "RunLength", &RunHeader::RunLength},
    Field{110, "Duration", &RunHeader::Duration}, Field{112, "NumberOfSections", &RunHeader::NumberOfSections},
    Field{114, "HeaderLong", &RunHeader::HeaderLong}, Gap{118, 8}, Field{126, "HeaderWord3", &RunHeader::HeaderWord3},
    Field{128, "ButtonLabel", &RunHeader::ButtonLabel, 32}, Field{1152, "ButtonWord", &RunHeader::ButtonWord},
    Field{1216, "ButtonLong", &RunHeader::ButtonLong}, Field{1344, "ButtonWord2", &RunHeader::ButtonWord2},
    ArrayPart{1408, "SectionName", &RunHeader::SectionName, 1, Ver1Sections, 32},
    ArrayPart{3456, "SectionDist", &RunHeader::SectionDist, 1, Ver1Sections},
    Field{3712, "Notes", &RunHeader::Notes, 128});

inline constexpr std::size_t Ver1RunHeaderSize = 3840;
inline constexpr std::size_t Ver1LongHeaderSize = 3844;
static_assert(RecordSize(Ver1RunHeaderFields) == Ver1RunHeaderSize && IsGapless(Ver1RunHeaderFields));

}  // namespace vantor
