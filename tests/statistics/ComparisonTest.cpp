#include "statistics/Comparison.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "statistics/Summary.h"

namespace vantor {
namespace {

using testing::DoubleNear, testing::Optional;
using Values = std::vector<double>;

const Values Before = {203, 211, 198, 224, 207, 215};
const Values After = {189, 195, 201, 184, 192, 186};

auto About(double value, double error) { return Optional(DoubleNear(value, error)); }

TEST(Comparison, Welch) {
    const WelchTest test = Welch(Before, After, 95);
    EXPECT_THAT(test.Difference, About(-18.5, 1e-9));
    EXPECT_THAT(test.T, About(-4.0755, 0.00005));
    EXPECT_THAT(test.Df, About(8.798, 0.0005));
    EXPECT_THAT(test.P, About(0.00291, 0.000005));
    EXPECT_THAT(test.Low, About(-28.8, 0.05));
    EXPECT_THAT(test.High, About(-8.2, 0.05));
    // The sleep data that R's manual tests; extra hours of two drugs.
    const WelchTest sleep = Welch(Values{1.9, 0.8, 1.1, 0.1, -0.1, 4.4, 5.5, 1.6, 4.6, 3.4},
                                  Values{0.7, -1.6, -0.2, -1.2, -0.1, 3.4, 3.7, 0.8, 0.0, 2.0}, 95);
    EXPECT_THAT(sleep.P, About(0.07939, 0.000005));
    EXPECT_THAT(sleep.Low, About(-3.365, 0.0005));
}

TEST(Comparison, WithoutScatterOrRunsThereIsNoTest) {
    const Comparison single = Compare(Values{5}, Values{7, 8}, 95);
    EXPECT_THAT(single.Welch.Difference, Optional(2.5));
    EXPECT_THAT(single.Welch.Percent, Optional(50.0));
    EXPECT_FALSE(single.Welch.Se || single.Welch.P || single.Welch.Low || single.Ranks.P);
    EXPECT_FALSE(Compare(Values{5, 5}, Values{7, 7}, 95).Welch.P);
    EXPECT_FALSE(Compare(Values{}, Values{7, 7}, 95).Welch.Difference);
    EXPECT_EQ(Compare(Values{}, Values{}, 95).Ranks, MannWhitneyTest());
    EXPECT_FALSE(Welch(Values{-1, 1}, Values{1, 2}, 95).Percent);
}

TEST(Comparison, AGroupAgainstItselfIsNoDifference) {
    for (const auto& group : {Before, After, Values{1, 1, 2}, Values(4, 3)}) {
        const Comparison same = Compare(group, group, 95);
        if (same.Welch.P) {
            EXPECT_THAT(same.Welch.P, About(1, 1e-12));
        }
        EXPECT_THAT(same.Ranks.P, Optional(1.0));
        EXPECT_THAT(same.Ranks.Shift, Optional(0.0));
    }
    EXPECT_THAT(MannWhitney(Values(40, 2), Values(40, 2)).P, Optional(1.0)) << "by the normal distribution";
}

/// The two-sided p by going through all divisions of the values into groups of these sizes.
double EnumeratedP(const Values& before, const Values& after) {
    Values all = before;
    all.insert(all.end(), after.begin(), after.end());
    const auto rank = [&](double value) {
        return static_cast<double>(std::ranges::count_if(all, [&](double each) { return each < value; })) +
               static_cast<double>(std::ranges::count(all, value) + 1) / 2;
    };
    double sum = 0;
    for (const double value : before) sum += rank(value);
    std::vector<int> isBefore(all.size());
    std::fill_n(isBefore.rbegin(), before.size(), 1);
    int lower = 0, upper = 0, count = 0;
    do {
        double other = 0;
        for (std::size_t i = 0; i < all.size(); ++i) other += isBefore[i] * rank(all[i]);
        lower += other <= sum;
        upper += other >= sum;
        ++count;
    } while (std::ranges::next_permutation(isBefore).found);
    return std::min(1.0, 2.0 * std::min(lower, upper) / count);
}

TEST(Comparison, RanksAreCountedOut) {
    const MannWhitneyTest test = MannWhitney(Before, After);
    EXPECT_EQ(std::pair(test.UBefore, test.UAfter), std::pair(std::optional(35.0), std::optional(1.0)));
    EXPECT_THAT(test.P, About(0.00433, 0.000005));
    EXPECT_THAT(test.Shift, Optional(-18.5));
    EXPECT_TRUE(test.Exact);
    EXPECT_THAT(MannWhitney(Values{1, 2, 3}, Values{4, 5, 6}).SmallestP, About(0.1, 1e-12));
    EXPECT_THAT(MannWhitney(Values{1, 2, 3, 4}, Values{5, 6, 7, 8}).SmallestP, About(2.0 / 70, 1e-12));
    const std::pair<Values, Values> cases[] = {{{1, 2, 2, 3}, {2, 3, 4, 4, 5}},
                                               {{7, 7, 7}, {7, 7, 8, 1}},
                                               {{-4, 0.5, 3}, {0.25, 0.5, 9, 11, -7}},
                                               {Before, {198, 198, 203, 215}}};
    for (const auto& [before, after] : cases) {
        EXPECT_THAT(MannWhitney(before, after).P, About(EnumeratedP(before, after), 1e-12));
        Values differences;
        for (const double left : before)
            for (const double right : after) differences.push_back(right - left);
        EXPECT_EQ(MannWhitney(before, after).Shift, Summarise(differences, 95).Median);
    }
    // A published critical value: five and five with a rank sum of 18.
    EXPECT_THAT(MannWhitney(Values{1, 2, 3, 4, 8}, Values{5, 6, 7, 9, 10}).P, About(0.0556, 0.00005));
}

TEST(Comparison, ManyRanksAreThoseOfTheNormalDistribution) {
    // By hand: U of 6 + 45 runs that all lie apart is 0; mean 135, variance 6 * 45 * 52 / 12 = 1170; z = 134.5
    // / 34.205.
    Values many(45);
    for (int i = 0; i < 45; ++i) many[static_cast<std::size_t>(i)] = 10 + i;
    const MannWhitneyTest test = MannWhitney(Values{1, 2, 3, 4, 5, 6}, many);
    EXPECT_THAT(test.P, About(8.4192e-5, 5e-9));
    EXPECT_FALSE(test.Exact);
}

TEST(Comparison, HolmTakesTheSmallestTimesTheirNumber) {
    using P = std::optional<double>;
    const std::vector<P> p = {0.01, P(), 0.04, 0.03, 0.9};
    const auto adjusted = HolmAdjusted(p);
    EXPECT_THAT(adjusted[0], About(0.04, 1e-12));
    EXPECT_EQ(adjusted[1], std::nullopt);
    EXPECT_THAT(adjusted[2], About(0.09, 1e-12)) << "never below the one before";
    EXPECT_THAT(adjusted[3], About(0.09, 1e-12));
    EXPECT_THAT(adjusted[4], About(0.9, 1e-12));
    EXPECT_THAT(HolmAdjusted(std::vector<P>{0.6, 0.7})[0], Optional(1.0));
}

}  // namespace
}  // namespace vantor
