#include "statistics/Comparison.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numeric>

#include "statistics/Distributions.h"
#include "statistics/Summary.h"

namespace vantor {
namespace {

/// The values of both groups in order, with twice their mid-ranks, which are whole numbers.
class JointRanks {
public:
    JointRanks(std::span<const double> before, std::span<const double> after) {
        std::vector<std::pair<double, bool>> values;  // and whether it is of the group before
        values.reserve(before.size() + after.size());
        for (const double value : before) values.emplace_back(value, true);
        for (const double value : after) values.emplace_back(value, false);
        std::ranges::sort(values);
        for (std::size_t first = 0; first < values.size();) {
            std::size_t end = first;
            while (end < values.size() && values[end].first == values[first].first) ++end;
            const auto rank = static_cast<int>(first + 1 + end);  // twice the mean of first + 1 to end
            const auto ties = static_cast<double>(end - first);
            tieSum_ += ties * ties * ties - ties;
            for (; first < end; ++first) {
                doubled_.push_back(rank);
                if (values[first].second) sumBefore_ += rank;
            }
        }
    }

    /// Twice the sum of the ranks before.
    std::int64_t SumBefore() const { return sumBefore_; }
    /// The sum of t^3 - t over the series of equal values.
    double TieSum() const { return tieSum_; }

    /// The smaller tail of the rank sum before among all divisions of the ranks into groups of these sizes, doubled.
    double ExactP(std::size_t sizeBefore) const {
        const auto total = std::accumulate(doubled_.begin(), doubled_.end(), std::size_t{0});
        // ways[k][s]: choices of k ranks with the doubled sum s; the counts stay below 2^53.
        std::vector<std::vector<double>> ways(sizeBefore + 1, std::vector<double>(total + 1));
        ways[0][0] = 1;
        std::size_t taken = 0;
        std::size_t most = 0;
        for (const int rank : doubled_) {
            most += static_cast<std::size_t>(rank);
            ++taken;
            for (std::size_t k = std::min(taken, sizeBefore); k > 0; --k)
                for (std::size_t sum = most; sum >= static_cast<std::size_t>(rank); --sum)
                    ways[k][sum] += ways[k - 1][sum - static_cast<std::size_t>(rank)];
        }
        const auto& counts = ways[sizeBefore];
        const double all = std::accumulate(counts.begin(), counts.end(), 0.0);
        const auto at = counts.begin() + sumBefore_;
        const double lower = std::accumulate(counts.begin(), at + 1, 0.0);
        const double upper = std::accumulate(at, counts.end(), 0.0);
        return std::min(1.0, 2 * std::min(lower, upper) / all);
    }

private:
    std::vector<int> doubled_;
    std::int64_t sumBefore_ = 0;
    double tieSum_ = 0;
};

double LargeP(double uBefore, double sizeBefore, double sizeAfter, double tieSum) {
    const double n = sizeBefore + sizeAfter;
    const double variance = sizeBefore * sizeAfter / 12 * (n + 1 - tieSum / (n * (n - 1)));
    const double distance = std::abs(uBefore - sizeBefore * sizeAfter / 2) - 0.5;
    if (variance <= 0 || distance <= 0) return 1;
    return std::min(1.0, 2 * NormalUpperTail(distance / std::sqrt(variance)));
}

/// The differences after - before of all pairs, in their order without making them: there may be a million.
class PairDifferences {
public:
    PairDifferences(std::span<const double> before, std::span<const double> after)
        : before_(before.begin(), before.end()), after_(after.begin(), after.end()) {
        std::ranges::sort(before_);
        std::ranges::sort(after_);
    }

    double Median() const {
        const std::size_t pairs = before_.size() * after_.size();
        const double upper = Ordered(pairs / 2);
        return pairs % 2 == 1 ? upper : (Ordered(pairs / 2 - 1) + upper) / 2;
    }

private:
    static constexpr std::uint64_t SignBit = 0x8000000000000000U;
    /// Doubles as whole numbers in the same order, and back.
    static std::int64_t KeyOf(double value) {
        const auto bits = std::bit_cast<std::int64_t>(value + 0.0);
        return bits < 0 ? static_cast<std::int64_t>(SignBit - static_cast<std::uint64_t>(bits)) : bits;
    }
    static double ValueOf(std::int64_t key) {
        return std::bit_cast<double>(key < 0 ? static_cast<std::int64_t>(SignBit - static_cast<std::uint64_t>(key))
                                             : key);
    }

