#include "corridor/CorridorVerify.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "core/AppSettings.h"

namespace vantor {
namespace {

using Json = nlohmann::ordered_json;

/// What of a file of figures is computed; the rest it is computed from.
constexpr std::array<const char*, 3> Computed = {"figures", "runs", "passes"};

bool AreSame(const Json& one, const Json& other) {
    if (!one.is_number() || !other.is_number()) return one == other;
    constexpr double OfSize = 1e-9;
    const auto first = one.get<double>();
    const auto second = other.get<double>();
    return std::abs(first - second) <= OfSize * std::max(std::abs(first), std::abs(second));
}

/// "control delay" of "control_delay".
std::string InWords(std::string member) {
    std::ranges::replace(member, '_', ' ');
    return member;
}

/// What an entry of a list is called: by its own name, or by its number from 1.
std::string NameOfEntry(const Json& entry, std::size_t index) {
    if (entry.is_object()) {
        for (const char* member : {"name", "run", "direction", "from"}) {
            const auto name = entry.find(member);
            if (name == entry.end() || !name->is_string()) continue;
            const auto to = entry.find("to");
            const bool isSection = to != entry.end() && to->is_string();
            return name->get<std::string>() + (isSection ? " to " + to->get<std::string>() : "");
        }
        const auto period = entry.find("period");
        if (period != entry.end() && period->is_string()) return "period \"" + period->get<std::string>() + "\"";
        if (period != entry.end()) return "all periods";
    }
    return "entry " + std::to_string(index + 1);
}

/// Walks two trees side by side.
class Comparer {
public:
    explicit Comparer(std::size_t& compared) : compared_(compared) {}

    std::optional<FiguresDifference> Compare(const Json& reported, const Json& computed) {
        if (reported.is_object() && computed.is_object()) return CompareObjects(reported, computed);
        if (reported.is_array() && computed.is_array()) return CompareLists(reported, computed);
        ++compared_;
        if (AreSame(reported, computed)) return std::nullopt;
        return Differ(&reported, &computed);
    }

private:
    std::optional<FiguresDifference> CompareObjects(const Json& reported, const Json& computed) {
        for (const auto& [member, value] : reported.items()) {
            const auto other = computed.find(member);
            if (auto found = CompareAt(InWords(member), &value, other == computed.end() ? nullptr : &*other))
                return found;
        }
        for (const auto& [member, value] : computed.items())
            if (!reported.contains(member)) return CompareAt(InWords(member), nullptr, &value);
        return std::nullopt;
    }

    std::optional<FiguresDifference> CompareLists(const Json& reported, const Json& computed) {
        for (std::size_t i = 0; i < std::max(reported.size(), computed.size()); ++i) {
            const Json* one = i < reported.size() ? &reported[i] : nullptr;
            const Json* other = i < computed.size() ? &computed[i] : nullptr;
            if (auto found = CompareAt(NameOfEntry(one != nullptr ? *one : *other, i), one, other)) return found;
        }
        return std::nullopt;
    }

    std::optional<FiguresDifference> CompareAt(const std::string& name, const Json* reported, const Json* computed) {
        place_.push_back(name);
        auto found =
            reported != nullptr && computed != nullptr ? Compare(*reported, *computed) : Differ(reported, computed);
        place_.pop_back();
        return found;
    }

    FiguresDifference Differ(const Json* reported, const Json* computed) const {
        FiguresDifference difference;
        for (const std::string& part : place_) difference.Place += (difference.Place.empty() ? "" : ", ") + part;
        constexpr auto Replace = Json::error_handler_t::replace;
        difference.Reported = reported == nullptr ? "nothing" : reported->dump(-1, ' ', false, Replace);
        difference.Computed = computed == nullptr ? "nothing" : computed->dump(-1, ' ', false, Replace);
        return difference;
    }

    std::size_t& compared_;
    std::vector<std::string> place_;
};

std::string WithoutName(const std::string& problem, const std::string& name) {
    const std::string begin = name + ": ";
    return problem.starts_with(begin) ? problem.substr(begin.size()) : problem;
}

/// Of runs in the same order, those that are not what they were.
std::vector<std::string> CausesOf(const Json& reported, const Json& computed, const ReportedCorridor& now) {
    std::vector<std::string> causes;
    for (std::size_t i = 0; i < std::min(reported.size(), computed.size()); ++i) {
        const Json& then = reported[i].is_object() ? reported[i]["movement"] : Json();
        const Json& found = computed[i].at("movement");
        if (then == found) continue;
        const CorridorRun& run = now.Of.Runs[i];
        const std::string name = run.Name + " (" + run.Group + ")";
        if (found.is_null())
            causes.push_back(name + ": it cannot be read: " + WithoutName(now.Runs[i].Problem, run.Name));
        else if (then.is_string())
            causes.push_back(name + ": its samples have changed: their hash was " + then.get<std::string>() +
                             " and is " + found.get<std::string>() + ".");
        else
            causes.push_back(name + ": it could not be read when the report was made, and can be now.");
    }
    return causes;
}

}  // namespace

std::optional<FiguresDifference> FirstDifference(const Json& reported, const Json& computed, std::size_t& compared) {
    return Comparer(compared).Compare(reported, computed);
}

Verification VerifyFigures(const FiguresFile& figures, const FileSystem& files, const std::string& groupRoot,
                           const Progress& progress) {
    Verification verification;
    MatchedRuns runs = ReadCorridorRuns(figures.Of, files, groupRoot, figures.Settings, progress);
    verification.IsWhole = runs.IsWhole;
    if (!runs.IsWhole) return verification;
    const ReportedCorridor now{figures.Of, std::move(runs.Runs), figures.Filter, groupRoot};
    const Json again = FiguresAsJson(now, FindingsByPeriod(now), figures.Settings, {});
    Json reported = Json::object();
    Json computed = Json::object();
    for (const char* member : Computed) {
        reported[member] = figures.Contents.value(member, Json::array());
        computed[member] = again.at(member);
    }
    verification.Difference = FirstDifference(reported, computed, verification.Compared);
    if (verification.Difference) verification.Causes = CausesOf(reported["runs"], computed["runs"], now);
    return verification;
}

}  // namespace vantor
