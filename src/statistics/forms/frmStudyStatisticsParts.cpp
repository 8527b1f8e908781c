#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>
#include <string>

#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/UserChoices.h"
#include "core/forms/Accessible.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "statistics/forms/SheetOut.h"
#include "statistics/forms/frmStudyStatistics.h"

// What "Statistics in Detail" is made of.

namespace vantor {
namespace {

constexpr int UsualWidth = 800;
constexpr QSize LeastPlot{240, 150};  // there is more around a plot here than elsewhere
constexpr double LongestDifference = 3600;

// How the plots are drawn at the next visit.
constexpr const char* ClockOfDayKey = "statistics-clock-of-day";
constexpr const char* BandsAloneKey = "statistics-bands-alone";

QString HeadOf(const StudyRecord& record) {
    std::string place(Trim(record.StreetName));
    if (record.Direction >= 0 && record.Direction < static_cast<int>(DirectionItems.size()))
        place += (place.empty() ? "" : ", ") + std::string(DirectionItems[static_cast<std::size_t>(record.Direction)]);
    const std::string name(Trim(record.StudyName));
    return ToQt(name.empty() || place.empty() ? name + place : name + ": " + place);
}

WrappedLabel* AddText(QWidget* parent, const char* name) {
    auto* label = Named<WrappedLabel>(parent, name);
    label->resize(UsualWidth, 0);  // so that it asks for no more height than it will need
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

}  // namespace

QLayout* frmStudyStatistics::BuildHead() {
    auto* lblStudy = Named<QLabel>(this, "lblStudy", HeadOf(study_.Record));
    lblStudy->setTextFormat(Qt::PlainText);
    QFont font = lblStudy->font();
    font.setBold(true);
    lblStudy->setFont(font);
    auto* row = new QHBoxLayout;
    lblRestsOn_ = Named<QLabel>(this, "lblRestsOn");
    SetValueCaption(*lblRestsOn_, QStringLiteral("The figures rest on"));
    lblRestsOn_->setTextFormat(Qt::PlainText);
    lblRestsOn_->setWordWrap(true);
    row->addWidget(lblStudy);
    row->addSpacing(12);
    row->addWidget(lblRestsOn_, 1);
    return row;
}

QLayout* frmStudyStatistics::BuildFilter() {
    cmbPeriod_ = Named<QComboBox>(this, "cmbPeriod");
    cmbDirection_ = Named<QComboBox>(this, "cmbDirection");
    cmbGroup_ = Named<QComboBox>(this, "cmbGroup");
    cmbGroup_->addItems({QStringLiteral("All"), QStringLiteral("Before"), QStringLiteral("After")});
    chkWithoutSetAside_ =
        Named<QCheckBox>(this, "chkWithoutSetAside", QStringLiteral("&Without runs that are set aside"));
    lblDirection_ = LabelFor(cmbDirection_, QStringLiteral("Tr&avel direction"));
    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(cmbPeriod_, QStringLiteral("&Period")));
    row->addWidget(cmbPeriod_);
    row->addSpacing(12);
    row->addWidget(lblDirection_);
    row->addWidget(cmbDirection_);
    row->addSpacing(12);
    row->addWidget(LabelFor(cmbGroup_, QStringLiteral("&Before and after")));
    row->addWidget(cmbGroup_);
    row->addSpacing(12);
    row->addWidget(chkWithoutSetAside_);
    row->addStretch();
    const auto show = [this] {
        if (!isFilling_) ShowChosen();
    };
    for (QComboBox* box : {cmbPeriod_, cmbDirection_, cmbGroup_})
        Connect(box, &QComboBox::currentIndexChanged, this, context_.Messages, show);
    Connect(chkWithoutSetAside_, &QCheckBox::toggled, this, context_.Messages, show);
    return row;
}

QWidget* frmStudyStatistics::BuildWarnings() {
    lblWarnings_ = AddText(this, "lblWarnings");
    return lblWarnings_;
}

StatisticsTableView* frmStudyStatistics::AddTable(QWidget* page, const char* name, const QString& caption) {
    auto* table = Named<StatisticsTableView>(page, name);
    table->setAccessibleName(caption);
    auto* label = AddText(page, ("lbl" + std::string(name + 2) + "Row").c_str());
    SetValueCaption(*label, QStringLiteral("The selected row"));
    table->TellIn(label);
    page->layout()->addWidget(table);
    page->layout()->addWidget(label);
    return table;
}

QWidget* frmStudyStatistics::BuildTabs() {
    tabs_ = Named<QTabWidget>(this, "tabStatistics");
    tabs_->setAccessibleName(QStringLiteral("Statistics"));
    const auto addPage = [this](const char* name, const QString& caption) {
        auto* page = new QWidget(tabs_);
        auto* column = new QVBoxLayout(page);
        auto* table = AddTable(page, name, WithoutAccessKey(caption));
        column->setStretch(0, 1);
        tabs_->addTab(page, caption);
        return table;
    };
    vaSummary_ = addPage("vaSummary", QStringLiteral("Su&mmary"));
    vaSections_ = addPage("vaSections", QStringLiteral("S&ections"));
    lblApart_ = AddText(vaSections_->parentWidget(), "lblApart");
    vaSections_->parentWidget()->layout()->addWidget(lblApart_);
    tabs_->addTab(BuildTimeSpace(), QStringLiteral("&Time-Space"));
    tabs_->addTab(BuildOverlay(), QStringLiteral("O&verlay"));
    tabs_->addTab(BuildCompared(), QStringLiteral("Be&fore/After"));
    return tabs_;
}

PlotView* frmStudyStatistics::AddPlot(QWidget* page, const char* name, const QString& caption) {
    auto* plot = new PlotView(context_, page);
    plot->setObjectName(QLatin1String(name));
    plot->setAccessibleName(caption);
    plot->SetLook(false, true);
    plot->setMinimumSize(LeastPlot);
    plot->OnChosen = [this, plot] { SelectRun(RunOfItem(plot->ChosenItem())); };
    plot->PictureStart = [this] { return FileStart(); };
    plots_.push_back(plot);
    plotNotes_.push_back(AddText(page, plots_.size() == 1 ? "lblTimeSpaceNote" : "lblOverlayNote"));
    page->layout()->addWidget(plot);
    page->layout()->addWidget(plotNotes_.back());
    return plot;
}

QWidget* frmStudyStatistics::BuildTimeSpace() {
    auto* page = new QWidget(tabs_);
    cmbClock_ = Named<QComboBox>(page, "cmbClock");
    cmbClock_->addItems({QStringLiteral("from the start of each run"), QStringLiteral("of the day")});
    cmbClock_->setToolTip(QStringLiteral("The mean way is drawn where all runs begin at 0"));
    cmbClock_->setCurrentIndex(IsTaken(context_.State.Choices, ClockOfDayKey) ? 1 : 0);
    Connect(cmbClock_, &QComboBox::currentIndexChanged, this, context_.Messages, [this](int index) {
        StoreChoice(ClockOfDayKey, index == 1);
        ShowChosen();
    });
    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(cmbClock_, QStringLiteral("T&ime")));
    row->addWidget(cmbClock_);
    row->addStretch();
    auto* column = new QVBoxLayout(page);
    column->addLayout(row);
    AddPlot(page, "picTimeSpace", QStringLiteral("Time-space diagram"));
    column->setStretch(1, 1);
    return page;
}

