#include "counter/forms/frmReadTDC.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/PortList.h"
#include "core/forms/Theme.h"
#include "core/forms/WindowLayout.h"
#include "counter/KeptDumps.h"

namespace vantor {
namespace {

constexpr int TickInMilliseconds = 100;
/// Steps that fill the bar once: two seconds.
constexpr int ProgressSteps = 20;

/// A list to choose from that can also show a value which is not in it.
QComboBox* ChoiceList(QWidget* parent, const char* name) {
    auto* list = Named<QComboBox>(parent, name);
    list->setEditable(true);
    list->setInsertPolicy(QComboBox::NoInsert);
    list->setCompleter(nullptr);
    list->lineEdit()->setReadOnly(true);
    list->lineEdit()->setCursor(Qt::ArrowCursor);
    return list;
}

std::int32_t ValueOf(const QComboBox& list) { return IntegerOfText(FromQt(list.currentText())); }

/// A list under its label, over its hint.
void ChoiceFrame(QFrame* frame, QLabel* label, QComboBox* list, QLabel* hint) {
    frame->setFrameShape(QFrame::StyledPanel);
    frame->setAccessibleName(list->accessibleName());
    list->setAccessibleDescription(hint->text());
    auto* layout = new QVBoxLayout(frame);
    layout->addWidget(label);
    layout->addWidget(list);
    layout->addWidget(hint);
}

}  // namespace

frmReadTDC::frmReadTDC(AppContext& context)
    : context_(context), download_(context.State, context.Files, context.Serial, context.Time, context.End) {
    setObjectName(QStringLiteral("frmReadTDC"));
    setWindowTitle(QStringLiteral("Read Corvel Board"));
    lblInstructions_ = Named<QLabel>(this, "lblInstructions");
    lblInstructions_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* choices = new QHBoxLayout;
    choices->addWidget(BuildBaudRate());
    choices->addWidget(BuildCommPort());
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(choices);
    layout->addLayout(BuildButtons());
    layout->addWidget(lblInstructions_);
    layout->addWidget(BuildProgress());
    lblReceived_ = Named<QLabel>(this, "lblReceived");
    lblReceived_->setTextFormat(Qt::PlainText);
    layout->addWidget(lblReceived_);
    layout->addStretch();
    layout->addLayout(BuildKeptDump());

    DeleteOldDumps(context_.Files, context_.State.Paths.FieldDataPath, context_.Time.Now());
    ShowStage();
    ConnectControls();
    cmdBegin_->setFocus();
    RememberLayout(*this, context_.Memory);
}

frmReadTDC::~frmReadTDC() {
    context_.Serial.OnEvent = nullptr;
    Guarded(context_.Messages, [this] { download_.Cancel(); });
}

QFrame* frmReadTDC::BuildBaudRate() {
    cmbBaudRate_ = ChoiceList(this, "cmbBaudRate");
    FillBaudRates(*cmbBaudRate_);
    ShowNumber(*cmbBaudRate_, context_.State.Settings.BaudRate);
    fraBaudRate_ = Named<QFrame>(this, "fraBaudRate");
    auto* label = LabelFor(cmbBaudRate_, QStringLiteral("Baud &Rate"), "lblBaudRate");
    auto* hint = Named<QLabel>(this, "lblBaudText", QStringLiteral("Choose a connection speed (in bps)..."));
    ChoiceFrame(fraBaudRate_, label, cmbBaudRate_, hint);
    static_cast<QBoxLayout*>(fraBaudRate_->layout())->addStretch();
    return fraBaudRate_;
}

QFrame* frmReadTDC::BuildCommPort() {
    cmbCommPort_ = ChoiceList(this, "cmbCommPort");
    fraCommPort_ = Named<QFrame>(this, "fraCommPort");
    auto* label = LabelFor(cmbCommPort_, QStringLiteral("&Comm Port"), "lblCommPort");
    auto* hint = Named<QLabel>(this, "lblCommText", QStringLiteral("Choose a port # (only available ports listed)..."));
    ChoiceFrame(fraCommPort_, label, cmbCommPort_, hint);
    lblPort_ = Named<QLabel>(fraCommPort_, "lblPort");
    lblPort_->setTextFormat(Qt::PlainText);
    lblPort_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    // Room for what may be told, so that nothing moves when it is.
    lblPort_->setMinimumHeight(2 * lblPort_->fontMetrics().lineSpacing());
    cmdLookAgain_ = Named<QPushButton>(fraCommPort_, "cmdLookAgain", QStringLiteral("&Look again"));
    cmdLookAgain_->setToolTip(QStringLiteral("Look for the ports that can be opened now"));
    auto* layout = static_cast<QBoxLayout*>(fraCommPort_->layout());
    layout->addWidget(lblPort_);
    layout->addWidget(cmdLookAgain_, 0, Qt::AlignLeft);
    LookForPorts(context_.State.Settings.CommPort);
    return fraCommPort_;
}

QLayout* frmReadTDC::BuildButtons() {
    cmdBegin_ = Named<QPushButton>(this, "cmdBegin");
    cmdViewData_ = Named<QPushButton>(this, "cmdViewData", QStringLiteral("&View Data"));
    cmdQuit_ = Named<QPushButton>(this, "cmdQuit", QStringLiteral("&Quit"));
    // Enter begins, but it does not throw away what has arrived.
    for (QPushButton* button : {cmdBegin_, cmdViewData_, cmdQuit_, cmdLookAgain_}) button->setAutoDefault(false);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdBegin_, 1);
    buttons->addWidget(cmdViewData_);
    buttons->addStretch(1);
    buttons->addWidget(HelpButton(*this, context_, HelpTopic::ReadCounter));
    buttons->addWidget(cmdQuit_);
    return buttons;
}

