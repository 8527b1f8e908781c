#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <vector>

#include "core/AppSettings.h"
#include "core/Date.h"
#include "core/Progress.h"
#include "core/ports/FileSystem.h"
#include "corridor/ReportedCorridor.h"

namespace vantor {

// Beside a report of a corridor lies a file of its figures, with all that they are computed from but the samples of the
// runs; see docs/formats.md.

inline constexpr const char* FiguresExtension = ".figures.json";

/// The file of figures of a report: its path with this extension in place of its own.
std::string FiguresPathOf(const std::string& report);

nlohmann::ordered_json FiguresAsJson(const ReportedCorridor& corridor, const std::vector<PartOfFindings>& findings,
                                     const AppSettings& settings, Date made);

/// What a file of figures says that its figures are computed from.
struct FiguresFile {
    nlohmann::ordered_json Contents;
    Corridor Of;
    CorridorFilter Filter;
    AppSettings Settings;  ///< those that figures hang on
};
/// Error 53 for a missing file, 13 with the reason for one that is no file of figures.
FiguresFile LoadFigures(const FileSystem& files, const std::string& path);

/// A report and its figures, which appear together or not at all. False when it was stopped.
bool WriteWithFigures(FileSystem& files, const std::string& report, std::span<const std::byte> bytes,
                      const nlohmann::ordered_json& figures, const Progress& progress = {});

}  // namespace vantor
