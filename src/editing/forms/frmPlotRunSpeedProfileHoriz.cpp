#include "editing/forms/frmPlotRunSpeedProfileHoriz.h"

#include <QKeyEvent>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>

#include "core/Backup.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/forms/WindowLayout.h"
#include "core/modMain.h"
#include "editing/TrimRun.h"

namespace vantor {
namespace {

const StudyRunEntry& EntryOfRun(const ApplicationState& state, int index) {
    if (index < 1) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    return state.CurrentStudy.Entries[index];
}

}  // namespace

frmPlotRunSpeedProfileHoriz::frmPlotRunSpeedProfileHoriz(AppContext& context, int entryIndex, EntrySink onChanged)
    : context_(context),
      run_(context.State.CurrentRun),
      entry_(EntryOfRun(context.State, entryIndex)),
      entryOpened_(entry_),
      entryBefore_(entry_),
      entryTold_(entry_),
      onChanged_(std::move(onChanged)),
      profile_(run_, context.State.Settings, entry_),
      controls_(*this, ToQt(Trim(run_.Header.RunName))) {
    setObjectName(QStringLiteral("frmPlotRunSpeedProfileHoriz"));
    setWindowTitle(QStringLiteral("Speed Profile"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    controls_.txtIdealSpeed->installEventFilter(this);
    ConnectControls();
    ConnectPlot();
    const Units units = UnitsOf(context.State.Settings);
    controls_.Plot->SetProfile(&profile_, {QLatin1String(units.SpeedLabel()), QLatin1String(units.LengthLabel())},
                               NothingToDraw(profile_.Trace(), run_.Header.CalConstant));
    for (QWidget* control : std::initializer_list<QWidget*>{controls_.cmbPlotScaleList, controls_.btnToggleSpdTime,
                                                            controls_.txtIdealSpeed})
        control->setEnabled(profile_.Trace().HasMovement());
    Draw();
    ShowReadiness();
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
}

void frmPlotRunSpeedProfileHoriz::ConnectPlot() {
    MessageBoxes& messages = context_.Messages;
    controls_.Plot->OnMoved = [this, &messages] {
        Guarded(messages, [this] {
            if (profile_.Drag().IsReady()) ComputeQuietly();
            ShowFigures();
        });
    };
    controls_.Plot->OnReleased = [this, &messages](bool computes) {
        Guarded(messages, [this, computes] {
            ShowReadiness();
            if (computes) Compute();
        });
    };
    controls_.Plot->OnActivated = [this] { ShowFigures(); };
    controls_.Plot->OnPointer = [this](std::optional<double> x) { ShowReadOut(x); };
    controls_.Plot->OnZoom = [this, &messages](int steps, double x) { Guarded(messages, [&] { Zoom(steps, x); }); };
    controls_.Plot->OnScroll = [this, &messages](double values) { Guarded(messages, [&] { Scroll(values); }); };
}

void frmPlotRunSpeedProfileHoriz::Toggle() {
    profile_.ToggleAxis();
    Draw();
}

void frmPlotRunSpeedProfileHoriz::CutToBoundaries() {
    TrimmedRun trimmed = TrimToBoundaries(run_, profile_.Plot(), entry_);
    if (!trimmed.Problem.empty()) return context_.Messages.Tell(trimmed.Problem, MessageIcon::Warning);
    const std::string folder = StudyGroupFolder(context_.State);
    const std::string name = RunFileName(entry_);
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
    entry_ = std::move(trimmed.Entry);
    profile_.RunCut(trimmed.Plot);
    Draw();
    // The figures are those of the run as it is now: a look at it goes on from here.
    entryBefore_ = entry_;
    TellChange();
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

std::optional<std::int32_t> frmPlotRunSpeedProfileHoriz::TypedIdealSpeed() const {
    const QString text = controls_.txtIdealSpeed->text().trimmed();
    return text.isEmpty() ? std::optional(0) : CountOfText(FromQt(text), MostIdealSpeed);
}

void frmPlotRunSpeedProfileHoriz::TakeIdealSpeed() {
    const auto mph = TypedIdealSpeed();
    if (mph) {
        profile_.SetIdealSpeedUser(*mph);
        controls_.Plot->Redraw();
        return ComputesOnInput() ? Compute() : ShowFigures();
    }
    ShowFigures();
    controls_.txtIdealSpeed->selectAll();
    context_.Messages.Tell("The ideal speed is a whole number of MPH from 1 to " + std::to_string(MostIdealSpeed) +
                               ".\nEnter 0 or nothing for the computed one.",
                           MessageIcon::Warning);
}

void frmPlotRunSpeedProfileHoriz::LeaveIdealSpeed() {
    if (!controls_.txtIdealSpeed->isModified()) return;
    if (const auto mph = TypedIdealSpeed()) profile_.SetIdealSpeedUser(*mph);
    controls_.Plot->Redraw();
    if (ComputesOnInput()) ComputeQuietly();
    ShowFigures();
}

void frmPlotRunSpeedProfileHoriz::Draw() {
    ShowAxis();
    // Over time a computation moves the boundaries onto samples; looking at the run alone must not do that.
    if (profile_.Axis() == BoundaryAxis::Distance && profile_.HasBothBoundaries() && profile_.Trace().HasMovement())
        ComputeQuietly();
    controls_.Plot->Redraw();
    ShowFigures();
}

void frmPlotRunSpeedProfileHoriz::ShowAxis() {
    const bool inTime = profile_.Axis() == BoundaryAxis::Time;
    controls_.btnToggleSpdTime->setText(inTime ? QStringLiteral("Plot Speed vs &Dist.")
                                               : QStringLiteral("Plot Speed vs &Time"));
    controls_.btnToggleSpdTime->setAccessibleName(WithoutAccessKey(controls_.btnToggleSpdTime->text()));
    controls_.PlotScale->setText(AxisUnit(profile_.Geometry()));
    const auto item = std::find(ScaleSteps.begin(), ScaleSteps.end(), profile_.Geometry().ScaleStep());
    const QSignalBlocker blocker(controls_.cmbPlotScaleList);
    controls_.cmbPlotScaleList->setCurrentIndex(static_cast<int>(item - ScaleSteps.begin()));
    ShowScrollBar();
}

void frmPlotRunSpeedProfileHoriz::ShowScrollBar() {
    const ProfileGeometry& geometry = profile_.Geometry();
    const QSignalBlocker blocker(controls_.HScroll1);
    controls_.HScroll1->setRange(0, static_cast<int>(std::ceil(geometry.MostOffset())));
    controls_.HScroll1->setSingleStep(geometry.ScaleStep());
    controls_.HScroll1->setPageStep(static_cast<int>(geometry.Visible()));
    controls_.HScroll1->setValue(Round32(geometry.Offset()));
    controls_.HScroll1->setEnabled(geometry.MostOffset() > 0);
}

void frmPlotRunSpeedProfileHoriz::ShowReadiness() {
    const bool isReady = profile_.Drag().IsReady();
    controls_.BtnPlotSpeedExit->setEnabled(isReady);
    controls_.btnTrim->setEnabled(isReady);
    if (isReady) SetFace(controls_.BtnPlotSpeedExit, GreenPair(palette()));
}

void frmPlotRunSpeedProfileHoriz::ShowFigures() {
    QLabel* lblContDelay = controls_.lblContDelay;
    lblContDelay->setText(isComputed_ ? ToQt(Str(entry_.ControlDelay)) : QStringLiteral("–"));
    lblContDelay->setAccessibleDescription(isComputed_ ? QString() : QStringLiteral("not computed yet"));
    const QString grade = isComputed_ ? ToQt(Trim(entry_.LOSGrade)) : QString();
    controls_.lblLOS->setText(grade.isEmpty() ? QStringLiteral("–") : grade);
    const ColourPair pair = GradePair(grade, palette());
    QPalette badge = palette();
    badge.setColor(QPalette::Window, pair.Background);
    badge.setColor(QPalette::WindowText, pair.Text);
    controls_.lblLOS->setPalette(badge);
    ShowIdealSpeed();
    ShowWarning();

    controls_.Plot->UpdateLines();
    const ProfileLabels& labels = controls_.Plot->Labels();
    controls_.Plot->setAccessibleDescription(QStringLiteral("%1. %2. %3. The arrow keys move the %4.")
                                                 .arg(PlaceInWords(profile_, ProfileLine::Start, labels),
                                                      PlaceInWords(profile_, ProfileLine::End, labels),
                                                      PlaceInWords(profile_, ProfileLine::IdealSpeed, labels),
                                                      NameOf(controls_.Plot->ActiveLine()).toLower()));
    ShowReadOut(std::nullopt);
    if (!IsOnlyLookedAt()) TellChange();
}

/// The figures were computed anew, at the threshold in force now, and nothing else was done.
bool frmPlotRunSpeedProfileHoriz::IsOnlyLookedAt() const {
    const bool wasComputed = !Trim(entryBefore_.LOSGrade).empty();
    return wasComputed && HasSameBoundaries(entryBefore_, entry_);
}

void frmPlotRunSpeedProfileHoriz::TellChange() {
    if (entry_ == entryTold_) return;
    entryTold_ = entry_;
    if (onChanged_) onChanged_(entry_);
}

std::optional<StudyRunEntry> frmPlotRunSpeedProfileHoriz::ChangedEntry() const {
    return entry_ == entryOpened_ ? std::nullopt : std::optional(entry_);
}

void frmPlotRunSpeedProfileHoriz::ShowWarning() {
    std::string problem = isComputed_ ? BoundaryProblem(run_, profile_.Plot(), entry_) : std::string();
    if (!problem.empty()) problem += " The figures mean nothing then.";
    controls_.lblWarning->setText(problem_.isEmpty() ? ToQt(problem) : problem_.simplified());
    controls_.lblWarning->setToolTip(controls_.lblWarning->text());
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, RedText(palette()));
    controls_.lblWarning->setPalette(colours);
}

void frmPlotRunSpeedProfileHoriz::ShowIdealSpeed() {
    const auto speed = profile_.WholeIdealSpeed();
    controls_.txtIdealSpeed->setText(speed ? QString::number(*speed) : QString());
    const QString source = profile_.HasUserIdealSpeed() ? QStringLiteral(" (set by hand)")
                           : speed                      ? QStringLiteral(" (computed)")
                                                        : QString();
    const std::string unit = speed ? profile_.Geometry().Units().MphBoxLabel(*speed) : "MPH";
    controls_.lblIdealSpeedSource->setText(ToQt(unit) + source);
}

void frmPlotRunSpeedProfileHoriz::ShowReadOut(std::optional<double> x) {
    if (!profile_.Trace().HasMovement()) return;
    const ProfileLine dragged = profile_.Drag().DragLine();
    QString text = QStringLiteral("1, 2, 3 and the arrow keys move the lines, too.");
    if (dragged != ProfileLine::None)
        text = PlaceInWords(profile_, dragged, controls_.Plot->Labels());
    else if (x)
        text = PointInWords(profile_, *x, controls_.Plot->Labels());
    controls_.lblReadOut->setText(text);
}

void frmPlotRunSpeedProfileHoriz::Compute() {
    problem_.clear();
    try {
        profile_.Compute();
        isComputed_ = true;
    } catch (const RunTimeError& error) {
        problem_ = ToQt(error.Message());
        ShowFigures();
        throw;
    }
    ShowFigures();
}

void frmPlotRunSpeedProfileHoriz::ComputeQuietly() {
    try {
        Compute();
    } catch (const RunTimeError&) {
        // Compute has kept its text.
    }
}

bool frmPlotRunSpeedProfileHoriz::MayClose() {
    if (profile_.Drag().ReleaseCount() >= 2) return true;
    const Prompt prompt{"Please Click-and-Drag both blue lines on the graph.", MessageButtons::RetryCancel,
                        MessageIcon::Warning};
    return context_.Messages.Ask(prompt) != MessageAnswer::Retry;
}

void frmPlotRunSpeedProfileHoriz::done(int result) {
    bool closes = false;
    Guarded(context_.Messages, [&] { closes = MayClose(); });
    if (!closes) return;
    LeaveIdealSpeed();
    if (result == Rejected && IsOnlyLookedAt()) entry_ = entryBefore_;
    // What was dragged there and back again is told, too.
    if (entryTold_ != entryOpened_) TellChange();
    const std::string name = FromQt(controls_.txtEditRunName->text());
    if (!name.empty()) run_.Header.RunName = FirstCharacters(name, RunNameWidth);
    QDialog::done(result);
}

bool frmPlotRunSpeedProfileHoriz::eventFilter(QObject* watched, QEvent* event) {
    if (watched == controls_.txtIdealSpeed && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            // Not passed on: the dialog would press its default button.
            Guarded(context_.Messages, [this] { TakeIdealSpeed(); });
            return true;
        }
    }
    if (watched == controls_.txtIdealSpeed && event->type() == QEvent::FocusOut) LeaveIdealSpeed();
    return QDialog::eventFilter(watched, event);
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
