#include "corridor/forms/CorridorNodesPane.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeySequence>
#include <QMenu>
#include <QShortcut>
#include <QVBoxLayout>
#include <utility>

#include "core/Counted.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/Accessible.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "corridor/CorridorEdits.h"
#include "corridor/CorridorNodes.h"
#include "corridor/forms/ChoiceDelegate.h"
#include "corridor/forms/frmSignalTimings.h"

namespace vantor {
namespace {

constexpr int LeastColumn = 40;  // they are as wide as their texts

QStringList ControlWords() {
    QStringList words;
    for (const char* word : NodeControlWords) words += QString::fromLatin1(word);
    return words;
}

QString LengthText(const Units& units, double feet) { return QString::number(units.WholeLength(feet)); }

}  // namespace

CorridorNodesPane::CorridorNodesPane(CorridorDocument& document, QWidget* parent)
    : QWidget(parent), document_(document) {
    const Units units = document.Shows();
    const QString length = QLatin1Char('\n') + ToQt(units.LengthTitle());
    vaNodes_ = Named<Table>(this, "vaNodes");
    vaNodes_->SetColumns({QStringLiteral("Node"), QStringLiteral("Control"), QStringLiteral("Distance") + length,
                          QStringLiteral("Band\nbefore"), QStringLiteral("Band\nbehind"),
                          QStringLiteral("Limit\n(%1)").arg(QLatin1String(units.SpeedLabel()))});
    for (const int column : {Upstream, Downstream})
        vaNodes_->horizontalHeaderItem(column)->setToolTip(
            QStringLiteral("Control delay is measured from so many %1 before the node to so many behind it, as a "
                           "vehicle passes it")
                .arg(QLatin1String(units.LengthLabel())));
    vaNodes_->SetEmptyText(QStringLiteral("No nodes yet"));
    vaNodes_->setSelectionMode(QAbstractItemView::SingleSelection);
    vaNodes_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                              QAbstractItemView::AnyKeyPressed);
    vaNodes_->setItemDelegateForColumn(Control,
                                       new ChoiceDelegate(QStringLiteral("Control"), ControlWords(), vaNodes_));
    vaNodes_->horizontalHeader()->setSectionsClickable(false);
    vaNodes_->horizontalHeader()->setDefaultSectionSize(LeastColumn);
    vaNodes_->setSelectionBehavior(QAbstractItemView::SelectItems);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(LabelFor(vaNodes_, QStringLiteral("Nodes")));
    column->addWidget(vaNodes_, 1);
    column->addWidget(BuildButtons());
    // A cell is taken when its editor has gone, for the table is filled anew then.
    connect(vaNodes_, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
        if (isFilling_) return;
        QMetaObject::invokeMethod(
            this,
            [this, row = item->row(), col = item->column(), text = FromQt(item->text())] {
                Guarded(document_.Context().Messages, [&] { TakeCell(row, col, text); });
            },
            Qt::QueuedConnection);
    });
    Connect(vaNodes_, &QTableWidget::currentCellChanged, this, document.Context().Messages, [this] {
        if (!isFilling_ && Current() >= 0) document_.SelectNode(static_cast<std::size_t>(Current()));
    });
    document.WhenShown([this] { ShowNodes(); });
    document.WhenSelected([this] { ShowSelected(); });
    ShowNodes();
}

