#include "editing/forms/frmEditPulseData.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "core/Numeric.h"
#include "core/RunDecoding.h"
#include "core/Text.h"
#include "core/forms/Accessible.h"
#include "core/forms/FigureLabel.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/forms/WindowLayout.h"
#include "editing/SaveRun.h"
#include "editing/SensorPicture.h"
#include "plots/forms/PlotView.h"

namespace vantor {
namespace {

constexpr int FirstSmoothingFactor = 15;

QPushButton* ActionButton(QWidget* parent, const char* name, const QString& caption, const char* icon,
                          const QString& toolTip) {
    auto* button = Named<QPushButton>(parent, name, caption);
    button->setIcon(LineIcon(QLatin1String(icon)));
    button->setToolTip(toolTip);
    return button;
}

/// A box for one short number.
QLineEdit* NumberBox(QWidget* parent, const char* name, const QString& toolTip) {
    auto* box = Named<QLineEdit>(parent, name);
    box->setAlignment(Qt::AlignRight);
    box->setFixedWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("0000000")));
    box->setToolTip(toolTip);
    return box;
}

QString Points(std::size_t count) {
    return count == 1 ? QStringLiteral("1 data point") : QStringLiteral("%1 data points").arg(count);
}

/// The number in a box as a 16-bit whole number; what is no number counts as 0.
std::int16_t NumberIn(const QLineEdit* box) {
    const std::string text = FromQt(box->text());
    try {
        return Round16(Val(text));
    } catch (const RunTimeError& error) {
        throw RunTimeError(error.Number(), FromQt(box->accessibleName()) + ": " + text +
                                               "\nEnter a whole number up to 32767 and try again.");
    }
}

}  // namespace

frmEditPulseData::frmEditPulseData(AppContext& context, int entryIndex)
    : context_(context),
      entryIndex_(entryIndex),
      run_(context.State.CurrentRun),
      name_(ToQt(TrimRight(run_.Header.RunName))),
      speedUnit_(ToQt(UnitsOf(context.State.Settings).SpeedLabel())),
      data_(run_.Header.CalConstant, context.State.Settings),
      edits_(run_.SampleValues),
      view_(run_, context.State.Settings),
      plot_(new SensorPlot(this, view_)) {
    // Better now than when the edited run is to be saved.
    static_cast<void>(context.State.CurrentStudy.Entries[entryIndex]);
    setObjectName(QStringLiteral("frmEditPulseData"));
    setWindowTitle(QStringLiteral("Sensor Data for ") + name_);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    auto* column = new QVBoxLayout(this);
    column->addLayout(LayOutHead());
    column->addLayout(LayOutPlot(), 1);
    column->addLayout(LayOutRepairs());
    column->addLayout(LayOutFoot());
    ConnectControls();
    AddShortcuts();
    ShowWords({});
    plot_->setFocus();
    RememberLayout(*this, context.Memory);
}

QLayout* frmEditPulseData::LayOutHead() {
    auto* row = new QHBoxLayout;
    row->addWidget(Named<QLabel>(this, "lblSpdTitle", QStringLiteral("Speed")));
    row->addWidget(Named<QLabel>(this, "lblSpdAxis", speedUnit_));
    row->addStretch();
    row->addLayout(LayOutLegend());
    return row;
}

QLayout* frmEditPulseData::LayOutLegend() {
    struct Entry {
        PlotSample Symbol;
        const char* Name;
        const char* Text;
    };
    auto* row = new QHBoxLayout;
    row->setSpacing(0);
    for (const Entry& entry : {Entry{SensorActivePoint(), "lblLegendActivePoint", " = Active data point"},
                               Entry{SensorNode(), "lblLegendNewLink", " = New Link button"},
                               Entry{SensorKey(), "lblLegendDelay", " = Delay button"}}) {
        row->addSpacing(2 * static_cast<int>(SensorSymbolSize));
        row->addWidget(new PlotSampleView(entry.Symbol, this));
        row->addWidget(Named<QLabel>(this, entry.Name, QLatin1String(entry.Text)));
    }
    return row;
}

