#pragma once

#include "reports/ReportData.h"
#include "reports/ReportPages.h"
#include "reports/ReportText.h"

namespace vantor {

// Each adds the contents of one report below its title.

/// What the study is about, its result and how sure that is, and room for signatures.
void AddCover(ReportPages& pages, const ReportData& data);
/// The figures over all runs with their intervals, and section by section.
void AddStatistics(ReportPages& pages, const ReportData& data);
/// What changed between the runs before and those after.
void AddBeforeAfter(ReportPages& pages, const ReportData& data);
/// Several studies, each against the first.
void AddComparison(ReportPages& pages, const std::vector<ConditionStatistics>& conditions,
                   const StatisticsOptions& options, const Units& units);
/// The ways of all runs with their nodes, and their speeds lined up at the nodes.
void AddTimeSpace(ReportPages& pages, const ReportData& data);
/// The ways of the runs that have positions, with the nodes of one of them.
void AddMap(ReportPages& pages, const ReportData& data);
/// How the figures come about, with a drawing, and the scales of the grades.
void AddMethod(ReportPages& pages, const ReportData& data);
/// The study's fields, its results and the table of its runs.
void AddStudySummary(ReportPages& pages, const ReportData& data);
/// The figures of every run, section by section.
void AddRunStatistics(ReportPages& pages, const ReportData& data);
/// Speed against distance of every run, with one scale of speed, several to a page.
void AddSpeedProfiles(ReportPages& pages, const ReportData& data);
void AddDelayChart(ReportPages& pages, const ReportData& data);

/// "Run 3   NB-003" with what is known of it at the right, in a strip that stays with `following` points below it.
void AddRunHeading(ReportPages& pages, const ReportData& data, const ReportRun& run, bool withName, double following);
double RunHeadingHeight(const ReportPages& pages);

/// Warns where several nodes lie between the boundaries, for grades are those of one intersection; else empty.
std::string CorridorWarning(const ReportData& data);

/// The item of a list whose position a study stores; a dash for none.
template <std::size_t Count>
std::string ItemText(const std::array<const char*, Count>& items, std::int16_t position) {
    return position >= 0 && position < static_cast<int>(Count) ? items[static_cast<std::size_t>(position)] : NoFigure;
}

}  // namespace vantor
