#include "corridor/forms/CorridorRunsPane.h"

#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeySequence>
#include <QLineEdit>
#include <QMenu>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>
#include <set>
#include <utility>

#include "core/Counted.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyGroupFolders.h"
#include "core/Text.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/modMain.h"
#include "corridor/CorridorEdits.h"
#include "corridor/CorridorIntake.h"
#include "corridor/CorridorTaking.h"

namespace vantor {
namespace {

constexpr std::size_t MostTold = 6;  // runs that were refused

}  // namespace

CorridorRunsPane::CorridorRunsPane(CorridorDocument& document, QWidget* parent) : QWidget(parent), document_(document) {
    vaRuns_ = Named<LongList>(this, "vaRuns");
    SetColumns();
    vaRuns_->SetEmptyText(QStringLiteral("No runs yet: Add Runs takes those of a Study Group"));
    vaRuns_->setContextMenuPolicy(Qt::CustomContextMenu);
    btnRun_ = Named<QToolButton>(this, "btnRun", QStringLiteral("Change..."));
    btnRun_->setToolTip(
        QStringLiteral("Set the selected runs aside, change their condition, direction or period, or "
                       "take them out"));
    btnRun_->setAccessibleName(QStringLiteral("Change the selected runs"));
    btnRun_->setPopupMode(QToolButton::InstantPopup);
    btnRun_->setFocusPolicy(Qt::StrongFocus);
    auto* menu = new QMenu(btnRun_);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] { FillMenu(*menu); });
    btnRun_->setMenu(menu);
    auto* head = new QHBoxLayout;
    head->addWidget(LabelFor(vaRuns_, QStringLiteral("Runs")));
    head->addStretch();
    head->addWidget(btnRun_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(head);
    column->addWidget(vaRuns_, 1);
    MessageBoxes& messages = document.Context().Messages;
    Connect(vaRuns_, &QWidget::customContextMenuRequested, this, messages, [this, menu](const QPoint& place) {
        if (!vaRuns_->SelectedRows().empty()) menu->popup(vaRuns_->viewport()->mapToGlobal(place));
    });
    auto* remove = new QShortcut(QKeySequence(Qt::Key_Delete), vaRuns_, nullptr, nullptr, Qt::WidgetShortcut);
    Connect(remove, &QShortcut::activated, this, messages, [this] { Remove(); });
    Connect(vaRuns_->selectionModel(), &QItemSelectionModel::selectionChanged, this, messages, [this] {
        if (isFilling_) return;
        const auto rows = vaRuns_->SelectedRows();
        btnRun_->setEnabled(!rows.empty());
        if (!rows.empty()) document_.SelectRun(static_cast<std::size_t>(rows.front()));
    });
    document.WhenShown([this] { ShowRuns(); });
    document.WhenSelected([this] { ShowSelected(); });
    ShowRuns();
}

void CorridorRunsPane::SetColumns() {
    const auto as = [this](int row) -> const CorridorRun& {
        return document_.Of().Runs[static_cast<std::size_t>(row)];
    };
    const auto run = [this](int row) -> const MatchedRun& {
        return document_.Shown().Runs[static_cast<std::size_t>(row)];
    };
    vaRuns_->SetColumns(
        {{QStringLiteral("State"), [=](int row) { return ToQt(StateOf(as(row), run(row))); }},
         {QStringLiteral("Run"), [=](int row) { return ToQt(as(row).Name); }},
         {QStringLiteral("Way"), [=, this](int row) { return ToQt(document_.Of().Of(as(row).Along).Name); }},
         {QStringLiteral("Period"), [=](int row) { return ToQt(run(row).Period); }},
         {QStringLiteral("Condition"),
          [=](int row) { return as(row).IsBefore ? QStringLiteral("Before") : QStringLiteral("After"); }},
         {QStringLiteral("Remarks"), [this](int row) { return RemarksOf(row); }}});
    vaRuns_->SetNotes([this](int row, int) { return RemarksOf(row); });
}

