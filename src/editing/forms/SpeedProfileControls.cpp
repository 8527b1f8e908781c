#include "editing/forms/SpeedProfileControls.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "core/forms/Accessible.h"
#include "core/forms/Named.h"

namespace vantor {
namespace {

QFont Larger(const QWidget& widget, double factor) {
    QFont font = widget.font();
    font.setPointSizeF(font.pointSizeF() * factor);
    font.setBold(true);
    return font;
}

int WidthOf(const QWidget& widget, const char* text) {
    return widget.fontMetrics().horizontalAdvance(QLatin1String(text));
}

}  // namespace

SpeedProfileControls::SpeedProfileControls(QDialog& window) : window_(window) {
    Plot = Named<SpeedProfilePlot>(&window, "SpeedProfilePlot");
    SetAccessibleRole(*Plot, QAccessible::Chart);
    Plot->setAccessibleName(QStringLiteral("Speed profile"));
    HScroll1 = Named<QScrollBar>(&window, "HScroll1");
    HScroll1->setOrientation(Qt::Horizontal);
    HScroll1->setAccessibleName(QStringLiteral("Visible part of the run"));
    HScroll1->setFocusPolicy(Qt::TabFocus);

    auto* column = new QVBoxLayout(&window);
    column->addLayout(LayOutHead());
    column->addLayout(LayOutReadOut());
    column->addWidget(Proposal = new ProposalBar(&window));
    column->addWidget(Plot, 1);
    column->addWidget(HScroll1);
    column->addLayout(LayOutBoundaries());
    auto* row = new QHBoxLayout;
    row->addLayout(LayOutFigures());
    row->addStretch();
    row->addLayout(LayOutScale());
    column->addLayout(row);
    column->addLayout(LayOutButtons());
    SetTabOrder();
}

QLayout* SpeedProfileControls::LayOutHead() {
    lblPlotTitle_ = Named<QLabel>(&window_, "lblPlotTitle");
    lblPlotTitle_->setTextFormat(Qt::PlainText);
    lblPlotTitle_->setFont(Larger(*lblPlotTitle_, 1.25));
    btnPreviousRun = Named<QPushButton>(&window_, "btnPreviousRun", QStringLiteral("&Previous Run"));
    btnPreviousRun->setToolTip(QStringLiteral("Go on to the run before this one (Alt+Left)"));
    btnNextRun = Named<QPushButton>(&window_, "btnNextRun", QStringLiteral("Ne&xt Run"));
    btnNextRun->setToolTip(QStringLiteral("Go on to the next run of the study (Alt+Right)"));
    for (QPushButton* button : {btnPreviousRun, btnNextRun}) button->setAutoDefault(false);
    txtEditRunName = Named<QLineEdit>(&window_, "txtEditRunName");
    txtEditRunName->setMaxLength(static_cast<int>(RunNameWidth));
    txtEditRunName->setMinimumWidth(WidthOf(*txtEditRunName, "0000000000000000000000"));

    auto* row = new QHBoxLayout;
    row->addWidget(lblPlotTitle_, 1);
    row->addWidget(btnPreviousRun);
    row->addWidget(btnNextRun);
    row->addSpacing(8);
    row->addWidget(LabelFor(txtEditRunName, QStringLiteral("Edit Run &Name")));
    row->addWidget(txtEditRunName);
    return row;
}

QLayout* SpeedProfileControls::LayOutReadOut() {
    // Its text changes with every move of the mouse and must not push the other controls about.
    lblReadOut = Figure(&window_, "lblReadOut", QStringLiteral("Values under the pointer"),
                        QStringLiteral("Distance 000000 Meters    Time 00000 s    Speed 000 MPH"));
    lblReadOut->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto* row = new QHBoxLayout;
    row->addWidget(Named<QLabel>(&window_, "lblInstruction",
                                 QStringLiteral("Click and Drag vertical lines to set Control Delay")));
    row->addWidget(lblReadOut, 1);
    return row;
}

void SpeedProfileControls::ShowName(const QString& runName) {
    lblPlotTitle_->setText(QStringLiteral("Data Plot for ") + runName);
    lblPlotTitle_->setAccessibleName(lblPlotTitle_->text());
    txtEditRunName->setText(runName);
}

std::string SpeedProfileControls::Title() const { return FromQt(lblPlotTitle_->text()); }

NumberBox* SpeedProfileControls::NewNumberBox(const char* name) {
    auto* box = Named<NumberBox>(&window_, name);
    box->setAlignment(Qt::AlignRight);
    box->setFixedWidth(WidthOf(*box, "00000000"));
    return box;
}

QLayout* SpeedProfileControls::LayOutBoundaries() {
    txtStart = NewNumberBox("txtStart");
    txtEnd = NewNumberBox("txtEnd");
    for (NumberBox* box : {txtStart, txtEnd})
        box->setToolTip(QStringLiteral("Type a place and press Enter; Up and Down step by 1, with Shift by 10"));
    lblStartUnit = Named<QLabel>(&window_, "lblStartUnit");
    lblEndUnit = Named<QLabel>(&window_, "lblEndUnit");
    lblBetween = Figure(&window_, "lblBetween", QStringLiteral("Between the boundaries"),
                        QStringLiteral("000000 ft, 00000 s, 000 MPH between the boundaries"));
    btnUndo = Named<QToolButton>(&window_, "btnUndo");
    btnRedo = Named<QToolButton>(&window_, "btnRedo");
    // A click leaves the box that was typed into, which takes it.
    for (QToolButton* button : {btnUndo, btnRedo}) button->setFocusPolicy(Qt::StrongFocus);
    btnUseFor = Named<QPushButton>(&window_, "btnUseFor", QStringLiteral("Use &for"));
    btnUseFor->setToolTip(QStringLiteral("Give other runs of the study these boundaries"));
    btnPropose = Named<QPushButton>(&window_, "btnPropose", QStringLiteral("Pr&opose"));
    btnPropose->setToolTip(
        QStringLiteral("Show where this run slows down at a node, as boundaries to use or reject (Ctrl+B)"));
    for (QPushButton* button : {btnPropose, btnUseFor}) button->setAutoDefault(false);

    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(txtStart, QStringLiteral("St&art")));
    row->addWidget(txtStart);
    row->addWidget(lblStartUnit);
    row->addSpacing(8);
    row->addWidget(LabelFor(txtEnd, QStringLiteral("&End")));
    row->addWidget(txtEnd);
    row->addWidget(lblEndUnit);
    row->addSpacing(8);
    row->addWidget(lblBetween);
    row->addStretch();
    row->addWidget(btnUndo);
    row->addWidget(btnRedo);
    row->addWidget(btnPropose);
    row->addWidget(btnUseFor);
    return row;
}

