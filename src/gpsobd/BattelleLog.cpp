#include "gpsobd/BattelleLog.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "core/Numeric.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "gpsobd/FieldLog.h"
#include "gpsobd/LaptopLog.h"
#include "gpsobd/LogScreens.h"

namespace vantor {
namespace {

constexpr double SecondsPerDay = 86400;
/// What is kept of a line; a fix is much shorter.
constexpr std::size_t LongestLine = 1024;

/// Gives every line to `take`, until that returns false, of a long one its first LongestLine bytes, through one buffer
/// whatever the file's length. The last line may lack its line feed. False when it or `progress` stopped it.
template <class Take>
bool ForEachLine(InputFile& file, const LogProgress& progress, Take take) {
    std::vector<char> piece(std::min<std::uint64_t>(LogPieceSize, file.Size()) + 1);
    std::string begun;  // a line that goes on in the next piece
    const auto goOn = [&](std::string_view part) { begun.append(part.substr(0, LongestLine - begun.size())); };
    for (;;) {
        const std::size_t count = file.Read(std::as_writable_bytes(std::span(piece)));
        std::string_view rest(piece.data(), count);
        for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
            if (begun.empty()) {
                if (!take(rest.substr(0, std::min(end, LongestLine)))) return false;
            } else {
                goOn(rest.substr(0, end));
                if (!take(std::string_view(begun))) return false;
                begun.clear();
            }
            rest.remove_prefix(end + 1);
        }
        goOn(rest);
        if (progress && !progress()) return false;
        if (count < piece.size()) break;
    }
    return begun.empty() || take(std::string_view(begun));
}

/// The text up to `separator`, which is taken off `rest` with it.
std::string_view TakeUpTo(char separator, std::string_view& rest) {
    const std::size_t end = rest.find(separator);
    const std::string_view part = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return part;
}

std::string_view WithoutBlanks(std::string_view text) {
    while (!text.empty() && (text.back() == '\r' || text.back() == ' ')) text.remove_suffix(1);
    return TrimLeft(text);
}

/// HH:MM or HH:MM:SS, seconds with decimals where there are some, as a part of a day.
std::optional<double> TimeIn(std::string_view text) {
    const auto hour = CountOfText(TakeUpTo(':', text), 23);
    const auto minute = CountOfText(TakeUpTo(':', text), 59);
    const auto second = text.empty() ? std::optional(0.0) : NumberOfText(text);
    if (!hour || !minute || !second || *second < 0 || *second >= 60) return std::nullopt;
    return (*hour * 3600 + *minute * 60 + *second) / SecondsPerDay;
}

/// A fix as it stands in its line.
struct Fix {
    Date DateTime;
    /// Latitude, longitude, speed, heading, HDOP, satellites; empty where the line ends before.
    std::array<std::string_view, 6> Values;
};

std::optional<Fix> FixIn(std::string_view line) {
    Fix fix;
    std::optional<Date> day;
    std::optional<double> time;
    std::size_t values = 0;
    while (!line.empty()) {
        const std::string_view field = WithoutBlanks(TakeUpTo(',', line));
        if (!day && field.find('/') != std::string_view::npos) {
            day = DayOfText(field, "/");
            if (!day) return std::nullopt;
        } else if (!time && field.find(':') != std::string_view::npos) {
            time = TimeIn(field);
            if (!time) return std::nullopt;
        } else if (time && values < fix.Values.size()) {
            fix.Values[values++] = field;
        }
    }
    if (!day || !time) return std::nullopt;
    fix.DateTime = {day->Days + *time};
    return fix;
}

/// The leading number of a field; nothing where there is none that a single could hold.
std::optional<double> NumberIn(std::string_view field) {
    double number = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), number);
    const bool isKept = error == std::errc{} && std::fabs(number) <= std::numeric_limits<float>::max();
    return isKept ? std::optional(number) : std::nullopt;
}

