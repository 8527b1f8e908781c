#include "cli/Commands.h"
#include "cli/RecordJson.h"

namespace vantor {

void AddSettingsCommands(CLI::App& program, CommandAction& chosen) {
    CLI::App* group = program.add_subcommand("settings", "The settings of the program");
    group->fallthrough()->require_subcommand(1);
    AddCommand(*group, chosen, "show", "The settings in force", [](CommandContext& context) {
        const ApplicationState& state = context.State;
        // As the file holds them.
        const auto stored = EncodeRecord(state.Settings, AppSettingsFields);
        Json result = RecordAsJson(DecodeRecord<AppSettings>(AppSettingsFields, stored), AppSettingsFields);
        result["FoldersInUse"] = {{"TempRunsPath", state.Paths.TempRunsPath},
                                  {"StudyGroupRootPath", state.Paths.StudyGroupRootPath},
                                  {"FieldDataPath", state.Paths.FieldDataPath},
                                  {"LastStudyGroupPath", state.Paths.LastStudyGroupPath}};
        result["SettingsWereMissing"] = state.SettingsWereMissing ? -1 : 0;
        result["SpeedUnitLabel"] = state.SpeedUnitLabel;
        result["LengthUnitLabel"] = state.LengthUnitLabel;
        result["VolumeUnitLabel"] = state.VolumeUnitLabel;
        context.Print(result);
        return static_cast<int>(Done);
    });
}

}  // namespace vantor