QWidget* CorridorNodesPane::BuildButtons() {
    auto* line = new QWidget(this);
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    const auto add = [&](const char* name, const QString& caption, const QString& tip, const QString& keys, auto act) {
        auto* button = Named<QToolButton>(line, name, caption);
        button->setToolTip(keys.isEmpty() ? tip : tip + QStringLiteral(" (%1)").arg(keys));
        button->setFocusPolicy(Qt::StrongFocus);
        Connect(button, &QToolButton::clicked, this, document_.Context().Messages, act);
        if (!keys.isEmpty()) {
            auto* shortcut = new QShortcut(QKeySequence(keys), vaNodes_, nullptr, nullptr, Qt::WidgetShortcut);
            connect(shortcut, &QShortcut::activated, button, &QToolButton::click);
        }
        inMenu_.emplace_back(button, keys);
        row->addWidget(button);
        return button;
    };
    add("btnAddNode", QStringLiteral("Add"), QStringLiteral("A node behind the chosen one"), QStringLiteral("Ins"),
        [this] { Add(); });
    onNode_ = {add("btnDeleteNode", QStringLiteral("Delete"), QStringLiteral("Take the chosen node out"),
                   QStringLiteral("Del"), [this] { Remove(); })};
    btnUp_ = add("btnNodeUp", QStringLiteral("Up"), QStringLiteral("Before the node above it"),
                 QStringLiteral("Alt+Up"), [this] { Move(-1); });
    btnDown_ = add("btnNodeDown", QStringLiteral("Down"), QStringLiteral("Behind the node below it"),
                   QStringLiteral("Alt+Down"), [this] { Move(1); });
    onNode_.push_back(add("btnTiming", QStringLiteral("Timing..."),
                          QStringLiteral("When the signal of the chosen node is green"), QStringLiteral("Ctrl+T"),
                          [this] { SetTimings(); }));
    auto* from = Named<QToolButton>(line, "btnNodesFrom", QStringLiteral("From..."));
    from->setToolTip(QStringLiteral("Nodes of a file or of a run, in place of these"));
    from->setPopupMode(QToolButton::InstantPopup);
    from->setFocusPolicy(Qt::StrongFocus);
    auto* menu = new QMenu(from);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] { FillFrom(*menu); });
    from->setMenu(menu);
    row->addWidget(from);
    row->addStretch();
    vaNodes_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(vaNodes_, &QWidget::customContextMenuRequested, this, [this](const QPoint& place) {
        auto* popup = new QMenu(vaNodes_);
        popup->setAttribute(Qt::WA_DeleteOnClose);
        for (const auto& [button, keys] : inMenu_) {
            QAction* action = popup->addAction(button->text() + QLatin1Char('\t') + keys);
            action->setEnabled(button->isEnabled());
            connect(action, &QAction::triggered, button, &QToolButton::click);
        }
        popup->popup(vaNodes_->viewport()->mapToGlobal(place));
    });
    return line;
}

void CorridorNodesPane::FillFrom(QMenu& menu) {
    menu.clear();
    const auto add = [&](const QString& caption, void (CorridorNodesPane::*act)(), bool isThere = true) {
        QAction* action = menu.addAction(caption);
        action->setEnabled(isThere);
        Connect(action, &QAction::triggered, this, document_.Context().Messages, [this, act] { (this->*act)(); });
    };
    add(QStringLiteral("&File (CSV or GeoJSON)..."), &CorridorNodesPane::TakeFile);
    add(QStringLiteral("Nodes of a &Run..."), &CorridorNodesPane::TakeRunFile);
    add(QStringLiteral("Nodes of the &Selected Run"), &CorridorNodesPane::TakeSelectedRun, document_.Run().has_value());
}

void CorridorNodesPane::Take(const QString& text, FoundNodes found) {
    const std::vector<std::string> remarks = found.Remarks;
    Corridor changed = document_.Of();
    ReplaceNodes(changed, std::move(found));
    Remeasure(changed);
    if (document_.Change(text, changed) && !remarks.empty())
        document_.Context().Messages.Tell(FirstOf(remarks, 5, "\n"));
}

void CorridorNodesPane::TakeFile() {
    AppContext& context = document_.Context();
    const std::string path = context.DesktopServices.ChooseFileToOpen(
        context.State.Paths.FieldDataPath, "Nodes of a File", "Nodes", {".csv", ".geojson", ".json", ".txt"});
    if (!path.empty()) Take(QStringLiteral("Nodes of a file"), ReadNodes(context.Files, path));
}

