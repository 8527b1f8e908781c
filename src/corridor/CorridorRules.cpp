#include "corridor/CorridorRules.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_set>
#include <vector>

#include "core/Paths.h"
#include "core/Position.h"
#include "core/RunRecords.h"
#include "core/StudyOptions.h"
#include "core/Text.h"

namespace vantor {
namespace {

constexpr double LongestFeet = 5280.0 * 1000;
constexpr double LongestBandFeet = 52800;
constexpr int FastestMph = 200;
constexpr double LongestCycle = 3600;
constexpr int DayMinutes = 24 * 60;

/// False for what is no number, too.
bool IsWithin(double value, double least, double most) { return value >= least && value <= most; }

bool IsControl(char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < 32 || code == 127;
}

bool IsName(const std::string& name) {
    return !Trim(name).empty() && CharactersIn(name) <= CorridorNameWidth && std::ranges::none_of(name, IsControl);
}

std::string NodeTitle(const Corridor& corridor, std::size_t node) {
    return "node " + std::to_string(node + 1) + " (\"" + Printable(corridor.Nodes[node].Name) + "\")";
}

std::string BandProblem(const Band& band) {
    const bool isBand = IsWithin(band.UpstreamFt, 0, LongestBandFeet) &&
                        IsWithin(band.DownstreamFt, 0, LongestBandFeet) && band.UpstreamFt + band.DownstreamFt > 0;
    return isBand ? std::string() : "must reach from 0 to 52,800 ft before and behind it, and not be empty.";
}

/// What it has that cannot be.
std::string TimingProblem(const SignalTiming& timing) {
    if (!(timing.CycleSeconds > 0) || timing.CycleSeconds > LongestCycle)
        return "a cycle that is not above 0 and at most 3,600 seconds.";
    if (!(timing.GreenStartSeconds >= 0) || timing.GreenStartSeconds >= timing.CycleSeconds)
        return "a green that does not start within its cycle: it must be 0 or more, and less than the cycle.";
    if (!(timing.GreenSeconds > 0) || timing.GreenSeconds > timing.CycleSeconds)
        return "a green that is not above 0 and at most as long as the cycle.";
    return {};
}

std::string NodeProblem(const CorridorNode& node) {
    if (!IsName(node.Name)) return "needs a name of 1 to 64 characters.";
    if (node.At && PositionFrom(node.At->Latitude, node.At->Longitude) != node.At)
        return "lies at no place on the earth: its longitude must lie between -180 and 180 degrees, its latitude "
               "between -90 and 90, and 0, 0 is a receiver without a fix.";
    if (!IsWithin(node.DistanceFt, -LongestFeet, LongestFeet))
        return "has a distance that is not within 1,000 miles of the first node.";
    if (const std::string problem = BandProblem(node.Around); !problem.empty()) return "has a band that " + problem;
    if (node.SpeedLimitMph && !IsWithin(*node.SpeedLimitMph, 1, FastestMph))
        return "has a speed limit that does not lie between 1 and 200 MPH.";
    for (std::size_t i = 0; i < node.Timings.size(); ++i)
        if (const std::string problem = TimingProblem(node.Timings[i]); !problem.empty())
            return "has in its timing " + std::to_string(i + 1) + " " + problem;
    return {};
}

std::string NodesProblem(const Corridor& corridor) {
    if (corridor.Nodes.size() > MostNodes)
        return "The corridor has " + std::to_string(corridor.Nodes.size()) +
               " nodes; a run names at most 188. Divide it into two.";
    for (std::size_t i = 0; i < corridor.Nodes.size(); ++i) {
        if (const std::string problem = NodeProblem(corridor.Nodes[i]); !problem.empty())
            return "The " + NodeTitle(corridor, i) + " " + problem;
        if (i > 0 && !(corridor.Nodes[i].DistanceFt > corridor.Nodes[i - 1].DistanceFt))
            return "The " + NodeTitle(corridor, i) + " is not farther along than the " + NodeTitle(corridor, i - 1) +
                   ". Put the nodes in the order of the street, and correct their distances.";
    }
    return {};
}

std::string LineProblem(const std::vector<Position>& line) {
    if (line.size() > MostLinePoints)
        return "The alignment has " + std::to_string(line.size()) + " points; at most 20,000 can be used. Simplify it.";
    for (std::size_t i = 0; i < line.size(); ++i)
        if (PositionFrom(line[i].Latitude, line[i].Longitude) != line[i])
            return "Point " + std::to_string(i + 1) + " of the alignment lies at no place on the earth.";
    return {};
}

std::string DirectionsProblem(const Corridor& corridor) {
    for (const CorridorDirection& direction : corridor.Directions) {
        if (!IsName(direction.Name)) return "Each direction needs a name of 1 to 64 characters.";
        if (direction.IdealSpeedMph && !IsWithin(*direction.IdealSpeedMph, 1, FastestMph))
            return "The ideal speed of " + Printable(direction.Name) + " must lie between 1 and 200 MPH.";
    }
    if (EqualIgnoringCase(corridor.Of(Way::Forward).Name, corridor.Of(Way::Back).Name))
        return "Both directions are called \"" + Printable(corridor.Of(Way::Back).Name) + "\". Give one another name.";
    return {};
}

std::string PeriodsProblem(const std::vector<CorridorPeriod>& periods) {
    std::unordered_set<std::string> names;
    for (const CorridorPeriod& period : periods) {
        if (!IsName(period.Name)) return "Each period needs a name of 1 to 64 characters.";
        if (!IsWithin(period.From, 0, DayMinutes - 1) || !IsWithin(period.To, 0, DayMinutes - 1))
            return "The period " + Printable(period.Name) + " must begin and end between 00:00 and 24:00.";
        if (!names.insert(FoldCase(period.Name)).second)
            return "Two periods are called \"" + Printable(period.Name) + "\". Give one another name.";
    }
    return {};
}

/// `own` are in the order of their nodes.
template <class Own>
std::string OwnProblem(const std::vector<Own>& own, std::size_t nodes) {
    for (std::size_t i = 0; i < own.size(); ++i) {
        if (own[i].Node >= nodes)
            return "has facts of its own for node " + std::to_string(own[i].Node + 1) + ", and the corridor has " +
                   std::to_string(nodes) + " nodes.";
        if (i > 0 && own[i].Node <= own[i - 1].Node)
            return "has facts of its own for node " + std::to_string(own[i].Node + 1) +
                   " twice, or behind those of a later node.";
    }
    return {};
}

std::string RunProblem(const CorridorRun& run, std::size_t nodes) {
    if (!IsSafeName(run.Group)) return "lies in a Study Group of a name that no folder can have.";
    if (!IsSafeName(run.Name)) return "has a name that no file can have.";
    if (std::string problem = OwnProblem(run.OwnBands, nodes); !problem.empty()) return problem;
    if (std::string problem = OwnProblem(run.SetNodes, nodes); !problem.empty()) return problem;
    for (const OwnBand& own : run.OwnBands)
        if (const std::string problem = BandProblem(own.Around); !problem.empty())
            return "has a band of its own around node " + std::to_string(own.Node + 1) + " that " + problem;
    if (std::ranges::any_of(run.SetNodes, [](const SetNode& set) { return set.Sample < 0; }))
        return "has a node at a second below 0.";
    if (run.Source && run.Source->File.find_first_of(std::string("/") + PathSeparator) != std::string::npos)
        return "was cut from a track whose name has a folder in it.";
    return {};
}

std::string RunsProblem(const Corridor& corridor) {
    std::unordered_set<std::string> names;
    for (const CorridorRun& run : corridor.Runs) {
        const std::string title = "The run \"" + Printable(run.Name) + "\" of \"" + Printable(run.Group) + "\" ";
        if (const std::string problem = RunProblem(run, corridor.Nodes.size()); !problem.empty())
            return title + problem;
        if (!names.insert(FoldCase(run.Group) + "\n" + FoldCase(run.Name)).second)
            return title + "stands there twice. Take one of the two out.";
    }
    return {};
}

}  // namespace

std::string ProblemOf(const Corridor& corridor) {
    if (std::string problem = NodesProblem(corridor); !problem.empty()) return problem;
    if (std::string problem = LineProblem(corridor.Alignment); !problem.empty()) return problem;
    if (std::string problem = DirectionsProblem(corridor); !problem.empty()) return problem;
    if (std::string problem = PeriodsProblem(corridor.Periods); !problem.empty()) return problem;
    if (!IsWithin(corridor.Matching.ToleranceFt, 1, 5280)) return "The tolerance must lie between 1 and 5,280 ft.";
    if (!IsWithin(corridor.Matching.LeadFt, 0, LongestBandFeet))
        return "What a run has before its first band must lie between 0 and 52,800 ft.";
    if (std::string problem = ProblemOf(corridor.Options); !problem.empty()) return problem;
    return RunsProblem(corridor);
}

std::string CorridorNameProblem(std::string_view name) { return NameProblem(name, RunNameWidth); }

}  // namespace vantor
