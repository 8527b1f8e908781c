#include "workspace/forms/frmMain.h"

#include <QCloseEvent>
#include <QLabel>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>
#include <algorithm>
#include <chrono>

#include "analysis/StudyEdits.h"
#include "core/DamagedFile.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/Settings.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/FileDrops.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "core/modMain.h"
#include "workspace/StudyCommands.h"
#include "workspace/StudyGroups.h"
#include "workspace/StudyWorkspace.h"
#include "workspace/forms/MainMenu.h"
#include "workspace/forms/ResultsPanel.h"
#include "workspace/forms/RunListView.h"
#include "workspace/forms/RunProfilePane.h"
#include "workspace/forms/StudyDetailsPanel.h"
#include "workspace/forms/StudyHistory.h"
#include "workspace/forms/StudyNotice.h"

namespace vantor {
namespace {

/// Whether the profile stands beside the list: at first it does.
constexpr const char* ProfilePaneKey = "profile-beside-list";
constexpr const char* ChoiceHidden = "no";

/// A window that is lower than that gives all it can to the list of runs.
constexpr int LowWindow = 600;

constexpr const char* SupportSite = "https://vantor.example/support";

}  // namespace

frmMain::frmMain(AppContext& context) : context_(context), recovery_(context) {
    setObjectName(QStringLiteral("frmMain"));
    resize(1000, 700);
    vaRunList_ = Named<RunListView>(this, "vaRunList");
    menu_ = new MainMenu(*this, context_, MenuEntries(), *vaRunList_);
    history_ = new StudyHistory(context_.State, this);
    history_->OnStep = [this] { ShowStep(); };
    setCentralWidget(frStudyDetails_ = BuildStudyDetails());
    OfferRunCommands();
    BuildStatusBar();
    KeepChangesOften();
    new FileDrops(*this, [this](const std::vector<std::string>& paths) {
        Guarded(context_.Messages, [&] { TakeFiles(paths); });
    });
    FitHeight(screen()->availableSize().height());
    RememberLayout(*this, context_.Memory);
}

void frmMain::KeepChanges() { recovery_.KeepNow(); }

void frmMain::KeepForEndOfSession() { endsWithSession_ = recovery_.KeepNow(); }

void frmMain::KeepChangesOften() {
    auto* timer = Named<QTimer>(this, "tmrRecovery");
    Connect(timer, &QTimer::timeout, this, context_.Messages, [this] { recovery_.Keep(); });
    timer->start(std::chrono::seconds(2));
}

void frmMain::Start(const std::string& studyPath) {
    ApplicationState& state = context_.State;
    if (std::exchange(state.MainFormLoaded, true)) return;
    Guarded(context_.Messages, [&] { LoadSettings(state, context_.Files); });
    if (state.Paths.LastStudyName.empty()) state.Paths.LastStudyName = NoStudyName;
    if (state.SettingsWereMissing) ShowFirstRun();
    if (Restarts()) return;
    details_->FillLists();
    ShowChosenView();
    BeginNewStudy();
    if (NotedDamagedFile(state.Choices))
        Guarded(context_.Messages, [&] { context_.OtherScreens.ShowDamagedCounterFile(); });
    Guarded(context_.Messages, [&] { OpenFirstStudy(studyPath); });
}

void frmMain::KeepBeforeEnd(const FatalFormatFault& fault) {
    KeepChanges();
    try {
        NoteDamagedFile(context_.Files, fault);
    } catch (const RunTimeError&) {
        // The program ends anyway.
    }
}

void frmMain::ShowFirstRun() {
    frStudyDetails_->hide();
    context_.Messages.Tell(
        "The Preferences screen will now be loaded so you can check the settings.\n"
        "This is the only time you will have to do this.");
    Guarded(context_.Messages, [&] { context_.OtherScreens.ShowPreferences(); });
    frStudyDetails_->show();
}

void frmMain::OpenFirstStudy(const std::string& studyPath) {
    ApplicationState& state = context_.State;
    if (!studyPath.empty()) {
        const std::string path = WholePath(context_.Files, studyPath);
        const std::string asListed = LongPathName(context_.Files, path);
        return OpenStudyAt(asListed.empty() ? path : asListed);
    }
    bool isRestored = false;
    Guarded(context_.Messages, [&] { isRestored = recovery_.OfferAll(); });
    if (isRestored) return ShowStudy();
    if (state.Settings.UseStartUpScreen != 0)
        ShowStartUpOptions();
    else if (LastStudyExists(state, context_.Files))
        // Changes left of it were asked about a moment ago.
        TakeStudy(StudyGroupFolder(state), state.Paths.LastStudyName, false);
}

void frmMain::OpenStudyAt(const std::string& studyPath) { TakeStudy(FolderOf(studyPath), BaseName(studyPath), true); }

void frmMain::TakeStudy(const std::string& folder, const std::string& name, bool offersChanges) {
    bool isThere = false;
    const bool isTaken = Guarded(context_.Messages, [&] {
        isThere = OpenStudy(context_.State, context_.Files, context_.DesktopServices, context_.Time, folder, name);
    });
    // It is open even where only the settings could not be saved.
    if (!isTaken && !IsCurrentStudy(context_.State, folder, name)) return ShowStatus();
    if (isThere && offersChanges) OfferChanges();
    ShowStudy();
    if (isThere) NoteRecent();
}

void frmMain::OfferChanges() {
    Guarded(context_.Messages, [this] { recovery_.OfferForOpened(); });
}

void frmMain::BeginNewStudy() {
    NewStudy(context_.State, context_.Time);
    ShowStudy();
}

void frmMain::ShowStudy() {
    labels_ = {};
    toldRuns_.clear();
    history_->Forget();
    Tell({});
    details_->ShowStudy();
    // While the runs are read, those of the study before do not stand under this one's name.
    ShowRunList({});
    RefreshStudyResults();
    if (vaRunList_->ActiveRun() != 0)
        vaRunList_->setFocus();
    else
        details_->FocusStudyName();
}

void frmMain::ShowRuns(RunFiles toRead) {
    const ApplicationState& state = context_.State;
    const std::string folder = StudyGroupFolder(state);
    if (!IsSameFolder(folder, std::exchange(runsFolder_, folder))) {
        // Steps would bring back runs that lie elsewhere.
        history_->Forget();
        toRead = RunFiles::All;
    }
    std::vector<RunListRow> known;
    if (toRead == RunFiles::All) {
        deleted_.clear();
    } else {
        known = vaRunList_->Rows();
        known.insert(known.end(), deleted_.begin(), deleted_.end());
    }
    RunList list{{}, false};
    Guarded(context_.Messages,
            [&] { list = ReadRunList(context_.Work, state.CurrentStudy, folder, state.Settings, std::move(known)); });
    ShowRunList(std::move(list));
    TellMissingRuns(context_, vaRunList_->Rows(), toldRuns_);
}

void frmMain::ShowRunList(RunList list) {
    const AppSettings& settings = context_.State.Settings;
    vaRunList_->SetRows(std::move(list.Rows), UnitsOf(settings));
    vaRunList_->ShowStopDelay(settings.EnableStopDelay != 0);
    const std::vector<RunListRow>& rows = vaRunList_->Rows();
    if (list.IsWhole) {
        Guarded(context_.Messages, [&] { ComputeStudyResults(context_.State.CurrentStudy, rows, labels_); });
        results_->ShowConditions(ConditionsOfAverage(rows), OtherThresholds(rows));
        results_->ShowCertainty(CertaintyOf(rows, context_.State.CurrentStudy.Options, UnitsOf(settings)));
    } else {
        labels_ = {};
        results_->ShowConditions("not all runs were read", {});
        results_->ShowCertainty({});
    }
    results_->ShowResults(labels_, settings);
    const bool hasRuns = !rows.empty();
    menu_->Enable(CommandNeeds::ARun, hasRuns);
    profile_->ShowRun(vaRunList_->ActiveRun());
    frBegin_->setVisible(!hasRuns && !context_.State.CurrentStudy.Stored);
    const bool hasCounted =
        std::ranges::any_of(rows, [](const RunListRow& row) { return row.State == RunState::Counted; });
    lblNoneCounted_->setVisible(hasRuns && !hasCounted && vaRunList_->HiddenRuns() == 0);
    ShowHiddenRuns();
    ShowStatus();
}

void frmMain::ComputeStopDelaysAnew() {
    ChangeStudy(QStringLiteral("Computing the stop delays anew"), [this] {
        ComputeStopDelays(context_.State.CurrentStudy, vaRunList_->Rows(), context_.State.Settings);
        context_.State.StudyUnchanged = false;
    });
}

void frmMain::Tell(const QString& done) {
    lblDone_->setText(done);
    lblDone_->setToolTip(done);
}

void frmMain::ShowStatus() {
    const ApplicationState& state = context_.State;
    // Where the user goes on, the session has not ended.
    endsWithSession_ = false;
    if (state.StudyUnchanged) recovery_.Settle();
    history_->NoteSaved();
    ShowSteps();
    const QString name = ToQt(Trim(state.CurrentStudy.Record.StudyName));
    setWindowTitle(name.isEmpty() ? QStringLiteral("Vantor[*]") : name + QStringLiteral("[*] - Vantor"));
    setWindowModified(!state.StudyUnchanged);
    const QString folder = ToQt(StudyGroupFolder(state));
    lblStudyGroup_->setText(QStringLiteral("Study Group: ") + folder);
    lblStudyGroup_->setToolTip(folder);
    const bool isNew = name.isEmpty() && state.CurrentStudy.Record.RunCount == 0;
    notice_->ShowStudy();
    lblSaved_->setText(!state.StudyUnchanged ? QStringLiteral("Not saved")
                                             : (isNew ? QStringLiteral("New study") : QStringLiteral("Saved")));
}

void frmMain::ToolbarButtonClick(int index) {
    Guarded(context_.Messages, [&] { menu_->ToolbarButtonClick(index); });
}

void frmMain::StartNewStudy() {
    if (MayLeaveStudy(context_)) BeginNewStudy();
}

void frmMain::OpenExistingStudy() {
    if (!MayLeaveStudy(context_)) return;
    if (!context_.OtherScreens.ShowStudyOpen()) return ShowStatus();
    OfferChanges();
    ShowStudy();
    NoteRecent();
}

void frmMain::OpenLastStudy() {
    const WorkingPaths& paths = context_.State.Paths;
    // Saving the current study makes that one the last.
    const std::string path = AsFolder(paths.LastStudyGroupPath) + paths.LastStudyName + StudyExtension;
    if (MayLeaveStudy(context_)) OpenStudyAt(path);
}

void frmMain::SaveNow() {
    // The study is saved even where only the settings could not be.
    bool isSaved = false;
    Guarded(context_.Messages, [&] { isSaved = SaveStudyNow(context_); });
    if (!isSaved && Trim(context_.State.CurrentStudy.Record.StudyName).empty()) details_->FocusStudyName();
    NoteRecent();
    ShowStatus();
    if (isSaved) Tell(QStringLiteral("Saved"));
}

void frmMain::SaveAs() {
    if (!context_.OtherScreens.ShowStudySaveAs()) return;
    // The steps before have the study's old name.
    history_->Forget();
    details_->ShowStudy();
    RefreshStudyResults();
    NoteRecent();
}

void frmMain::ReadCounter() { TakeRuns(DownloadAndProcess(context_)); }

void frmMain::ShowPreferences() {
    context_.OtherScreens.ShowPreferences();
    if (!Restarts()) RefreshStudyResults();
}

bool frmMain::Restarts() {
    bool& wanted = context_.State.RestartWanted;
    if (wanted) wanted = close();
    return wanted;
}

void frmMain::ProcessRuns() { TakeRuns(ProcessCounterFile(context_)); }

void frmMain::ProcessTemporaryRuns() { TakeRuns(context_.OtherScreens.ShowUploadData({UploadOf::TemporaryRuns})); }

void frmMain::ProcessLog(LogKind kind) { TakeRuns(ImportLog(context_, kind)); }
void frmMain::ImportTracks(const std::vector<std::string>& paths) {
    TakeRunsOfGroups(context_.OtherScreens.ShowImportTracks(paths, {}));
}

void frmMain::ShowStartUpOptions() { CarryOut(context_.OtherScreens.ShowStartUp()); }

void frmMain::ShowChosenView() {
    const UserChoices& choices = context_.State.Choices;
    const bool isCountedOnly = IsTaken(choices, CountedOnlyKey);
    menu_->Command("mnuViewCounted").setChecked(isCountedOnly);
    vaRunList_->ShowCountedOnly(isCountedOnly);
    ShowHiddenRuns();
    const bool showsProfile = ChoiceOf(choices, ProfilePaneKey) != ChoiceHidden;
    menu_->Command("mnuViewProfile").setChecked(showsProfile);
    profile_->setVisible(showsProfile);
    profile_->ShowRun(vaRunList_->ActiveRun());
}

void frmMain::ShowProfilePane(bool isShown) {
    StoreChoices({{ProfilePaneKey, isShown ? "" : ChoiceHidden}});
    ShowChosenView();
}

void frmMain::ShowCountedOnly(bool isOn) {
    StoreChoices({{CountedOnlyKey, isOn ? ChoiceTaken : ""}});
    ShowChosenView();
}

void frmMain::ShowDelayChart() {
    context_.OtherScreens.ShowDelayChart();
    ShowChosenView();
}

void frmMain::ShowHiddenRuns() {
    const int hidden = vaRunList_->HiddenRuns();
    lblHiddenRuns_->setVisible(hidden > 0);
    lblHiddenRuns_->setText(hidden == 1 ? QStringLiteral("1 run that does not count is not shown (View)")
                                        : QStringLiteral("%1 runs that do not count are not shown (View)").arg(hidden));
}

void frmMain::ShowStatisticsOptions() {
    const Study& study = context_.State.CurrentStudy;
    const auto choices = context_.OtherScreens.ShowStatisticsOptions({study.Options, study.Lines});
    if (choices) TakeChoices(*choices);
}

void frmMain::TakeChoices(const StudyChoices& choices) {
    Study& study = context_.State.CurrentStudy;
    if (choices == StudyChoices{study.Options, study.Lines}) return;
    ChangeStudy(QStringLiteral("Statistics Options"), [&] {
        study.Options = choices.Options;
        study.Lines = choices.Lines;
        context_.State.StudyUnchanged = false;
    });
}

void frmMain::ShowStatisticsInDetail() {
    const StatisticsVisit visit = context_.OtherScreens.ShowStudyStatistics(vaRunList_->ActiveRun());
    TakeChoices(visit.Choices);
    if (visit.LastRun > 0 && visit.LastRun != vaRunList_->ActiveRun()) vaRunList_->SelectRuns(visit.LastRun, 1);
}

void frmMain::ShowStudyStatistics() {
    const std::string problem = StudyProblem(context_.State.CurrentStudy);
    if (problem.empty()) return RefreshStudyResults();
    context_.Messages.Tell(problem);
    if (context_.State.CurrentStudy.Record.RunCount > 0) details_->FocusStudyName();
}

void frmMain::ShowHelpTopics() { ShowHelp(context_.DesktopServices, context_.Files); }

void frmMain::OpenSupportSite() { context_.DesktopServices.OpenWebPage(SupportSite); }

void frmMain::ShowAbout() {
    context_.Messages.Ask({.Text = "Vantor\nVersion " VANTOR_VERSION "\n\nMade with Qt " + std::string(qVersion()) +
                                   ", " VANTOR_LIBRARIES ".",
                           .Title = "About Vantor"});
}

void frmMain::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    FitHeight(height());
}

void frmMain::FitHeight(int height) {
    // On a small screen the list of runs gets what the tools and the figures can do without.
    const bool isLow = height < LowWindow;
    menu_->SetToolBarLow(isLow);
    results_->SetLow(isLow);
}

void frmMain::closeEvent(QCloseEvent* event) {
    // Changes are kept then, and the next start offers them.
    if (endsWithSession_) return event->accept();
    event->ignore();
    Guarded(context_.Messages, [&] { event->setAccepted(MayLeaveStudy(context_)); });
    if (event->isAccepted()) recovery_.Discard();
    ShowStatus();
}

}  // namespace vantor
