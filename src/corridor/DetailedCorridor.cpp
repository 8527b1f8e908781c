#include "corridor/DetailedCorridor.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "core/RunFile.h"
#include "core/Text.h"
#include "core/TwoThreads.h"
#include "corridor/CorridorLine.h"
#include "corridor/SignalArrivals.h"

namespace vantor {
namespace {

constexpr std::size_t LeastNodes = 2;  // without a section there is nothing to tell

/// What the delays of runs that are matched hang on, and nothing else of the corridor.
Corridor WithBandsAlone(const Corridor& corridor) {
    Corridor bands;
    bands.BandsMayOverlap = corridor.BandsMayOverlap;
    bands.Directions = corridor.Directions;
    for (const CorridorNode& node : corridor.Nodes) bands.Nodes.emplace_back().Around = node.Around;
    return bands;
}

/// What the matching of runs hangs on, and nothing else of the corridor.
Corridor WithoutBands(Corridor corridor) {
    corridor.Runs.clear();
    corridor.BandsMayOverlap = false;
    corridor.OtherFacts.clear();
    for (CorridorDirection& direction : corridor.Directions) direction.IdealSpeedMph.reset();
    StatisticsOptions options;
    options.Stops = corridor.Options.Stops;
    corridor.Options = options;
    for (CorridorNode& node : corridor.Nodes) {
        CorridorNode kept;
        kept.Name = node.Name;
        kept.At = node.At;
        kept.DistanceFt = node.DistanceFt;
        node = std::move(kept);
    }
    return corridor;
}

std::string KeyOf(const CorridorRun& run) { return FoldCase(run.Group) + '/' + FoldCase(run.Name); }

/// Brings the runs of one corridor to those of the next.
class RunsAgain {
public:
    RunsAgain(const DetailedCorridor& before, const Corridor& now, const FileSystem& files,
              const std::string& groupRoot, const AppSettings& settings)
        : before_(before), now_(now), files_(files), groupRoot_(groupRoot), settings_(settings) {
        for (std::size_t i = 0; i < before.Runs.size(); ++i) known_.emplace(KeyOf(before.Of.Runs[i]), i);
        line_ = CorridorLine::Of(now);
        isMatched_ = WithoutBands(before.Of) == WithoutBands(now);
        isMeasured_ = WithBandsAlone(before.Of) == WithBandsAlone(now);
    }

    MatchedRun Make(std::size_t index) const {
        const CorridorRun& as = now_.Runs[index];
        const CorridorLine* line = line_ ? &*line_ : nullptr;
        const auto known = known_.find(KeyOf(as));
        MatchedRun run;
        if (known == known_.end()) {
            run.Index = index;
            run.Read = std::make_shared<RunReading>(ReadRun(files_, FolderOf(as, groupRoot_), as.Name, RunPart::Whole));
            return MatchAgain(std::move(run), now_, line, settings_);
        }
        run = before_.Runs[known->second];
        const bool isSame = run.Index == index && before_.Of.Runs[known->second] == as;
        run.Index = index;
        if (!isMatched_ || !isSame) return MatchAgain(std::move(run), now_, line, settings_);
        if (!isMeasured_) DelayAgain(run, now_, settings_);
        return run;
    }

private:
    const DetailedCorridor& before_;
    const Corridor& now_;
    const FileSystem& files_;
    const std::string& groupRoot_;
    const AppSettings& settings_;
    std::map<std::string, std::size_t> known_;
    std::optional<CorridorLine> line_;
    bool isMatched_ = false;
    bool isMeasured_ = false;
};

/// False when it was stopped.
bool MakeRuns(const RunsAgain& again, std::vector<MatchedRun>& runs, const Progress& progress) {
    std::atomic<std::size_t> next{0};
    std::atomic<bool> isStopped{false};
    const auto work = [&](bool tells) {
        for (std::size_t i = next++; i < runs.size() && !isStopped; i = next++) {
            if (tells && !progress(i, runs.size()))
                isStopped = true;
            else
                runs[i] = again.Make(i);
        }
    };
    OnTwoThreads(
        runs.size(), [&] { work(true); }, [&] { work(false); });
    return !isStopped;
}

}  // namespace

const NodeFigures* DetailedCorridor::FiguresAt(int row, int column) const {
    const auto rows = RowsOf(Of, Findings);
    const int node = column - FirstNodeColumn;
    if (row < 0 || row >= static_cast<int>(rows.size()) || node < 0 || node >= static_cast<int>(Of.Nodes.size()))
        return nullptr;
    const FindingsRow& chosen = rows[static_cast<std::size_t>(row)];
    const auto& nodes = chosen.Results->Of(chosen.Along).Nodes;
    return &*std::ranges::find(nodes, static_cast<std::size_t>(node), &NodeFigures::Node);
}

DetailedCorridor DetailCorridor(const DetailedCorridor& before, const Corridor& now, const CorridorFilter& filter,
                                const FileSystem& files, const std::string& groupRoot, const AppSettings& settings,
                                const Progress& progress) {
    DetailedCorridor made;
    made.Of = now;
    made.Filter = filter;
    made.Runs.resize(now.Runs.size());
    made.IsWhole = MakeRuns(RunsAgain(before, now, files, groupRoot, settings), made.Runs, progress);
    if (!made.IsWhole) return made;
    const Units units = UnitsOf(settings);
    made.Periods = PeriodsOf(made.Runs);
    if (now.Nodes.size() < LeastNodes) return made;
    made.Findings = FindingsOf(now, made.Runs, filter);
    made.Delays = DelayTable(now, made.Findings, units);
    made.Sections = CorridorSectionsTable(now, made.Findings, units);
    made.Compared = CorridorComparedTable(now, made.Findings.All, units);
    made.Arrivals = ArrivalsTable(now, made.Runs, made.Findings);
    made.Sentences = ComparedSentences(now, made.Findings.All, units);
    return made;
}

std::string StateOf(const CorridorRun& as, const MatchedRun& run) {
    if (!run.IsThere()) return "not read";
    if (!as.SetAside.empty()) return "set aside";
    return std::ranges::all_of(run.Delays, &NodeDelay::HasFigure) ? "ok" : "gap";
}

}  // namespace vantor
