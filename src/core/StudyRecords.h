#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

#include "core/Date.h"
#include "core/FileStamp.h"
#include "core/IndexedArray.h"
#include "core/RecordCodec.h"
#include "core/StudyOptions.h"

namespace vantor {

inline constexpr const char* StudyExtension = ".ld2";

/// Items of the direction and critical lane lists. Studies store the position, -1 for none: keep the order.
inline constexpr std::array<const char*, 4> DirectionItems = {"NB", "SB", "EB", "WB"};
inline constexpr std::array<const char*, 5> CritLaneItems = {"Through", "Shared Left", "Left", "Shared Right", "Right"};

/// The first record of a study file.
struct StudyRecord {
    std::int16_t StudyFileVersion = 0;  ///< written as 1
    std::string StudyName;
    Date StudyDate;
    std::int16_t RunCount = 0;
    std::string StudyText6a;
    std::string StudyText6b;
    std::string StudyNotes;
    std::string StreetName;
    std::int16_t Direction = 0;
    float StudyAvgControlDelay = 0;  ///< seconds, a whole number
    std::string StudyLOSGrade;
    RawBytes<8> StudyValue1{};
    RawBytes<8> StudyValue2{};
    std::int16_t CritLane = 0;
    std::string StudyText71;

    bool operator==(const StudyRecord&) const = default;
};

inline constexpr auto StudyRecordFields = std::make_tuple(
    Field{0, "StudyFileVersion", &StudyRecord::StudyFileVersion}, Field{2, "StudyName", &StudyRecord::StudyName, 32},
    Field{34, "StudyDate", &StudyRecord::StudyDate}, Field{42, "RunCount", &StudyRecord::RunCount},
    Field{44, "StudyText6a", &StudyRecord::StudyText6a, 6}, Field{50, "StudyText6b", &StudyRecord::StudyText6b, 6},
    Field{56, "StudyNotes", &StudyRecord::StudyNotes, 128}, Field{184, "StreetName", &StudyRecord::StreetName, 40},
    Field{224, "Direction", &StudyRecord::Direction},
    Field{226, "StudyAvgControlDelay", &StudyRecord::StudyAvgControlDelay},
    Field{230, "StudyLOSGrade", &StudyRecord::StudyLOSGrade, 1}, Field{231, "StudyValue1", &StudyRecord::StudyValue1},
    Field{239, "StudyValue2", &StudyRecord::StudyValue2}, Field{247, "CritLane", &StudyRecord::CritLane},
    Field{249, "StudyText71", &StudyRecord::StudyText71, 71});

inline constexpr int StudyNameWidth = 32;
inline constexpr std::size_t StudyRecordSize = 320;
static_assert(RecordSize(StudyRecordFields) == StudyRecordSize && IsGapless(StudyRecordFields));

/// What the control delay of a run was computed from.
struct Computation {
    std::uint64_t Movement = 0;    ///< MovementHash of the run
    std::int32_t CDStartDist = 0;  ///< the boundaries and the user's ideal speed at that time
    std::int32_t CDEndDist = 0;
    std::int32_t IdealSpeedUser = 0;
    std::string Failure;  ///< why the computation failed; the figures are earlier ones then

    bool operator==(const Computation&) const = default;
};

/// One run of a study. The first 32 characters of its name are the name of its run file.
struct StudyRunEntry {
    std::string EntryRunName;
    std::int32_t CDStartDist = 0;     ///< start boundary, feet from the start of the run; 0 = not set
    std::int32_t CDEndDist = 0;       ///< end boundary, feet; 0 = not set
    std::int32_t IdealSpeedCalc = 0;  ///< mph
    std::int32_t IdealSpeedUser = 0;  ///< mph, 0 = none
    std::int32_t ControlDelay = 0;    ///< seconds, may be negative
    std::string LOSGrade;
    std::int32_t StopDelay = 0;  ///< seconds
    std::string EntryText23;

    // What the study file has no room for and its companion keeps; nothing where it is not known.
    std::optional<Computation> Computed;
    std::optional<std::int16_t> StopDelayThreshold;  ///< that StopDelay was counted with, mph
    std::string Period;                              ///< the user's name for the time of day, "AM peak"; empty for none
    std::string SetAside;    ///< why the statistics also stand without this run; empty for a run that is not set aside
    std::string OtherFacts;  ///< members of a later version, as the text of a JSON object; or empty

    bool operator==(const StudyRunEntry&) const = default;
};

/// Boundaries and the user's ideal speed, of entries and of what they were computed from.
template <class Left, class Right>
bool HasSameBoundaries(const Left& left, const Right& right) {
    return left.CDStartDist == right.CDStartDist && left.CDEndDist == right.CDEndDist &&
           left.IdealSpeedUser == right.IdealSpeedUser;
}

inline constexpr std::size_t EntryNameWidth = 80;

inline constexpr auto StudyRunEntryFields = std::make_tuple(
    Field{0, "EntryRunName", &StudyRunEntry::EntryRunName, EntryNameWidth},
    Field{80, "CDStartDist", &StudyRunEntry::CDStartDist}, Field{84, "CDEndDist", &StudyRunEntry::CDEndDist},
    Field{88, "IdealSpeedCalc", &StudyRunEntry::IdealSpeedCalc},
    Field{92, "IdealSpeedUser", &StudyRunEntry::IdealSpeedUser},
    Field{96, "ControlDelay", &StudyRunEntry::ControlDelay}, Field{100, "LOSGrade", &StudyRunEntry::LOSGrade, 1},
    Field{101, "StopDelay", &StudyRunEntry::StopDelay}, Field{105, "EntryText23", &StudyRunEntry::EntryText23, 23});

inline constexpr std::size_t StudyRunEntrySize = 128;
static_assert(RecordSize(StudyRunEntryFields) == StudyRunEntrySize && IsGapless(StudyRunEntryFields));

/// True when both boundaries of the run are set, so that it counts in the study's averages.
inline bool HasBothBoundaries(const StudyRunEntry& entry) { return entry.CDStartDist != 0 && entry.CDEndDist != 0; }

/// The file that a study was read from or written to last.
struct StoredStudy {
    std::string Path;
    FileStamp Stamp;
    std::optional<FileStamp> Companion;  ///< nothing where there was none
};

/// The backups of a study whose file another has taken; empty for none.
struct ReplacedStudy {
    std::string Path;
    std::string Companion;
};

/// What a study holds, wherever it is stored. Entry 0 is no run; entries and names 1 to RunCount are the runs in list
/// order.
struct StudyContents {
    StudyRecord Record;
    ZeroBased<StudyRunEntry> Entries{std::vector<StudyRunEntry>(1)};
    OneBased<std::string> RunNames;
    StatisticsOptions Options;
    StudyLines Lines;

    bool operator==(const StudyContents&) const = default;
};

/// A study in memory.
struct Study : StudyContents {
    /// Entries that the file is too short to hold, from the last one; they are blank.
    std::int16_t MissingEntries = 0;
    std::string OtherFacts;  ///< of the companion: members of a later version, as the text of a JSON object; or empty
    bool HasDamagedCompanion = false;
    std::optional<StoredStudy> Stored;  ///< nothing for a study that was never stored
};

}  // namespace vantor
