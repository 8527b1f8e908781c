#pragma once

#include <array>

namespace vantor {

/// The pages of the manual that the screens open. The numbers are the identifiers of the pages in the help file's
/// project (docs/manual/vantor.qhp) and stay as they are.
enum class HelpTopic : int {
    Contents = 0,
    MainWindow = 10,
    StartUp = 12,
    StudyOpen = 14,
    StudySaveAs = 16,
    RunSelect = 18,
    Preferences = 20,
    RunDetails = 22,
    SpeedProfile = 24,
    SensorData = 26,
    RunFile = 28,
    RunStatistics = 30,
    ReadCounter = 36,
    SelectCounterFile = 38,
    ProcessRuns = 40,
    RunsInGroup = 42,
    DeleteRuns = 44,
    DeleteCounterFiles = 46,
    DelayChart = 50,
    Reports = 52,
    Statistics = 54,
    SelectLog = 62,
    ReviewLog = 64,
    ImportTracks = 66,
    Corridor = 68,
};

inline constexpr std::array AllHelpTopics{
    HelpTopic::Contents,     HelpTopic::MainWindow,         HelpTopic::StartUp,     HelpTopic::StudyOpen,
    HelpTopic::StudySaveAs,  HelpTopic::RunSelect,          HelpTopic::Preferences, HelpTopic::RunDetails,
    HelpTopic::SpeedProfile, HelpTopic::SensorData,         HelpTopic::RunFile,     HelpTopic::RunStatistics,
    HelpTopic::ReadCounter,  HelpTopic::SelectCounterFile,  HelpTopic::ProcessRuns, HelpTopic::RunsInGroup,
    HelpTopic::DeleteRuns,   HelpTopic::DeleteCounterFiles, HelpTopic::DelayChart,  HelpTopic::Reports,
    HelpTopic::SelectLog,    HelpTopic::ReviewLog,          HelpTopic::Statistics,  HelpTopic::ImportTracks,
    HelpTopic::Corridor,
};

}  // namespace vantor
