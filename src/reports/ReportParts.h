#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/StudyOptions.h"
#include "map/BaseMapFile.h"
#include "map/MapScene.h"
#include "plots/Plot.h"
#include "reports/ReportPages.h"
#include "reports/ReportTable.h"
#include "statistics/StatisticsTables.h"

namespace vantor {

// What several reports are put together of.

inline constexpr double SectionGap = 12;

/// The table of a screen on paper: figures to the right, those of few runs in brackets; without a column that would not
/// fit beside the others.
ReportTable OnPaper(const StatisticsTable& table, std::string_view without = {});

/// These columns hold texts: at the left, where they have blanks in several lines
/// on narrow pages.
ReportTable WithTexts(ReportTable table, const std::vector<std::string_view>& heads);

/// Without the columns, the first apart, that have nothing in any row.
ReportTable WithoutEmpty(const ReportTable& table);

/// Lines below a heading; nothing where there are none.
void AddLines(ReportPages& pages, const std::string& heading, const std::vector<std::string>& lines);

void AddPlot(ReportPages& pages, Plot plot, double height);

/// The bounds of the grades: those of the study beside those of the manual and the user's own.
void AddGradeScales(ReportPages& pages, const StatisticsOptions& options);

/// The map of so many runs on what room the page has, and what is to be known of it.
void AddMapPicture(ReportPages& pages, const MapContents& map, const BaseMapFile& under, std::size_t runs);

}  // namespace vantor