void CorridorNodesPane::TakeRunFile() {
    AppContext& context = document_.Context();
    const std::string path = context.DesktopServices.ChooseFileToOpen(StudyGroupFolder(context.State), "Nodes of a Run",
                                                                      "Runs", {RunExtension});
    if (path.empty()) return;
    const RunReading run = ReadRun(context.Files, FolderOf(path), BaseName(path), RunPart::Whole);
    if (!run) throw RunTimeError(*run.Fault);
    Take(QStringLiteral("Nodes of a run"), NodesFromRun(run.Run, Way::Forward));
}

void CorridorNodesPane::TakeSelectedRun() {
    const MatchedRun& run = document_.Shown().Runs[*document_.Run()];
    if (!run.IsThere()) throw RunTimeError(ErrorNumber::TypeMismatch, run.Problem);
    Take(QStringLiteral("Nodes of a run"), NodesFromRun(run.Read->Run, document_.Of().Runs[run.Index].Along));
}

void CorridorNodesPane::ShowNodes() {
    const int column = std::max(vaNodes_->currentColumn(), 0);
    isFilling_ = true;
    vaNodes_->BeginFilling();
    for (std::size_t node = 0; node < document_.Of().Nodes.size(); ++node) ShowRow(node);
    vaNodes_->EndFilling();
    vaNodes_->setSortingEnabled(false);
    const int row = document_.Node() ? static_cast<int>(*document_.Node()) : std::min(0, vaNodes_->rowCount() - 1);
    vaNodes_->setCurrentCell(row, column);
    isFilling_ = false;
    ShowSelected();
}

void CorridorNodesPane::ShowRow(std::size_t index) {
    const Units units = document_.Shows();
    const CorridorNode& node = document_.Of().Nodes[index];
    const int row = vaNodes_->AddRow();
    vaNodes_->SetText(row, Name, ToQt(node.Name));
    vaNodes_->SetText(row, Control, QString::fromLatin1(WordOf(node.Control)));
    vaNodes_->item(row, Control)->setData(ChoiceRole, static_cast<int>(node.Control));
    if (!node.Timings.empty()) SetCellNote(*vaNodes_->item(row, Control), ToQt(Counted(node.Timings.size(), "timing")));
    vaNodes_->SetNumber(row, Distance, node.DistanceFt, LengthText(units, node.DistanceFt));
    vaNodes_->SetNumber(row, Upstream, node.Around.UpstreamFt, LengthText(units, node.Around.UpstreamFt));
    vaNodes_->SetNumber(row, Downstream, node.Around.DownstreamFt, LengthText(units, node.Around.DownstreamFt));
    const QString limit = node.SpeedLimitMph ? QString::number(units.WholeSpeed(*node.SpeedLimitMph)) : QString();
    vaNodes_->SetNumber(row, SpeedLimit, node.SpeedLimitMph.value_or(0), limit);
    const bool isMeasured = HasMeasuredDistance(document_.Of(), index);
    for (int column = 0; column < Columns; ++column) {
        QTableWidgetItem* item = vaNodes_->item(row, column);
        item->setFlags(item->flags().setFlag(Qt::ItemIsEditable, column != Distance || !isMeasured));
    }
    if (isMeasured) SetCellNote(*vaNodes_->item(row, Distance), QStringLiteral("Measured along the positions"));
}

void CorridorNodesPane::ShowSelected() {
    const auto selected = document_.Node();
    if (selected && static_cast<int>(*selected) != Current()) {
        isFilling_ = true;
        vaNodes_->setCurrentCell(static_cast<int>(*selected), std::max(vaNodes_->currentColumn(), 0));
        isFilling_ = false;
    }
    const int current = Current();
    for (QToolButton* button : onNode_) button->setEnabled(current >= 0);
    btnUp_->setEnabled(current > 0);
    btnDown_->setEnabled(current >= 0 && current + 1 < vaNodes_->rowCount());
}

