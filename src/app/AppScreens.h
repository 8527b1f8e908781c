#pragma once

#include "core/AppContext.h"

namespace vantor {

/// Opens the program's screens: the one place that knows every form.
class AppScreens : public Screens {
public:
    /// The context holds this object, so it is given afterwards.
    void Use(AppContext& context) { context_ = &context; }

    void ShowStartUp() override;
    bool ShowStudyOpen() override;
    bool ShowStudySaveAs() override;
    bool ShowRunSelect() override;
    void ShowSpeedProfile(int entryIndex) override;
    void ShowRunEditor(int entryIndex) override;
    void ShowSensorData(int entryIndex) override;
    void ShowRunFileEditor(int entryIndex) override;
    void ShowRunStatistics(int entryIndex) override;
    void ShowDelayChart() override;
    void ShowReportPreview() override;
    void ShowPreferences() override;
    bool ShowReadTDC() override;
    bool ShowUploadSelect() override;
    bool ShowLogSelect(LogKind kind) override;
    bool ShowLogReview(LogKind kind) override;
    void ShowUploadData() override;
    void ShowDamagedCounterFile() override;
    void ShowUploadRunList(const std::string& studyGroup) override;
    void ShowDeleteTempRuns() override;
    void ShowDeleteTDCFiles() override;

private:
    AppContext* context_ = nullptr;
};

}  // namespace vantor
