#pragma once

#include <QMainWindow>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "analysis/StudyResults.h"
#include "core/AppContext.h"
#include "workspace/DroppedFiles.h"
#include "workspace/RunMarks.h"
#include "workspace/StudyRecovery.h"
#include "workspace/StudyWorkspace.h"

class QLabel;
class QMenu;
class QPushButton;

namespace vantor {

class MainMenu;
struct MenuEntry;
class ResultsPanel;
class RunListView;
class RunProfilePane;
class StudyDetailsPanel;
class StudyHistory;
class StudyNotice;

/// The main window: the current study with its runs and results, and the way to every other screen. Closing it ends
/// the program.
class frmMain : public QMainWindow {
public:
    explicit frmMain(AppContext& context);

    /// To be called once, when the window is shown and events are handled: loads the settings, then opens the study
    /// at `studyPath` (a ".ld2" file; relative to the current folder), or shows the start-up screen or opens the last
    /// study, as the settings say. A second call does nothing.
    void Start(const std::string& studyPath = {});
    /// Keeps what is not saved and returns when it is on the disk; for the end of the program.
    void KeepChanges();
    /// The same when the session ends: the window closes without a question then. What could not be kept is asked
    /// about.
    void KeepForEndOfSession();

    /// To be called before the program ends at once: keeps the unsaved changes and names the file for the next start.
    void KeepBeforeEnd(const FatalFormatFault& fault);

    /// A click on button `index` of the toolbar, from 1, separators counted.
    void ToolbarButtonClick(int index);

    /// Fills the run list from the run files and computes the figures of the study. A run file that is missing is told
    /// of once for each study that is loaded.
    void RefreshStudyResults() { ShowRuns(RunFiles::All); }

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    static constexpr const char* RunMenu = "Ru&n";
    std::vector<MenuEntry> MenuEntries();
    QWidget* BuildStudyDetails();
    QWidget* BuildBeginning(QWidget* parent);
    QWidget* BuildRuns(QWidget* parent);
    QLayout* BuildRunListHead(QWidget* parent);
    QLayout* BuildRunListButtons(QWidget* parent);
    void OfferRunCommands();
    void BuildStatusBar();
    void FitHeight(int height);
    void KeepChangesOften();

    void ShowFirstRun();
    void OpenFirstStudy(const std::string& studyPath);
    void OpenStudyAt(const std::string& studyPath);
    void BeginNewStudy();
    /// Opens a study, offers the changes that were left of it, and shows it.
    void TakeStudy(const std::string& folder, const std::string& name, bool offersChanges);
    void OfferChanges();
    void ShowStudy();
    enum class RunFiles { All, NotReadYet };
    void ShowRuns(RunFiles toRead);
    void ShowRunList(RunList list);
    void ShowStatus();
    void ComputeStopDelaysAnew();

    /// Does what changes the study and nothing else, shows it, and keeps it as a step that can be taken back.
    void ChangeStudy(const QString& what, const std::function<void()>& change);
    /// Does what may change a run, too. Of a run whose samples have changed the entry from before would fit no more:
    /// its backup is the way back then.
    void ChangeRun(const char* what, int run, const std::function<void()>& change);
    void ShowSteps();
    void ShowStep();
    /// Says in the status bar what was done.
    void Tell(const QString& done);

    void StartNewStudy();
    void OpenExistingStudy();
    void OpenLastStudy();
    void SaveNow();
    void SaveAs();
    void ReadCounter();
    void ProcessRuns();
    void ProcessTemporaryRuns();
    void ProcessLog(LogKind kind);
    void ImportTracks(const std::vector<std::string>& paths);
    void ShowPreferences();
    /// Closes the window where the user wants the program started again; false when it stays.
    bool Restarts();
    void ShowStartUpOptions();
    void CarryOut(StartUpChoice choice);
    void NoteRecent();
    void StoreChoices(const UserChoices& changes);
    void FillRecentStudies(QMenu& menu);
    void OpenRecentStudy(const std::string& path);
    void TrySample();
    void RemoveSample();
    void FillThemes(QMenu& menu);
    void TakeFiles(const std::vector<std::string>& paths);
    DroppedFiles SortDropped(const std::vector<std::string>& paths);
    void AddDroppedRuns(const std::vector<std::string>& paths);
    /// Adds runs of the study's own Study Group; a study without runs gets theirs.
    void TakeRuns(const RunsForStudy& runs);
    void TakeRunsOfGroups(const std::vector<RunsForStudy>& groups);
    void ShowProfilePane(bool isShown);
    /// Shows what the user chose to see.
    void ShowChosenView();
    void ShowCountedOnly(bool isOn);
    void ShowDelayChart();
    void ShowHiddenRuns();
    void ShowStatisticsOptions();
    void ShowStudyStatistics();
    void ShowStatisticsInDetail();
    void TakeChoices(const StudyChoices& choices);
    void ShowHelpTopics();
    void OpenSupportSite();
    void ShowAbout();
    void AddRuns() {
        AddRuns([this] { (void)context_.OtherScreens.ShowRunSelect(); });
    }
    void AddRuns(const std::function<void()>& add);
    void DeleteSelectedRuns();
    void MoveSelectedRuns(int before);
    void MoveRunsUp();
    void MoveRunsDown();
    void MarkRuns(bool isBefore);
    /// Writes marks and says that their run files are to be read again; those that were there before. Nothing after an
    /// error, which is told, and a stop.
    std::optional<std::vector<RunMark>> WriteMarks(const std::vector<RunMark>& marks);
    /// A text of the study's own for each run, which is set for several at once.
    struct RunText {
        std::string StudyRunEntry::*Text;
        const char* Step;  ///< before the runs in words, for what can be taken back
        const char* Title;
        const char* Question;
        const char* None;             ///< how the menu calls no text
        std::set<std::string> Usual;  ///< that are offered
        int Column;                   ///< of the run list
    };
    static const RunText& PeriodText();
    static const RunText& SetAsideText();
    void FillRunTexts(QMenu& menu, const RunText& text);
    void SetRunText(const RunText& text, const std::string& word);
    void CopyRuns();
    void ProposeBoundaries();
    void SetNodesOfRuns();
    void ShowDetails();
    /// Opens one of the screens of a run for the active one.
    void ShowActiveRun(void (Screens::*open)(int entryIndex));

    AppContext& context_;
    StudyRecovery recovery_;
    ResultLabels labels_;
    std::set<std::string> toldRuns_;
    std::vector<RunListRow> deleted_;  ///< since all run files were read last
    RunFiles toReadAfterStep_ = RunFiles::NotReadYet;
    std::string runsFolder_;  ///< of the Study Group that the runs of the list were read from

    StudyHistory* history_ = nullptr;
    bool endsWithSession_ = false;

    MainMenu* menu_ = nullptr;
    QWidget* frStudyDetails_ = nullptr;
    StudyDetailsPanel* details_ = nullptr;
    QWidget* frBegin_ = nullptr;
    RunListView* vaRunList_ = nullptr;
    RunProfilePane* profile_ = nullptr;
    QLabel* lblNoneCounted_ = nullptr;
    QLabel* lblHiddenRuns_ = nullptr;
    ResultsPanel* results_ = nullptr;
    QLabel* lblStudyGroup_ = nullptr;
    QLabel* lblDone_ = nullptr;
    StudyNotice* notice_ = nullptr;
    QLabel* lblSaved_ = nullptr;
};

}  // namespace vantor