GpsPoint PointOf(const Fix& fix, std::int16_t runNumber, bool isSigned) {
    GpsPoint point = MissingGpsPoint();
    point.RunNumber = runNumber;
    point.DateTime = fix.DateTime;
    const auto& [latitude, longitude, speed, heading, hdop, satellites] = fix.Values;
    if (const auto value = NumberIn(latitude)) point.Latitude = LatitudeOf(*value, isSigned);
    if (const auto value = NumberIn(longitude)) point.Longitude = LongitudeOf(*value, isSigned);
    if (const auto value = NumberIn(speed)) point.Speed = static_cast<float>(*value);
    if (const auto value = NumberIn(heading)) point.Heading = static_cast<float>(*value);
    if (const auto value = NumberIn(hdop)) point.HDOP = static_cast<float>(*value);
    if (const auto value = NumberIn(satellites); value && std::fabs(*value) <= 32767) point.SatUsed = Round16(*value);
    return point;
}

constexpr const char* NoBattelleFile =
    "The file is no Battelle GPS file: none of its lines begins with \"$s\" or \"$G\". Choose another file.";

bool StartsRun(std::string_view line) { return line.starts_with("$s"); }
bool IsFix(std::string_view line) { return line.starts_with("$G"); }

std::optional<LogSummary> ReadSummary(const LogSources& sources, const LogFormat&, const std::string& path,
                                      const LogProgress& progress) {
    LogSummary summary;
    bool hasLines = false;
    bool isBattelle = false;
    const auto file = sources.Files.Open(path);
    const bool finished = ForEachLine(*file, progress, [&](std::string_view line) {
        hasLines = true;
        isBattelle = isBattelle || StartsRun(line) || IsFix(line);
        if (StartsRun(line)) ++summary.Runs;
        if (!IsFix(line)) return true;
        const auto fix = FixIn(line);
        if (!fix) return true;
        if (!summary.StartTime) summary.StartTime = fix->DateTime;
        summary.EndTime = fix->DateTime;
        return true;
    });
    if (!finished) return std::nullopt;
    if (hasLines && !isBattelle) summary.Problem = NoBattelleFile;
    if (summary.StartTime) summary.StudyDate = Date{std::floor(summary.StartTime->Days)};
    return summary;
}

LogHead ReadPoints(const LogSources& sources, const LogFormat& format, const std::string& path, const LogSink& sink,
                   const Progress& progress) {
    LogHead log = NewLogHead(format, path);
    std::int64_t run = 0;
    std::uint64_t lines = 0;
    bool isBattelle = false;
    const auto file = sources.Files.Open(path);
    std::uint64_t done = 0;
    const auto goOn = [&] { return progress(done, file->Size()); };
    ForEachLine(*file, goOn, [&](std::string_view line) {
        ++lines;
        done += line.size() + 1;
        isBattelle = isBattelle || StartsRun(line) || IsFix(line);
        if (StartsRun(line) && ++run > std::numeric_limits<std::int16_t>::max())
            throw RunTimeError(ErrorNumber::Overflow, "The file has more than 32767 runs. Divide it.\n" + path +
                                                          ", line " + std::to_string(lines));
        if (!IsFix(line)) return true;
        const auto fix = FixIn(line);
        if (!fix) return true;
        if (!log.StudyDate) log.StudyDate = Date{std::floor(fix->DateTime.Days)};
        return sink({PointOf(*fix, static_cast<std::int16_t>(run), sources.HasSignedCoordinates), {}});
    });
    if (lines > 0 && !isBattelle)
        throw RunTimeError(ErrorNumber::TypeMismatch,
                           std::string(NoBattelleFile) + "\n" + path + ", line 1 to " + std::to_string(lines));
    if (log.StudyDate) log.Prefix.LogDate = *log.StudyDate;
    return log;
}

bool StartsRunIn(const LogSources&, const LogFormat&, const std::string&, std::string_view head) {
    return StartsRun(head) || head.find("\n$s") != std::string_view::npos;
}

constexpr std::array Files = {LogFileType{".txt", ""}};

}  // namespace

LogFormat BattelleLog() {
    LogFormat format = FormatWith(true, false);
    format.Word = "battelle";
    format.Name = "a Battelle GPS file";
    format.FileTypes = Files;
    format.Recognises = StartsRunIn;
    format.Summary = ReadSummary;
    format.Read = ReadPoints;
    format.Screen = &ScreenOf(LogKind::Battelle);
    return format;
}

}  // namespace vantor
