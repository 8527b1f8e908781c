#pragma once

#include <nlohmann/json_fwd.hpp>

#include "core/StudyOptions.h"

namespace vantor {

/// Options as the members of a JSON object; those that are as usual are left out.
nlohmann::ordered_json JsonOf(const StatisticsOptions& options);

/// Throws the library's errors, and std::invalid_argument for options of which no statistics can be made.
StatisticsOptions OptionsFrom(const nlohmann::ordered_json& json);

}  // namespace vantor
