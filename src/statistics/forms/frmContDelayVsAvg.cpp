#include "statistics/forms/frmContDelayVsAvg.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/Paths.h"
#include "core/PictureFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/Accessible.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "statistics/DelayLayers.h"

namespace vantor {
namespace {

// What lies under the delays, as the user wants it.
constexpr const char* IntervalKey = "delay-chart-interval";
constexpr const char* ErrorKey = "delay-chart-error";
constexpr const char* GradesKey = "delay-chart-grades";

}  // namespace

frmContDelayVsAvg::frmContDelayVsAvg(AppContext& context)
    : context_(context),
      runs_(ReadRunList(context.Work, context.State.CurrentStudy, StudyGroupFolder(context.State),
                        context.State.Settings)),
      plot_(new PlotView(context, this)) {
    setObjectName(QStringLiteral("frmContDelayVsAvg"));
    setWindowTitle(QStringLiteral("Control Delays & Running Avg. for Current Study"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    plot_->setObjectName(QStringLiteral("picDelayChart"));
    plot_->setAccessibleName(QStringLiteral("Control delay chart"));
    lblReadOut_ = Named<QLabel>(this, "lblReadOut");
    SetValueCaption(*lblReadOut_, QStringLiteral("Values of the chosen run"));
    lblReadOut_->setTextFormat(Qt::PlainText);
    lblReadOut_->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(plot_, 1);
    layout->addWidget(lblReadOut_);
    layout->addLayout(BuildLegend());
    layout->addLayout(BuildLayers());
    layout->addLayout(BuildButtons());
    plot_->SetLook(false, false);
    plot_->OnChosen = [this] { ShowReadOut(); };
    plot_->PictureStart = [this] { return PictureStart(); };
    ShowSeries();
    plot_->setFocus();
    resize(960, 640);
    RememberLayout(*this, context.Memory);
    // A running average over a part of the runs would be taken for one over all.
    if (!runs_.IsWhole) QMetaObject::invokeMethod(this, &QDialog::reject, Qt::QueuedConnection);
}

QWidget* frmContDelayVsAvg::AddToLegend(const PlotSample& sample, const char* name, const char* labelName) {
    auto* pair = new QWidget(fraLegend_);
    auto* line = new QHBoxLayout(pair);
    line->setContentsMargins(0, 0, 16, 0);
    auto* view = new PlotSampleView(sample, pair);
    view->setObjectName(QLatin1String(name));
    line->addWidget(view);
    line->addWidget(Named<QLabel>(pair, labelName, view->accessibleName()));
    fraLegend_->layout()->addWidget(pair);
    return pair;
}

QLayout* frmContDelayVsAvg::BuildLegend() {
    fraLegend_ = Named<QGroupBox>(this, "fraLegend", QStringLiteral("Legend"));
    new QHBoxLayout(fraLegend_);
    AddToLegend(SampleOf(DelayLegend::Average), "LegendAvg", "lblLegendAvg");
    AddToLegend(SampleOf(DelayLegend::Data), "LegendData", "lblLegendData");
    legendNotCounted_ = AddToLegend(SampleOf(DelayLegend::NotCounted), "LegendNotCounted", "lblLegendNotCounted");
    auto* row = new QHBoxLayout;
    row->addWidget(fraLegend_);
    row->addStretch();
    return row;
}

QCheckBox* frmContDelayVsAvg::Switch(const char* name, const QString& caption, const char* tip, const char* key) {
    auto* box = Named<QCheckBox>(this, name, caption);
    box->setToolTip(QString::fromLatin1(tip));
    box->setChecked(IsTaken(context_.State.Choices, key));
    Connect(box, &QCheckBox::toggled, this, context_.Messages, [this, key](bool isOn) {
        context_.State.Choices = StoreUserChoices(context_.Files, {{key, isOn ? ChoiceTaken : ""}});
        ShowSeries();
    });
    return box;
}

QLayout* frmContDelayVsAvg::BuildLayers() {
    chkInterval_ = Switch("chkInterval", QStringLiteral("&Interval"),
                          "The interval of the average after each run, as sure as Statistics Options say", IntervalKey);
    chkError_ = Switch("chkError", QStringLiteral("Permitted &error"),
                       "Enough runs were driven where the interval lies between these lines", ErrorKey);
    chkGrades_ = Switch("chkGrades", QStringLiteral("&Grades"), "The delays of each grade", GradesKey);
    chkCountedOnly_ = Switch("chkCountedOnly", QStringLiteral("&Counted runs only"),
                             "Leave out the runs that are not in the study's average", CountedOnlyKey);
    cmbOrder_ = Named<QComboBox>(this, "cmbOrder");
    cmbOrder_->addItems(
        {QStringLiteral("As in the study"), QStringLiteral("As driven"), QStringLiteral("By time of day")});
    Connect(cmbOrder_, &QComboBox::currentIndexChanged, this, context_.Messages, [this] { ShowSeries(); });
    auto* row = new QHBoxLayout;
    for (QCheckBox* box : {chkInterval_, chkError_, chkGrades_}) row->addWidget(box);
    row->addSpacing(16);
    row->addWidget(LabelFor(cmbOrder_, QStringLiteral("&Order")));
    row->addWidget(cmbOrder_);
    row->addStretch();
    row->addWidget(chkCountedOnly_);
    return row;
}

QLayout* frmContDelayVsAvg::BuildButtons() {
    auto* BtnCopyPicture = Named<QPushButton>(this, "BtnCopyPicture", QStringLiteral("Copy &Picture"));
    BtnCopyPicture->setToolTip(QStringLiteral("Copy the chart as a picture"));
    auto* BtnCopyValues = Named<QPushButton>(this, "BtnCopyValues", QStringLiteral("Copy &Values"));
    BtnCopyValues->setToolTip(QStringLiteral("Copy the values, ready to be pasted into a spreadsheet"));
    auto* BtnSave = Named<QPushButton>(this, "BtnSave", QStringLiteral("&Save Chart..."));
    BtnSave->setToolTip(QStringLiteral("Save the chart as a PNG, SVG or PDF file"));
    auto* btnExit = Named<QPushButton>(this, "btnExit", QStringLiteral("Exit"));
    btnExit->setDefault(true);

    MessageBoxes& messages = context_.Messages;
    Connect(BtnCopyPicture, &QPushButton::clicked, this, messages, [this] { CopyPicture(); });
    Connect(BtnCopyValues, &QPushButton::clicked, this, messages,
            [this] { context_.DesktopServices.CopyText(TabSeparatedText(DelaySheet(series_))); });
    Connect(BtnSave, &QPushButton::clicked, this, messages, [this] { Save(); });
    Connect(btnExit, &QPushButton::clicked, this, messages, [this] { accept(); });

    auto* row = new QHBoxLayout;
    row->addWidget(HelpButton(*this, context_, HelpTopic::DelayChart));
    row->addStretch();
    for (QPushButton* button : {BtnCopyPicture, BtnCopyValues, BtnSave}) {
        button->setAutoDefault(false);
        button->setEnabled(!runs_.Rows.empty());
        row->addWidget(button);
    }
    row->addWidget(btnExit);
    return row;
}

void frmContDelayVsAvg::ShowSeries() {
    const Study& study = context_.State.CurrentStudy;
    const DelayRuns shown = chkCountedOnly_->isChecked() ? DelayRuns::Counted : DelayRuns::All;
    const auto order = static_cast<DelayOrder>(cmbOrder_->currentIndex());
    series_ = DelaySeries(study, runs_.Rows, shown, RunsInOrder(runs_.Rows, order));
    layers_ = DelayLayersOf(series_, study.Options,
                            {chkInterval_->isChecked(), chkError_->isChecked(), chkGrades_->isChecked()});
    Plot plot = DelayPlot(series_, DelayChartTitle(study), layers_);
    qDeleteAll(legendLayers_);
    legendLayers_.clear();
    // The plot's legend begins with what lies under the delays.
    const auto layers = static_cast<std::size_t>(!layers_.RunningInterval.empty()) + (layers_.Corridor ? 1 : 0);
    for (std::size_t i = 0; i < layers; ++i)
        legendLayers_.push_back(AddToLegend(plot.Axes.Legend[i], "LegendLayer", "lblLegendLayer"));
    plot_->Show(std::move(plot));
    legendNotCounted_->setVisible(series_.ShowsNotCounted());
    ShowReadOut();
}

void frmContDelayVsAvg::ShowReadOut() {
    const int count = series_.RunCount();
    if (count == 0) {
        lblReadOut_->setText(runs_.Rows.empty() ? QStringLiteral("Add runs to the study to see their control delays.")
                                                : QStringLiteral("No run of the study is counted."));
        return plot_->setAccessibleDescription(lblReadOut_->text());
    }
    const int run = plot_->ChosenItem();
    lblReadOut_->setText(run == 0 ? QStringLiteral("The arrow keys step through the runs; or point at a run.")
                                  : ToQt(DelaysInWords(series_, run)));
    plot_->setAccessibleDescription(
        QStringLiteral("Runs 1 to %1, control delay from 0 to %2 s. %3")
            .arg(QString::number(count), QString::number(series_.YMax()), lblReadOut_->text()));
}

void frmContDelayVsAvg::CopyPicture() {
    context_.DesktopServices.CopyPicture(DelayChartPicture(
        context_.Documents, series_, DelayChartTitle(context_.State.CurrentStudy), PictureFormat::Png, layers_));
}

std::string frmContDelayVsAvg::PictureStart() const {
    const std::string name = WithSafeCharacters(Trim(context_.State.CurrentStudy.Record.StudyName));
    return StudyGroupFolder(context_.State) + (name.empty() ? "Control Delay" : name + " Control Delay");
}

void frmContDelayVsAvg::Save() {
    SavePicture(context_, PictureStart(), "Save Chart", [&](PictureFormat format) {
        return DelayChartPicture(context_.Documents, series_, DelayChartTitle(context_.State.CurrentStudy), format,
                                 layers_);
    });
}

}  // namespace vantor
