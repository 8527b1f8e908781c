#include "workspace/forms/frmMain.h"

#include <QCloseEvent>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>

#include "analysis/StudyEdits.h"
#include "core/DamagedFile.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/Settings.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/forms/WindowLayout.h"
#include "core/modMain.h"
#include "workspace/StudyCommands.h"
#include "workspace/StudyGroups.h"
#include "workspace/StudyWorkspace.h"
#include "workspace/forms/MainMenu.h"
#include "workspace/forms/ResultsPanel.h"
#include "workspace/forms/RunListView.h"
#include "workspace/forms/StudyDetailsPanel.h"
#include "workspace/forms/StudyNotice.h"

namespace vantor {
namespace {

constexpr const char* SupportSite = "https://vantor.example/support";

std::string FullPath(const FileSystem& files, const std::string& path) {
    const std::string whole = IsAbsolutePath(path) ? path : AsFolder(files.CurrentFolder()) + path;
    const std::string absolute = FromQt(QDir::toNativeSeparators(QDir::cleanPath(ToQt(whole))));
    const std::string asListed = LongPathName(files, absolute);
    return asListed.empty() ? absolute : asListed;
}

}  // namespace

frmMain::frmMain(AppContext& context) : context_(context), recovery_(context) {
    setObjectName(QStringLiteral("frmMain"));
    resize(1000, 700);
    menu_ = new MainMenu(*this, context_, MenuEntries());
    mnuRunUndo_ = findChild<QAction*>(QStringLiteral("mnuRunUndo"));
    setCentralWidget(frStudyDetails_ = BuildStudyDetails());
    AddRunListKeys();
    BuildStatusBar();
    KeepChangesOften();
    RememberLayout(*this, context_.Memory);
}

QWidget* frmMain::BuildStudyDetails() {
    auto* frame = Named<QFrame>(this, "FrStudyDetails");
    frame->setAccessibleName(QStringLiteral("Study details"));
    details_ = new StudyDetailsPanel(context_, frame);
    details_->OnEdited = [this] { ShowStatus(); };
    vaRunList_ = Named<RunListView>(frame, "vaRunList");

    auto* column = new QVBoxLayout(frame);
    column->addWidget(details_);
    column->addLayout(BuildRunListHead(frame));
    column->addWidget(vaRunList_, 1);
    column->addLayout(BuildRunListButtons(frame));
    column->addWidget(results_ = new ResultsPanel(frame));
    results_->OnComputeAnew = [this] { Guarded(context_.Messages, [this] { ComputeStopDelaysAnew(); }); };
    return frame;
}

QLayout* frmMain::BuildRunListHead(QWidget* parent) {
    lblNoneCounted_ =
        Named<QLabel>(parent, "lblNoneCounted",
                      QStringLiteral("No run counts yet: set both boundaries of a run on its speed profile."));
    auto* line = new QHBoxLayout;
    line->addWidget(LabelFor(vaRunList_, QStringLiteral("&Runs in this study")));
    line->addStretch();
    line->addWidget(lblNoneCounted_);
    return line;
}

QLayout* frmMain::BuildRunListButtons(QWidget* parent) {
    auto* line = new QHBoxLayout;
    const auto add = [&](const char* name, const char* caption, const char* icon) {
        auto* button = Named<QPushButton>(parent, name, QString::fromLatin1(caption));
        button->setIcon(LineIcon(QLatin1String(icon)));
        line->addWidget(button);
        return button;
    };
    Connect(add("BtnAddRun", "&Add Run", "add-run"), &QPushButton::clicked, this, context_.Messages,
            [this] { AddRuns(); });
    btnDeleteRun_ = add("BtnDeleteRun", "De&lete Run", "delete-run");
    btnDeleteRun_->setToolTip(QStringLiteral("Take the run out of the study; its file stays"));
    Connect(btnDeleteRun_, &QPushButton::clicked, this, context_.Messages, [this] { DeleteActiveRun(); });
    btnShowDetails_ = add("BtnShowDetails", "Sho&w Details", "show-details");
    btnShowDetails_->setToolTip(QStringLiteral("Open the run's speed profile, where its boundaries are set"));
    Connect(btnShowDetails_, &QPushButton::clicked, this, context_.Messages, [this] { ShowDetails(); });
    btnEditRun_ = add("BtnEditRun", "&Edit Run", "edit");
    btnEditRun_->setToolTip(
        QStringLiteral("Open the run details: names and nodes of the run, its sensor data and statistics"));
    Connect(btnEditRun_, &QPushButton::clicked, this, context_.Messages,
            [this] { ShowActiveRun(&Screens::ShowRunEditor); });
    line->addStretch();
    Connect(add("btnContDelayVsAvg", "View Control Delay &Plot", "delay-chart"), &QPushButton::clicked, this,
            context_.Messages, [this] { context_.OtherScreens.ShowDelayChart(); });
    return line;
}

void frmMain::AddRunListKeys() {
    const auto add = [this](const QList<QKeySequence>& keys, void (frmMain::*command)()) {
        auto* shortcut = new QShortcut(vaRunList_);
        shortcut->setContext(Qt::WidgetShortcut);
        shortcut->setKeys(keys);
        Connect(shortcut, &QShortcut::activated, this, context_.Messages, [this, command] { (this->*command)(); });
    };
    add({Qt::Key_Insert}, &frmMain::AddRuns);
    add({Qt::Key_Delete}, &frmMain::DeleteActiveRun);
    add({Qt::Key_Return, Qt::Key_Enter}, &frmMain::ShowDetails);
    vaRunList_->addActions(menu_->CommandsOf(RunMenu));
    vaRunList_->setContextMenuPolicy(Qt::ActionsContextMenu);
    Connect(vaRunList_, &QTableView::doubleClicked, this, context_.Messages, [this] { ShowDetails(); });
}

void frmMain::BuildStatusBar() {
    lblStudyGroup_ = Named<QLabel>(statusBar(), "lblStudyGroup");
    // A long folder must not keep the window from becoming narrow.
    lblStudyGroup_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    lblSaved_ = Named<QLabel>(statusBar(), "lblSaved");
    notice_ = new StudyNotice(context_, statusBar());
    notice_->OnChanged = [this] {
        details_->ShowStudy();
        ShowStatus();
    };
    statusBar()->addWidget(lblStudyGroup_, 1);
    statusBar()->addPermanentWidget(notice_);
    notice_->ShowStudy();
    statusBar()->addPermanentWidget(lblSaved_);
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
    if (!studyPath.empty()) return OpenStudyAt(FullPath(context_.Files, studyPath));
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
    OfferUndo(std::nullopt);
    details_->ShowStudy();
    // While the runs are read, those of the study before do not stand under this one's name.
    ShowRunList({});
    RefreshStudyResults();
}

void frmMain::RefreshStudyResults() {
    const ApplicationState& state = context_.State;
    RunList list{{}, false};
    Guarded(context_.Messages,
            [&] { list = ReadRunList(context_.Work, state.CurrentStudy, StudyGroupFolder(state), state.Settings); });
    ShowRunList(std::move(list));
    TellMissingRuns(context_, vaRunList_->Rows(), toldRuns_);
}

void frmMain::ShowRunList(RunList list) {
    const AppSettings& settings = context_.State.Settings;
    vaRunList_->SetRows(std::move(list.Rows));
    vaRunList_->ShowStopDelay(settings.EnableStopDelay != 0);
    const std::vector<RunListRow>& rows = vaRunList_->Rows();
    if (list.IsWhole) {
        Guarded(context_.Messages, [&] { ComputeStudyResults(context_.State.CurrentStudy, rows, labels_); });
        results_->ShowConditions(ConditionsOfAverage(rows), OtherThresholds(rows));
    } else {
        labels_ = {};
        results_->ShowConditions("not all runs were read", {});
    }
    results_->ShowResults(labels_, settings);
    const bool hasRuns = vaRunList_->ActiveRun() != 0;
    btnDeleteRun_->setEnabled(hasRuns);
    btnShowDetails_->setEnabled(hasRuns);
    btnEditRun_->setEnabled(hasRuns);
    for (QAction* command : menu_->CommandsOf(RunMenu)) command->setEnabled(hasRuns);
    mnuRunUndo_->setEnabled(undo_.has_value());
    menu_->SetToolbarButtonEnabled(ShowDetailsButton, hasRuns);
    const bool hasCounted =
        std::ranges::any_of(rows, [](const RunListRow& row) { return row.State == RunState::Counted; });
    lblNoneCounted_->setVisible(hasRuns && !hasCounted);
    ShowStatus();
}

void frmMain::ComputeStopDelaysAnew() {
    ComputeStopDelays(context_.State.CurrentStudy, vaRunList_->Rows(), context_.State.Settings);
    context_.State.StudyUnchanged = false;
    RefreshStudyResults();
}

void frmMain::ShowStatus() {
    const ApplicationState& state = context_.State;
    // Where the user goes on, the session has not ended.
    endsWithSession_ = false;
    if (state.StudyUnchanged) recovery_.Settle();
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

void frmMain::ChangeRun(const std::string& what, int run, const std::function<void()>& change) {
    const Study& study = context_.State.CurrentStudy;
    const StudyRunEntry before = study.Entries[run];
    const auto movement = [&] {
        const auto& rows = vaRunList_->Rows();
        const auto row = static_cast<std::size_t>(run - 1);
        return row < rows.size() ? rows[row].Facts.Movement : std::uint64_t{0};
    };
    const std::uint64_t movementBefore = movement();
    Guarded(context_.Messages, change);
    RefreshStudyResults();
    vaRunList_->setFocus();
    if (movement() != movementBefore)
        OfferUndo(std::nullopt);
    else if (study.Entries[run] != before)
        OfferUndo(RunUndo{what + " of run " + RunFileName(before), run, before});
}

void frmMain::OfferUndo(std::optional<RunUndo> undo) {
    undo_ = std::move(undo);
    mnuRunUndo_->setText(undo_ ? QStringLiteral("&Undo ") + ToQt(undo_->Text) : QStringLiteral("&Undo"));
    mnuRunUndo_->setEnabled(undo_.has_value());
}

void frmMain::Undo() {
    if (!undo_) return context_.DesktopServices.Beep();
    TakeBack(context_.State, *undo_);
    OfferUndo(std::nullopt);
    RefreshStudyResults();
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
}

void frmMain::OpenLastStudy() {
    const WorkingPaths& paths = context_.State.Paths;
    // Saving the current study makes that one the last.
    const std::string path = AsFolder(paths.LastStudyGroupPath) + paths.LastStudyName + StudyExtension;
    if (MayLeaveStudy(context_)) OpenStudyAt(path);
}

void frmMain::SaveNow() {
    // The study is saved even where only the settings could not be.
    Guarded(context_.Messages, [this] { SaveStudyNow(context_); });
    ShowStatus();
}

void frmMain::SaveAs() {
    if (!context_.OtherScreens.ShowStudySaveAs()) return;
    details_->ShowStudy();
    RefreshStudyResults();
}

void frmMain::ReadCounter() {
    DownloadAndProcess(context_);
    RefreshStudyResults();
}

void frmMain::ShowPreferences() {
    context_.OtherScreens.ShowPreferences();
    if (!Restarts()) RefreshStudyResults();
}

bool frmMain::Restarts() {
    bool& wanted = context_.State.RestartWanted;
    if (wanted) wanted = close();
    return wanted;
}

void frmMain::ProcessRuns() {
    ProcessCounterFile(context_);
    RefreshStudyResults();
}

void frmMain::ProcessTemporaryRuns() {
    context_.OtherScreens.ShowUploadData({UploadOf::TemporaryRuns, std::nullopt});
    RefreshStudyResults();
}

void frmMain::ProcessLog(LogKind kind) {
    ImportLog(context_, kind);
    RefreshStudyResults();
}

void frmMain::ShowStartUpOptions() { CarryOut(context_.OtherScreens.ShowStartUp()); }

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

void frmMain::AddRuns() {
    // A run that was deleted before may be one of them.
    if (context_.OtherScreens.ShowRunSelect()) OfferUndo(std::nullopt);
    RefreshStudyResults();
}

void frmMain::DeleteActiveRun() {
    const int run = vaRunList_->ActiveRun();
    if (run == 0) return context_.DesktopServices.Beep();
    const StudyRunEntry deleted = context_.State.CurrentStudy.Entries[run];
    DeleteRun(context_.State, run);
    OfferUndo(RunUndo{"Delete of run " + RunFileName(deleted), run, deleted, true});
    RefreshStudyResults();
}

void frmMain::ShowDetails() {
    const int run = vaRunList_->ActiveRun();
    if (run == 0) return context_.DesktopServices.Beep();
    ChangeRun("Profile", run, [&] { ShowRunDetails(context_, run); });
}

void frmMain::ShowActiveRun(void (Screens::*open)(int)) {
    const int run = vaRunList_->ActiveRun();
    if (run == 0) return context_.DesktopServices.Beep();
    ChangeRun("Details", run, [&] { ShowRun(context_, run, open); });
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
