#include <QInputDialog>
#include <QMenu>

#include "analysis/StudyEdits.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/DocumentChange.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "workspace/StudyCommands.h"
#include "workspace/forms/MainMenu.h"
#include "workspace/forms/RunListView.h"
#include "workspace/forms/StudyDetailsPanel.h"
#include "workspace/forms/StudyHistory.h"
#include "workspace/forms/frmMain.h"

namespace vantor {
namespace {

/// "run NB-001", "3 runs".
QString RunsInWords(const Study& study, const std::vector<int>& runs) {
    if (runs.size() == 1) return QStringLiteral("run ") + ToQt(RunFileName(study.Entries[runs.front()]));
    return QStringLiteral("%1 runs").arg(runs.size());
}

}  // namespace

void frmMain::OfferRunCommands() {
    menu_->Command("mnuRunShow").setShortcuts({Qt::Key_Return, Qt::Key_Enter});
    vaRunList_->addActions(menu_->CommandsOf(RunMenu));
    vaRunList_->setContextMenuPolicy(Qt::ActionsContextMenu);
    Connect(vaRunList_, &QTableView::doubleClicked, this, context_.Messages, [this] { ShowDetails(); });
    vaRunList_->OnMoved = [this](int before) { Guarded(context_.Messages, [&] { MoveSelectedRuns(before); }); };
}

void frmMain::ChangeStudy(const QString& what, const std::function<void()>& change) {
    StudyContents before = ContentsOf(context_.State.CurrentStudy);
    Guarded(context_.Messages, change);
    history_->Note(what, std::move(before));
    Tell({});
    ShowRuns(RunFiles::NotReadYet);
}

void frmMain::ChangeRun(const char* what, int run, const std::function<void()>& change) {
    const Study& study = context_.State.CurrentStudy;
    StudyContents before = ContentsOf(study);
    const auto movements = [this] {
        std::vector<std::uint64_t> hashes;
        hashes.reserve(vaRunList_->Rows().size());
        for (const RunListRow& row : vaRunList_->Rows()) hashes.push_back(row.Facts.Movement);
        return hashes;
    };
    const auto movementsBefore = movements();
    Guarded(context_.Messages, change);
    const QString text =
        QStringLiteral("%1 of run %2").arg(QLatin1String(what), ToQt(RunFileName(before.Entries[run])));
    history_->Note(text, std::move(before));
    RefreshStudyResults();
    if (movements() != movementsBefore) history_->Forget();
    ShowStatus();
    vaRunList_->setFocus();
}

void frmMain::ShowSteps() {
    const QUndoStack& changes = history_->Changes();
    const auto show = [this](const char* command, const char* caption, const QString& text, bool isEnabled) {
        QAction& action = menu_->Command(command);
        action.setText(QString::fromLatin1(caption) + (text.isEmpty() ? QString() : QStringLiteral(" ") + text));
        action.setEnabled(isEnabled);
    };
    show("mnuRunUndo", "&Undo", changes.undoText(), changes.canUndo());
    show("mnuRunRedo", "Red&o", changes.redoText(), changes.canRedo());
}

void frmMain::ShowStep() {
    details_->ShowStudy();
    Tell({});
    ShowRuns(std::exchange(toReadAfterStep_, RunFiles::NotReadYet));
}

void frmMain::AddRuns(const std::function<void()>& add) {
    const int before = context_.State.CurrentStudy.Record.RunCount;
    ChangeStudy(QStringLiteral("Adding runs"), add);
    const int added = context_.State.CurrentStudy.Record.RunCount - before;
    if (added <= 0) return;
    vaRunList_->SelectRuns(before + 1, added);
    if (Trim(context_.State.CurrentStudy.Record.StudyName).empty())
        details_->FocusStudyName();
    else
        vaRunList_->setFocus();
    Tell(added == 1 ? QStringLiteral("1 run added") : QStringLiteral("%1 runs added").arg(added));
}

void frmMain::DeleteSelectedRuns() {
    const std::vector<int> runs = vaRunList_->SelectedRuns();
    if (runs.empty()) return context_.DesktopServices.Beep();
    const QString words = RunsInWords(context_.State.CurrentStudy, runs);
    for (const int run : runs) deleted_.push_back(vaRunList_->Rows()[static_cast<std::size_t>(run - 1)]);
    ChangeStudy(QStringLiteral("Delete of ") + words, [&] { DeleteRuns(context_.State, runs); });
    Tell(QStringLiteral("Taken out: %1. The files stay; Ctrl+Z brings back what was taken out.").arg(words));
}

void frmMain::MoveSelectedRuns(int before) {
    const std::vector<int> runs = vaRunList_->SelectedRuns();
    if (runs.empty()) return context_.DesktopServices.Beep();
    if (vaRunList_->IsSorted() || vaRunList_->HiddenRuns() > 0) {
        context_.DesktopServices.Beep();
        return Tell(QStringLiteral("Not moved: runs are moved in a list that shows all of them in the study's order"));
    }
    int first = 0;
    ChangeStudy(QStringLiteral("Move of ") + RunsInWords(context_.State.CurrentStudy, runs),
                [&] { first = MoveRuns(context_.State, runs, before); });
    vaRunList_->SelectRuns(first, static_cast<int>(runs.size()));
}

void frmMain::MoveRunsUp() {
    const std::vector<int> runs = vaRunList_->SelectedRuns();
    if (runs.empty() || runs.front() == 1) return context_.DesktopServices.Beep();
    MoveSelectedRuns(runs.front() - 1);
}

void frmMain::MoveRunsDown() {
    const std::vector<int> runs = vaRunList_->SelectedRuns();
    if (runs.empty() || runs.back() == context_.State.CurrentStudy.Record.RunCount)
        return context_.DesktopServices.Beep();
    MoveSelectedRuns(runs.back() + 2);
}

std::optional<std::vector<RunMark>> frmMain::WriteMarks(const std::vector<RunMark>& marks) {
    toReadAfterStep_ = RunFiles::All;
    std::vector<RunMark> replaced;
    bool isDone = false;
    Guarded(context_.Messages, [&] {
        isDone = context_.Work.Run("Marking the runs", [&replaced, marks, folder = StudyGroupFolder(context_.State)](
                                                           FileSystem& files, const Progress& progress) {
            replaced = WriteRunMarks(files, folder, marks, progress);
        });
    });
    return isDone ? std::optional(replaced) : std::nullopt;
}

void frmMain::MarkRuns(bool isBefore) {
    const std::vector<int> runs = vaRunList_->SelectedRuns();
    const QString words = RunsInWords(context_.State.CurrentStudy, runs);
    std::vector<RunMark> marks;
    marks.reserve(runs.size());
    for (const int run : runs)
        if (vaRunList_->Rows()[static_cast<std::size_t>(run - 1)].Facts.IsRun())
            marks.push_back(MarkOf(RunFileName(context_.State.CurrentStudy.Entries[run]), isBefore));
    const auto replaced = WriteMarks(marks);
    ShowStep();
    if (!replaced) return;
    const QString word = isBefore ? QStringLiteral("Before") : QStringLiteral("After");
    if (replaced->empty()) return Tell(QStringLiteral("Nothing to mark: %1 already").arg(word));
    history_->Note(new DocumentChange<std::vector<RunMark>>(
        QStringLiteral("Marking of %1 as %2").arg(words, word), *replaced, marks,
        [this](const std::vector<RunMark>& shown) { WriteMarks(shown); }));
    ShowStatus();
    Tell(QStringLiteral("%1 marked as %2").arg(replaced->size()).arg(word));
}

const frmMain::RunText& frmMain::PeriodText() {
    static const RunText text{
        &StudyRunEntry::Period,           "Period of ",        "Set Period", "Period of the selected runs:", "(none)",
        {"AM peak", "Midday", "PM peak"}, RunListModel::Period};
    return text;
}

const frmMain::RunText& frmMain::SetAsideText() {
    static const RunText text{&StudyRunEntry::SetAside,
                              "Setting aside of ",
                              "Set Aside",
                              "Why the statistics are to stand without the selected runs, too:",
                              "(not set aside)",
                              {"Detour", "Incident", "Wrong start"},
                              RunListModel::SetAside};
    return text;
}

void frmMain::FillRunTexts(QMenu& menu, const RunText& text) {
    std::set<std::string> words = text.Usual;
    for (const StudyRunEntry& entry : context_.State.CurrentStudy.Entries)
        if (!(entry.*text.Text).empty()) words.insert(entry.*text.Text);
    const auto add = [&](const QString& caption, std::function<void()> take) {
        QAction* action = menu.addAction(caption);
        action->setEnabled(vaRunList_->ActiveRun() != 0);
        Connect(action, &QAction::triggered, this, context_.Messages, std::move(take));
    };
    for (const std::string& word : words) add(ToQt(word), [this, &text, word] { SetRunText(text, word); });
    add(QString::fromLatin1(text.None), [this, &text] { SetRunText(text, {}); });
    menu.addSeparator();
    add(QStringLiteral("&Other..."), [this, &text] {
        bool isGiven = false;
        const QString word =
            QInputDialog::getText(this, QString::fromLatin1(text.Title), QString::fromLatin1(text.Question),
                                  QLineEdit::Normal, QString(), &isGiven);
        if (isGiven) SetRunText(text, FromQt(word.simplified()));
    });
}

void frmMain::SetRunText(const RunText& text, const std::string& word) {
    const std::vector<int> runs = vaRunList_->SelectedRuns();
    Study& study = context_.State.CurrentStudy;
    ChangeStudy(QString::fromLatin1(text.Step) + RunsInWords(study, runs), [&] {
        for (const int run : runs) study.Entries[run].*text.Text = word;
        context_.State.StudyUnchanged = false;
    });
    vaRunList_->ShowColumn(text.Column);
}

void frmMain::CopyRuns() {
    context_.DesktopServices.CopyText(vaRunList_->SelectionAsTable());
    Tell(QStringLiteral("Copied as a table"));
}

void frmMain::ProposeBoundaries() {
    std::map<int, StudyRunEntry> entries;
    ChangeStudy(QStringLiteral("Proposed boundaries"), [&] {
        entries = context_.OtherScreens.ShowBoundaryProposals();
        for (const auto& [run, entry] : entries) TakeEntry(context_.State, run, entry);
    });
    vaRunList_->setFocus();
    if (entries.empty()) return;
    Tell(QStringLiteral("Boundaries given to %1; Ctrl+Z takes them back")
             .arg(entries.size() == 1 ? QStringLiteral("1 run") : QStringLiteral("%1 runs").arg(entries.size())));
}

void frmMain::SetNodesOfRuns() {
    const int run = vaRunList_->ActiveRun();
    if (run == 0) return context_.DesktopServices.Beep();
    bool areSet = false;
    ChangeRun("Nodes", run, [&] { areSet = ShowNodePlacesOf(context_, run); });
    // The backups are the way back, as for all that changes a run's samples.
    if (areSet) history_->Forget();
    ShowStatus();
}

void frmMain::ShowDetails() {
    const int run = vaRunList_->ActiveRun();
    if (run == 0) return context_.DesktopServices.Beep();
    ChangeRun("Profile", run, [&] { ShowRunDetails(context_, run, vaRunList_->SelectedRuns()); });
}

void frmMain::ShowActiveRun(void (Screens::*open)(int)) {
    const int run = vaRunList_->ActiveRun();
    if (run == 0) return context_.DesktopServices.Beep();
    ChangeRun("Details", run, [&] { ShowRun(context_, run, open); });
}

}  // namespace vantor
