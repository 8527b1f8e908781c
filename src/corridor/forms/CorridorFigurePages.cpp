#include "corridor/forms/CorridorFigurePages.h"

#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>

#include "core/Text.h"
#include "core/forms/Accessible.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"

namespace vantor {
namespace {

constexpr int LeastHeight = 72;

StatisticsTableView* AddTable(QWidget* page, const char* name, const QString& caption) {
    auto* table = Named<StatisticsTableView>(page, name);
    table->setAccessibleName(caption);
    table->setMinimumHeight(LeastHeight);
    return table;
}

/// A caption above a table, together in a part of a splitter.
QWidget* Part(QSplitter* parent, QLabel* caption, StatisticsTableView* table, QWidget* below = nullptr) {
    auto* part = new QWidget(parent);
    auto* column = new QVBoxLayout(part);
    column->setContentsMargins(0, 0, 0, 0);
    if (caption != nullptr) column->addWidget(caption);
    column->addWidget(table, 1);
    if (below != nullptr) column->addWidget(below);
    return part;
}

QString NothingText(const Corridor& corridor) {
    if (corridor.Nodes.size() < 2) return QStringLiteral("The figures need two nodes or more.");
    if (corridor.Runs.empty()) return QStringLiteral("No runs yet: Add Runs takes those of a Study Group.");
    return QStringLiteral("No run that counts passes two nodes. The list of runs says why.");
}

void Add(std::vector<SheetRow>& rows, const StatisticsTable& table) {
    if (table.Rows.empty()) return;
    const auto sheet = SheetOf(table);
    rows.insert(rows.end(), sheet.begin(), sheet.end());
}

}  // namespace

CorridorResultsPage::CorridorResultsPage(CorridorDocument& document, QWidget* parent)
    : QWidget(parent), document_(document) {
    auto* split = Named<QSplitter>(this, "splResults");
    split->setOrientation(Qt::Vertical);
    split->setChildrenCollapsible(false);
    vaDelays_ = AddTable(split, "vaDelays", QStringLiteral("Control delays"));
    vaDelays_->ChooseCells();
    lblCell_ = Named<WrappedLabel>(split, "lblCell");
    lblCell_->resize(800, 0);
    lblCell_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    SetValueCaption(*lblCell_, QStringLiteral("The chosen cell"));
    vaNodeRuns_ = AddTable(split, "vaNodeRuns", QStringLiteral("Runs behind the chosen cell"));
    lblBehind_ = Named<QLabel>(split, "lblBehind");
    lblBehind_->setBuddy(vaNodeRuns_);
    vaSections_ = AddTable(split, "vaSections", QStringLiteral("Sections"));
    split->addWidget(Part(split, nullptr, vaDelays_, lblCell_));
    split->addWidget(behind_ = Part(split, lblBehind_, vaNodeRuns_));
    split->addWidget(Part(split, LabelFor(vaSections_, QStringLiteral("Sections")), vaSections_));
    for (int part = 1; part < split->count(); ++part) split->setStretchFactor(part, 1);
    auto* column = new QVBoxLayout(this);
    column->addWidget(split);
    MessageBoxes& messages = document.Context().Messages;
    Connect(vaDelays_, &QTableWidget::currentCellChanged, this, messages, [this] {
        if (isFilling_) return;
        ShowCell();
        if (const NodeFigures* figures = Chosen()) document_.SelectNode(figures->Node);
    });
    Connect(vaNodeRuns_, &QTableWidget::currentCellChanged, this, messages, [this] {
        const int row = vaNodeRuns_->currentRow();
        if (!isFilling_ && row >= 0 && row < static_cast<int>(rows_.size()))
            document_.SelectRun(rows_[static_cast<std::size_t>(row)]);
    });
    document.WhenShown([this] { ShowFigures(); });
    document.WhenSelected([this] { ShowSelected(); });
    ShowFigures();
}

void CorridorResultsPage::ShowFigures() {
    isFilling_ = true;
    const DetailedCorridor& shown = document_.Shown();
    const QString nothing = NothingText(document_.Of());
    vaDelays_->SetEmptyText(nothing);
    vaSections_->SetEmptyText(nothing);
    vaDelays_->Show(shown.Delays);
    vaDelays_->NeedRows(std::clamp(vaDelays_->rowCount(), 1, 4));
    vaSections_->Show(shown.Sections);
    ShowCell();
    isFilling_ = false;
}

const NodeFigures* CorridorResultsPage::Chosen() const {
    return document_.Shown().FiguresAt(vaDelays_->currentRow(), vaDelays_->currentColumn());
}

void CorridorResultsPage::ShowCell() {
    const NodeFigures* figures = Chosen();
    const QTableWidgetItem* cell = vaDelays_->currentItem();
    QString text = cell == nullptr ? QString() : cell->toolTip();
    if (figures != nullptr) {
        const auto row = vaDelays_->item(vaDelays_->currentRow(), 0)->text();
        const QString place = row + QStringLiteral(" at ") + ToQt(document_.Of().Nodes[figures->Node].Name);
        text = place + QStringLiteral(": ") + text;
        lblBehind_->setText(QStringLiteral("Runs: ") + place);
    }
    lblCell_->setText(text);
    lblCell_->setVisible(!text.isEmpty());
    const bool wasFilling = isFilling_;
    isFilling_ = true;
    rows_.clear();
    behind_->setVisible(figures != nullptr);
    if (figures != nullptr) {
        rows_ = figures->Runs;
        rows_.insert(rows_.end(), figures->Without.begin(), figures->Without.end());
        std::ranges::sort(rows_);
        vaNodeRuns_->Show(NodeRunsTable(document_.Of(), document_.Shown().Runs, *figures, document_.Shows()));
        vaNodeRuns_->SetEmptyText(QStringLiteral("No run passes here"));
    }
    isFilling_ = wasFilling;
    ShowSelected();
}

void CorridorResultsPage::ShowSelected() {
    const bool wasFilling = isFilling_;
    isFilling_ = true;
    const auto row = document_.Run() ? std::ranges::find(rows_, *document_.Run()) : rows_.end();
    if (row != rows_.end())
        vaNodeRuns_->setCurrentCell(static_cast<int>(row - rows_.begin()), 0);
    else
        vaNodeRuns_->setCurrentCell(-1, -1);
    isFilling_ = wasFilling;
}

std::vector<SheetRow> CorridorResultsPage::Sheet() const {
    std::vector<SheetRow> rows;
    Add(rows, document_.Shown().Delays);
    Add(rows, document_.Shown().Sections);
    return rows;
}

CorridorComparedPage::CorridorComparedPage(CorridorDocument& document, QWidget* parent)
    : QWidget(parent), document_(document) {
    lblSentences_ = Named<WrappedLabel>(this, "lblSentences");
    lblSentences_->resize(800, 0);
    lblSentences_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    vaCompared_ = AddTable(this, "vaCompared", QStringLiteral("Before and after"));
    auto* column = new QVBoxLayout(this);
    column->addWidget(lblSentences_);
    column->addWidget(vaCompared_, 1);
    document.WhenShown([this] { ShowFigures(); });
    ShowFigures();
}

void CorridorComparedPage::ShowFigures() {
    const DetailedCorridor& shown = document_.Shown();
    lblSentences_->setText(ToQt(Joined(shown.Sentences, "\n")));
    lblSentences_->setVisible(!shown.Sentences.empty());
    vaCompared_->SetEmptyText(
        QStringLiteral("A comparison needs runs before and runs after of one direction, and Both "
                       "as the condition above. Change sets what selected runs are."));
    vaCompared_->Show(shown.Compared);
}

std::vector<SheetRow> CorridorComparedPage::Sheet() const {
    std::vector<SheetRow> rows;
    for (const std::string& sentence : document_.Shown().Sentences) rows.push_back({{sentence}});
    Add(rows, document_.Shown().Compared);
    return rows;
}

}  // namespace vantor
