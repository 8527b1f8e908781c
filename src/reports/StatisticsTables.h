#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/Units.h"
#include "reports/ReportTable.h"
#include "statistics/StudyStatistics.h"

namespace vantor {

/// A number in the shown unit; a dash for none.
std::string ValueText(std::optional<double> value, FigureUnit unit, int decimals, const Units& units);
/// "Travel time (s)".
std::string NamedWithUnit(const std::string& name, FigureUnit unit, const Units& units);

/// A row for each measure: both means, what lies between them, and both tests.
ReportTable ComparisonTable(const ByMeasure<Comparison>& compared, const Units& units);
/// The travel times section by section.
ReportTable SectionComparisonTable(const std::vector<SectionOverRuns>& sections, const Units& units);
/// How many runs each way show a difference as large as the permitted error, as a sentence; empty where that is not
/// known.
std::string RunsForDifferenceText(const Comparison& travelTime, const StatisticsOptions& options, const Units& units);

}  // namespace vantor
