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

SpeedProfileControls::SpeedProfileControls(QDialog& window, const QString& runName) : window_(window) {
    Plot = Named<SpeedProfilePlot>(&window, "SpeedProfilePlot");
    SetAccessibleRole(*Plot, QAccessible::Chart);
    Plot->setAccessibleName(QStringLiteral("Speed profile"));
    HScroll1 = Named<QScrollBar>(&window, "HScroll1");
    HScroll1->setOrientation(Qt::Horizontal);
    HScroll1->setAccessibleName(QStringLiteral("Visible part of the run"));
    HScroll1->setFocusPolicy(Qt::TabFocus);

    auto* column = new QVBoxLayout(&window);
    column->addLayout(LayOutHead(runName));
    column->addLayout(LayOutReadOut());
    column->addWidget(Plot, 1);
    column->addWidget(HScroll1);
    auto* row = new QHBoxLayout;
    row->addLayout(LayOutFigures());
    row->addStretch();
    row->addLayout(LayOutScale());
    column->addLayout(row);
    column->addLayout(LayOutButtons());
    SetTabOrder();
}

QLayout* SpeedProfileControls::LayOutHead(const QString& runName) {
    auto* lblPlotTitle = Named<QLabel>(&window_, "lblPlotTitle", QStringLiteral("Data Plot for ") + runName);
    lblPlotTitle->setTextFormat(Qt::PlainText);
    lblPlotTitle->setFont(Larger(*lblPlotTitle, 1.25));
    txtEditRunName = Named<QLineEdit>(&window_, "txtEditRunName");
    txtEditRunName->setMaxLength(static_cast<int>(RunNameWidth));
    txtEditRunName->setMinimumWidth(WidthOf(*txtEditRunName, "0000000000000000000000"));
    txtEditRunName->setText(runName);

    auto* row = new QHBoxLayout;
    row->addWidget(lblPlotTitle, 1);
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

QLayout* SpeedProfileControls::LayOutFigures() {
    lblContDelay = Figure(&window_, "lblContDelay", QStringLiteral("Control Delay (s)"), QStringLiteral("-000"));
    lblLOS = Figure(&window_, "lblLOS", QStringLiteral("LOS"), QStringLiteral(" W "));
    lblLOS->setAlignment(Qt::AlignCenter);
    lblLOS->setMargin(4);
    lblLOS->setAutoFillBackground(true);
    for (QLabel* figure : {lblContDelay, lblLOS}) figure->setFont(Larger(*figure, 1.6));
    txtIdealSpeed = Named<QLineEdit>(&window_, "txtIdealSpeed");
    txtIdealSpeed->setAlignment(Qt::AlignRight);
    txtIdealSpeed->setFixedWidth(WidthOf(*txtIdealSpeed, "0000000"));
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
    for (QWidget* control : std::initializer_list<QWidget*>{HScroll1, txtIdealSpeed, cmbPlotScaleList, btnToggleSpdTime,
                                                            btnTrim, BtnPlotSpeedExit, cmdHelp, txtEditRunName}) {
        QWidget::setTabOrder(before, control);
        before = control;
    }
}

}  // namespace vantor
