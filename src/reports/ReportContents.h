#pragma once

#include "reports/ReportData.h"
#include "reports/ReportPages.h"

namespace vantor {

// Each adds the contents of one report below its title.

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

}  // namespace vantor
