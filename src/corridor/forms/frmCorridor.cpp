#include "corridor/forms/frmCorridor.h"

#include <QMenu>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>
#include <utility>

#include "core/Counted.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "core/UserChoices.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "corridor/CorridorFile.h"
#include "corridor/CorridorStudies.h"
#include "corridor/ReportedCorridor.h"
#include "corridor/forms/frmCorridorSettings.h"

namespace vantor {
namespace {

constexpr std::size_t MostTold = 6;  // names of studies

/// The names of studies, with their Study Groups.
std::string InWords(const std::vector<StudyOfNode>& studies) {
    std::vector<std::string> names;
    names.reserve(studies.size());
    for (const StudyOfNode& study : studies)
        names.push_back(study.Name + " (" +
                        LastComponent(std::string_view(study.Folder).substr(0, study.Folder.size() - 1)) + ")");
    return FirstOf(names, MostTold, "\n");
}

}  // namespace

frmCorridor::frmCorridor(AppContext& context, const std::optional<std::string>& path)
    : context_(context), document_(context, *this) {
    setObjectName(QStringLiteral("frmCorridor"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    auto* column = new QVBoxLayout(this);
    column->addLayout(BuildFileRow());
    column->addLayout(BuildFilterRow());
    lblWarnings_ = Named<WrappedLabel>(this, "lblWarnings");
    lblWarnings_->resize(800, 0);
    column->addWidget(lblWarnings_);
    auto* parts = Named<QSplitter>(this, "splCorridor");
    parts->addWidget(BuildLeft());
    stack_ = new QStackedWidget(this);
    stack_->addWidget(BuildStart());
    stack_->addWidget(BuildTabs());
    parts->addWidget(stack_);
    parts->setStretchFactor(1, 1);
    parts->setSizes({440, 820});
    parts->setChildrenCollapsible(false);
    column->addWidget(parts, 1);
    column->addLayout(BuildFoot());
    for (QPushButton* button : findChildren<QPushButton*>()) button->setAutoDefault(false);
    document_.WhenShown([this] { ShowAll(); });
    document_.WhenSelected([this] { ShowFilter(); });
    connect(&document_.Steps(), &QUndoStack::indexChanged, this, [this] { ShowHead(); });
    connect(&document_.Steps(), &QUndoStack::cleanChanged, this, [this] { ShowHead(); });
    resize(1280, 760);
    RememberLayout(*this, context.Memory);
    ShowAll();
    Guarded(context.Messages, [&] { OpenFirst(path); });
}

void frmCorridor::OpenFirst(const std::optional<std::string>& path) {
    if (path) return document_.Open(*path);
    const std::string last = ChoiceOf(context_.State.Choices, LastCorridorKey);
    const std::vector<std::string> there = document_.Others();
    if (!last.empty() && context_.Files.Find(last))
        document_.Open(last);
    else if (there.size() == 1)
        document_.Open(CorridorPath(document_.Root(), there.front()));
}

void frmCorridor::FillOpen(QMenu& menu) {
    menu.clear();
    MessageBoxes& messages = context_.Messages;
    for (const std::string& name : document_.Others()) {
        const std::string path = CorridorPath(context_.State.Paths.StudyGroupRootPath, name);
        QAction* action = menu.addAction(ToQt(name).replace(QLatin1Char('&'), QLatin1String("&&")));
        Connect(action, &QAction::triggered, this, messages, [this, path] { document_.Open(path); });
    }
    menu.addSeparator();
    Connect(menu.addAction(QStringLiteral("&Another File...")), &QAction::triggered, this, messages, [this] {
        const std::string path =
            context_.DesktopServices.ChooseFileToOpen(document_.Root(), "Open Corridor", "Corridors", {".geojson"});
        if (!path.empty()) document_.Open(path);
    });
}

void frmCorridor::FillAddRuns(QMenu& menu) {
    menu.clear();
    MessageBoxes& messages = context_.Messages;
    for (const std::string& group : document_.Groups()) {
        QAction* action =
            menu.addAction(QStringLiteral("All of ") + ToQt(group).replace(QLatin1Char('&'), QLatin1String("&&")));
        Connect(action, &QAction::triggered, this, messages, [this, group] { runs_->TakeGroup(group); });
    }
    menu.addSeparator();
    Connect(menu.addAction(QStringLiteral("&Files...")), &QAction::triggered, this, messages,
            [this] { runs_->AskForFiles(); });
}

void frmCorridor::ImportTracks() {
    // The passes go into its file.
    if ((document_.Path().empty() || document_.HasChanges()) && !document_.Save()) return;
    static_cast<void>(context_.OtherScreens.ShowImportTracks({}, document_.Path()));
    document_.Reload();
}

void frmCorridor::ShowReport() {
    const DetailedCorridor& shown = document_.Shown();
    context_.OtherScreens.ShowCorridorReport(
        std::make_shared<ReportedCorridor>(ReportedCorridor{shown.Of, shown.Runs, shown.Filter, document_.Root()}));
}

void frmCorridor::MakeStudies() {
    const auto studies = std::make_shared<std::vector<StudyOfNode>>();
    context_.Work.Run("Making studies",
                      [studies, shown = document_.Share(), root = document_.Root(), today = context_.Time.Now(),
                       settings = context_.State.Settings](FileSystem& files, const Progress&) {
                          *studies = StudiesOf(shown->Of, shown->Runs, files, root, today, settings);
                      });
    if (studies->empty())
        return context_.Messages.Tell(
            "No run that counts has a figure at a node, so there is nothing to make studies of.");
    const std::string count = studies->size() == 1 ? "1 study" : std::to_string(studies->size()) + " studies";
    if (!context_.Messages.Confirm(count +
                                   " will be written, one for each node, direction, period and Study Group:\n\n" +
                                   InWords(*studies) + "\n\nDo you want to write them?"))
        return;
    bool isWritten = false;
    context_.Work.Run("Writing studies", [&isWritten, studies](FileSystem& files, const Progress& progress) {
        isWritten = WriteStudies(files, *studies, progress);
    });
    context_.Messages.Tell(isWritten ? count + " stand in the Study Groups of their runs."
                                     : "The writing was stopped. The studies that were written stay.");
}

void frmCorridor::ChangeSettings() {
    frmCorridorSettings form(context_, document_.Of(), this);
    if (form.exec() == Accepted) document_.Change(QStringLiteral("Corridor settings"), form.Choice());
}

void frmCorridor::ChangeOptions() {
    const auto choices = context_.OtherScreens.ShowStatisticsOptions({document_.Of().Options, {}, false});
    if (!choices) return;
    Corridor changed = document_.Of();
    changed.Options = choices->Options;
    document_.Change(QStringLiteral("Statistics options"), changed);
}

void frmCorridor::TakeFilter() {
    if (isFilling_) return;
    CorridorFilter filter;
    if (cmbPeriod_->currentIndex() > 0) filter.Period = FromQt(cmbPeriod_->currentData().toString());
    filter.Of = static_cast<CorridorFilter::Condition>(cmbCondition_->currentIndex());
    document_.SetFilter(filter);
}

void frmCorridor::TakeIdealSpeed(Way way, int mph) {
    if (isFilling_) return;
    Corridor changed = document_.Of();
    changed.Of(way).IdealSpeedMph = mph == 0 ? std::nullopt : std::optional(mph);
    document_.Change(QStringLiteral("Ideal speed of ") + ToQt(changed.Of(way).Name), changed, 1);
}

void frmCorridor::ShowHead() {
    const bool isUnsaved = document_.HasChanges();
    const QString name = document_.Of().Name.empty() ? QStringLiteral("New corridor") : ToQt(document_.Of().Name);
    lblCorridor_->setText(isUnsaved ? name + QStringLiteral(" (not saved)") : name);
    setWindowTitle(QStringLiteral("Corridors - ") + name);
    btnSave_->setEnabled(isUnsaved);
}

void frmCorridor::ShowFilter() {
    isFilling_ = true;
    const DetailedCorridor& shown = document_.Shown();
    cmbPeriod_->clear();
    cmbPeriod_->addItem(QStringLiteral("All"));
    for (const std::string& period : shown.Periods)
        cmbPeriod_->addItem(period.empty() ? QStringLiteral("without a period") : ToQt(period), ToQt(period));
    if (shown.Filter.Period) {
        const auto there = std::ranges::find(shown.Periods, *shown.Filter.Period);
        // One that no run has any more stays chosen, so that what is shown is what is chosen.
        if (there == shown.Periods.end()) cmbPeriod_->addItem(ToQt(*shown.Filter.Period), ToQt(*shown.Filter.Period));
        cmbPeriod_->setCurrentIndex(1 + static_cast<int>(there - shown.Periods.begin()));
    }
    cmbCondition_->setCurrentIndex(static_cast<int>(shown.Filter.Of));
    for (const Way way : BothWays) {
        const auto index = static_cast<std::size_t>(way);
        const QString name = ToQt(document_.Of().Of(way).Name);
        cmbWay_->setItemText(static_cast<int>(index), name);
        lblIdeal_[index]->setText(name);
        spnIdeal_[index]->setAccessibleName(QStringLiteral("Ideal speed of ") + name);
        spnIdeal_[index]->setValue(document_.Of().Of(way).IdealSpeedMph.value_or(0));
    }
    cmbWay_->setCurrentIndex(static_cast<int>(document_.Along()));
    isFilling_ = false;
}

void frmCorridor::ShowAll() {
    ShowHead();
    ShowFilter();
    const DetailedCorridor& shown = document_.Shown();
    std::vector<std::string> warnings = shown.Findings.All.Warnings;
    const auto& leftOut = shown.Findings.All.LeftOut;
    if (!leftOut.empty()) warnings.push_back("Not counted: " + FirstOf(leftOut, 2, " "));
    lblWarnings_->setText(ToQt(Joined(warnings, "\n")));
    lblWarnings_->setVisible(!warnings.empty());
    const bool hasNodes = !document_.Of().Nodes.empty();
    stack_->setCurrentIndex(hasNodes || !document_.Of().Runs.empty() ? 1 : 0);
    for (QPushButton* button : onNodes_) button->setEnabled(hasNodes);
    for (QPushButton* button : outButtons_) {
        button->setVisible(stack_->currentIndex() == 1);
        button->setEnabled(!ShownSheet().empty());
    }
}

std::vector<SheetRow> frmCorridor::ShownSheet() const {
    if (stack_->currentIndex() == 0) return {};
    const QWidget* page = tabs_->currentWidget();
    if (page == timeSpace_) return timeSpace_->Sheet();
    if (page == resultsArea_) return results_->Sheet();
    if (page == compared_) return compared_->Sheet();
    if (page == run_) return run_->Sheet();
    return {};
}

std::string frmCorridor::FileStart() const {
    const std::string& name = document_.Of().Name;
    return document_.Root() + (name.empty() ? "Corridor" : name) + " " +
           FromQt(WithoutAccessKey(tabs_->tabText(tabs_->currentIndex()))
                      .toLower()
                      .replace(QLatin1Char('/'), QLatin1String(" and ")));
}

void frmCorridor::done(int result) {
    bool mayLeave = false;
    Guarded(context_.Messages, [&] { mayLeave = document_.MayLeave(); });
    if (mayLeave) QDialog::done(result);
}

}  // namespace vantor
