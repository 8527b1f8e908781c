#pragma once

#include <optional>
#include <vector>

#include "analysis/StudyEdits.h"
#include "cli/CommandContext.h"

namespace vantor {

// What the commands share that change a study.

/// The study of a file; nothing where there is none, which is told.
std::optional<Study> LoadNamedStudy(CommandContext& context, const NamedFile& file);
/// A study to be written again: one whose file was cut short would lose what can still be saved of it.
std::optional<Study> LoadStudyToChange(CommandContext& context, const NamedFile& file);
/// Averages the study, writes it and prints it with what the window's labels show, and with the members of `also`.
int FinishStudy(CommandContext& context, const NamedFile& file, Study& study, const std::vector<RunNotComputed>& failed,
                const Json& also = Json::object());

}  // namespace vantor
