#include "gpsobd/forms/ReviewTable.h"

#include <QHeaderView>
#include <algorithm>
#include <set>

namespace vantor {
namespace {

/// Pixels beside a head's text, for its margins and the arrow of the sorted column.
constexpr int SortArrowRoom = 44;
/// Pixels beside a cell's text, for its margins and the symbol of a computed one.
constexpr int SymbolRoom = 36;
/// A wrong number may have three hundred digits: the tip shows it whole.
constexpr int MostLetters = 32;
/// Rows whose texts the columns are made wide enough for.
constexpr int SampleRows = 100;

}  // namespace

ReviewTable::ReviewTable(QWidget* parent) : QTableView(parent) {
    setSelectionMode(QAbstractItemView::ContiguousSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setCornerButtonEnabled(false);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
    verticalHeader()->setHighlightSections(false);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSortIndicatorClearable(true);
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    // Beside the number there may be the symbol of a problem.
    verticalHeader()->setMinimumWidth(SymbolRoom + fontMetrics().horizontalAdvance(QStringLiteral("000000")));
    columns_ = new TableColumns(*this);
}

void ReviewTable::Show(ReviewModel& model) {
    review_ = &model;
    setModel(&model);
    setSortingEnabled(true);
    setAccessibleDescription(model.rowCount() == 0 ? emptyText_ : QString());
    FitColumns();
    ShowActive();
}

void ReviewTable::SetEmptyText(const QString& text) {
    emptyText_ = text;
    viewport()->update();
}

void ReviewTable::ShowActive() { setCurrentIndex(review_->ActiveIndex()); }

void ReviewTable::ShowFound() {
    ShowActive();
    const int top = review_->IsSorted() ? currentIndex().row() : review_->Grid().TopRow() - 1;
    scrollTo(model()->index(top, currentIndex().column()), QAbstractItemView::PositionAtTop);
}

std::vector<int> ReviewTable::SelectedPlaces() const {
    std::set<int> places;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        for (int place = range.top(); place <= range.bottom(); ++place) places.insert(place);
    if (places.empty() && currentIndex().isValid()) places.insert(currentIndex().row());
    return {places.begin(), places.end()};
}

void ReviewTable::ShowPlace(int place) {
    if (review_->rowCount() == 0) return;
    setCurrentIndex(review_->index(std::min(place, review_->rowCount() - 1), review_->Grid().ActiveColumn() - 1));
}

void ReviewTable::FitColumns() {
    const int step = std::max(1, review_->rowCount() / SampleRows);
    for (int column = 0; column < review_->columnCount(); ++column) {
        const QString head = review_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        int width = horizontalHeader()->fontMetrics().horizontalAdvance(head) + SortArrowRoom;
        for (int row = 0; row < review_->rowCount(); row += step) {
            const QString text = review_->data(review_->index(row, column), Qt::DisplayRole).toString();
            width = std::max(width, fontMetrics().horizontalAdvance(text) + SymbolRoom);
        }
        width = std::min(width, MostLetters * fontMetrics().averageCharWidth());
        if (!columns_->IsDragged(column)) setColumnWidth(column, width);
    }
}

void ReviewTable::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    PaintEmptyText(*this, emptyText_);
}

void ReviewTable::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    review_->SetActive(current);
    if (OnActive) OnActive();
}

}  // namespace vantor
