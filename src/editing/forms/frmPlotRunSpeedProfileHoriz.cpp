#include "editing/forms/frmPlotRunSpeedProfileHoriz.h"

#include <QKeyEvent>
#include <QMenu>
#include <algorithm>

#include "core/Backup.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/PictureFile.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/DocumentChange.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/forms/WindowLayout.h"
#include "core/modMain.h"
#include "editing/TrimRun.h"
#include "editing/forms/frmProposeBoundaries.h"
#include "plots/ReportProfile.h"
#include "plots/forms/ProfileWords.h"

namespace vantor {
frmPlotRunSpeedProfileHoriz::frmPlotRunSpeedProfileHoriz(AppContext& context, const ProfileVisit& visit,
                                                         ProfileVisits::Sink onChanged)
    : context_(context),
      run_(context.State.CurrentRun),
      visits_(context.State, visit, std::move(onChanged)),
      profile_(run_, context.State.Settings, visits_.Entry()),
      controls_(*this) {
    setObjectName(QStringLiteral("frmPlotRunSpeedProfileHoriz"));
    setWindowTitle(QStringLiteral("Speed Profile"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    OnChooseRuns = [this](const std::vector<BoundsPreview>& previews) { return ChooseRunsFor(previews); };
    OnProposals = [this](const Study& study) { return AskForProposals(context_, study, UserNode(), this); };
    AddActions();
    ConnectControls();
    ConnectPlot();
    ShowRun();
    controls_.Plot->setFocus();
    RememberLayout(*this, context.Memory);
}

void frmPlotRunSpeedProfileHoriz::ConnectControls() {
    MessageBoxes& messages = context_.Messages;
    Connect(controls_.HScroll1, &QScrollBar::valueChanged, this, messages,
            [this](int value) { Scroll(value - profile_.Geometry().Offset()); });
    Connect(controls_.cmbPlotScaleList, &QComboBox::currentIndexChanged, this, messages,
            [this](int item) { ChooseScale(item, controls_.Plot->rect().center().x()); });
    Connect(controls_.btnToggleSpdTime, &QPushButton::clicked, this, messages, [this] { Toggle(); });
    Connect(controls_.btnTrim, &QPushButton::clicked, this, messages, [this] { CutToBoundaries(); });
    Connect(controls_.BtnPlotSpeedExit, &QPushButton::clicked, this, messages, [this] { accept(); });
    Connect(controls_.cmdHelp, &QPushButton::clicked, this, messages,
            [this] { ShowHelp(context_.DesktopServices, context_.Files, HelpTopic::SpeedProfile); });
    Connect(controls_.btnNextRun, &QPushButton::clicked, this, messages, [this] { GoToNext(); });
    Connect(controls_.btnPreviousRun, &QPushButton::clicked, this, messages, [this] { GoToPrevious(); });
    for (const ProfileLine line : AllLines) ConnectBox(BoxOf(line), line);
    ConnectProposal();
}

void frmPlotRunSpeedProfileHoriz::ConnectBox(NumberBox& box, ProfileLine line) {
    MessageBoxes& messages = context_.Messages;
    box.OnEnter = [this, &messages, line] { Guarded(messages, [&] { TakeTyped(line); }); };
    box.OnLeave = [this, &messages, line] { Guarded(messages, [&] { LeaveBox(line); }); };
    box.OnGiveUp = [this] {
        ShowBoxes();
        ShowReadiness();
    };
    Connect(&box, &QLineEdit::textEdited, this, messages, [this] { ShowReadiness(); });
    box.OnStep = [this, &messages, line](int units) {
        Guarded(messages, [&] {
            LeaveBox(line);
            profile_.Grab(line);
            profile_.MoveBy(units);
            if (ComputesOnInput()) ComputeQuietly();
            ShowFigures();
        });
    };
    box.OnStepped = [this, &messages] { Guarded(messages, [this] { EndMove(true); }); };
}

void frmPlotRunSpeedProfileHoriz::ConnectPlot() {
    MessageBoxes& messages = context_.Messages;
    controls_.Plot->OnMoved = [this, &messages] {
        Guarded(messages, [this] {
            if (profile_.Drag().IsReady()) ComputeQuietly();
            ShowFigures();
        });
    };
    controls_.Plot->OnReleased = [this, &messages](ProfileLine line, bool computes) {
        Guarded(messages, [&] {
            ShowReadiness();
            // What was moved is a step that can be taken back even where it cannot be computed.
            if (computes) Guarded(messages, [this] { Compute(); });
            Record(line);
        });
    };
    controls_.Plot->OnActivated = [this] { ShowFigures(); };
    controls_.Plot->OnPointer = [this](std::optional<double> x) { ShowReadOut(x); };
    controls_.Plot->OnZoom = [this, &messages](int steps, double x) { Guarded(messages, [&] { Zoom(steps, x); }); };
    controls_.Plot->OnScroll = [this, &messages](double values) { Guarded(messages, [&] { Scroll(values); }); };
}

QAction* frmPlotRunSpeedProfileHoriz::AddAction(const char* name, const QString& text, const QKeySequence& keys,
                                                void (frmPlotRunSpeedProfileHoriz::*act)()) {
    auto* action = new QAction(text, this);
    action->setObjectName(QLatin1String(name));
    action->setShortcut(keys);
    Connect(action, &QAction::triggered, this, context_.Messages, [this, act] { (this->*act)(); });
    addAction(action);
    controls_.Plot->addAction(action);
    return action;
}

void frmPlotRunSpeedProfileHoriz::AddActions() {
    using Form = frmPlotRunSpeedProfileHoriz;
    const auto separate = [this] {
        auto* line = new QAction(this);
        line->setSeparator(true);
        controls_.Plot->addAction(line);
    };
    controls_.Plot->setContextMenuPolicy(Qt::ActionsContextMenu);
    for (QAction* action : AddStepActions(undo_, *this, *controls_.btnUndo, *controls_.btnRedo))
        controls_.Plot->addAction(action);
    separate();
    AddAction("mnuPropose", QStringLiteral("Propose Boundaries for &This Run"), QKeySequence("Ctrl+B"), &Form::Propose);
    if (visits_.Visit().GoesOn) {
        AddAction("mnuProposeForAll", QStringLiteral("Propose Boundaries for All &Runs..."),
                  QKeySequence("Ctrl+Shift+B"), &Form::ProposeForAll);
        separate();
        mnuPreviousRun_ = AddAction("mnuPreviousRun", QStringLiteral("Previous Run"),
                                    QKeySequence(Qt::ALT | Qt::Key_Left), &Form::GoToPrevious);
        mnuNextRun_ =
            AddAction("mnuNextRun", QStringLiteral("Next Run"), QKeySequence(Qt::ALT | Qt::Key_Right), &Form::GoToNext);
        separate();
        mnuUseForAll_ = AddAction("mnuUseForAll", QStringLiteral("Use for &All Runs..."), QKeySequence("Ctrl+Shift+A"),
                                  &Form::UseForAll);
        mnuUseForSelected_ =
            AddAction("mnuUseForSelected", QStringLiteral("Use for &Selected Runs..."), {}, &Form::UseForSelected);
        auto* menu = new QMenu(controls_.btnUseFor);
        menu->addActions({mnuUseForAll_, mnuUseForSelected_,
                          AddAction("mnuNodesForAll", QStringLiteral("&Nodes at These Places for All Runs..."), {},
                                    &Form::SetNodesForAll)});
        controls_.btnUseFor->setMenu(menu);
    }
    for (QWidget* button :
         std::initializer_list<QWidget*>{controls_.btnPreviousRun, controls_.btnNextRun, controls_.btnUseFor})
        button->setVisible(visits_.Visit().GoesOn);
    separate();
    mnuCopyPicture_ =
        AddAction("mnuCopyPicture", QStringLiteral("Copy Picture"), QKeySequence::Copy, &Form::CopyPicture);
    mnuSavePicture_ = AddAction("mnuSavePicture", QStringLiteral("Save Picture..."), {}, &Form::SavePicture);
}

void frmPlotRunSpeedProfileHoriz::ShowRun() {
    QUndoStack*& stack = stacks_[visits_.Run()];
    if (stack == nullptr) stack = new QUndoStack(&undo_);
    stack->setActive();
    controls_.ShowName(ToQt(Trim(run_.Header.RunName)));
    controls_.Plot->SetProfile(&profile_, NothingToDraw(profile_.Trace(), run_.Header.CalConstant));
    for (QWidget* control :
         std::initializer_list<QWidget*>{controls_.cmbPlotScaleList, controls_.btnToggleSpdTime, controls_.txtStart,
                                         controls_.txtEnd, controls_.txtIdealSpeed, controls_.btnPropose})
        control->setEnabled(profile_.Trace().HasMovement());
    for (QAction* action : {mnuCopyPicture_, mnuSavePicture_}) action->setEnabled(profile_.Trace().HasMovement());
    for (const auto& [button, direction] : {std::pair(controls_.btnPreviousRun, -1), {controls_.btnNextRun, 1}}) {
        // Where there is no run to go on to, the keys go to the plot and not into the run's name.
        if (!visits_.HasRun(direction) && button->hasFocus()) controls_.Plot->setFocus();
        button->setEnabled(visits_.HasRun(direction));
    }
    if (visits_.Visit().GoesOn) {
        const bool hasSelected =
            std::ranges::any_of(visits_.Visit().Selected, [this](int run) { return run != visits_.Run(); });
        mnuPreviousRun_->setEnabled(visits_.HasRun(-1));
        mnuNextRun_->setEnabled(visits_.HasRun(1));
        mnuUseForAll_->setEnabled(visits_.HasRun(-1) || visits_.HasRun(1));
        mnuUseForSelected_->setEnabled(hasSelected);
        controls_.btnUseFor->setEnabled(mnuUseForAll_->isEnabled());
    }
    isComputed_ = false;
    problem_.clear();
    if (profile_.Axis() == BoundaryAxis::Time) {
        // Its figures are those of its distances.
        profile_.ShowAlong(BoundaryAxis::Distance);
        Draw();
        profile_.ShowAlong(BoundaryAxis::Time);
    }
    Draw();
    ShowReadiness();
    settled_ = Now();
    GoOnProposing();
}

void frmPlotRunSpeedProfileHoriz::LeaveRun(bool isDone) {
    for (const ProfileLine line : AllLines) LeaveBox(line);
    visits_.Leave(isDone);
    const std::string name(FirstCharacters(FromQt(controls_.txtEditRunName->text()), RunNameWidth));
    if (name.empty() || name == Trim(run_.Header.RunName)) return;
    run_.Header.RunName = name;
    visits_.SetName(name);
}

void frmPlotRunSpeedProfileHoriz::GoOn(int direction) {
    if (!visits_.HasRun(direction) || profile_.Drag().DragLine() != ProfileLine::None)
        return context_.DesktopServices.Beep();
    LeaveRun(profile_.Drag().ReleaseCount() >= 2);
    const int before = visits_.Run();
    const auto passed = visits_.GoOn(direction, context_.Files);
    if (visits_.Run() != before) {
        profile_.RunChanged();
        ShowRun();
    } else {
        Draw();
    }
    if (passed.empty()) return;
    std::vector<std::string> reasons;
    reasons.reserve(passed.size());
    for (const NamedText& run : passed) reasons.push_back(run.Text);
    constexpr std::size_t MostTold = 5;
    context_.Messages.Tell(
        FirstOf(reasons, MostTold, "\n\n") + (visits_.Run() == before ? "\n\nThere is no other run in this direction."
                                                                      : "\n\nThe next run that can be read is shown."),
        MessageIcon::Warning);
}

void frmPlotRunSpeedProfileHoriz::Toggle() {
    profile_.ToggleAxis();
    Draw();
    settled_ = Now();
}

void frmPlotRunSpeedProfileHoriz::CutToBoundaries() {
    StudyRunEntry& entry = visits_.Entry();
    TrimmedRun trimmed = TrimToBoundaries(run_, profile_.Plot(), entry);
    if (!trimmed.Problem.empty()) return context_.Messages.Tell(trimmed.Problem, MessageIcon::Warning);
    const std::string folder = StudyGroupFolder(context_.State);
    const std::string name = RunFileName(entry);
    const std::string path = folder + name + RunExtension;
    if (!context_.Messages.Confirm("Do you want to trim run: " + name +
                                   "\nto the part between its boundaries?\n\nThe untrimmed run is kept as " +
                                   LastComponent(FreeBackupPath(context_.Files, path)) + "."))
        return;
    // Held until the stamp is taken, which would else be that of what came in between.
    const auto lock = context_.Files.Lock(folder);
    const auto stamp = context_.State.CurrentRunStamp;
    ReplaceRunFile(context_.Files, trimmed.Run, folder, name,
                   stamp ? Expected::Unchanged(*stamp) : AsItStands(context_.Files, path));
    context_.State.CurrentRunStamp = AsItStands(context_.Files, path).File;
    run_ = std::move(trimmed.Run);
    entry = std::move(trimmed.Entry);
    profile_.RunCut(trimmed.Plot);
    HideProposal();
    Draw();
    // The figures are those of the run as it is now: a look at it goes on from here. Its backup is the way back.
    visits_.BeginAnew();
    undo_.activeStack()->clear();
    settled_ = Now();
}

void frmPlotRunSpeedProfileHoriz::ChooseScale(int item, double anchor) {
    profile_.Geometry().SetScaleStep(ScaleSteps[static_cast<std::size_t>(item)], anchor);
    Draw();
}

void frmPlotRunSpeedProfileHoriz::Zoom(int steps, double anchor) {
    const int item =
        std::clamp(controls_.cmbPlotScaleList->currentIndex() - steps, 0, controls_.cmbPlotScaleList->count() - 1);
    ChooseScale(item, anchor);
}

void frmPlotRunSpeedProfileHoriz::Scroll(double axisValues) {
    profile_.Geometry().SetOffset(profile_.Geometry().Offset() + axisValues);
    ShowScrollBar();
    controls_.Plot->Redraw();
}

void frmPlotRunSpeedProfileHoriz::CopyPicture() {
    context_.DesktopServices.CopyPicture(ProfilePictureFile(
        context_.Documents, run_, visits_.Entry(), context_.State.Settings, controls_.Title(), PictureFormat::Png));
}

void frmPlotRunSpeedProfileHoriz::SavePicture() {
    const std::string start = StudyGroupFolder(context_.State) + RunFileName(visits_.Entry());
    vantor::SavePicture(context_, start + " Speed Profile", "Save Picture", [this](PictureFormat format) {
        return ProfilePictureFile(context_.Documents, run_, visits_.Entry(), context_.State.Settings, controls_.Title(),
                                  format);
    });
}

NumberBox& frmPlotRunSpeedProfileHoriz::BoxOf(ProfileLine line) {
    if (line == ProfileLine::IdealSpeed) return *controls_.txtIdealSpeed;
    return line == ProfileLine::Start ? *controls_.txtStart : *controls_.txtEnd;
}

void frmPlotRunSpeedProfileHoriz::TakeTyped(ProfileLine line) {
    if (const auto typed = Typed(line)) {
        // A boundary that is shown rounded stays where it is.
        const bool stays = line != ProfileLine::IdealSpeed && !BoxOf(line).isModified();
        if (stays)
            profile_.Grab(line);
        else
            Place(line, *typed);
        EndMove(false);
        return BoxOf(line).selectAll();
    }
    ShowBoxes();
    BoxOf(line).selectAll();
    context_.Messages.Tell(line == ProfileLine::IdealSpeed
                               ? "The ideal speed is a whole number of MPH from 1 to " +
                                     std::to_string(MostIdealSpeed) + ".\nEnter 0 or nothing for the computed one."
                               : FromQt(RangeInWords(profile_, line)),
                           MessageIcon::Warning);
}

void frmPlotRunSpeedProfileHoriz::LeaveBox(ProfileLine line) {
    if (!BoxOf(line).isModified()) return;
    if (const auto typed = Typed(line)) {
        Place(line, *typed);
        return EndMove(true);
    }
    ShowBoxes();
}

void frmPlotRunSpeedProfileHoriz::Place(ProfileLine line, std::int32_t typed) {
    BoxOf(line).setModified(false);
    profile_.Grab(line);
    if (line == ProfileLine::IdealSpeed)
        profile_.SetIdealSpeedUser(typed);
    else
        profile_.MoveTo(typed);
}

void frmPlotRunSpeedProfileHoriz::EndMove(bool quietly) {
    const ProfileLine line = profile_.Drag().DragLine();
    profile_.Release();
    ShowReadiness();
    controls_.Plot->Redraw();
    if (!ComputesOnInput())
        ShowFigures();
    else if (quietly)
        ComputeQuietly();
    else
        Guarded(context_.Messages, [this] { Compute(); });
    Record(line);
}

void frmPlotRunSpeedProfileHoriz::Record(ProfileLine line) {
    Record(line == ProfileLine::IdealSpeed ? NameOf(line) : QStringLiteral("Move ") + NameOf(line).toLower());
}

void frmPlotRunSpeedProfileHoriz::Record(const QString& text) {
    const Document before = std::exchange(settled_, Now());
    if (HasSameBoundaries(before.Entry, settled_.Entry) && before.Plot == settled_.Plot) return;
    undo_.activeStack()->push(new DocumentChange<Document>(text, before, settled_, [this](const Document& document) {
        Guarded(context_.Messages, [&] { Show(document); });
    }));
}

void frmPlotRunSpeedProfileHoriz::Show(const Document& document) {
    if (profile_.Drag().DragLine() != ProfileLine::None) return;
    const BoundaryAxis shown = profile_.Axis();
    visits_.Entry() = document.Entry;
    profile_.Restore(document.Plot);
    isComputed_ = document.IsComputed;
    problem_.clear();
    // Along their own axis: over time a computation moves boundaries that were set by distance.
    if (isComputed_) ComputeQuietly();
    visits_.Entry() = document.Entry;
    profile_.ShowAlong(shown);
    ShowAxis();
    controls_.Plot->Redraw();
    ShowFigures();
    settled_ = Now();
}

bool frmPlotRunSpeedProfileHoriz::MayClose() {
    const int releases = profile_.Drag().ReleaseCount();
    if (releases >= 2 || (anyIsReady_ && releases == 0)) return true;
    const Prompt prompt{"Please Click-and-Drag both blue lines on the graph.", MessageButtons::RetryCancel,
                        MessageIcon::Warning};
    return context_.Messages.Ask(prompt) != MessageAnswer::Retry;
}

void frmPlotRunSpeedProfileHoriz::done(int result) {
    for (const ProfileLine line : AllLines) LeaveBox(line);
    bool closes = false;
    Guarded(context_.Messages, [&] { closes = MayClose(); });
    if (!closes) return;
    LeaveRun(result == Accepted);
    QDialog::done(result);
}

void frmPlotRunSpeedProfileHoriz::keyPressEvent(QKeyEvent* event) {
    const bool zoomsIn = event->key() == Qt::Key_Plus || event->key() == Qt::Key_Equal;
    if (!event->modifiers().testFlag(Qt::ControlModifier) || (!zoomsIn && event->key() != Qt::Key_Minus))
        return QDialog::keyPressEvent(event);
    if (controls_.cmbPlotScaleList->isEnabled())
        Guarded(context_.Messages, [&] { Zoom(zoomsIn ? 1 : -1, controls_.Plot->rect().center().x()); });
}

void frmPlotRunSpeedProfileHoriz::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() != QEvent::PaletteChange || !isVisible()) return;
    ShowReadiness();
    ShowFigures();
}

}  // namespace vantor
