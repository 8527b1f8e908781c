#pragma once

#include <QMainWindow>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "analysis/StudyResults.h"
#include "core/AppContext.h"
#include "workspace/StudyRecovery.h"
#include "workspace/StudyWorkspace.h"

class QLabel;
class QPushButton;

namespace vantor {

class MainMenu;
struct MenuEntry;
class ResultsPanel;
class RunListView;
class StudyDetailsPanel;
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
    void RefreshStudyResults();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    static constexpr int ShowDetailsButton = 7;
    static constexpr const char* RunMenu = "Ru&n";
    std::vector<MenuEntry> MenuEntries();
    QWidget* BuildStudyDetails();
    QLayout* BuildRunListHead(QWidget* parent);
    QLayout* BuildRunListButtons(QWidget* parent);
    void AddRunListKeys();
    void BuildStatusBar();
    void KeepChangesOften();

    void ShowFirstRun();
    void OpenFirstStudy(const std::string& studyPath);
    void OpenStudyAt(const std::string& studyPath);
    void BeginNewStudy();
    /// Opens a study, offers the changes that were left of it, and shows it.
    void TakeStudy(const std::string& folder, const std::string& name, bool offersChanges);
    void OfferChanges();
    void ShowStudy();
    void ShowRunList(RunList list);
    void ShowStatus();
    void ComputeStopDelaysAnew();

    /// Does what may change a run, shows the study and offers to take back what its entry has changed. Of a run whose
    /// samples have changed, too, the entry from before would fit no more: its backup is the way back.
    void ChangeRun(const std::string& what, int run, const std::function<void()>& change);
    void OfferUndo(std::optional<RunUndo> undo);
    void Undo();

    void StartNewStudy();
    void OpenExistingStudy();
    void OpenLastStudy();
    void SaveNow();
    void SaveAs();
    void ReadCounter();
    void ProcessRuns();
    void ProcessTemporaryRuns();
    void ProcessLog(LogKind kind);
    void ShowPreferences();
    /// Closes the window where the user wants the program started again; false when it stays.
    bool Restarts();
    void ShowStartUpOptions();
    void CarryOut(StartUpChoice choice);
    void ShowStudyStatistics();
    void ShowHelpTopics();
    void OpenSupportSite();
    void ShowAbout();
    void AddRuns();
    void DeleteActiveRun();
    void ShowDetails();
    /// Opens one of the screens of a run for the active one.
    void ShowActiveRun(void (Screens::*open)(int entryIndex));

    AppContext& context_;
    StudyRecovery recovery_;
    ResultLabels labels_;
    std::set<std::string> toldRuns_;

    std::optional<RunUndo> undo_;
    bool endsWithSession_ = false;

    MainMenu* menu_ = nullptr;
    QAction* mnuRunUndo_ = nullptr;
    QWidget* frStudyDetails_ = nullptr;
    StudyDetailsPanel* details_ = nullptr;
    RunListView* vaRunList_ = nullptr;
    QLabel* lblNoneCounted_ = nullptr;
    ResultsPanel* results_ = nullptr;
    QPushButton* btnDeleteRun_ = nullptr;
    QPushButton* btnShowDetails_ = nullptr;
    QPushButton* btnEditRun_ = nullptr;
    QLabel* lblStudyGroup_ = nullptr;
    StudyNotice* notice_ = nullptr;
    QLabel* lblSaved_ = nullptr;
};

}  // namespace vantor