QLayout* frmEditPulseData::LayOutPlot() {
    plot_->setObjectName(QStringLiteral("SensorPlot"));
    SetAccessibleRole(*plot_, QAccessible::Chart);
    plot_->setAccessibleName(QStringLiteral("Sensor data"));
    VScroll1_ = Named<QScrollBar>(this, "VScroll1");
    VScroll1_->setAccessibleName(QStringLiteral("Active data point"));
    VScroll1_->setFocusPolicy(Qt::TabFocus);
    lblReadOut_ = Figure(this, "lblReadOut", QStringLiteral("Active data point"),
                         QStringLiteral("Data point 00000 of 00000    Time 00000 s    Speed 000 MPH    000 pulses"));

    auto* plotAndBar = new QHBoxLayout;
    plotAndBar->addWidget(plot_, 1);
    plotAndBar->addWidget(VScroll1_);
    auto* under = new QHBoxLayout;
    under->addWidget(Named<QLabel>(this, "lblSecsTitle", QStringLiteral("Time")));
    under->addStretch();
    under->addWidget(Named<QLabel>(
        this, "lblHint",
        QStringLiteral("Click or arrow keys: choose. Wheel or Ctrl +/-: zoom. Drag or Shift + wheel: move.")));
    auto* column = new QVBoxLayout;
    column->addLayout(plotAndBar, 1);
    column->addLayout(under);
    column->addWidget(lblReadOut_);
    return column;
}

QLayout* frmEditPulseData::LayOutRepairs() {
    btnDeSpike_ = ActionButton(this, "btnDeSpike", QStringLiteral("&De-Spike"), "de-spike",
                               QStringLiteral("Replace each point that jumps off from its neighbours"));
    btnSmoothData_ =
        ActionButton(this, "btnSmoothData", QStringLiteral("S&mooth"), "smooth",
                     QStringLiteral("Replace each point that differs from the one before it by the factor"));
    txtSmoothingFactor_ = NumberBox(this, "txtSmoothingFactor", QStringLiteral("A difference in speed, in MPH"));
    txtSmoothingFactor_->setText(QString::number(FirstSmoothingFactor));
    txtEditDataPoint_ =
        NumberBox(this, "txtEditDataPoint",
                  QStringLiteral("Type a speed for the active data point, in %1, and press Enter").arg(speedUnit_));
    btnUndo_ = ActionButton(this, "btnUndo", QStringLiteral("&Undo"), "undo", QStringLiteral("Ctrl+Z"));
    btnRedo_ = ActionButton(this, "btnRedo", QStringLiteral("&Redo"), "redo", QStringLiteral("Ctrl+Y"));

    auto* row = new QHBoxLayout;
    row->addWidget(btnDeSpike_);
    row->addSpacing(8);
    row->addWidget(btnSmoothData_);
    row->addWidget(LabelFor(txtSmoothingFactor_, QStringLiteral("&Factor"), "lblSmoothingFactorTitle"));
    row->addWidget(txtSmoothingFactor_);
    row->addSpacing(8);
    row->addWidget(LabelFor(txtEditDataPoint_, QStringLiteral("&Edit Data"), "lblEditDataHeader"));
    row->addWidget(txtEditDataPoint_);
    row->addWidget(new QLabel(speedUnit_, this));
    row->addStretch();
    row->addWidget(btnUndo_);
    row->addWidget(btnRedo_);
    return row;
}

QLayout* frmEditPulseData::LayOutFoot() {
    lblStatus_ = Named<QLabel>(this, "lblStatus");
    SetValueCaption(*lblStatus_, QStringLiteral("What was done"));
    lblStatus_->setTextFormat(Qt::PlainText);
    lblStatus_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    btnSave_ = Named<QPushButton>(this, "btnSave", QStringLiteral("&Save"));
    btnSave_->setToolTip(QStringLiteral("Ctrl+S"));
    BtnEditSensorDataExit_ = Named<QPushButton>(this, "BtnEditSensorDataExit", QStringLiteral("E&xit"));
    // Enter belongs to the two boxes.
    for (QPushButton* button : {btnDeSpike_, btnSmoothData_, btnUndo_, btnRedo_, btnSave_, BtnEditSensorDataExit_})
        button->setAutoDefault(false);

    auto* row = new QHBoxLayout;
    row->addWidget(HelpButton(*this, context_, HelpTopic::SensorData));
    row->addWidget(lblStatus_, 1);
    row->addWidget(btnSave_);
    row->addWidget(BtnEditSensorDataExit_);
    return row;
}

void frmEditPulseData::ConnectControls() {
    MessageBoxes& messages = context_.Messages;
    Connect(btnDeSpike_, &QPushButton::clicked, this, messages, [this] { DeSpike(); });
    Connect(btnSmoothData_, &QPushButton::clicked, this, messages, [this] { Smooth(); });
    Connect(txtSmoothingFactor_, &QLineEdit::returnPressed, this, messages, [this] { Smooth(); });
    Connect(txtEditDataPoint_, &QLineEdit::returnPressed, this, messages, [this] { EditPoint(); });
    Connect(btnUndo_, &QPushButton::clicked, this, messages, [this] { Undo(); });
    Connect(btnRedo_, &QPushButton::clicked, this, messages, [this] { Redo(); });
    Connect(btnSave_, &QPushButton::clicked, this, messages, [this] { Save(); });
    Connect(BtnEditSensorDataExit_, &QPushButton::clicked, this, messages, [this] { accept(); });
    Connect(VScroll1_, &QScrollBar::valueChanged, this, messages, [this](int point) { Choose(point); });
    plot_->OnChosen = [this](std::int32_t point) { Choose(point); };
    plot_->OnZoom = [this](int steps, double x) { Zoom(steps, x); };
    for (QLineEdit* box : {txtSmoothingFactor_, txtEditDataPoint_}) {
        box->installEventFilter(this);
        Connect(box, &QLineEdit::textChanged, this, messages, [this, box] { ShowTyped(box); });
    }
}

