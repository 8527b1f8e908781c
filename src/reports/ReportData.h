#pragma once

#include <memory>
#include <string>
#include <vector>

#include "analysis/RunStatistics.h"
#include "analysis/StudyResults.h"
#include "core/AppSettings.h"
#include "core/Progress.h"
#include "core/StudyRecords.h"
#include "core/ports/Clock.h"
#include "map/BaseMapFile.h"
#include "map/MapScene.h"
#include "plots/ReportProfile.h"
#include "statistics/RunTraces.h"
#include "statistics/StudyStatistics.h"

namespace vantor {

/// What the reports print of one run of the study.
struct ReportRun {
    int Number = 0;  ///< in the study, from 1
    RunListRow Row;
    std::string Problem;  ///< why there are no statistics and no profile: "Missing Run File"; else empty
    RunStatistics Statistics;
    std::shared_ptr<const ReportProfile> Profile;  ///< none where there is a problem
};

/// What the reports print, read once.
struct ReportData {
    Study Contents;  ///< with its averages
    std::string StudyGroup;
    ResultLabels Labels;
    AppSettings Settings;
    Date Printed;
    std::vector<ReportRun> Runs;
    /// The runs that could not be read, each with the reason: "Missing Run File: NB-003".
    std::vector<std::string> Problems;
    std::string WithoutWarned;                 ///< AverageWithoutWarned
    std::string OtherThresholds;               ///< as the function of that name says it
    std::optional<std::int32_t> StopDelayNow;  ///< the average at the threshold that is printed

    MapContents Map;       ///< the runs that have positions, and the nodes of the one that has most
    BaseMapFile UnderMap;  ///< what the map of the runs lies on; the caller opens it

    TracedRuns Measured;         ///< all runs that can be read, in the order driven
    StudyStatistics Statistics;  ///< over all runs that can be read
    /// The same without the runs that are set aside; nothing where none is.
    std::optional<StudyStatistics> WithoutSetAside;

    std::vector<RunListRow> Rows() const;  ///< of the run list
};

/// Reads the study's runs from `folder`, which ends in a separator, one after the other; of each only what is printed
/// is kept. A run that cannot be read is among the problems and the others are read. Error 6 for averages that do not
/// fit. Stopped, it has no runs.
ReportData LoadReportData(const Study& study, const AppSettings& settings, const FileSystem& files,
                          const std::string& folder, Date printed, const Progress& progress = {});

/// "Run 3", with its name where the settings show it on the statistics.
std::string RunTitle(const ReportData& data, const ReportRun& run, bool withName);
/// "03/14/08 07:30, ideal speed 35 MPH, control delay 42 s, LOS C", as far as it is known.
std::string RunSummary(const ReportData& data, const ReportRun& run);

}  // namespace vantor
