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
namespace {}  // namespace

frmContDelayVsAvg::frmContDelayVsAvg(AppContext& context)
    : context_(context),
      runs_(ReadRunList(context.Work, context.State.CurrentStudy, StudyGroupFolder(context.State),
                        context.State.Settings)),
      plot_(new DelayChartPlot(this)) {
    setObjectName(QStringLiteral("frmContDelayVsAvg"));
    setWindowTitle(QStringLiteral("Control Delays & Running Avg. for Current Study"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    plot_->setObjectName(QStringLiteral("picDelayChart"));
    SetAccessibleRole(*plot_, QAccessible::Chart);
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
    plot_->OnChosen = [this] { ShowReadOut(); };
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
        auto* sample = new DelayLegendSample(entry, pair);
        sample->setObjectName(QLatin1String(name));
        sample->setAccessibleName(QLatin1String(LegendCaption(entry)));
        line->addWidget(sample);
        line->addWidget(Named<QLabel>(pair, labelName, QLatin1String(LegendCaption(entry))));
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
            [this] { context_.DesktopServices.CopyText(TabSeparatedText(DelaySheet(Series()))); });
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
    plot_->Show(DelaySeries(context_.State.CurrentStudy, runs_.Rows, shown));
    legendNotCounted_->setVisible(Series().ShowsNotCounted());
    ShowReadOut();
}

void frmContDelayVsAvg::ShowReadOut() {
    const int count = Series().RunCount();
    if (count == 0) {
        lblReadOut_->setText(runs_.Rows.empty() ? QStringLiteral("Add runs to the study to see their control delays.")
                                                : QStringLiteral("No run of the study is counted."));
        return plot_->setAccessibleDescription(lblReadOut_->text());
    }
    const int run = plot_->ChosenRun();
    lblReadOut_->setText(run == 0 ? QStringLiteral("The arrow keys step through the runs; or point at a run.")
                                  : DelaysInWords(Series(), run));
    plot_->setAccessibleDescription(
        QStringLiteral("Runs 1 to %1, control delay from 0 to %2 s. %3")
            .arg(QString::number(count), QString::number(Series().YMax()), lblReadOut_->text()));
}

void frmContDelayVsAvg::CopyPicture() {
    context_.DesktopServices.CopyPicture(DelayChartPicture(
        context_.Documents, Series(), DelayChartTitle(context_.State.CurrentStudy), PictureFormat::Png));
}

void frmContDelayVsAvg::Save() {
    const Study& study = context_.State.CurrentStudy;
    const std::string name = WithSafeCharacters(Trim(study.Record.StudyName));
    SavePicture(context_, StudyGroupFolder(context_.State) + (name.empty() ? "Control Delay" : name + " Control Delay"),
                "Save Chart", [&](PictureFormat format) {
                    return DelayChartPicture(context_.Documents, Series(), DelayChartTitle(study), format);
                });
}

}  // namespace vantor