QProgressBar* frmReadTDC::BuildProgress() {
    prgProgress_ = Named<QProgressBar>(this, "prgProgress");
    prgProgress_->setAccessibleName(QStringLiteral("Data is arriving"));
    prgProgress_->setRange(0, ProgressSteps);
    prgProgress_->setTextVisible(false);
    QSizePolicy policy = prgProgress_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    prgProgress_->setSizePolicy(policy);
    tmrUpdate_ = Named<QTimer>(this, "tmrUpdate");
    tmrUpdate_->setInterval(TickInMilliseconds);
    return prgProgress_;
}

QLayout* frmReadTDC::BuildKeptDump() {
    cmdBringBack_ = Named<QPushButton>(this, "cmdBringBack", QStringLiteral("Bri&ng back the cancelled dump"));
    cmdBringBack_->setAutoDefault(false);
    lblKept_ = Named<QLabel>(this, "lblKept");
    lblKept_->setTextFormat(Qt::PlainText);
    auto* row = new QHBoxLayout;
    row->addWidget(cmdBringBack_);
    row->addWidget(lblKept_, 1);
    return row;
}

void frmReadTDC::ConnectControls() {
    MessageBoxes& messages = context_.Messages;
    Connect(cmbBaudRate_, &QComboBox::currentIndexChanged, this, messages, [this] {
        download_.SetBaudRate(ValueOf(*cmbBaudRate_));
        ShowPrompt();
    });
    Connect(cmbCommPort_, &QComboBox::currentIndexChanged, this, messages, [this] {
        download_.SetPortNumber(To16(ValueOf(*cmbCommPort_)));
        ShowPort();
        ShowPrompt();
    });
    Connect(cmdLookAgain_, &QPushButton::clicked, this, messages, [this] { LookForPorts(ValueOf(*cmbCommPort_)); });
    Connect(cmdBringBack_, &QPushButton::clicked, this, messages, [this] { BringDumpBack(); });
    Connect(cmdBegin_, &QPushButton::clicked, this, messages, [this] { BeginOrCancel(); });
    Connect(cmdViewData_, &QPushButton::clicked, this, messages, [this] { ViewData(); });
    Connect(cmdQuit_, &QPushButton::clicked, this, messages, [this] { reject(); });
    Connect(tmrUpdate_, &QTimer::timeout, this, messages, [this] { TakeTick(); });
    context_.Serial.OnEvent = [this, &messages](SerialEvent event) {
        Guarded(messages, [&] { Run([&] { download_.TakeEvent(event); }); });
    };
    for (QComboBox* list : {cmbBaudRate_, cmbCommPort_}) list->lineEdit()->installEventFilter(this);
}

bool frmReadTDC::eventFilter(QObject* watched, QEvent* event) {
    const bool isRelease = event->type() == QEvent::MouseButtonRelease;
    if (!isRelease && event->type() != QEvent::MouseButtonPress) return QDialog::eventFilter(watched, event);
    // The shown value cannot be edited: a click on it opens its list. At the release, which would close a list that
    // was opened at the press.
    const bool isLeft = static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
    if (isRelease && isLeft) static_cast<QComboBox*>(watched->parent())->showPopup();
    return true;
}

void frmReadTDC::keyPressEvent(QKeyEvent* event) {
    const bool stops = event->matches(QKeySequence::Cancel) && download_.Stage() == DownloadStage::Receiving;
    if (!stops || MayStop()) QDialog::keyPressEvent(event);
}