    /// Pairs with a difference of at most `limit`.
    std::size_t UpTo(double limit) const {
        std::size_t count = 0;
        std::size_t end = 0;  // of the after values that are small enough for this before value
        for (const double before : before_) {
            while (end < after_.size() && after_[end] - before <= limit) ++end;
            count += end;
        }
        return count;
    }

    /// The difference of that place, from 0: the least value that more than so many pairs do not exceed.
    double Ordered(std::size_t place) const {
        std::int64_t low = KeyOf(after_.front() - before_.back());
        std::int64_t high = KeyOf(after_.back() - before_.front());
        while (low < high) {
            const std::int64_t middle = std::midpoint(low, high);  // towards low
            if (UpTo(ValueOf(middle)) > place)
                high = middle;
            else
                low = middle + 1;
        }
        return ValueOf(low);
    }

    std::vector<double> before_;
    std::vector<double> after_;
};

/// 2 / C(before + after, before); nothing where that is too small for a number.
std::optional<double> SmallestPOf(double before, double after) {
    const double p = 2 * std::exp(std::lgamma(before + 1) + std::lgamma(after + 1) - std::lgamma(before + after + 1));
    if (p <= 0) return std::nullopt;
    return std::min(1.0, p);
}

}  // namespace

WelchTest Welch(std::span<const double> before, std::span<const double> after, double confidence) {
    const Summary left = Summarise(before, confidence);
    const Summary right = Summarise(after, confidence);
    WelchTest test;
    test.NBefore = left.N;
    test.NAfter = right.N;
    test.MeanBefore = left.Mean;
    test.MeanAfter = right.Mean;
    if (!left.Mean || !right.Mean) return test;
    const double difference = *right.Mean - *left.Mean;
    test.Difference = difference;
    if (*left.Mean > 0) test.Percent = 100 * difference / *left.Mean;
    if (!left.Se || !right.Se) return test;
    const double leftSquare = *left.Se * *left.Se;
    const double rightSquare = *right.Se * *right.Se;
    const double se = std::sqrt(leftSquare + rightSquare);
    test.Se = se;
    if (se == 0) return test;
    const double df = (leftSquare + rightSquare) * (leftSquare + rightSquare) /
                      (leftSquare * leftSquare / (left.N - 1) + rightSquare * rightSquare / (right.N - 1));
    test.Df = df;
    test.T = difference / se;
    test.P = StudentTwoSided(*test.T, df);
    const double half = StudentOfConfidence(confidence, df) * se;
    test.Low = difference - half;
    test.High = difference + half;
    return test;
}

MannWhitneyTest MannWhitney(std::span<const double> before, std::span<const double> after) {
    MannWhitneyTest test;
    if (before.empty() || after.empty()) return test;
    const JointRanks ranks(before, after);
    const auto nBefore = static_cast<double>(before.size());
    const auto nAfter = static_cast<double>(after.size());
    const double uBefore = static_cast<double>(ranks.SumBefore()) / 2 - nBefore * (nBefore + 1) / 2;
    test.UBefore = uBefore;
    test.UAfter = nBefore * nAfter - uBefore;
    test.Exact = before.size() + after.size() <= MostForExact;
    test.Shift = PairDifferences(before, after).Median();
    test.SmallestP = SmallestPOf(nBefore, nAfter);
    if (before.size() < 2 || after.size() < 2) return test;
    test.P = test.Exact ? ranks.ExactP(before.size()) : LargeP(uBefore, nBefore, nAfter, ranks.TieSum());
    return test;
}

std::vector<std::optional<double>> HolmAdjusted(std::span<const std::optional<double>> p) {
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < p.size(); ++i)
        if (p[i]) order.push_back(i);
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return *p[i]; });
    std::vector<std::optional<double>> adjusted(p.size());
    double least = 0;
    for (std::size_t i = 0; i < order.size(); ++i) {
        least = std::max(least, std::min(1.0, *p[order[i]] * static_cast<double>(order.size() - i)));
        adjusted[order[i]] = least;
    }
    return adjusted;
}

Comparison Compare(std::span<const double> before, std::span<const double> after, double confidence) {
    Comparison comparison{vantor::Welch(before, after, confidence), MannWhitney(before, after), {}, {}};
    const Summary left = Summarise(before, confidence);
    const Summary right = Summarise(after, confidence);
    if (left.Sd && right.Sd) {
        const double squares = *left.Sd * *left.Sd * (left.N - 1) + *right.Sd * *right.Sd * (right.N - 1);
        comparison.Sd = std::sqrt(squares / (left.N + right.N - 2));
    }
    return comparison;
}

}  // namespace vantor
