#include "statistics/Distributions.h"

#include <boost/math/distributions/binomial.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>
#include <cmath>

namespace vantor {
namespace {

namespace math = boost::math;
using Policy = math::policies::policy<math::policies::promote_double<false>>;

}  // namespace

double AlphaOf(double confidence) { return (100 - confidence) / 100; }

double StudentQuantile(double part, double degrees) {
    return math::quantile(math::students_t_distribution<double, Policy>(degrees), part);
}

double StudentOfConfidence(double confidence, double degrees) {
    // From the upper tail, where the numbers are exact.
    const math::students_t_distribution<double, Policy> student(degrees);
    return math::quantile(math::complement(student, AlphaOf(confidence) / 2));
}

double StudentTwoSided(double t, double degrees) {
    const math::students_t_distribution<double, Policy> student(degrees);
    return 2 * math::cdf(math::complement(student, std::abs(t)));
}

double NormalUpperTail(double z) { return math::cdf(math::complement(math::normal_distribution<double, Policy>(), z)); }

double EvenBinomialUpTo(int successes, int trials) {
    if (successes < 0) return 0;
    return math::cdf(math::binomial_distribution<double, Policy>(trials, 0.5), successes);
}

}  // namespace vantor
