#pragma once

#include <string>

#include "core/LogKind.h"

namespace vantor {

/// Opens the other screens of the program, modally. Each returns when its screen is closed; what the user chose
/// stands in the ApplicationState afterwards.
class Screens {
public:
    virtual ~Screens() = default;

    virtual void ShowStartUp() = 0;
    /// True when a study was opened; it is the current one then.
    virtual bool ShowStudyOpen() = 0;
    /// True when the study was written under the chosen name and group.
    virtual bool ShowStudySaveAs() = 0;
    /// True when runs were added to the current study.
    virtual bool ShowRunSelect() = 0;
    /// The speed profile of the current run, which is run `entryIndex` of the study.
    virtual void ShowSpeedProfile(int entryIndex) = 0;
    // The editors of the current run, whose samples are loaded; it is run `entryIndex` of the study. A run that they
    // save is in its file, in the ApplicationState and in the study's entry afterwards.
    virtual void ShowRunEditor(int entryIndex) = 0;
    virtual void ShowSensorData(int entryIndex) = 0;
    virtual void ShowRunFileEditor(int entryIndex) = 0;
    /// The statistics of the current run.
    virtual void ShowRunStatistics(int entryIndex) = 0;
    /// The control delays of the current study and their running average.
    virtual void ShowDelayChart() = 0;
    /// The reports on the current study.
    virtual void ShowReportPreview() = 0;
    virtual void ShowPreferences() = 0;
    /// True when a whole dump was received; its file is the chosen counter file.
    virtual bool ShowReadTDC() = 0;
    /// True when a counter file was chosen.
    virtual bool ShowUploadSelect() = 0;
    /// True when a log of that kind was chosen.
    virtual bool ShowLogSelect(LogKind kind) = 0;
    /// The review of the chosen log; true when its runs were made.
    virtual bool ShowLogReview(LogKind kind) = 0;
    virtual void ShowUploadData() = 0;
    /// What can be done about the counter file that ended the program the last time.
    virtual void ShowDamagedCounterFile() = 0;
    /// The runs that lie in a Study Group.
    virtual void ShowUploadRunList(const std::string& studyGroup) = 0;
    virtual void ShowDeleteTempRuns() = 0;
    virtual void ShowDeleteTDCFiles() = 0;
};

}  // namespace vantor
