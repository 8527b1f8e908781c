#include "statistics/forms/frmStudyStatistics.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>

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

constexpr int MostRows = 12;  // of a table beside another
constexpr double UsualDifference = 10;

QString Lines(const std::vector<std::string>& texts) { return ToQt(Joined(texts, "\n")); }

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
    column->addWidget(BuildWarnings());
    auto* split = Named<QSplitter>(this, "splStatistics");
    split->addWidget(BuildTabs());
    split->addWidget(BuildRuns());
    split->setStretchFactor(0, 1);
    split->setSizes({900, 330});
    split->setChildrenCollapsible(false);
    column->addWidget(split, 1);
    column->addLayout(BuildButtons());
    const bool isRead = ReadRuns();
    FillFilter();
    ShowChosen();
    tabs_->setFocus();
    resize(1240, 720);
    RememberLayout(*this, context.Memory);
    // Figures of a part of the runs would be taken for those of all.
    if (!isRead) QMetaObject::invokeMethod(this, &QDialog::reject, Qt::QueuedConnection);
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
    vaRuns_->Show(0);  // its rows are runs of what was read before
    runs_ = read;
    return true;
}

void frmStudyStatistics::FillFilter() {
    isFilling_ = true;
    const auto offer = [this](QComboBox& box, std::string MeasuredRun::*what, const char* none) {
        box.clear();
        box.addItem(QStringLiteral("All"));
        for (const std::string& value : DifferentOf(runs_->Read.Runs, what))
            box.addItem(value.empty() ? QString::fromLatin1(none) : ToQt(value), ToQt(value));
        return box.count() > 2;
    };
    cmbPeriod_->setEnabled(offer(*cmbPeriod_, &MeasuredRun::Period, "without a period"));
    const bool hasDirections = offer(*cmbDirection_, &MeasuredRun::Direction, "without a direction");
    for (QWidget* widget : {static_cast<QWidget*>(lblDirection_), static_cast<QWidget*>(cmbDirection_)})
        widget->setVisible(hasDirections);
    const bool hasAside = std::ranges::any_of(runs_->Read.Runs, [](const auto& run) { return !run.SetAside.empty(); });
    chkWithoutSetAside_->setEnabled(hasAside);
    isFilling_ = false;
}

RunFilter frmStudyStatistics::Filter() const {
    RunFilter filter;
    if (cmbPeriod_->currentIndex() > 0) filter.Period = FromQt(cmbPeriod_->currentData().toString());
    if (cmbDirection_->currentIndex() > 0) filter.Direction = FromQt(cmbDirection_->currentData().toString());
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
    ShowRuns();
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

void frmStudyStatistics::ShowRuns() {
    isFilling_ = true;
    vaRuns_->Show(static_cast<int>(shown_.Runs.size()));
    isFilling_ = false;
}

const MeasuredRun& frmStudyStatistics::RunOfRow(int row) const {
    return runs_->Read.Runs[shown_.Runs[static_cast<std::size_t>(row)]];
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
    const auto row = std::ranges::find(shown_.Runs, index);
    isFilling_ = true;
    vaRuns_->SelectRows(row == shown_.Runs.end() ? std::vector<int>()
                                                 : std::vector{static_cast<int>(row - shown_.Runs.begin())});
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

std::string frmStudyStatistics::FileStart() const {
    constexpr std::array Names = {"statistics", "sections", "time-space", "speeds", "before and after"};
    const std::string study = WithSafeCharacters(Trim(study_.Record.StudyName));
    return StudyGroupFolder(context_.State) + (study.empty() ? "Study" : study) + " " +
           Names[static_cast<std::size_t>(tabs_->currentIndex())];
}

}  // namespace vantor
