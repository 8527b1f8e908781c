#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/ports/FileSystem.h"
#include "tracks/CsvTimes.h"

namespace vantor {

/// What a column of a CSV file holds.
enum class CsvColumn {
    Other,
    Latitude,
    Longitude,
    NorthSouth,  ///< the letter of an unsigned latitude
    EastWest,    ///< the letter of an unsigned longitude
    Time,
    Date,
    Speed,
    Course,
    Satellites,
    HDOP,
    Fix,
    Node,
    Segment,
    Position,  ///< latitude and longitude in one cell
};
inline constexpr std::size_t CsvColumnKinds = 15;
enum class CsvSpeedUnit { MetresPerSecond, KilometresPerHour, MilesPerHour, Knots };
/// How times are told: as texts; as numbers since 1970, whose size tells whether they are seconds or thousandths,
/// millionths or milliardths of them; as seconds or thousandths since the log began.
enum class CsvTimeForm { Text, Epoch, Elapsed, ElapsedMilliseconds };

/// How a CSV file is read.
struct CsvMapping {
    char Delimiter = ',';
    bool HasDecimalComma = false;
    int HeadLine = 1;  ///< the line above the rows, from 1; 0 where the file begins with them
    std::vector<CsvColumn> Columns;
    CsvSpeedUnit SpeedUnit = CsvSpeedUnit::MetresPerSecond;
    CsvTimeForm TimeForm = CsvTimeForm::Text;
    vantor::DayOrder DayOrder = vantor::DayOrder::Unknown;
    std::string Zone = "UTC";  ///< of times that tell no zone themselves
    /// Seconds since 1970: UTC, where elapsed times begin; by the clocks of Zone, the midnight of times without a day.
    double Start = 0;

    bool Has(CsvColumn column) const;
    /// The zone in which Start shows the time that the user says.
    std::string StartZone() const { return TimeForm == CsvTimeForm::Text ? "UTC" : Zone; }
    bool operator==(const CsvMapping&) const = default;
};

/// The mapping as JSON, so that it can be kept for files with the same head, and back; nothing for any other text.
std::string CsvMappingText(const CsvMapping& mapping);
std::optional<CsvMapping> CsvMappingOf(std::string_view text);

/// What the file leaves open and the user has to say.
enum class CsvQuestion {
    Columns,    ///< neither positions nor speeds by time were recognised
    DayOrder,   ///< day and month may change places
    SpeedUnit,  ///< taken as metres a second
    Zone,       ///< taken as UTC
    Start,      ///< the times have no day
};
const char* CsvQuestionText(CsvQuestion question);

/// The start of a CSV file as texts, and how it would be read.
struct CsvPreview {
    /// The line of the head, UTF-8: what a mapping is kept under. The first line where none is recognised.
    std::string Head;
    std::vector<std::vector<std::string>> Rows;  ///< the first ones, cell by cell
    std::vector<std::string> HeadCells;
    CsvMapping Mapping;
    std::vector<CsvQuestion> Questions;
};

inline constexpr std::size_t CsvPreviewRows = 200;

/// Guesses the mapping from the head and the first rows. Any text has a preview.
CsvPreview PreviewCsv(const FileSystem& files, const std::string& path);
/// Its cells anew, after its mapping got another delimiter or head line.
void SplitAgain(const FileSystem& files, const std::string& path, CsvPreview& preview);

/// True for a text with a head by which positions or speeds by time are recognised.
bool LooksLikeCsv(std::string_view head, std::string_view name);

}  // namespace vantor