QWidget* frmStudyStatistics::BuildOverlay() {
    auto* page = new QWidget(tabs_);
    chkSingleRuns_ = Named<QCheckBox>(page, "chkSingleRuns", QStringLiteral("Si&ngle runs"));
    chkSingleRuns_->setChecked(!IsTaken(context_.State.Choices, BandsAloneKey));
    chkSingleRuns_->setToolTip(QStringLiteral("Draw each run under the median and the band from P15 to P85"));
    Connect(chkSingleRuns_, &QCheckBox::toggled, this, context_.Messages, [this](bool isOn) {
        StoreChoice(BandsAloneKey, !isOn);
        ShowChosen();
    });
    auto* column = new QVBoxLayout(page);
    column->addWidget(chkSingleRuns_);
    AddPlot(page, "picOverlay", QStringLiteral("Speed profiles, one over the other"));
    column->setStretch(1, 1);
    return page;
}

void frmStudyStatistics::StoreChoice(const char* key, bool isTaken) {
    context_.State.Choices = StoreUserChoices(context_.Files, {{key, isTaken ? ChoiceTaken : ""}});
}

QWidget* frmStudyStatistics::BuildCompared() {
    auto* page = new QWidget(tabs_);
    lblSentences_ = AddText(page, "lblSentences");
    auto* column = new QVBoxLayout(page);
    column->addWidget(lblSentences_);
    column->addLayout(BuildDifference(page));
    vaCompared_ = AddTable(page, "vaCompared", QStringLiteral("Measures before and after"));
    vaComparedSections_ =
        AddTable(page, "vaComparedSections", QStringLiteral("Travel time by section before and after"));
    column->setStretchFactor(vaComparedSections_, 1);
    column->addStretch();
    return ScrollAreaFor(page, tabs_);
}

