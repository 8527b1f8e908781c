#include "gpsobd/TrackLog.h"

#include <array>
#include <cmath>
#include <limits>
#include <span>

#include "core/Date.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "gpsobd/FieldLog.h"
#include "gpsobd/LaptopLog.h"
#include "tracks/CsvReader.h"
#include "tracks/GpsBabel.h"
#include "tracks/GpxReader.h"
#include "tracks/NmeaReader.h"
#include "tracks/RunExport.h"
#include "tracks/TrackRuns.h"
#include "tracks/TrackTexts.h"
#include "tracks/TrackTimes.h"

namespace vantor {
namespace {

using ReadTrack = TrackSummary (*)(const LogSources& sources, const std::string& path, const TrackSink& sink,
                                   const Progress& progress);

std::string ZoneOf(const LogSources& sources) {
    return sources.Tracks.Zone.empty() ? sources.Time.OwnZone() : sources.Tracks.Zone;
}

GpsPoint GpsPointOf(const TrackPoint& point, std::int16_t run) {
    GpsPoint gps = MissingGpsPoint();
    gps.RunNumber = run;
    if (point.Position) {
        gps.Latitude = point.Position->Latitude;
        gps.Longitude = point.Position->Longitude;
    }
    if (point.Speed) gps.Speed = static_cast<float>(*point.Speed);
    if (point.Course) gps.Heading = static_cast<float>(*point.Course);
    if (point.FixQuality) gps.FixQuality = Round16(*point.FixQuality);
    if (point.Satellites) gps.SatUsed = Round16(*point.Satellites);
    if (point.HDOP) gps.HDOP = static_cast<float>(*point.HDOP);
    gps.Node = point.Node;
    return gps;
}

std::string CountText(std::uint64_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

/// What a reader of the figures should know of the file.
std::vector<std::string> RemarksOf(const TrackSummary& summary, const TrackRuns& runs) {
    std::vector<std::string> remarks;
    const FilledSpeeds& speeds = runs.Speeds();
    if (speeds.FromPositions + speeds.Standing > 0)
        remarks.push_back(speeds.Told == 0
                              ? "its speeds are from its positions"
                              : CountText(speeds.FromPositions, "speed is", "speeds are") + " from the positions");
    if (runs.Interval() > 0)
        remarks.push_back("it has a point every " + std::to_string(Round32(runs.Interval())) +
                          " s; the seconds between are on the way from one position to the next");
    if (runs.GoingOn() > 0)
        remarks.push_back("a run holds at most 32767 s: " + CountText(runs.GoingOn(), "run goes", "runs go") +
                          " on in the next one");
    if (speeds.None > 0)
        remarks.push_back(CountText(speeds.None, "point has", "points have") + " neither speed nor position");
    if (summary.Broken > 0)
        remarks.push_back(CountText(summary.Broken, "line", "lines") + " passed over, the first in line " +
                          std::to_string(summary.FirstBrokenLine) + ": " + summary.FirstBrokenReason);
    if (summary.Void > 0) remarks.push_back(CountText(summary.Void, "point", "points") + " without a fix passed over");
    if (summary.OutOfOrder > 0)
        remarks.push_back(CountText(summary.OutOfOrder, "point", "points") +
                          " earlier than the one before passed over");
    if (summary.WithoutTime > 0)
        remarks.push_back(CountText(summary.WithoutTime, "point", "points") + " without a time passed over");
    if (runs.SecondsOfStanding() >= 1)
        remarks.push_back(CountText(static_cast<std::uint64_t>(runs.SecondsOfStanding()), "second", "seconds") +
                          " of standing cut off at ends");
    if (!summary.Damage.empty()) remarks.push_back(summary.Damage);
    return remarks;
}

std::string NoRunText(const TrackSummary& summary) {
    if (!summary.Damage.empty() && summary.Points == 0) return summary.Damage;
    const std::string damage = summary.Damage.empty() ? "" : "\n" + summary.Damage;
    if (summary.Points == 0 && summary.Broken > 0)
        return "No point of the file can be read, the first of " + std::to_string(summary.Broken) + " in line " +
               std::to_string(summary.FirstBrokenLine) + ": " + summary.FirstBrokenReason +
               " Export the track again, or choose another file.";
    if (summary.Points == 0 && summary.RoutePoints > 0)
        return "The file has a route and no track: a route was planned, not driven. Export the track.";
    if (summary.Points == 0 && summary.Void > 0)
        return "The receiver had no fix in any point of the file. Choose another file.";
    if (summary.Points == 0) return "The file has no point of a track. Choose another file.";
    if (summary.WithoutTime == summary.Points)
        return "The points of the track have no times between 1980 and 2099, and speeds need times. Export the track "
               "with its times." +
               damage;
    return "Nothing moves in this track, or it has single points only. Choose another file." + damage;
}

/// What runs were written as is read run by run.
TrackCuts CutsOf(const LogSources& sources, const std::string& path) {
    std::string head(RunExportHead, '\0');
    head.resize(sources.Files.Open(path)->Read(std::as_writable_bytes(std::span(head))));
    if (head.empty())
        throw RunTimeError(ErrorNumber::TypeMismatch,
                           "The file is empty. Choose another file, or export the track again.\n" + path);
    return IsRunExport(head) ? TrackCuts{.GapSeconds = 0, .StandingSeconds = 0} : sources.Tracks.Cuts;
}

LogHead ReadPoints(const LogSources& sources, const LogFormat& format, const std::string& path, const LogSink& sink,
                   const Progress& progress, ReadTrack read) {
    LogHead log = NewLogHead(format, path);
    const TrackTimes times(sources.Time, ZoneOf(sources));
    std::int32_t run = 0;
    TrackRuns runs(CutsOf(sources, path), [&](std::span<const TrackPoint> points) {
        if (++run > std::numeric_limits<std::int16_t>::max())
            throw RunTimeError(ErrorNumber::Overflow, "The file has more than 32767 runs. Divide it.\n" + path);
        // The clock of a run goes on where those of the zone are changed.
        const Date start = times.LocalOf(*points.front().Time);
        for (const TrackPoint& point : points) {
            LogPoint its;
            its.Gps = GpsPointOf(point, static_cast<std::int16_t>(run));
            its.Gps.DateTime = {start.Days + (*point.Time - *points.front().Time) / static_cast<double>(SecondsOfDay)};
            if (!log.StudyDate) log.StudyDate = Date{std::floor(its.Gps.DateTime.Days)};
            if (!sink(std::move(its))) return false;
        }
        return true;
    });
    const TrackSummary summary = read(
        sources, path, [&](const TrackPoint& point) { return runs.Add(point); }, progress);
    if (summary.IsStopped || !runs.Finish()) return log;
    if (run == 0) throw RunTimeError(ErrorNumber::TypeMismatch, NoRunText(summary) + "\n" + path);
    log.Nodes = summary.Nodes;
    log.Remarks = RemarksOf(summary, runs);
    if (log.StudyDate) log.Prefix.LogDate = *log.StudyDate;
    return log;
}

std::optional<LogSummary> ReadSummary(const LogSources& sources, const LogFormat& format, const std::string& path,
                                      const LogProgress& progress) {
    LogSummary summary;
    bool goesOn = true;
    const Progress asked([&](double) { return goesOn = !progress || progress(); });
    const auto count = [&](LogPoint&& point) {
        summary.Runs = point.Gps.RunNumber;
        if (!summary.StartTime) summary.StartTime = point.Gps.DateTime;
        summary.EndTime = point.Gps.DateTime;
        return true;
    };
    const LogHead log = format.Read(sources, format, path, count, asked);
    summary.StudyDate = log.StudyDate;
    return goesOn ? std::optional(summary) : std::nullopt;
}

template <ReadTrack read>
LogHead ReadAs(const LogSources& sources, const LogFormat& format, const std::string& path, const LogSink& sink,
               const Progress& progress) {
    return ReadPoints(sources, format, path, sink, progress, read);
}

TrackSummary FromGpx(const LogSources& sources, const std::string& path, const TrackSink& sink,
                     const Progress& progress) {
    return ReadGpx(sources.Files, path, sink, progress);
}

TrackSummary FromNmea(const LogSources& sources, const std::string& path, const TrackSink& sink,
                      const Progress& progress) {
    return ReadNmea(sources.Files, path, sink, progress);
}

TrackSummary FromCsv(const LogSources& sources, const std::string& path, const TrackSink& sink,
                     const Progress& progress) {
    const CsvMapping mapping = MappingOf(sources, PreviewCsv(sources.Files, path));
    return ReadCsv(sources.Files, sources.Time, path, mapping, sink, progress);
}

std::optional<CsvMapping> KeptFor(const LogSources& sources, const CsvPreview& preview) {
    return sources.Tracks.KeptMapping ? sources.Tracks.KeptMapping(preview.Head) : std::nullopt;
}

/// Times that are told as local ones are those of the computer, or of the zone that was chosen.
bool HasLocalTimes(const CsvPreview& preview) { return FoldCase(preview.Head).find("local") != std::string::npos; }

/// The forms that may be this file's, by the converter that is installed; those of a few names without it.
std::vector<BabelForm> ConvertedForms(const LogSources& sources, const std::string& path) {
    if (sources.Tracks.OtherPrograms == nullptr) return {};
    return FormsOf(BabelForms(*sources.Tracks.OtherPrograms), path);
}

/// Several forms may share an extension: the first one that gives points is the file's.
TrackSummary FromConverter(const LogSources& sources, const std::string& path, const TrackSink& sink,
                           const Progress& progress) {
    const std::vector<BabelForm> forms = ConvertedForms(sources, path);
    const Programs* const programs = sources.Tracks.OtherPrograms;
    if (forms.empty() && programs != nullptr && !BabelForms(*programs).empty())
        throw RunTimeError(ErrorNumber::TypeMismatch,
                           "gpsbabel knows no track in files of this extension. Save the track as GPX, NMEA or "
                           "CSV.\n" +
                               path);
    if (forms.empty()) throw RunTimeError(ErrorNumber::TypeMismatch, MissingBabelText(path));
    std::string messages;
    for (const BabelForm& form : forms) {
        bool goesOn = true;
        ProgramLimits limits;
        limits.GoesOn = [&] { return goesOn = progress(0, 1); };
        const auto program = ReadAsGpx(*programs, form, path, limits);
        if (program == nullptr) throw RunTimeError(ErrorNumber::TypeMismatch, MissingBabelText(path));
        bool hasPoints = false;
        const TrackSink take = [&](const TrackPoint& point) {
            hasPoints = true;
            return sink(point);
        };
        TrackSummary summary;
        try {
            summary = ReadGpx(*program, path, take, progress);
        } catch (const RunTimeError&) {
            // Without a point it wrote nothing, or no whole GPX: it says why itself.
            if (hasPoints) throw;
        }
        const ProgramEnd end = program->End();
        summary.IsStopped = summary.IsStopped || !goesOn;
        const std::string said = SaidBy(end);
        if (hasPoints && !said.empty()) summary.Damage = "gpsbabel: " + said;
        if (hasPoints || summary.IsStopped) return summary;
        messages += (messages.empty() ? "" : "\n") + form.Name + ": " + (said.empty() ? "no track" : said);
        if (end.WasStopped) break;
    }
    throw RunTimeError(ErrorNumber::TypeMismatch,
                       "No track could be read with the help of gpsbabel.\n" + messages + "\n" + path);
}

bool IsGpx(const LogSources&, const LogFormat&, const std::string& path, std::string_view head) {
    return LooksLikeGpx(head, path);
}

/// Battelle texts have the same extension and their own beginning of runs.
bool IsNmea(const LogSources&, const LogFormat&, const std::string& path, std::string_view head) {
    return LooksLikeNmea(head, path) && !head.starts_with("$s") && head.find("\n$s") == std::string_view::npos;
}

bool IsCsv(const LogSources&, const LogFormat&, const std::string& path, std::string_view head) {
    return LooksLikeCsv(head, path);
}

bool IsConverted(const LogSources& sources, const LogFormat&, const std::string& path, std::string_view) {
    return !ConvertedForms(sources, path).empty();
}

constexpr std::array GpxFiles = {LogFileType{".gpx", ""}};
constexpr std::array NmeaFiles = {LogFileType{".nmea", ""}, LogFileType{".nma", ""}, LogFileType{".txt", ""}};
constexpr std::array CsvFiles = {LogFileType{".csv", ""}, LogFileType{".tsv", ""}};
/// Those that people have most; the converter knows many more.
constexpr std::array ConvertedFiles = {LogFileType{".fit", ""}, LogFileType{".tcx", ""}, LogFileType{".kml", ""},
                                       LogFileType{".igc", ""}, LogFileType{".gdb", ""}, LogFileType{".sbp", ""}};

LogFormat TrackFormat(const char* word, const char* name, std::span<const LogFileType> files,
                      decltype(LogFormat::Recognises) recognises, decltype(LogFormat::Read) read) {
    LogFormat format = FormatWith(true, false);
    format.Word = word;
    format.Name = name;
    format.FileTypes = files;
    format.Recognises = recognises;
    format.Summary = ReadSummary;
    format.Read = read;
    return format;
}

}  // namespace

LogFormat GpxLog() { return TrackFormat("gpx", "a GPX track", GpxFiles, IsGpx, ReadAs<FromGpx>); }
LogFormat NmeaLog() { return TrackFormat("nmea", "an NMEA log", NmeaFiles, IsNmea, ReadAs<FromNmea>); }
LogFormat CsvLog() { return TrackFormat("csv", "a CSV track", CsvFiles, IsCsv, ReadAs<FromCsv>); }

bool HasColumns(const std::string& path) { return IsNamedAs(CsvLog(), path); }

CsvMapping MappingOf(const LogSources& sources, const CsvPreview& preview) {
    const auto kept = KeptFor(sources, preview);
    CsvMapping mapping = kept.value_or(preview.Mapping);
    if (!kept && HasLocalTimes(preview)) mapping.Zone = ZoneOf(sources);
    return mapping;
}

std::vector<std::string> ColumnNotes(const LogSources& sources, const std::string& path) {
    const CsvPreview preview = PreviewCsv(sources.Files, path);
    const auto kept = KeptFor(sources, preview);
    std::vector<std::string> notes;
    for (const CsvQuestion question : preview.Questions) {
        const bool isStart = question == CsvQuestion::Start;
        if (kept && isStart)
            notes.push_back("its times have no day; they are taken to begin on " +
                            IsoDateTime(TrackTimes(sources.Time, kept->StartZone()).LocalOf(kept->Start)));
        else if (!kept && (question != CsvQuestion::Zone || !HasLocalTimes(preview)))
            notes.emplace_back(CsvQuestionText(question));
    }
    return notes;
}

LogFormat ConvertedLog() {
    return TrackFormat("gpsbabel", "a track read by gpsbabel", ConvertedFiles, IsConverted, ReadAs<FromConverter>);
}

}  // namespace vantor
