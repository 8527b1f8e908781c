#include <memory>

#include "cli/Commands.h"
#include "cli/LogArguments.h"
#include "cli/RecordJson.h"
#include "core/Paths.h"
#include "gpsobd/LogGaps.h"
#include "gpsobd/LogOverview.h"
#include "gpsobd/LogPoints.h"
#include "gpsobd/LogRuns.h"
#include "gpsobd/ReviewColumns.h"
#include "gpsobd/TrackInbox.h"

namespace vantor {
namespace {

Json DateTimeJson(const std::optional<Date>& time) { return time ? json::Value(*time) : Json(nullptr); }

Json DayJson(const std::optional<Date>& day) {
    const Json time = DateTimeJson(day);
    return time.is_null() ? time : Json(time.get<std::string>().substr(0, std::string("YYYY-MM-DD").size()));
}

/// A row of the review with the keys of its columns; the OBD half of a combined log is an object in it.
Json RowJson(const ReviewLayout& layout, const FieldLog& log, std::size_t index) {
    Json row = Json::object();
    Json obd = Json::object();
    for (const ReviewColumn& column : layout.Columns) {
        Json& half = log.Format->HasGps && IsOfObd(column.Field) ? obd : row;
        if (column.Look == ColumnLook::Direction)
            half[column.Key] = CellText(column, log, index);
        else
            half[column.Key] =
                WithField(column.Field, log, index, [](const auto& value) { return json::Value(value); });
    }
    if (!obd.empty()) row["OBD"] = std::move(obd);
    return row;
}

Json RowsJson(const LogSources& sources, const LogFormat& format, const std::string& path) {
    FieldLog log = ReadFieldLog(sources, format, path);
    ArrangeForReview(log);
    const ReviewLayout layout = format.Columns();
    Json rows = Json::array();
    for (std::size_t i = 0; i < log.PointCount(); ++i) rows.push_back(RowJson(layout, log, i));
    return rows;
}

Json GapsJson(const std::vector<LogGap>& gaps) {
    const auto nameOf = [](GapFill fill) {
        switch (fill) {
            case GapFill::Standing: return "standing";
            case GapFill::Position: return "position";
            case GapFill::Speed: break;
        }
        return "speed";
    };
    Json list = Json::array();
    for (const LogGap& gap : gaps)
        list.push_back({{"RunNumber", gap.RunNumber},
                        {"from", json::Value(DateOfSeconds(gap.From))},
                        {"to", json::Value(DateOfSeconds(gap.To))},
                        {"seconds", gap.Seconds()},
                        {"feetByPosition", gap.FeetByPosition ? Json(*gap.FeetByPosition) : Json(nullptr)},
                        {"feetBySpeed", gap.FeetBySpeed},
                        {"filled", nameOf(gap.Filled)}});
    return list;
}

void NameCut(std::ostream& out, const LogHead& log) {
    const std::string text = CutText(log.DroppedBytes, log.MissingRecords);
    if (!text.empty()) out << text << "\n" << log.Folder << log.Name << log.Extension << "\n";
}

int ShowLog(CommandContext& context, const LogArguments& arguments, bool withRows) {
    const CommandSources sources(context, arguments);
    const std::string& path = arguments.Path;
    const LogFormat& format = FormatOfFile(sources.All, path);
    const LogSummary summary = ReadLogSummary(sources.All, format, path).value_or(LogSummary{});
    const LogOverview log = ReadLogOverview(sources.All, format, path);
    NameCut(context.Err, log.Head);
    Json result = {{"kind", format.Word},
                   {"StudyName", StudyName(log.Head)},
                   {"BaseName", json::Value(format.HasObd ? log.Head.ObdHeader.BaseName : log.Head.GpsHeader.BaseName)},
                   {"StudyDate", DayJson(summary.StudyDate)},
                   {"StartTime", DateTimeJson(summary.StartTime)},
                   {"EndTime", DateTimeJson(summary.EndTime)},
                   {"Runs", summary.Runs},
                   {"rowCount", log.PointCount},
                   {"droppedBytes", log.Head.DroppedBytes},
                   {"gaps", GapsJson(log.Gaps)}};
    if (withRows) result["rows"] = RowsJson(sources.All, format, path);
    context.Print(result);
    return Done;
}

/// What the runs' gaps are taken for, a line a run.
void NameGaps(std::ostream& out, const std::string& path, const std::vector<LogGap>& gaps) {
    for (auto gap = gaps.begin(); gap != gaps.end();) {
        const auto ofRun = GapsOfRun(gaps, gap->RunNumber);
        out << "run " << gap->RunNumber << ", " << GapNote(ofRun) << ", in " << path << "\n";
        gap += static_cast<std::ptrdiff_t>(ofRun.size());
    }
}

int ConvertLog(CommandContext& context, const LogArguments& arguments, const std::string& folder, bool fillsBySpeed) {
    const CommandSources sources(context, arguments);
    const std::string& path = arguments.Path;
    constexpr double partOfReading = 0.6;
    const RunsOfLog log =
        ReadRunsOfLog(sources.All, FormatOfFile(sources.All, path), path, context.Work.Part(0, partOfReading));
    if (!context.Work.Part(0, partOfReading)(1, 1)) return Stopped;
    NameCut(context.Err, log.Head);
    for (const std::string& remark : log.Head.Remarks) context.Err << remark << ", in " << path << "\n";
    const std::vector<LogGap> gaps = fillsBySpeed ? std::vector<LogGap>() : FindGaps(log);
    NameGaps(context.Err, path, gaps);
    const auto written =
        WriteLogRuns(context.Files, log, gaps, folder, context.State.Settings, {}, context.Work.Part(partOfReading, 1));
    if (!written) return Stopped;
    if (!written->LeftOut.empty())
        throw RunTimeError(ErrorNumber::Overflow,
                           Joined(written->LeftOut, LineBreak) + "\n" +
                               (written->Names.empty() ? "" : "The other runs were written. ") +
                               "Correct the times of its rows, or delete those that are wrong.\n" + path);
    context.Print(written->Names);
    return Done;
}

Json TrackJson(const InboxTrack& track) {
    const RunHeader& header = track.Run.Header;
    const bool isThere = track.Direction.empty();
    return {{"number", track.Number},
            {"start", json::Value(Date{header.RunDate.Days + header.RunTime.Days})},
            {"seconds", header.SampleCount},
            {"feet", header.RunLength},
            {"direction", isThere ? Json(nullptr) : Json(track.Direction)},
            {"flags", track.Flags}};
}

int ShowTracks(CommandContext& context, const LogArguments& arguments) {
    const CommandSources sources(context, arguments);
    const LogFormat& format = FormatOfFile(sources.All, arguments.Path);
    const RunsOfLog log = ReadRunsOfLog(sources.All, format, arguments.Path, context.Work);
    if (!context.Work(1, 1)) return Stopped;
    const InboxFile file = TracksOf(log, context.State.Settings);
    Json tracks = Json::array();
    for (const InboxTrack& track : file.Tracks) tracks.push_back(TrackJson(track));
    context.Print({{"kind", format.Word}, {"remarks", file.Remarks}, {"tracks", std::move(tracks)}});
    return Done;
}

}  // namespace

void AddTrackCommands(CLI::App& program, CommandAction& chosen) {
    CLI::App* group = program.add_subcommand("track", "Tracks of any receiver or phone, and logs");
    group->fallthrough()->require_subcommand(1);
    auto arguments = std::make_shared<LogArguments>();
    auto folder = std::make_shared<std::string>();
    auto paths = std::make_shared<std::vector<std::string>>();
    const auto addOptions = [&](CLI::App& command) {
        command.add_option("FILE", *paths, "Tracks and logs (" + LogExtensions(", ") + ", and what gpsbabel reads)")
            ->required();
        command.add_option("--time-zone", arguments->TimeZone,
                           "The zone of the times that runs get, \"Europe/Berlin\"; this computer's at first");
        command
            .add_option("--cut", arguments->CutSeconds, "A new run begins after a gap of so many seconds; 300 at first")
            ->transform(WholeNumber())
            ->check(CLI::NonNegativeNumber);
    };
    const auto each = [=](auto action) {
        return [=](CommandContext& context) {
            return DoEach(context, *paths, [&](CommandContext& its, const std::string& file) {
                LogArguments of = *arguments;
                of.Path = file;
                return action(its, of);
            });
        };
    };
    addOptions(AddCommand(*group, chosen, "show", "The runs that a file would give, and what is to be looked at",
                          each(ShowTracks)));
    CLI::App& convert = AddCommand(
        *group, chosen, "convert", "Make a run file of every run",
        each([=](CommandContext& context, const LogArguments& of) { return ConvertLog(context, of, *folder, false); }));
    addOptions(convert);
    convert.add_option("--to", *folder, "The folder for the run files")->required();
}

void AddLogCommands(CLI::App& program, CommandAction& chosen) {
    CLI::App* group = program.add_subcommand("log", "The log of a GPS or OBD logger");
    group->fallthrough()->require_subcommand(1);

    auto isSigned = std::make_shared<bool>(false);
    auto folder = std::make_shared<std::string>();
    auto withRows = std::make_shared<bool>(false);
    auto gaps = std::make_shared<std::string>();
    auto paths = std::make_shared<std::vector<std::string>>();
    const std::string fileHelp = "Logs (" + LogExtensions(", ") + ")";
    const auto addSigned = [&](CLI::App& command) {
        command.add_flag("--signed", *isSigned,
                         "The logger writes signs: positions stay as read, longitudes are not taken for western ones");
    };
    CLI::App& show = AddCommand(*group, chosen, "show", "What a log holds", [=](CommandContext& context) {
        return DoEach(context, *paths, [&](CommandContext& each, const std::string& file) {
            return ShowLog(each, {file, *isSigned}, *withRows);
        });
    });
    show.add_option("FILE", *paths, fileHelp)->required();
    addSigned(show);
    show.add_flag("--rows", *withRows, "Its rows too, in order and with their times repaired");

    CLI::App& convert =
        AddCommand(*group, chosen, "convert", "Make a run file of every run", [=](CommandContext& context) {
            return DoEach(context, *paths, [&](CommandContext& each, const std::string& file) {
                return ConvertLog(each, {file, *isSigned}, *folder, !gaps->empty());
            });
        });
    convert.add_option("FILE", *paths, fileHelp)->required();
    addSigned(convert);
    convert.add_option("--to", *folder, "The folder for the run files")->required();
    convert
        .add_option("--gaps", *gaps,
                    "speed: fill every gap in a line between the speeds beside it, not as standing or by position")
        ->check(CLI::IsMember({"speed"}, CLI::ignore_case));
}

}  // namespace vantor