QString CorridorRunsPane::RemarksOf(int row) const {
    const CorridorRun& as = document_.Of().Runs[static_cast<std::size_t>(row)];
    const MatchedRun& run = document_.Shown().Runs[static_cast<std::size_t>(row)];
    if (!run.IsThere()) return ToQt(run.Problem);
    std::vector<std::string> remarks = run.Remarks;
    if (!as.SetAside.empty()) remarks.insert(remarks.begin(), as.SetAside);
    for (std::size_t node = 0; node < run.Delays.size(); ++node)
        if (!run.Delays[node].HasFigure())
            remarks.push_back(document_.Of().Nodes[node].Name + ": " + run.Delays[node].Problem);
    if (!as.OwnBands.empty()) remarks.push_back("Own bands at " + Counted(as.OwnBands.size(), "node") + ".");
    if (!as.SetNodes.empty()) remarks.push_back("Set by hand: " + Counted(as.SetNodes.size(), "node") + ".");
    return ToQt(Joined(remarks, " "));
}

void CorridorRunsPane::ShowRuns() {
    isFilling_ = true;
    std::vector<int> rows = vaRuns_->SelectedRows();
    const int count = static_cast<int>(document_.Of().Runs.size());
    if (count == vaRuns_->RowCount()) {
        vaRuns_->Refresh();
    } else {
        vaRuns_->Show(count);
        rows.clear();
        if (document_.Run()) rows.push_back(static_cast<int>(*document_.Run()));
        vaRuns_->SelectRows(rows);
    }
    isFilling_ = false;
    ShowSelected();
}

void CorridorRunsPane::ShowSelected() {
    auto rows = vaRuns_->SelectedRows();
    const auto selected = document_.Run();
    if (selected && std::ranges::find(rows, static_cast<int>(*selected)) == rows.end()) {
        isFilling_ = true;
        rows = {static_cast<int>(*selected)};
        vaRuns_->SelectRows(rows);
        isFilling_ = false;
    }
    btnRun_->setEnabled(!rows.empty());
}

QAction* CorridorRunsPane::AddAction(QMenu& menu, const QString& caption, std::function<void()> act) {
    QAction* action = menu.addAction(caption);
    Connect(action, &QAction::triggered, this, document_.Context().Messages, std::move(act));
    return action;
}

void CorridorRunsPane::FillMenu(QMenu& menu) {
    menu.clear();
    FillReasons(*menu.addMenu(QStringLiteral("Set &Aside")));
    AddAction(menu, QStringLiteral("&Count Again"),
              [this] { ChangeRuns(QStringLiteral("Count "), [](CorridorRun& run) { run.SetAside.clear(); }); });
    menu.addSeparator();
    for (const bool isBefore : {true, false})
        AddAction(menu, isBefore ? QStringLiteral("&Before") : QStringLiteral("A&fter"), [this, isBefore] {
            ChangeRuns(isBefore ? QStringLiteral("Before: ") : QStringLiteral("After: "),
                       [isBefore](CorridorRun& run) { run.IsBefore = isBefore; });
        });
    menu.addSeparator();
    for (const Way way : BothWays) {
        const QString name = ToQt(document_.Of().Of(way).Name);
        AddAction(menu, QStringLiteral("Direction ") + name, [this, way, name] {
            ChangeRuns(QStringLiteral("Direction %1 of ").arg(name), [way](CorridorRun& run) { run.Along = way; });
        });
    }
    FillPeriods(*menu.addMenu(QStringLiteral("&Period")));
    menu.addSeparator();
    AddAction(menu, QStringLiteral("&Take Out of the Corridor\tDel"), [this] { Remove(); });
}

void CorridorRunsPane::FillReasons(QMenu& menu) {
    std::set<std::string> reasons = {"Detour", "Incident", "Wrong start"};
    for (const CorridorRun& run : document_.Of().Runs)
        if (!run.SetAside.empty()) reasons.insert(run.SetAside);
    for (const std::string& reason : reasons)
        AddAction(menu, ToQt(reason), [this, reason] {
            ChangeRuns(QStringLiteral("Set aside "), [&reason](CorridorRun& run) { run.SetAside = reason; });
        });
    menu.addSeparator();
    AddAction(menu, QStringLiteral("&Other..."), [this] { AskForReason(); });
}

