#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/Choices.h"
#include "core/LogKind.h"

namespace vantor {

struct ReportedCorridor;

/// Opens the other screens of the program, modally. Each returns what the user chose when its screen is closed, nothing
/// where it was left by another way.
class Screens {
public:
    virtual ~Screens() = default;

    [[nodiscard]] virtual StartUpChoice ShowStartUp() = 0;
    /// True when a study took the current one's place.
    [[nodiscard]] virtual bool ShowStudyOpen() = 0;
    /// True when the study was written under the chosen name and group.
    [[nodiscard]] virtual bool ShowStudySaveAs() = 0;
    /// True when runs were added to the current study.
    [[nodiscard]] virtual bool ShowRunSelect() = 0;
    [[nodiscard]] virtual ProfileChanges ShowSpeedProfile(const ProfileVisit& visit) = 0;
    /// Boundaries that are proposed for the runs of the current study; the entries of those that are to get theirs.
    [[nodiscard]] virtual std::map<int, StudyRunEntry> ShowBoundaryProposals() = 0;
    /// Nodes of the current study's runs at the places of the current run; true when run files were written.
    [[nodiscard]] virtual bool ShowNodePlaces() = 0;
    // The editors of the current run, whose samples are loaded; it is run `entryIndex` of the study. A run that they
    // save is in its file, in the ApplicationState and in the study's entry afterwards.
    virtual void ShowRunEditor(int entryIndex) = 0;
    virtual void ShowSensorData(int entryIndex) = 0;
    virtual void ShowRunFileEditor(int entryIndex) = 0;
    /// The statistics of the current run.
    virtual void ShowRunStatistics(int entryIndex) = 0;
    /// The control delays of the current study and their running average.
    virtual void ShowDelayChart() = 0;
    /// The statistics over the runs of the current study, of which `run` is selected to begin with; 0 for none. The
    /// study is not changed.
    [[nodiscard]] virtual StatisticsVisit ShowStudyStatistics(int run) = 0;
    /// How the statistics of a study are made, and the lines of its report.
    [[nodiscard]] virtual std::optional<StudyChoices> ShowStatisticsOptions(const StudyChoices& choices) = 0;
    /// The current study and others, each against the first.
    virtual void ShowCompareStudies() = 0;
    /// The reports on the current study.
    virtual void ShowReportPreview() = 0;
    /// The reports on a corridor, which need not be as its file has it.
    virtual void ShowCorridorReport(std::shared_ptr<const ReportedCorridor> corridor) = 0;
    virtual void ShowPreferences() = 0;
    /// The file of a whole dump.
    [[nodiscard]] virtual std::optional<CounterFileChoice> ShowReadTDC() = 0;
    /// A counter file to convert, or the temporary runs as they wait.
    [[nodiscard]] virtual std::optional<Upload> ShowUploadSelect() = 0;
    [[nodiscard]] virtual std::optional<LogChoice> ShowLogSelect(LogKind kind) = 0;
    /// The review of a log, of the kind whose screen it was chosen on, or of whatever format its file has; true when
    /// its runs were made.
    [[nodiscard]] virtual bool ShowLogReview(std::optional<LogKind> kind, const LogChoice& log) = 0;
    [[nodiscard]] virtual RunsForStudy ShowUploadData(const Upload& upload) = 0;
    /// The runs that files of any kind of track would give; those that were taken, by the group that they lie in.
    /// `corridor` is the file of the corridor that is chosen to begin with, or empty: the passes along one are taken
    /// into its file, and are not returned.
    [[nodiscard]] virtual std::vector<RunsForStudy> ShowImportTracks(const std::vector<std::string>& paths,
                                                                     const std::string& corridor) = 0;
    /// What can be done about the counter file that ended the program the last time.
    virtual void ShowDamagedCounterFile() = 0;
    /// The runs that lie in a Study Group.
    virtual void ShowUploadRunList(const std::string& studyGroup) = 0;
    virtual void ShowDeleteTempRuns() = 0;
    virtual void ShowDeleteTDCFiles() = 0;
    /// A corridor: that of the path, or the one that was open last.
    virtual void ShowCorridor(const std::optional<std::string>& path) = 0;
};

}  // namespace vantor
