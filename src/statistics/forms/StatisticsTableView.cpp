#include "statistics/forms/StatisticsTableView.h"

#include <QEvent>
#include <QHeaderView>
#include <QScrollBar>
#include <algorithm>

#include "core/forms/Accessible.h"
#include "core/forms/Named.h"

namespace vantor {
namespace {

/// Columns of figures are as wide as their texts.
constexpr int LeastColumn = 40;

/// A head of several words breaks at its last blank.
QString InTwoLines(QString head) {
    const qsizetype blank = head.lastIndexOf(QLatin1Char(' '));
    if (blank > 0) head[blank] = QLatin1Char('\n');
    return head;
}

}  // namespace

StatisticsTableView::StatisticsTableView(QWidget* parent) : Table(parent) {
    setSelectionMode(QAbstractItemView::SingleSelection);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setDefaultSectionSize(LeastColumn);
    connect(this, &QTableWidget::currentCellChanged, this, [this] { TellOfRow(); });
}

void StatisticsTableView::Show(StatisticsTable table) {
    const int current = std::max(currentRow(), 0);
    const int chosen = selectionBehavior() == SelectItems ? std::max(currentColumn(), 0) : 0;
    isFilling_ = true;
    shown_ = std::move(table);
    QStringList heads;
    for (const std::string& head : shown_.Heads) heads += InTwoLines(ToQt(head));
    SetColumns(heads);
    horizontalHeader()->setStretchLastSection(shown_.LastIsText);
    BeginFilling();
    for (const auto& cells : shown_.Rows) {
        const int row = AddRow();
        for (int column = 0; column < static_cast<int>(cells.size()); ++column) {
            const StatisticsCell& cell = cells[static_cast<std::size_t>(column)];
            SetText(row, column, ToQt(cell.Text));
            if (!cell.Note.empty()) SetCellNote(*item(row, column), ToQt(cell.Note));
        }
    }
    ShowLooks();
    EndFilling();
    setSortingEnabled(false);
    if (rowCount() > 0) setCurrentCell(std::min(current, rowCount() - 1), std::min(chosen, columnCount() - 1));
    isFilling_ = false;
    TellOfRow();
}

void StatisticsTableView::TellOfRow() {
    if (label_ == nullptr || isFilling_) return;
    const int row = currentRow();
    label_->setText(row < 0 || row >= rowCount() ? QString() : ToQt(RowInWords(shown_, static_cast<std::size_t>(row))));
    label_->setVisible(!label_->text().isEmpty());
}

void StatisticsTableView::ShowLooks() {
    const int lastFigure = columnCount() - (shown_.LastIsText ? 2 : 1);
    for (int column = shown_.TextColumns; column <= lastFigure; ++column)
        horizontalHeaderItem(column)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    for (int row = 0; row < rowCount(); ++row) {
        const auto& cells = shown_.Rows[static_cast<std::size_t>(row)];
        const bool isTotal = shown_.HasTotal && row + 1 == rowCount();
        for (int column = 0; column < static_cast<int>(cells.size()); ++column) {
            QTableWidgetItem& cell = *item(row, column);
            if (column >= shown_.TextColumns && column <= lastFigure)
                cell.setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            if (cells[static_cast<std::size_t>(column)].IsWeak) ShowWeak(cell);
            QFont font = this->font();
            font.setBold(isTotal);
            cell.setFont(font);
        }
    }
}

void StatisticsTableView::ShowWeak(QTableWidgetItem& cell) {
    const QColor grey = palette().color(QPalette::Disabled, QPalette::Text);
    if (hatchesWeak_)
        cell.setBackground(QBrush(grey, Qt::BDiagPattern));
    else
        cell.setForeground(grey);
}

void StatisticsTableView::ChooseCells() {
    hatchesWeak_ = true;
    setSelectionBehavior(SelectItems);
}

void StatisticsTableView::NeedRows(int rows) {
    setMinimumHeight(horizontalHeader()->sizeHint().height() + rows * verticalHeader()->defaultSectionSize() +
                     horizontalScrollBar()->sizeHint().height() + 2 * frameWidth());
}

void StatisticsTableView::changeEvent(QEvent* event) {
    Table::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) ShowLooks();
}

}  // namespace vantor