void CorridorNodesPane::TakeLength(CorridorNode& node, int column, double shown) {
    const double feet = document_.Shows().FeetOfLength(shown);
    // A number that reads as what is there is not typed.
    const auto isShown = [&](double stored) { return document_.Shows().WholeLength(stored) == shown; };
    if (column == Distance && !isShown(node.DistanceFt)) node.DistanceFt = feet;
    if (column == Upstream && !isShown(node.Around.UpstreamFt)) node.Around.UpstreamFt = Round32(feet);
    if (column == Downstream && !isShown(node.Around.DownstreamFt)) node.Around.DownstreamFt = Round32(feet);
}

void CorridorNodesPane::TakeCell(int row, int column, const std::string& text) {
    Corridor changed = document_.Of();
    if (row >= static_cast<int>(changed.Nodes.size())) return;
    CorridorNode& node = changed.Nodes[static_cast<std::size_t>(row)];
    const std::string typed(Trim(text));
    const auto number = NumberOfText(typed);
    if (column == Name) {
        node.Name = typed;
    } else if (column == Control) {
        node.Control = ControlOfText(typed).value_or(node.Control);
    } else if (column == SpeedLimit && typed.empty()) {
        node.SpeedLimitMph.reset();
    } else if (!number) {
        document_.Context().Messages.Tell("\"" + typed + "\" is no number.\nType digits alone.", MessageIcon::Warning);
        return ShowNodes();
    } else if (column == SpeedLimit) {
        node.SpeedLimitMph = Round32(document_.Shows().MphOfSpeed(*number));
    } else {
        TakeLength(node, column, *number);
        if (column == Distance) Remeasure(changed);
    }
    static constexpr const char* Steps[Columns] = {"Name of ", "Control of ", "Distance of ",
                                                   "Band of ", "Band of ",    "Speed limit of "};
    if (changed == document_.Of()) return ShowNodes();
    document_.Change(
        QString::fromLatin1(Steps[column]) + ToQt(document_.Of().Nodes[static_cast<std::size_t>(row)].Name), changed);
}

void CorridorNodesPane::Add() {
    Corridor changed = document_.Of();
    const auto at = static_cast<std::size_t>(Current()) + 1;
    InsertNode(changed, at, {});
    if (!document_.Change(QStringLiteral("Add node"), changed)) return;
    document_.SelectNode(at);
    vaNodes_->setCurrentCell(static_cast<int>(at), Name);
    vaNodes_->setFocus();
}

void CorridorNodesPane::Remove() {
    if (Current() < 0) return;
    Corridor changed = document_.Of();
    const auto node = static_cast<std::size_t>(Current());
    const QString text = QStringLiteral("Delete node ") + ToQt(changed.Nodes[node].Name);
    RemoveNode(changed, node);
    document_.Change(text, changed);
}

void CorridorNodesPane::SetTimings() {
    if (Current() < 0) return;
    const auto node = static_cast<std::size_t>(Current());
    frmSignalTimings form(document_.Context(), document_.Of(), node, this);
    if (form.exec() != QDialog::Accepted) return;
    const Corridor changed = form.Choice();
    if (changed != document_.Of())
        document_.Change(QStringLiteral("Timing of ") + ToQt(changed.Nodes[node].Name), changed);
}

void CorridorNodesPane::Move(int by) {
    const int to = Current() + by;
    if (Current() < 0 || to < 0 || to >= vaNodes_->rowCount()) return;
    Corridor changed = document_.Of();
    const QString text = QStringLiteral("Move node ") + ToQt(changed.Nodes[static_cast<std::size_t>(Current())].Name);
    SwapNodes(changed, static_cast<std::size_t>(std::min(Current(), to)));
    if (document_.Change(text, changed)) document_.SelectNode(static_cast<std::size_t>(to));
}

}  // namespace vantor
