#include "analysis/forms/frmContDelayVsAvg.h"

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

namespace vantor {
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

QLayout* frmContDelayVsAvg::BuildLegend() {
    auto* fraLegend = Named<QGroupBox>(this, "fraLegend", QStringLiteral("Legend"));
    auto* samples = new QHBoxLayout(fraLegend);
    const auto add = [&](DelayLegend entry, const char* name, const char* labelName) {
        auto* pair = new QWidget(fraLegend);
        auto* line = new QHBoxLayout(pair);
        line->setContentsMargins(0, 0, 16, 0);
        auto* sample = new PlotSampleView(SampleOf(entry), pair);
        sample->setObjectName(QLatin1String(name));
        line->addWidget(sample);
        line->addWidget(Named<QLabel>(pair, labelName, sample->accessibleName()));
        samples->addWidget(pair);
        return pair;
    };
    add(DelayLegend::Average, "LegendAvg", "lblLegendAvg");
    add(DelayLegend::Data, "LegendData", "lblLegendData");
    legendNotCounted_ = add(DelayLegend::NotCounted, "LegendNotCounted", "lblLegendNotCounted");

    chkCountedOnly_ = Named<QCheckBox>(this, "chkCountedOnly", QStringLiteral("&Counted runs only"));
    chkCountedOnly_->setToolTip(QStringLiteral("Leave out the runs that are not in the study's average"));
    chkCountedOnly_->setChecked(IsTaken(context_.State.Choices, CountedOnlyKey));
    Connect(chkCountedOnly_, &QCheckBox::toggled, this, context_.Messages, [this](bool isOn) {
        context_.State.Choices = StoreUserChoices(context_.Files, {{CountedOnlyKey, isOn ? ChoiceTaken : ""}});
        ShowSeries();
    });
    auto* row = new QHBoxLayout;
    row->addWidget(fraLegend);
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
    const DelayRuns shown = chkCountedOnly_->isChecked() ? DelayRuns::Counted : DelayRuns::All;
    series_ = DelaySeries(context_.State.CurrentStudy, runs_.Rows, shown);
    plot_->Show(DelayPlot(series_, DelayChartTitle(context_.State.CurrentStudy)));
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
        context_.Documents, series_, DelayChartTitle(context_.State.CurrentStudy), PictureFormat::Png));
}

std::string frmContDelayVsAvg::PictureStart() const {
    const std::string name = WithSafeCharacters(Trim(context_.State.CurrentStudy.Record.StudyName));
    return StudyGroupFolder(context_.State) + (name.empty() ? "Control Delay" : name + " Control Delay");
}

void frmContDelayVsAvg::Save() {
    SavePicture(context_, PictureStart(), "Save Chart", [&](PictureFormat format) {
        return DelayChartPicture(context_.Documents, series_, DelayChartTitle(context_.State.CurrentStudy), format);
    });
}

}  // namespace vantor
