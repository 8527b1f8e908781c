#pragma once

namespace vantor {

// What the rules of the statistics need of distributions; nothing else includes the library that computes them.
// A confidence is a percentage above 0 and below 100.

/// The share that lies outside a confidence: 0.05 for 95.
double AlphaOf(double confidence);

/// The value of Student's t that `part` of the distribution lies below; part above 0 and below 1, degrees above 0.
double StudentQuantile(double part, double degrees);
/// The t of a two-sided interval: 2.365 for 95 and 7 degrees of freedom.
double StudentOfConfidence(double confidence, double degrees);
/// The probability of a t at least as far from 0 on either side.
double StudentTwoSided(double t, double degrees);

/// The part of the normal distribution above z.
double NormalUpperTail(double z);

/// The probability of at most `successes` in so many even trials; 0 below none.
double EvenBinomialUpTo(int successes, int trials);

}  // namespace vantor