void frmEditPulseData::AddShortcuts() {
    const auto add = [this](const QKeySequence& keys, auto action) {
        Connect(new QShortcut(keys, this), &QShortcut::activated, this, context_.Messages, action);
    };
    add(Qt::CTRL | Qt::Key_Z, [this] { Undo(); });
    add(Qt::CTRL | Qt::Key_Y, [this] { Redo(); });
    add(Qt::CTRL | Qt::Key_S, [this] { Save(); });
    add(Qt::CTRL | Qt::Key_Plus, [this] { Zoom(1, view_.ZoomAnchor()); });
    add(Qt::CTRL | Qt::Key_Equal, [this] { Zoom(1, view_.ZoomAnchor()); });
    add(Qt::CTRL | Qt::Key_Minus, [this] { Zoom(-1, view_.ZoomAnchor()); });
}

void frmEditPulseData::DeSpike() {
    WordChanges changes = data_.DeSpike(run_.SampleValues);
    const QString done = QStringLiteral("De-Spike changed %1.").arg(Points(changes.size()));
    Change(std::move(changes), done, QStringLiteral("De-Spike found nothing to change."));
}

void frmEditPulseData::Smooth() {
    const std::int16_t factor = NumberIn(txtSmoothingFactor_);
    WordChanges changes = data_.Smooth(run_.SampleValues, factor);
    txtSmoothingFactor_->setModified(false);
    const QString done = QStringLiteral("Smooth by %1 changed %2.").arg(factor).arg(Points(changes.size()));
    Change(std::move(changes), done, QStringLiteral("Smooth by %1 found nothing to change.").arg(factor));
}

void frmEditPulseData::EditPoint() {
    // What the box shows is rounded, in metric units even twice, and would give other pulses when taken as typed.
    if (!txtEditDataPoint_->isModified()) return;
    const std::int32_t point = view_.ActivePoint();
    const std::int16_t word = run_.SampleValues[point];
    const std::int16_t typed = NumberIn(txtEditDataPoint_);
    const std::int16_t edited = data_.WithSpeed(word, typed);
    WordChanges changes;
    if (edited != word) changes.push_back({point, word, edited});
    Change(std::move(changes),
           QStringLiteral("Data point %1 changed from %2 to %3 %4.")
               .arg(QString::number(point), ShownSpeed(word), ShownSpeed(edited), speedUnit_),
           QStringLiteral("Data point %1 is as it was.").arg(point));
    txtEditDataPoint_->selectAll();
}

void frmEditPulseData::ShowTyped(QLineEdit* box) {
    QString note;
    if (box == txtSmoothingFactor_)
        note = ToQt(NoteOnNumber(FromQt(box->text())));
    else if (box->isModified() && HasPoints())
        note = ToQt(data_.NoteOnSpeed(run_.SampleValues[view_.ActivePoint()], FromQt(box->text())));
    QPalette palette = this->palette();
    if (!note.isEmpty()) {
        const ColourPair pair = AmberPair(palette);
        palette.setColor(QPalette::Base, pair.Background);
        palette.setColor(QPalette::Text, pair.Text);
    }
    box->setPalette(palette);
    const QString before = box->accessibleDescription();
    box->setAccessibleDescription(note);
    if (box->isModified() || (!before.isEmpty() && lblStatus_->text() == before)) lblStatus_->setText(note);
}

void frmEditPulseData::Change(WordChanges changes, const QString& done, const QString& nothingDone) {
    const bool changesNothing = changes.empty();
    edits_.Do(std::move(changes));
    ShowWords(changesNothing ? nothingDone : done);
}

void frmEditPulseData::Undo() {
    if (!edits_.CanUndo()) return;
    const WordChanges& step = edits_.Undo();
    view_.SetActivePoint(step.front().Point);
    ShowWords(QStringLiteral("Undone: %1 changed back.").arg(Points(step.size())));
}

void frmEditPulseData::Redo() {
    if (!edits_.CanRedo()) return;
    const WordChanges& step = edits_.Redo();
    view_.SetActivePoint(step.front().Point);
    ShowWords(QStringLiteral("Done again: %1 changed.").arg(Points(step.size())));
}

