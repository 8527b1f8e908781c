#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/StudyResults.h"
#include "core/StudyRecords.h"
#include "core/TableFile.h"
#include "core/Units.h"

namespace vantor {

/// The run list of a study as a table: one row a run, in list order, with its boundaries, figures and warnings; what is
/// no run has no figures, its state and the reason. `rows` are those of the run list, `group` names its Study Group. As
/// a workbook it has a second sheet, with the fields and the results of the study. Lengths and speeds are whole numbers
/// in `units`. Error 6 for averages that do not fit.
OutgoingTable StudyTable(const Study& study, const std::vector<RunListRow>& rows, const std::string& group,
                         const Units& units = {});

/// Reads the runs and writes that table to a file of the kind that its extension says, in place of what is there.
/// Returns the rows; nothing when the work was stopped, which writes nothing. Error 13 as WriteTable.
std::optional<std::vector<RunListRow>> ExportStudy(FileSystem& files, const Study& study, const std::string& folder,
                                                   const AppSettings& settings, const std::string& path,
                                                   const Spreadsheet& sheets, const Progress& progress = {});

}  // namespace vantor
