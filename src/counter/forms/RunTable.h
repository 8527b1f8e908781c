#pragma once

#include <string>
#include <vector>

#include "core/forms/Table.h"
#include "core/ports/LongWork.h"

namespace vantor {

/// Gives a table the columns of runs, no wider than they need to be.
void SetRunColumns(Table& table, const Units& units);

/// Fills a table of runs with the run files (".rd2") of a folder, which ends in a separator, and
/// returns their names in directory order. A run that cannot be read has only its name and says why in a tool tip.
std::vector<std::string> ListRunFiles(Table& table, LongWork& work, const std::string& folder, const Units& units);

/// Which of the names that ListRunFiles returned a row shows, whatever the table is sorted by.
std::size_t RunIndexOf(const Table& table, int row);

}  // namespace vantor
