#include "gpsobd/LogProblems.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>

#include "core/Numeric.h"
#include "core/Position.h"
#include "gpsobd/LogGaps.h"

namespace vantor {
namespace {

using Kind = LogProblem::Kind;

constexpr double FastestChange = 15;       // mph a second
constexpr double ShortestJump = 100;       // feet
constexpr double FastestWithoutOne = 100;  // mph, where no speed is logged

/// What came of a run so far.
struct Before {
    std::size_t Row = 0;
    RunPoint Point;
    std::optional<RunPoint> WithSpeed;
};

/// Two rows of one second are held to be a second apart.
double SecondsBetween(const RunPoint& from, const RunPoint& to) {
    return static_cast<double>(std::max<std::int64_t>(to.Second - from.Second, 1));
}

std::optional<double> SpikeAt(const RunPoint& point, const RunPoint& before) {
    const double seconds = SecondsBetween(before, point);
    const double change = std::fabs(static_cast<double>(point.Speed) - static_cast<double>(before.Speed)) / seconds;
    if (seconds >= static_cast<double>(ShortestGap) || change <= FastestChange) return std::nullopt;
    return change;
}

std::optional<double> JumpTo(const RunPoint& point, const RunPoint& before) {
    const auto from = PositionOf(before);
    const auto to = PositionOf(point);
    if (!from || !to) return std::nullopt;
    const double seconds = SecondsBetween(before, point);
    double fastest = HasSpeed(point) || HasSpeed(before) ? 0 : FastestWithoutOne;
    for (const RunPoint& end : {before, point})
        if (HasSpeed(end)) fastest = std::max(fastest, static_cast<double>(end.Speed));
    const double feet = FeetBetween(*from, *to);
    const double most = (fastest + FastestChange * seconds) * FeetPerSecondOfMph * seconds;
    if (feet <= ShortestJump || feet <= most) return std::nullopt;
    return feet;
}

void AddProblems(std::size_t row, const RunPoint& point, const Before* before, std::vector<LogProblem>& problems) {
    if (!HasSpeed(point)) problems.push_back({row, Kind::NoSpeed, 0});
    if (before == nullptr) return;
    if (HasSpeed(point) && before->WithSpeed)
        if (const auto change = SpikeAt(point, *before->WithSpeed)) problems.push_back({row, Kind::Spike, *change});
    const std::int64_t seconds = point.Second - before->Point.Second;
    if (seconds >= ShortestGap)
        problems.push_back({before->Row, Kind::Gap, static_cast<double>(seconds)});
    else if (const auto feet = JumpTo(point, before->Point))
        problems.push_back({row, Kind::Jump, *feet});
}

std::string TextOf(const LogProblem& problem, const Units& units) {
    switch (problem.What) {
        case Kind::NoSpeed: return "no speed";
        case Kind::Spike: return "the speed changes by " + units.SpeedText(problem.Size) + " a second";
        case Kind::Gap: return FixedDecimals(problem.Size, 0) + " s without rows behind it";
        case Kind::Jump: break;
    }
    return "its position is " + units.LengthText(problem.Size) + " from the row before, farther than it was driven";
}

}  // namespace

std::vector<LogProblem> FindProblems(std::span<const RunPoint> rows) {
    std::vector<LogProblem> problems;
    std::map<std::int16_t, Before> runs;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const RunPoint& point = rows[row];
        const auto [run, isFirst] = runs.try_emplace(point.RunNumber);
        Before& before = run->second;
        AddProblems(row, point, isFirst ? nullptr : &before, problems);
        before.Row = row;
        before.Point = point;
        if (HasSpeed(point)) before.WithSpeed = point;
    }
    std::ranges::stable_sort(problems, {}, &LogProblem::Row);
    return problems;
}

std::span<const LogProblem> ProblemsOfRow(std::span<const LogProblem> problems, std::size_t row) {
    const auto first = std::ranges::lower_bound(problems, row, {}, &LogProblem::Row);
    const auto end = std::ranges::upper_bound(problems, row, {}, &LogProblem::Row);
    return {first, end};
}

std::size_t NextProblemRow(std::span<const LogProblem> problems, std::size_t row) {
    if (problems.empty()) return row;
    const auto next = std::ranges::upper_bound(problems, row, {}, &LogProblem::Row);
    return next == problems.end() ? problems.front().Row : next->Row;
}

std::size_t CountRowsOf(std::span<const LogProblem> problems) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < problems.size(); ++i)
        if (i == 0 || problems[i].Row != problems[i - 1].Row) ++count;
    return count;
}

std::string ProblemText(std::span<const LogProblem> ofRow, const Units& units) {
    std::string text;
    for (const LogProblem& problem : ofRow) text += (text.empty() ? "" : "; ") + TextOf(problem, units);
    return text;
}

}  // namespace vantor
