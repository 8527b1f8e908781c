#pragma once

#include <optional>
#include <string>

#include "statistics/StatisticsTables.h"

namespace vantor {

// What stands in the cells of the tables.

/// "Travel time (s)".
std::string WithUnit(const std::string& name, FigureUnit unit, const Units& units);

/// NoValueText for no value.
StatisticsCell ValueCell(std::optional<double> value, FigureUnit unit, int decimals, const Units& units);
StatisticsCell TextCell(std::string text, std::string note = {});
StatisticsCell CountCell(int count);
StatisticsCell CountCell(std::optional<int> count);
StatisticsCell ProbabilityCell(std::optional<double> p);

}  // namespace vantor
