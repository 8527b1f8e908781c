#include "core/forms/LongList.h"

#include <QCollator>
#include <QHeaderView>
#include <algorithm>

#include "core/forms/SortedModel.h"
#include "core/forms/Table.h"

namespace vantor {
namespace {

/// Pixels beside a head's text, for its margins and the arrow of the sorted column.
constexpr int SortArrowRoom = 32;
/// Rows whose texts the columns are made wide enough for.
constexpr int SampleRows = 100;

}  // namespace

class LongList::Model : public SortedModel {
public:
    std::vector<Column> Columns;
    std::function<QString(int row, int column)> NoteOf;

    void SetColumns(std::vector<Column> columns) {
        beginResetModel();
        Columns = std::move(columns);
        endResetModel();
    }
    using SortedModel::ShowRows;

    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(Columns.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid() || IsArranging()) return {};
        const int row = RowAt(index.row());
        switch (role) {
            case Qt::DisplayRole: return ColumnAt(index.column()).Text(row);
            case Qt::TextAlignmentRole: return headerData(index.column(), Qt::Horizontal, role);
            case Qt::ToolTipRole:
            case Qt::AccessibleDescriptionRole: {
                const QString note = NoteOf ? NoteOf(row, index.column()) : QString();
                return note.isEmpty() ? QVariant() : note;
            }
            default: return {};
        }
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation == Qt::Vertical) return {};
        const Column& column = ColumnAt(section);
        if (role == Qt::DisplayRole) return column.Head;
        if (role == Qt::ToolTipRole && !NoteOnHead(column.Head).isEmpty()) return NoteOnHead(column.Head);
        if (role != Qt::TextAlignmentRole) return {};
        return static_cast<int>((column.IsNumber ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }

private:
    const Column& ColumnAt(int column) const { return Columns[static_cast<std::size_t>(column)]; }

    void SortRows(std::vector<int>& rows, int column, Qt::SortOrder order) const override {
        const Column& by = ColumnAt(column);
        if (by.Key) return SortByKey(rows, order, by.Key);
        const QCollator collator;
        SortByKey(rows, order, [&](int row) { return collator.sortKey(by.Text(row)); });
    }
};

LongList::LongList(QWidget* parent) : QTableView(parent), model_(std::make_unique<Model>()) {
    setModel(model_.get());
    LookLikeAList(*this);
    setAlternatingRowColors(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    horizontalHeader()->setDefaultSectionSize(horizontalHeader()->minimumSectionSize());
    columns_ = new TableColumns(*this);
}

LongList::~LongList() = default;

void LongList::SetColumns(std::vector<Column> columns) { model_->SetColumns(std::move(columns)); }

void LongList::SetNotes(std::function<QString(int row, int column)> noteOf) { model_->NoteOf = std::move(noteOf); }

void LongList::SetEmptyText(const QString& text) {
    emptyText_ = text;
    setAccessibleDescription(RowCount() == 0 ? emptyText_ : QString());
    viewport()->update();
}

void LongList::SortIn(LongWork& work) { model_->SortIn(work); }

void LongList::Show(int count) {
    model_->ShowRows(count);
    SetEmptyText(emptyText_);
    WidenColumns();
}

void LongList::Refresh() {
    model_->SortAgain();
    WidenColumns();
}

int LongList::RowCount() const { return model_->rowCount(); }

std::vector<int> LongList::SelectedRows() const {
    std::vector<int> shown;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row) shown.push_back(row);
    std::ranges::sort(shown);
    shown.erase(std::unique(shown.begin(), shown.end()), shown.end());
    std::ranges::transform(shown, shown.begin(), [this](int row) { return model_->RowAt(row); });
    return shown;
}

void LongList::SelectRows(const std::vector<int>& rows) {
    const std::vector<int> places = model_->Places();
    std::vector<int> shown(rows.size());
    std::ranges::transform(rows, shown.begin(), [&](int row) { return places.at(static_cast<std::size_t>(row)); });
    std::ranges::sort(shown);
    QItemSelection selection;
    for (std::size_t first = 0; first < shown.size();) {
        std::size_t next = first + 1;
        while (next < shown.size() && shown[next] == shown[next - 1] + 1) ++next;
        selection.select(model_->index(shown[first], 0), model_->index(shown[next - 1], model_->columnCount() - 1));
        first = next;
    }
    if (!shown.empty())
        selectionModel()->setCurrentIndex(model_->index(shown.front(), 0), QItemSelectionModel::NoUpdate);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void LongList::WidenColumns() {
    const int step = std::max(1, RowCount() / SampleRows);
    for (int column = 0; column + 1 < model_->columnCount(); ++column) {
        const QString head = model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        int width = horizontalHeader()->fontMetrics().size(0, head).width() + SortArrowRoom;
        for (int row = 0; row < RowCount(); row += step)
            width = std::max(width, sizeHintForIndex(model_->index(row, column)).width() + 4);
        columns_->WidenTo(column, width);
    }
}

void LongList::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    PaintEmptyText(*this, emptyText_);
}

}  // namespace vantor
