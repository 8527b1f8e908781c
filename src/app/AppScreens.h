#pragma once

#include <memory>

#include "core/AppContext.h"

namespace vantor {

/// Opens the program's screens: the one place that knows every form, and that notes in the state what one screen hands
/// over to the next.
class AppScreens : public Screens {
public:
    /// The context holds this object, so it is given afterwards.
    void Use(AppContext& context) { context_ = &context; }

    StartUpChoice ShowStartUp() override;
    bool ShowStudyOpen() override;
    bool ShowStudySaveAs() override;
    bool ShowRunSelect() override;
    ProfileChanges ShowSpeedProfile(const ProfileVisit& visit) override;
    std::map<int, StudyRunEntry> ShowBoundaryProposals() override;
    bool ShowNodePlaces() override;
    void ShowRunEditor(int entryIndex) override;
    void ShowSensorData(int entryIndex) override;
    void ShowRunFileEditor(int entryIndex) override;
    void ShowRunStatistics(int entryIndex) override;
    void ShowDelayChart() override;
    StatisticsVisit ShowStudyStatistics(int run) override;
    std::optional<StudyChoices> ShowStatisticsOptions(const StudyChoices& choices) override;
    void ShowCompareStudies() override;
    void ShowReportPreview() override;
    void ShowCorridorReport(std::shared_ptr<const ReportedCorridor> corridor) override;
    void ShowPreferences() override;
    std::optional<CounterFileChoice> ShowReadTDC() override;
    std::optional<Upload> ShowUploadSelect() override;
    std::optional<LogChoice> ShowLogSelect(LogKind kind) override;
    bool ShowLogReview(std::optional<LogKind> kind, const LogChoice& log) override;
    RunsForStudy ShowUploadData(const Upload& upload) override;
    std::vector<RunsForStudy> ShowImportTracks(const std::vector<std::string>& paths,
                                               const std::string& corridor) override;
    void ShowDamagedCounterFile() override;
    void ShowUploadRunList(const std::string& studyGroup) override;
    void ShowDeleteTempRuns() override;
    void ShowDeleteTDCFiles() override;
    void ShowCorridor(const std::optional<std::string>& path) override;

private:
    /// Notes the choice in the state.
    std::optional<CounterFileChoice> HandOver(const std::optional<CounterFileChoice>& choice);

    AppContext* context_ = nullptr;
};

}  // namespace vantor
