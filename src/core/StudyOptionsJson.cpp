#include "core/StudyOptionsJson.h"

#include <array>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace vantor {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* ErrorMember = "error";
constexpr const char* ErrorKindMember = "error_is";
constexpr const char* AbsoluteError = "absolute";
constexpr const char* PercentError = "percent";
constexpr const char* FreeFlowMember = "free_flow";
constexpr const char* GradeLimitsMember = "grade_limits";

/// The options that are plain numbers, of options that may be changed or not.
template <class Options>
auto NumbersOf(Options& options) {
    return std::array{std::pair{"confidence", &options.Confidence}, std::pair{"error_speed", &options.SpeedError},
                      std::pair{"stop", &options.Stops.Stop}, std::pair{"go", &options.Stops.Go}};
}

}  // namespace

Json JsonOf(const StatisticsOptions& options) {
    Json json = Json::object();
    const StatisticsOptions usual;
    const auto numbers = NumbersOf(options);
    for (std::size_t i = 0; i < numbers.size(); ++i)
        if (*numbers[i].second != *NumbersOf(usual)[i].second) json[numbers[i].first] = *numbers[i].second;
    if (options.Error != usual.Error) {
        json[ErrorMember] = options.Error.Value;
        json[ErrorKindMember] = options.Error.Of == PermittedError::Kind::Absolute ? AbsoluteError : PercentError;
    }
    if (options.FreeFlowSpeed) json[FreeFlowMember] = *options.FreeFlowSpeed;
    if (options.GradeLimits) json[GradeLimitsMember] = *options.GradeLimits;
    return json;
}

StatisticsOptions OptionsFrom(const Json& json) {
    StatisticsOptions options;
    for (const auto& [name, number] : NumbersOf(options)) *number = json.value(name, *number);
    options.Error.Value = json.value(ErrorMember, options.Error.Value);
    if (json.value(ErrorKindMember, PercentError) == std::string_view(AbsoluteError))
        options.Error.Of = PermittedError::Kind::Absolute;
    if (const auto speed = json.find(FreeFlowMember); speed != json.end()) options.FreeFlowSpeed = speed->get<double>();
    if (const auto limits = json.find(GradeLimitsMember); limits != json.end())
        options.GradeLimits = limits->get<std::array<double, 5>>();
    if (const std::string problem = ProblemOf(options); !problem.empty()) throw std::invalid_argument(problem);
    return options;
}

}  // namespace vantor