void frmEditPulseData::Save() {
    if (!edits_.IsUnsaved()) return;
    RunRecord edited = run_;
    DecodeEditedRun(edited);
    const RunSaved saved =
        SaveRun(context_.State, context_.Files, std::move(edited), {.Entry = entryIndex_, .KeepsBackup = true});
    edits_.Saved();
    ShowWords(saved.Backup.empty()
                  ? QStringLiteral("Saved.")
                  : QStringLiteral("Saved. The run's file so far is kept as %1.").arg(ToQt(saved.Backup)));
}

bool frmEditPulseData::MayLeave() {
    if (!edits_.IsUnsaved()) return true;
    const MessageAnswer answer = context_.Messages.AskToSave("The sensor data of run: " + FromQt(name_) +
                                                             "\nhave changed. Do you want to save them?");
    if (answer == MessageAnswer::Yes) Save();
    return answer != MessageAnswer::Cancel;
}

void frmEditPulseData::done(int result) {
    bool leaves = false;
    Guarded(context_.Messages, [&] { leaves = MayLeave(); });
    if (leaves) QDialog::done(result);
}

bool frmEditPulseData::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && !static_cast<QLineEdit*>(watched)->isModified()) {
        // A box in which nothing was typed has nothing to undo: the key is for the window.
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->modifiers() == Qt::ControlModifier && (key->key() == Qt::Key_Z || key->key() == Qt::Key_Y))
            return true;
    }
    // What was typed without Enter counts for nothing once another control is used; another window may come between.
    if (event->type() == QEvent::FocusOut && watched == txtEditDataPoint_ && txtEditDataPoint_->isModified() &&
        static_cast<QFocusEvent*>(event)->reason() != Qt::ActiveWindowFocusReason)
        ShowPoint();
    return QDialog::eventFilter(watched, event);
}

void frmEditPulseData::Choose(std::int32_t point) {
    view_.SetActivePoint(point);
    ShowPoint();
}

void frmEditPulseData::Zoom(int steps, double anchor) {
    view_.Zoom(steps, anchor);
    ShowScrollBar();
    plot_->update();
}

void frmEditPulseData::ShowWords(const QString& status) {
    view_.WordsChanged();
    lblStatus_->setText(status);
    for (QWidget* control : std::initializer_list<QWidget*>{btnDeSpike_, btnSmoothData_, txtSmoothingFactor_,
                                                            txtEditDataPoint_, VScroll1_})
        control->setEnabled(HasPoints());
    btnUndo_->setEnabled(edits_.CanUndo());
    btnRedo_->setEnabled(edits_.CanRedo());
    btnSave_->setEnabled(edits_.IsUnsaved());
    ShowPoint();
}

void frmEditPulseData::ShowPoint() {
    ShowScrollBar();
    const std::int32_t point = view_.ActivePoint();
    txtEditDataPoint_->setText(HasPoints() ? ShownSpeed(run_.SampleValues[point]) : QString());
    lblReadOut_->setText(HasPoints() ? PointInWords(point) : QString());
    plot_->setAccessibleDescription(HasPoints() ? lblReadOut_->text() : QStringLiteral("This run has no samples."));
    plot_->update();
}

void frmEditPulseData::ShowScrollBar() {
    const QSignalBlocker blocker(VScroll1_);
    VScroll1_->setRange(HasPoints() ? 1 : 0, view_.PointCount());
    VScroll1_->setPageStep(view_.Geometry().ScaleStep());
    VScroll1_->setValue(view_.ActivePoint());
}

QString frmEditPulseData::ShownSpeed(std::int16_t word) const {
    try {
        return QString::number(view_.Geometry().Units().WholeSpeed(data_.SpeedOf(word)));
    } catch (const RunTimeError&) {
        return {};
    }
}

QString frmEditPulseData::PointInWords(std::int32_t point) const {
    const std::int16_t word = run_.SampleValues[point];
    QString text = QStringLiteral("Data point %1 of %2    Time %1 s    Speed %3 %4    %5 pulses")
                       .arg(point)
                       .arg(view_.PointCount())
                       .arg(ShownSpeed(word), speedUnit_)
                       .arg(PulsesOf(word));
    const auto& marks = view_.Trace().Marks();
    const auto mark = std::find_if(marks.begin(), marks.end(), [&](const ProfileMark& m) { return m.Sample == point; });
    if (mark == marks.end()) return text;
    const QString name = mark->IsNode || !mark->Label.empty() ? ToQt(mark->Label) : QString::number(HighByteOf(word));
    return (text + (mark->IsNode ? "    New Link button " : "    Delay button ") + name).trimmed();
}

}  // namespace vantor
