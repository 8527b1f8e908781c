#pragma once

#include <string>

#include "core/StudyRecords.h"
#include "core/TableFile.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// The run list of a study as a table: one row a run, in list order, with its boundaries and figures; a run whose file
/// in `folder` cannot be read has no figures and is "Missing". As a workbook it has a second sheet, with the fields and
/// the results of the study. Lengths are feet and speeds miles per hour, whatever is shown on the screens. Error 6 for
/// averages that do not fit. Stopped, it has the runs read by then.
OutgoingTable StudyTable(const Study& study, const FileSystem& files, const std::string& folder,
                         const Progress& progress = {});

}  // namespace vantor
