#pragma once

#include <CLI/CLI.hpp>

#include "cli/CommandContext.h"

namespace vantor {

/// What a chosen command does; returns the exit status.
using CommandAction = std::function<int(CommandContext&)>;

/// Adds a command under `parent`; when the command line names it, `chosen` becomes its action. The options that the
/// action reads live as long as the action.
CLI::App& AddCommand(CLI::App& parent, CommandAction& chosen, const std::string& name, const std::string& description,
                     CommandAction action);

/// For options that are whole numbers: decimal ones, leading zeros allowed ("0300" is 300).
const CLI::Validator& WholeNumber();

using FileAction = std::function<int(CommandContext&, const std::string& path)>;
/// Does `action` for each file, as a command of its own would. What it prints of one file is the result, of several a
/// list in their order, with nothing in place of a file that fails; the others are done all the same. The status is the
/// worst one; a stopped one ends all. With an extension "-" is standard input, as a file of that kind.
int DoEach(CommandContext& context, const std::vector<std::string>& paths, const FileAction& action,
           std::string_view inputExtension = {});

// Each adds its group of commands to the program.
void AddSettingsCommands(CLI::App& program, CommandAction& chosen);
void AddRunCommands(CLI::App& program, CommandAction& chosen);
/// Below the group "run".
void AddRepairCommands(CLI::App& runGroup, CommandAction& chosen);
void AddCounterCommands(CLI::App& program, CommandAction& chosen);
void AddLogCommands(CLI::App& program, CommandAction& chosen);
void AddTrackCommands(CLI::App& program, CommandAction& chosen);
void AddCorridorCommands(CLI::App& program, CommandAction& chosen);
/// Below the group "corridor".
void AddCorridorReportCommands(CLI::App& corridorGroup, CommandAction& chosen);
void AddStudyCommands(CLI::App& program, CommandAction& chosen);
/// Below the group "study".
void AddProposeCommand(CLI::App& studyGroup, CommandAction& chosen);
/// Below the group "study".
void AddChartCommand(CLI::App& studyGroup, CommandAction& chosen);
/// Below the group "study".
void AddStatisticsCommands(CLI::App& studyGroup, CommandAction& chosen);
/// Below the group "study".
void AddReportCommand(CLI::App& studyGroup, CommandAction& chosen);

}  // namespace vantor
