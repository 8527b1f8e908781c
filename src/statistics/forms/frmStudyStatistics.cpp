#include "statistics/forms/frmStudyStatistics.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>
#include <span>

#include "core/Paths.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/Accessible.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"

namespace vantor {
namespace {

constexpr int RunRole = Qt::UserRole + 1;
constexpr int MostRows = 12;  // of a table beside another
constexpr int UsualWidth = 800;
constexpr QSize LeastPlot{240, 150};  // there is more around a plot here than elsewhere
constexpr double LongestDifference = 3600;
constexpr double UsualDifference = 10;

QString HeadOf(const StudyRecord& record) {
    std::string place(Trim(record.StreetName));
    if (record.Direction >= 0 && record.Direction < static_cast<int>(DirectionItems.size()))
        place += (place.empty() ? "" : ", ") + std::string(DirectionItems[static_cast<std::size_t>(record.Direction)]);
    const std::string name(Trim(record.StudyName));
    return ToQt(name.empty() || place.empty() ? name + place : name + ": " + place);
}

QString Lines(const std::vector<std::string>& texts) { return ToQt(Joined(texts, "\n")); }

WrappedLabel* AddText(QWidget* parent, const char* name) {
    auto* label = Named<WrappedLabel>(parent, name);
    label->resize(UsualWidth, 0);  // so that it asks for no more height than it will need
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

void ShowText(WrappedLabel& label, const QString& text) {
    label.setText(text);
    label.setVisible(!text.isEmpty());
}

}  // namespace

frmStudyStatistics::frmStudyStatistics(AppContext& context, int run)
    : context_(context), units_(UnitsOf(context.State.Settings)), study_(context.State.CurrentStudy), selected_(run) {
    setObjectName(QStringLiteral("frmStudyStatistics"));
    setWindowTitle(QStringLiteral("Statistics in Detail"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    auto* column = new QVBoxLayout(this);
    column->addLayout(BuildHead());
    column->addLayout(BuildFilter());
    lblWarnings_ = AddText(this, "lblWarnings");
    auto* split = Named<QSplitter>(this, "splStatistics");
    split->addWidget(BuildTabs());
    split->addWidget(BuildRuns());
    split->setStretchFactor(0, 1);
    split->setSizes({900, 330});
    split->setChildrenCollapsible(false);
    column->addWidget(lblWarnings_);
    column->addWidget(split, 1);
    column->addLayout(BuildButtons());
    const bool isRead = ReadRuns();
    FillPeriods();
    ShowChosen();
    tabs_->setFocus();
    resize(1240, 720);
    RememberLayout(*this, context.Memory);
    // Figures of a part of the runs would be taken for those of all.
    if (!isRead) QMetaObject::invokeMethod(this, &QDialog::reject, Qt::QueuedConnection);
}

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
    cmbGroup_ = Named<QComboBox>(this, "cmbGroup");
    cmbGroup_->addItems({QStringLiteral("All"), QStringLiteral("Before"), QStringLiteral("After")});
    chkWithoutSetAside_ =
        Named<QCheckBox>(this, "chkWithoutSetAside", QStringLiteral("&Without runs that are set aside"));
    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(cmbPeriod_, QStringLiteral("&Period")));
    row->addWidget(cmbPeriod_);
    row->addSpacing(12);
    row->addWidget(LabelFor(cmbGroup_, QStringLiteral("&Before and after")));
    row->addWidget(cmbGroup_);
    row->addSpacing(12);
    row->addWidget(chkWithoutSetAside_);
    row->addStretch();
    const auto show = [this] {
        if (!isFilling_) ShowChosen();
    };
    for (QComboBox* box : {cmbPeriod_, cmbGroup_})
        Connect(box, &QComboBox::currentIndexChanged, this, context_.Messages, show);
    Connect(chkWithoutSetAside_, &QCheckBox::toggled, this, context_.Messages, show);
    return row;
}

QWidget* frmStudyStatistics::BuildTabs() {
    tabs_ = Named<QTabWidget>(this, "tabStatistics");
    tabs_->setAccessibleName(QStringLiteral("Statistics"));
    const auto addPage = [this](const char* name, const QString& caption) {
        auto* page = new QWidget(tabs_);
        auto* table = Named<StatisticsTableView>(page, name);
        table->setAccessibleName(WithoutAccessKey(caption));
        (new QVBoxLayout(page))->addWidget(table, 1);
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
    Connect(cmbClock_, &QComboBox::currentIndexChanged, this, context_.Messages, [this] { ShowChosen(); });
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
    chkSingleRuns_->setChecked(true);
    chkSingleRuns_->setToolTip(QStringLiteral("Draw each run under the median and the band from P15 to P85"));
    Connect(chkSingleRuns_, &QCheckBox::toggled, this, context_.Messages, [this] { ShowChosen(); });
    auto* column = new QVBoxLayout(page);
    column->addWidget(chkSingleRuns_);
    AddPlot(page, "picOverlay", QStringLiteral("Speed profiles, one over the other"));
    column->setStretch(1, 1);
    return page;
}

QWidget* frmStudyStatistics::BuildCompared() {
    auto* page = new QWidget(tabs_);
    lblSentences_ = AddText(page, "lblSentences");
    vaCompared_ = Named<StatisticsTableView>(page, "vaCompared");
    vaCompared_->setAccessibleName(QStringLiteral("Measures before and after"));
    vaComparedSections_ = Named<StatisticsTableView>(page, "vaComparedSections");
    vaComparedSections_->setAccessibleName(QStringLiteral("Travel time by section before and after"));
    auto* column = new QVBoxLayout(page);
    column->addWidget(lblSentences_);
    column->addLayout(BuildDifference(page));
    column->addWidget(vaCompared_);
    column->addWidget(vaComparedSections_, 1);
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
    vaRuns_ = Named<Table>(part, "vaRuns");
    vaRuns_->setSelectionMode(QAbstractItemView::SingleSelection);
    vaRuns_->horizontalHeader()->setDefaultSectionSize(40);
    vaRuns_->SetColumns({QStringLiteral("Run"), QStringLiteral("Time"), QStringLiteral("s"), QStringLiteral("Group")});
    vaRuns_->SetEmptyText(QStringLiteral("No runs"));
    Connect(vaRuns_, &QTableWidget::itemSelectionChanged, this, context_.Messages, [this] {
        const auto rows = vaRuns_->SelectedRows();
        if (!isFilling_ && !rows.empty()) SelectRun(vaRuns_->item(rows.front(), 0)->data(RunRole).toInt());
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
    Connect(BtnCopy, &QPushButton::clicked, this, messages, [this] { Copy(); });
    Connect(BtnSaveCsv, &QPushButton::clicked, this, messages, [this] { SaveAsCsv(); });
    Connect(BtnClose, &QPushButton::clicked, this, messages, [this] { accept(); });
    auto* row = new QHBoxLayout;
    row->addWidget(HelpButton(*this, context_, HelpTopic::Statistics));
    row->addWidget(BtnOptions);
    row->addStretch();
    for (QPushButton* button : {BtnCopy, BtnSaveCsv, BtnClose}) row->addWidget(button);
    return row;
}

bool frmStudyStatistics::ReadRuns() {
    const auto read = std::make_shared<TracedRuns>();
    const bool isWhole =
        context_.Work.Run("Reading the runs of the study",
                          [read, study = study_, folder = StudyGroupFolder(context_.State),
                           settings = context_.State.Settings](FileSystem& files, const Progress& progress) {
                              *read = ReadTracedRuns(study, files, folder, settings, progress);
                          });
    if (!isWhole || !read->Read.IsWhole) return false;
    runs_ = read;
    return true;
}

void frmStudyStatistics::FillPeriods() {
    isFilling_ = true;
    cmbPeriod_->clear();
    cmbPeriod_->addItem(QStringLiteral("All"));
    for (const std::string& period : PeriodsOf(runs_->Read.Runs))
        cmbPeriod_->addItem(period.empty() ? QStringLiteral("without a period") : ToQt(period), ToQt(period));
    cmbPeriod_->setEnabled(cmbPeriod_->count() > 2);
    const bool hasAside = std::ranges::any_of(runs_->Read.Runs, [](const auto& run) { return !run.SetAside.empty(); });
    chkWithoutSetAside_->setEnabled(hasAside);
    isFilling_ = false;
}

RunFilter frmStudyStatistics::Filter() const {
    RunFilter filter;
    if (cmbPeriod_->currentIndex() > 0) filter.Period = FromQt(cmbPeriod_->currentData().toString());
    filter.Of = static_cast<RunFilter::Group>(cmbGroup_->currentIndex());
    filter.WithoutSetAside = chkWithoutSetAside_->isChecked();
    return filter;
}

void frmStudyStatistics::ShowChosen() {
    const auto made = std::make_shared<DetailedStatistics>();
    const PlotChoices choices{static_cast<TimeSpaceClock>(cmbClock_->currentIndex()), chkSingleRuns_->isChecked()};
    // It is not stopped under way, so that what is shown is of what is chosen.
    context_.Work.Run("Computing the statistics", [made, runs = runs_, study = study_, filter = Filter(), choices,
                                                   units = units_](FileSystem&, const Progress&) {
        *made = MakeDetailedStatistics(*runs, study, filter, choices, units);
    });
    shown_ = std::move(*made);
    ShowTexts();
    ShowTables();
    ShowPlots();
    FillRuns();
    ShowSelected();
}

void frmStudyStatistics::ShowTexts() {
    lblRestsOn_->setText(shown_.Runs.empty() ? QString() : ToQt(shown_.RestsOn));
    ShowText(*lblWarnings_, Lines(shown_.Warnings));
    ShowText(*lblApart_, ToQt(shown_.Apart));
    ShowText(*plotNotes_[0], ToQt(shown_.TimeSpaceNote));
    ShowText(*plotNotes_[1], ToQt(shown_.OverlayNote));
    ShowText(*lblSentences_, Lines(shown_.Sentences));
    if (!hasDifference_) {
        const auto error = ErrorInUnit(study_.Options.Error, shown_.Figures.Whole.All.Of[Measure::TravelTime].Mean);
        numDifference_->setValue(error.value_or(UsualDifference));
        hasDifference_ = true;
    }
    ShowDifference();
}

void frmStudyStatistics::ShowTables() {
    const QString nothing = shown_.Runs.empty() ? ToQt(shown_.Warnings.front()) : QString();
    for (Table* table : std::initializer_list<Table*>{vaSummary_, vaSections_}) table->SetEmptyText(nothing);
    vaSummary_->Show(shown_.Summary);
    vaSections_->Show(shown_.Sections);
    vaCompared_->Show(shown_.Compared);
    vaComparedSections_->Show(shown_.ComparedSections);
    for (StatisticsTableView* table : {vaCompared_, vaComparedSections_}) {
        table->NeedRows(std::min(table->rowCount(), MostRows));
        table->setVisible(table->rowCount() > 0);
    }
    for (QPushButton* button : outButtons_) button->setEnabled(!shown_.Runs.empty());
}

void frmStudyStatistics::ShowPlots() {
    plots_[0]->Show(shown_.TimeSpace);
    plots_[1]->Show(shown_.Overlay);
}

void frmStudyStatistics::FillRuns() {
    isFilling_ = true;
    vaRuns_->BeginFilling();
    vaRuns_->setRowCount(static_cast<int>(shown_.Runs.size()));
    int row = 0;
    for (const std::size_t index : shown_.Runs) {
        const MeasuredRun& run = runs_->Read.Runs[index];
        vaRuns_->SetText(row, 0, ToQt(run.Name));
        vaRuns_->item(row, 0)->setData(RunRole, run.Entry);
        SetCellNote(*vaRuns_->item(row, 0), ToQt(RunInWords(run)));
        const bool hasTime = IsValidDate(run.RunTime);
        vaRuns_->SetSorted(row, 1, hasTime ? ToQt(ShortTime(run.RunTime)) : QString(), run.RunTime.Days);
        const int seconds = run.Measures.Whole.TravelTime;
        vaRuns_->SetNumber(row, 2, seconds, QString::number(seconds));
        const std::string group = run.IsBefore ? "Before" : "After";
        vaRuns_->SetText(row, 3, ToQt(run.SetAside.empty() ? group : group + ", set aside"));
        ++row;
    }
    vaRuns_->EndFilling();
    isFilling_ = false;
}

void frmStudyStatistics::ShowDifference() {
    const GroupedStatistics& whole = shown_.Figures.Whole;
    const auto sd = whole.HasBoth() ? whole.Compared[Measure::TravelTime].Sd : whole.All.Of[Measure::TravelTime].Sd;
    lblDifference_->setText(ToQt(RunsForDifferenceText(sd, numDifference_->value(), study_.Options.Confidence)));
}

int frmStudyStatistics::RunOfItem(int item) const {
    if (item == 0) return 0;
    return runs_->Read.Runs[shown_.Plotted[static_cast<std::size_t>(item) - 1]].Entry;
}

void frmStudyStatistics::SelectRun(int run) {
    if (run == 0 || run == selected_) return;
    selected_ = run;
    ShowSelected();
}

void frmStudyStatistics::ShowSelected() {
    const auto& runs = runs_->Read.Runs;
    const auto index = static_cast<std::size_t>(std::ranges::find(runs, selected_, &MeasuredRun::Entry) - runs.begin());
    for (PlotView* plot : plots_) plot->SetChosenItem(shown_.ItemOf(index));
    isFilling_ = true;
    vaRuns_->clearSelection();
    for (int row = 0; row < vaRuns_->rowCount(); ++row)
        if (vaRuns_->item(row, 0)->data(RunRole).toInt() == selected_) vaRuns_->setCurrentCell(row, 0);
    isFilling_ = false;
}

void frmStudyStatistics::ChangeOptions() {
    const StudyChoices before{study_.Options, study_.Lines};
    const auto choices = context_.OtherScreens.ShowStatisticsOptions(before);
    if (!choices || *choices == before) return;
    study_.Options = choices->Options;
    study_.Lines = choices->Lines;
    // Stops are counted while a run is read.
    if (choices->Options.Stops != before.Options.Stops && !ReadRuns()) study_.Options.Stops = before.Options.Stops;
    hasDifference_ = hasDifference_ && choices->Options.Error == before.Options.Error;
    ShowChosen();
}

std::vector<SheetRow> frmStudyStatistics::ShownSheet() const {
    std::vector<SheetRow> rows;
    const auto add = [&](const StatisticsTable& table) {
        const auto sheet = SheetOf(table);
        rows.insert(rows.end(), sheet.begin(), sheet.end());
    };
    switch (tabs_->currentIndex()) {
        case SectionsPage: add(shown_.Sections); break;
        case TimeSpacePage: add(shown_.NodeTimes); break;
        case OverlayPage: add(shown_.Speeds); break;
        case ComparedPage:
            for (const std::string& sentence : shown_.Sentences) rows.push_back({{sentence}});
            for (const StatisticsTable* table : {&shown_.Compared, &shown_.ComparedSections})
                if (!table->Rows.empty()) add(*table);
            break;
        default: add(shown_.Summary);
    }
    rows.push_back({{"Rests on"}, {shown_.RestsOn}});
    return rows;
}

void frmStudyStatistics::Copy() { context_.DesktopServices.CopyText(TabSeparatedText(ShownSheet())); }

std::string frmStudyStatistics::FileStart() const {
    constexpr std::array Names = {"statistics", "sections", "time-space", "speeds", "before and after"};
    const std::string study = WithSafeCharacters(Trim(study_.Record.StudyName));
    return StudyGroupFolder(context_.State) + (study.empty() ? "Study" : study) + " " +
           Names[static_cast<std::size_t>(tabs_->currentIndex())];
}

void frmStudyStatistics::SaveAsCsv() {
    const std::string path = context_.DesktopServices.ChooseFileToSave(FileStart() + ".csv", "Save Statistics",
                                                                       {{"Comma-separated values", ".csv"}});
    if (path.empty()) return;
    const std::string text = CsvText(ShownSheet());
    WriteFile(context_.Files, path, std::as_bytes(std::span(text)), AsItStands(context_.Files, path));
}

}  // namespace vantor
