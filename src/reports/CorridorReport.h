#pragma once

#include <array>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "core/AppSettings.h"
#include "core/ports/Spreadsheet.h"
#include "corridor/ReportedCorridor.h"
#include "map/BaseMapFile.h"
#include "map/MapScene.h"
#include "reports/ReportPages.h"

namespace vantor {

/// In the order in which they are printed.
enum class CorridorPart { Delays, Sections, BeforeAfter, TimeSpace, Map, Sensitivity, Method, Runs };

struct CorridorPartName {
    const char* Title;  ///< at its top
    const char* Word;   ///< on the command line
};
/// By CorridorPart.
inline constexpr std::array<CorridorPartName, 8> CorridorPartNames = {{{"Delays and Travel Times", "delays"},
                                                                       {"Sections", "sections"},
                                                                       {"Before and After", "before-after"},
                                                                       {"Time-Space Diagrams and Speeds", "time-space"},
                                                                       {"Map of the Runs", "map"},
                                                                       {"What Hangs on the Boundaries", "sensitivity"},
                                                                       {"Method and Sources", "method"},
                                                                       {"Runs", "runs"}}};

struct CorridorReportChoice : PageChoice {
    std::array<bool, CorridorPartNames.size()> Parts = {true, true, true, true, true, true, true, true};
};

/// What the reports on a corridor print.
struct CorridorReportData {
    std::shared_ptr<const ReportedCorridor> Of;
    std::vector<PartOfFindings> Findings;  ///< the first is that of all runs that are reported
    AppSettings Settings;
    Date Printed;
    std::string FiguresFile;  ///< the name of the file of its figures; empty where it is not known yet
    MapContents Map;          ///< the runs that have positions, and the nodes
    BaseMapFile UnderMap;     ///< what the map of the runs lies on; the caller opens it

    const CorridorFindings& All() const { return Findings.front().Findings; }
};

CorridorReportData MakeCorridorData(std::shared_ptr<const ReportedCorridor> corridor, const AppSettings& settings,
                                    Date printed);

/// The figures that belong to the report, for its file of figures.
nlohmann::ordered_json FiguresOf(const CorridorReportData& data);

/// The chosen parts as one document. Without runs before and after there is no page that compares them, and without
/// positions no map, unless that part alone is chosen. The drawings need nothing of `data` afterwards.
PagedDocument MakeCorridorReport(const CorridorReportData& data, const CorridorReportChoice& choice,
                                 const TextMeasure& measure);

/// Its tables, one a sheet.
std::vector<Sheet> CorridorSheets(const CorridorReportData& data);

// The contents of each part, below its title.

void AddCorridorDelays(ReportPages& pages, const CorridorReportData& data);
void AddCorridorSections(ReportPages& pages, const CorridorReportData& data);
void AddCorridorBeforeAfter(ReportPages& pages, const CorridorReportData& data);
void AddCorridorTimeSpace(ReportPages& pages, const CorridorReportData& data);
void AddCorridorMap(ReportPages& pages, const CorridorReportData& data);
void AddCorridorSensitivity(ReportPages& pages, const CorridorReportData& data);
void AddCorridorMethod(ReportPages& pages, const CorridorReportData& data);
void AddCorridorRuns(ReportPages& pages, const CorridorReportData& data);

}  // namespace vantor
