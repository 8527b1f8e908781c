#pragma once

#include <array>
#include <optional>
#include <string>

namespace vantor {

/// The error that the mean of a measure may have.
struct PermittedError {
    enum class Kind { Percent, Absolute };
    Kind Of = Kind::Percent;
    double Value = 10;  ///< percent of the mean, or in the measure's own unit; above 0

    bool operator==(const PermittedError&) const = default;
};

/// From where on a vehicle stands and moves again, for stops and stopped time of the statistics. The stop delay between
/// the boundaries has its own threshold in the settings.
struct StopSpeeds {
    double Stop = 5;  ///< mph; a slower second is stopped, and begins a stop
    double Go = 10;   ///< mph; a second as fast or faster ends it; never below Stop

    bool operator==(const StopSpeeds&) const = default;
};

/// How the statistics of a study are made: the study's own choices, which its companion file keeps. The study's
/// specified figures do not depend on them.
struct StatisticsOptions {
    double Confidence = 95;  ///< percent, above 0 and below 100
    PermittedError Error;
    double SpeedError = 3;  ///< permitted error of speeds, mph
    StopSpeeds Stops;
    std::optional<double> FreeFlowSpeed;  ///< mph; nothing: what depends on it is not known
    /// The user's own grades: delays in seconds up to which the grades A to E go, rising; nothing for none.
    std::optional<std::array<double, 5>> GradeLimits;

    bool operator==(const StatisticsOptions&) const = default;
};

/// Why no statistics can be made with these options, as a sentence with the limits; empty where they can.
std::string ProblemOf(const StatisticsOptions& options);

/// What the user writes on a study for its report; each may be empty.
struct StudyLines {
    std::string Weather;
    std::string Observer;
    std::string PreparedBy;
    std::string CheckedBy;

    bool operator==(const StudyLines&) const = default;
};

}  // namespace vantor