void CorridorRunsPane::AskForReason() {
    bool isGiven = false;
    const std::string reason = FromQt(QInputDialog::getText(this, QStringLiteral("Set Aside"),
                                                            QStringLiteral("Why the selected runs do not count:"),
                                                            QLineEdit::Normal, QString(), &isGiven)
                                          .simplified());
    if (isGiven && !reason.empty())
        ChangeRuns(QStringLiteral("Set aside "), [&reason](CorridorRun& run) { run.SetAside = reason; });
}

void CorridorRunsPane::FillPeriods(QMenu& menu) {
    std::set<std::string> names = {"AM peak", "Midday", "PM peak"};
    for (const CorridorPeriod& period : document_.Of().Periods) names.insert(period.Name);
    for (const CorridorRun& run : document_.Of().Runs)
        if (!run.Period.empty()) names.insert(run.Period);
    for (const std::string& name : names)
        AddAction(menu, ToQt(name), [this, name] {
            ChangeRuns(QStringLiteral("Period of "), [&name](CorridorRun& run) { run.Period = name; });
        });
    menu.addSeparator();
    AddAction(menu, QStringLiteral("By Its &Time of Day"),
              [this] { ChangeRuns(QStringLiteral("Period of "), [](CorridorRun& run) { run.Period.clear(); }); });
}

void CorridorRunsPane::ChangeRuns(const QString& text, const std::function<void(CorridorRun&)>& change) {
    const std::vector<int> rows = vaRuns_->SelectedRows();
    if (rows.empty()) return;
    Corridor changed = document_.Of();
    for (const int row : rows) change(changed.Runs[static_cast<std::size_t>(row)]);
    document_.Change(text + ToQt(Counted(rows.size(), "run")), changed);
}

void CorridorRunsPane::Remove() {
    const std::vector<int> rows = vaRuns_->SelectedRows();
    if (rows.empty()) return;
    Corridor changed = document_.Of();
    RemoveRuns(changed, {rows.begin(), rows.end()});
    document_.Change(QStringLiteral("Take out ") + ToQt(Counted(rows.size(), "run")), changed);
}

void CorridorRunsPane::Take(const std::vector<std::string>& paths) {
    if (paths.empty()) return;
    AppContext& context = document_.Context();
    const auto taken = std::make_shared<TakenRuns>();
    context.Work.Run("Reading runs", [taken, paths, of = document_.Of(), root = document_.Root()](
                                         FileSystem& files, const Progress& progress) {
        *taken = TakeRunFiles(of, paths, files, root, progress);
    });
    if (!taken->IsWhole) return;
    Corridor changed = document_.Of();
    for (CorridorRun& run : taken->Runs) TakeRun(changed, std::move(run));
    if (!taken->Runs.empty())
        document_.Change(QStringLiteral("Add ") + ToQt(Counted(taken->Runs.size(), "run")), changed);
    if (!taken->Refused.empty())
        context.Messages.Tell(
            "Not taken: " + Counted(taken->Refused.size(), "run") + ".\n\n" + FirstOf(taken->Refused, MostTold, "\n"),
            MessageIcon::Warning);
}

void CorridorRunsPane::AskForFiles() {
    Take(document_.Context().DesktopServices.ChooseFilesToOpen(document_.Root(), "Add Runs", "Runs", {RunExtension}));
}

void CorridorRunsPane::TakeGroup(const std::string& group) {
    const std::string folder = GroupFolder(document_.Root(), group);
    std::vector<std::string> paths;
    for (const FileInfo& info : document_.Context().Files.List(folder, RunExtension)) {
        const std::string path = folder + info.Name;
        if (FindCorridorRun(document_.Of(), group, BaseName(info.Name)) == nullptr) paths.push_back(path);
    }
    if (paths.empty())
        document_.Context().Messages.Tell("The Study Group " + group + " has no run that is not in the corridor.");
    Take(paths);
}

}  // namespace vantor
