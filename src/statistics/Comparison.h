#pragma once

#include <optional>
#include <span>
#include <vector>

namespace vantor {

/// Two means of groups whose scatter need not be alike (Welch). Differences are after - before.
struct WelchTest {
    int NBefore = 0;
    int NAfter = 0;
    std::optional<double> MeanBefore, MeanAfter;
    std::optional<double> Difference;
    std::optional<double> Percent;  ///< of the mean before; nothing where that is not above 0
    // Nothing with fewer than two runs in a group.
    std::optional<double> Se;
    // Nothing, too, where neither group scatters.
    std::optional<double> T, Df, P;
    std::optional<double> Low, High;  ///< of the difference

    bool operator==(const WelchTest&) const = default;
};
WelchTest Welch(std::span<const double> before, std::span<const double> after, double confidence);

/// Up to that many values together the distribution of the rank sum is counted out.
inline constexpr int MostForExact = 50;

/// The ranks of two groups (Mann-Whitney), with mid-ranks for equal values.
struct MannWhitneyTest {
    std::optional<double> UBefore, UAfter;  ///< nothing where a group is empty
    std::optional<double> P;                ///< two-sided; nothing with fewer than two runs in a group
    bool Exact = false;                     ///< else normal, corrected for ties and continuity
    std::optional<double> Shift;            ///< the median of all after - before differences (Hodges-Lehmann)
    std::optional<double> SmallestP;        ///< that groups of these sizes can give

    bool operator==(const MannWhitneyTest&) const = default;
};
MannWhitneyTest MannWhitney(std::span<const double> before, std::span<const double> after);

/// The p values adjusted for their number after Holm, in their places; those that are not there do not count.
std::vector<std::optional<double>> HolmAdjusted(std::span<const std::optional<double>> p);

/// One measure of two groups.
struct Comparison {
    WelchTest Welch;
    MannWhitneyTest Ranks;
    std::optional<double> HolmP;  ///< of Welch's p, where several places or conditions are tested beside each other
    std::optional<double> Sd;     ///< of both groups together, for what a difference takes

    bool operator==(const Comparison&) const = default;
};
Comparison Compare(std::span<const double> before, std::span<const double> after, double confidence);

}  // namespace vantor