bool frmReadTDC::MayStop() {
    // The window stays for the answer, whatever arrives meanwhile.
    const QScopedValueRollback asking(isAsking_, true);
    return context_.Messages.Ask({.Text = "The dump is not complete. Do you want to stop?\n\n" +
                                          download_.ReceivedText() + "\nThis will be kept for a week.",
                                  .Buttons = MessageButtons::YesNo,
                                  .Icon = MessageIcon::Question,
                                  .Captions = {"Stop", "Go on receiving"},
                                  .LosesSomething = true}) == MessageAnswer::Yes;
}

void frmReadTDC::LookForPorts(int shown) {
    const QSignalBlocker noChoice(cmbCommPort_);
    FillPorts(*cmbCommPort_, context_.Serial);
    ShowNumber(*cmbCommPort_, shown);
    ShowPort();
}

void frmReadTDC::ShowPort() {
    TellPort(*cmbCommPort_, context_.Serial);
    lblPort_->setText(
        cmbCommPort_->count() > 0
            ? cmbCommPort_->toolTip()
            : QStringLiteral("There is no port that can be opened.\nPlug the cable in, then look again."));
}

template <class Step>
void frmReadTDC::Run(Step step) {
    try {
        step();
    } catch (const RunTimeError&) {
        ShowStage();
        throw;
    }
    ShowStage();
}

void frmReadTDC::BeginOrCancel() {
    Run([this] { download_.Stage() == DownloadStage::Closed ? download_.Begin() : download_.Cancel(); });
}

void frmReadTDC::ViewData() {
    const std::string path = download_.FilePath();
    if (!path.empty()) context_.DesktopServices.ViewText(path);
}

void frmReadTDC::TakeTick() {
    prgProgress_->setValue(prgProgress_->value() % prgProgress_->maximum() + 1);
    ShowReceived();
    if (isAsking_) return;
    std::optional<CounterFileChoice> received;
    Run([&] { received = download_.Finish(); });
    if (!received) return;
    choice_ = *received;
    accept();
}

void frmReadTDC::BringDumpBack() {
    const std::string folder = AsFolder(context_.State.Paths.FieldDataPath);
    const auto dump = LastKeptDump(context_.Files, folder);
    if (!dump) return ShowKeptDump();
    choice_ = {folder, BringBack(context_.Files, folder, *dump)};
    accept();
}

void frmReadTDC::ShowReceived() { lblReceived_->setText(ToQt(download_.ReceivedText())); }

void frmReadTDC::ShowKeptDump() {
    const auto dump = LastKeptDump(context_.Files, context_.State.Paths.FieldDataPath);
    cmdBringBack_->setEnabled(dump && download_.Stage() == DownloadStage::Closed);
    lblKept_->setText(dump ? ToQt(ShortDate(dump->At) + " " + ShortTime(dump->At) + ", " + CountOfBytes(dump->Bytes) +
                                  "; kept for a week.")
                           : QStringLiteral("None was cancelled in the last week."));
    cmdBringBack_->setAccessibleDescription(lblKept_->text());
}

void frmReadTDC::ShowPrompt() {
    lblInstructions_->setText(ToQt(download_.Prompt()));
    // A shorter prompt does not move what stands under it.
    lblInstructions_->setMinimumSize(lblInstructions_->minimumSize().expandedTo(lblInstructions_->sizeHint()));
}

void frmReadTDC::ShowStage() {
    const DownloadStage stage = download_.Stage();
    if (shown_ == stage) return;
    shown_ = stage;
    const bool isClosed = stage == DownloadStage::Closed;
    fraBaudRate_->setEnabled(isClosed);
    fraCommPort_->setEnabled(isClosed);
    cmdBegin_->setText(isClosed ? QStringLiteral("&Begin") : QStringLiteral("&Setup"));
    cmdBegin_->setAccessibleName(WithoutAccessKey(cmdBegin_->text()));
    cmdBegin_->setDefault(isClosed);
    SetFace(cmdBegin_, stage == DownloadStage::Waiting ? RedPair(palette()) : GreenPair(palette()));
    cmdViewData_->setEnabled(!isClosed);
    ShowPrompt();
    ShowReceived();
    ShowKeptDump();
    ShowActivity(stage == DownloadStage::Receiving);
}

void frmReadTDC::ShowActivity(bool isReceiving) {
    prgProgress_->setValue(0);
    prgProgress_->setVisible(isReceiving);
    if (isReceiving)
        tmrUpdate_->start();
    else
        tmrUpdate_->stop();
}

void frmReadTDC::done(int result) {
    Guarded(context_.Messages, [this] { Run([this] { download_.Cancel(); }); });
    QDialog::done(result);
}

}  // namespace vantor