QLayout* SpeedProfileControls::LayOutFigures() {
    lblContDelay = Figure(&window_, "lblContDelay", QStringLiteral("Control Delay (s)"), QStringLiteral("-000"));
    lblLOS = Figure(&window_, "lblLOS", QStringLiteral("LOS"), QStringLiteral(" W "));
    lblLOS->setAlignment(Qt::AlignCenter);
    lblLOS->setMargin(4);
    lblLOS->setAutoFillBackground(true);
    for (QLabel* figure : {lblContDelay, lblLOS}) figure->setFont(Larger(*figure, 1.6));
    txtIdealSpeed = NewNumberBox("txtIdealSpeed");
    txtIdealSpeed->setToolTip(QStringLiteral("Type an ideal speed and press Enter; 0 or nothing: the computed one"));
    lblIdealSpeedSource = Named<FigureLabel>(&window_, "lblIdealSpeedSource");
    lblIdealSpeedSource->SetWidest(QStringLiteral("MPH = 888 KPH (set by hand)"));

    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(QStringLiteral("Control Delay (s)"), &window_));
    row->addWidget(lblContDelay);
    row->addWidget(new QLabel(QStringLiteral("LOS"), &window_));
    row->addWidget(lblLOS);
    row->addSpacing(8);
    row->addWidget(LabelFor(txtIdealSpeed, QStringLiteral("&Ideal Speed")));
    row->addWidget(txtIdealSpeed);
    row->addWidget(lblIdealSpeedSource);
    return row;
}

QLayout* SpeedProfileControls::LayOutScale() {
    cmbPlotScaleList = Named<QComboBox>(&window_, "cmbPlotScaleList");
    for (const int step : ScaleSteps) cmbPlotScaleList->addItem(QString::number(step));
    cmbPlotScaleList->setToolTip(QStringLiteral("What one step of the axis stands for (mouse wheel, Ctrl +, Ctrl -)"));
    PlotScale = Named<FigureLabel>(&window_, "PlotScale");
    PlotScale->SetWidest(QStringLiteral("Meters"));
    btnToggleSpdTime = Named<QPushButton>(&window_, "btnToggleSpdTime");
    btnToggleSpdTime->setAutoDefault(false);

    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(cmbPlotScaleList, QStringLiteral("S&cale")));
    row->addWidget(cmbPlotScaleList);
    row->addWidget(PlotScale);
    row->addWidget(btnToggleSpdTime);
    return row;
}

QLayout* SpeedProfileControls::LayOutButtons() {
    cmdHelp = Named<QPushButton>(&window_, "cmdHelp", QStringLiteral("Help"));
    cmdHelp->setShortcut(QKeySequence::HelpContents);
    btnTrim = Named<QPushButton>(&window_, "btnTrim", QStringLiteral("T&rim Run"));
    btnTrim->setToolTip(QStringLiteral("Keep only the part of the run between the boundaries"));
    BtnPlotSpeedExit = Named<QPushButton>(&window_, "BtnPlotSpeedExit", QStringLiteral("&Save / Exit"));
    BtnPlotSpeedExit->setToolTip(QStringLiteral("Exit the plot and go back to the Main Screen"));
    for (QPushButton* button : {cmdHelp, btnTrim, BtnPlotSpeedExit}) button->setAutoDefault(false);
    BtnPlotSpeedExit->setDefault(true);

    lblWarning = Named<QLabel>(&window_, "lblWarning");
    lblWarning->setTextFormat(Qt::PlainText);
    lblWarning->setWordWrap(true);
    // It comes and goes while a line is dragged and must not push the plot about.
    lblWarning->setFixedHeight(2 * lblWarning->fontMetrics().lineSpacing());
    lblWarning->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);

    auto* row = new QHBoxLayout;
    row->addWidget(cmdHelp);
    row->addWidget(lblWarning, 1);
    row->addWidget(btnTrim);
    row->addWidget(BtnPlotSpeedExit);
    return row;
}

void SpeedProfileControls::SetTabOrder() {
    QWidget* before = Plot;
    for (QWidget* control : std::initializer_list<QWidget*>{
             Proposal->cmbProposalNode, Proposal->btnUseProposal, Proposal->btnRejectProposal, HScroll1, txtStart,
             txtEnd, btnUndo, btnRedo, btnPropose, btnUseFor, txtIdealSpeed, cmbPlotScaleList, btnToggleSpdTime,
             btnTrim, BtnPlotSpeedExit, cmdHelp, btnPreviousRun, btnNextRun, txtEditRunName}) {
        QWidget::setTabOrder(before, control);
        before = control;
    }
}

}  // namespace vantor