QLayout* frmStudyStatistics::BuildDifference(QWidget* page) {
    numDifference_ = Named<QDoubleSpinBox>(page, "numDifference");
    numDifference_->setDecimals(1);
    numDifference_->setRange(0.1, LongestDifference);
    numDifference_->setSuffix(QStringLiteral(" s"));
    lblDifference_ = Named<QLabel>(page, "lblDifference");
    SetValueCaption(*lblDifference_, QStringLiteral("Runs that show it"));
    lblDifference_->setWordWrap(true);
    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(numDifference_, QStringLiteral("To show a &difference in travel time of")));
    row->addWidget(numDifference_);
    row->addWidget(lblDifference_, 1);
    Connect(numDifference_, &QDoubleSpinBox::valueChanged, this, context_.Messages, [this] { ShowDifference(); });
    return row;
}

QWidget* frmStudyStatistics::BuildRuns() {
    auto* part = new QWidget(this);
    vaRuns_ = Named<LongList>(part, "vaRuns");
    vaRuns_->setSelectionMode(QAbstractItemView::SingleSelection);
    vaRuns_->SetColumns(
        {{QStringLiteral("Run"), [this](int row) { return ToQt(RunOfRow(row).Name); }},
         {QStringLiteral("Time"),
          [this](int row) {
              const Date time = RunOfRow(row).RunTime;
              return IsValidDate(time) ? ToQt(ShortTime(time)) : QString();
          },
          [this](int row) { return RunOfRow(row).RunTime.Days; }},
         {QStringLiteral("s"), [this](int row) { return QString::number(RunOfRow(row).Measures.Whole.TravelTime); },
          [this](int row) { return static_cast<double>(RunOfRow(row).Measures.Whole.TravelTime); }, true},
         {QStringLiteral("Group"), [this](int row) {
              const MeasuredRun& run = RunOfRow(row);
              const QString group = run.IsBefore ? QStringLiteral("Before") : QStringLiteral("After");
              return run.SetAside.empty() ? group : group + QStringLiteral(", set aside");
          }}});
    vaRuns_->SetNotes(
        [this](int row, int column) { return column == 0 ? ToQt(RunInWords(RunOfRow(row))) : QString(); });
    vaRuns_->SetEmptyText(QStringLiteral("No runs"));
    vaRuns_->SortIn(context_.Work);
    Connect(vaRuns_->selectionModel(), &QItemSelectionModel::selectionChanged, this, context_.Messages, [this] {
        const auto rows = vaRuns_->SelectedRows();
        if (!isFilling_ && !rows.empty()) SelectRun(RunOfRow(rows.front()).Entry);
    });
    auto* column = new QVBoxLayout(part);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(LabelFor(vaRuns_, QStringLiteral("&Runs")));
    column->addWidget(vaRuns_, 1);
    return part;
}

QLayout* frmStudyStatistics::BuildButtons() {
    auto* BtnOptions = Named<QPushButton>(this, "BtnOptions", QStringLiteral("&Options..."));
    BtnOptions->setToolTip(QStringLiteral("How sure the figures are to be, the free-flow speed, grades of your own"));
    auto* BtnCopy = Named<QPushButton>(this, "BtnCopy", QStringLiteral("&Copy"));
    BtnCopy->setToolTip(QStringLiteral("Copy this tab as a table, ready to be pasted into a spreadsheet"));
    auto* BtnSaveCsv = Named<QPushButton>(this, "BtnSaveCsv", QStringLiteral("&Save as CSV..."));
    auto* BtnClose = Named<QPushButton>(this, "BtnClose", QStringLiteral("Close"));
    BtnClose->setDefault(true);
    outButtons_ = {BtnCopy, BtnSaveCsv};
    for (QPushButton* button : {BtnOptions, BtnCopy, BtnSaveCsv}) button->setAutoDefault(false);
    MessageBoxes& messages = context_.Messages;
    Connect(BtnOptions, &QPushButton::clicked, this, messages, [this] { ChangeOptions(); });
    Connect(BtnCopy, &QPushButton::clicked, this, messages, [this] { CopySheet(context_, ShownSheet()); });
    Connect(BtnSaveCsv, &QPushButton::clicked, this, messages,
            [this] { SaveSheetAsCsv(context_, ShownSheet(), FileStart(), "Save Statistics"); });
    Connect(BtnClose, &QPushButton::clicked, this, messages, [this] { accept(); });
    auto* row = new QHBoxLayout;
    row->addWidget(HelpButton(*this, context_, HelpTopic::Statistics));
    row->addWidget(BtnOptions);
    row->addStretch();
    for (QPushButton* button : {BtnCopy, BtnSaveCsv, BtnClose}) row->addWidget(button);
    return row;
}

}  // namespace vantor
