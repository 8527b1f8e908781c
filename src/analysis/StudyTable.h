#pragma once

#include <string>

#include "core/StudyRecords.h"
#include "core/TableFile.h"
#include "core/Units.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// The run list of a study as a table: one row a run, in list order, with its boundaries and figures; a run whose file
/// in `folder` cannot be read has no figures and is "Missing". As a workbook it has a second sheet, with the fields and
/// the results of the study. Lengths and speeds are whole numbers in `units`. Error 6 for
/// averages that do not fit.
OutgoingTable StudyTable(const Study& study, const FileSystem& files, const std::string& folder,
                         const Units& units = {});

}  // namespace vantor
