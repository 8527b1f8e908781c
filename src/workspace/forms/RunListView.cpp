#include "workspace/forms/RunListView.h"

#include <QDropEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <algorithm>

#include "core/forms/Named.h"

namespace vantor {
namespace {

constexpr const char* AllHiddenText =
    "No run of this study counts, and View > Counted Runs Only leaves out those that do not.";
constexpr const char* EmptyText =
    "This study has no runs yet.\nAdd runs of its Study Group with Add Run, or open a study with File > Open Existing "
    "Study.";
/// Pixels beside a head's text, for its margins and the arrow of the sorted column.
constexpr int SortArrowRoom = 48;
/// The list does not scroll for the rest of a longer status: its tip shows it whole.
constexpr int MostStatusLetters = 24;

}  // namespace

RunListView::RunListView(QWidget* parent) : QTableView(parent) {
    sorted_.setSourceModel(&model_);
    sorted_.setSortRole(RunListModel::SortRole);
    sorted_.setSortLocaleAware(true);
    sorted_.setSortCaseSensitivity(Qt::CaseInsensitive);
    setModel(&sorted_);
    LookLikeAList(*this);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setDragDropMode(QAbstractItemView::InternalMove);
    setDragDropOverwriteMode(false);
    horizontalHeader()->setDefaultSectionSize(horizontalHeader()->minimumSectionSize());
    columns_ = new TableColumns(*this);
    const int last = RunListModel::ColumnCount - 1;
    horizontalHeader()->moveSection(RunListModel::Status, last);
    for (int column = RunListModel::Status + 1; column <= last; ++column)
        columns_->MakeOptional(column, column == RunListModel::TravelTime || column == RunListModel::MeanSpeed);
    columns_->OnShown = [this] { WidenColumns(); };
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column) {
        if (column != RunListModel::Status && !isWidening_) FitStatus();
    });
}

void RunListView::SetRows(std::vector<RunListRow> rows, const Units& units) {
    const int active = ActiveRun();
    const std::vector<int> selected =
        static_cast<int>(rows.size()) == model_.rowCount() ? SelectedRuns() : std::vector<int>();
    model_.SetRows(std::move(rows), units);
    SetActiveRun(std::clamp(active, 1, std::max(1, model_.rowCount())));
    for (const int run : selected) AddToSelection(run);
    WidenColumns();
    setAccessibleDescription(model_.rowCount() == 0 ? QString::fromLatin1(EmptyText) : QString());
}

void RunListView::ShowColumn(int column) {
    setColumnHidden(column, false);
    WidenColumns();
}

bool RunListView::Shown::filterAcceptsRow(int row, const QModelIndex&) const {
    const auto& rows = static_cast<const RunListModel*>(sourceModel())->Rows();
    return !CountedOnly || rows[static_cast<std::size_t>(row)].State == RunState::Counted;
}

void RunListView::ShowCountedOnly(bool isOn) {
    const int active = ActiveRun();
    sorted_.CountedOnly = isOn;
    sorted_.invalidateFilter();
    if (ActiveRun() == 0) SetActiveRun(active);
}

void RunListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (OnActivated) OnActivated(sorted_.mapToSource(current).row() + 1);
}

void RunListView::ShowStopDelay(bool shown) { setColumnHidden(RunListModel::StopDelay, !shown); }

int RunListView::ActiveRun() const { return sorted_.mapToSource(currentIndex()).row() + 1; }

void RunListView::SetActiveRun(int run) {
    const QModelIndex index = sorted_.mapFromSource(model_.index(run - 1, RunListModel::Name));
    if (index.isValid()) setCurrentIndex(index);
}

std::vector<int> RunListView::SelectedRuns() const {
    const QModelIndexList rows = selectionModel()->selectedRows();
    std::vector<int> runs;
    runs.reserve(static_cast<std::size_t>(rows.size()));
    for (const QModelIndex& row : rows) runs.push_back(sorted_.mapToSource(row).row() + 1);
    std::ranges::sort(runs);
    return runs;
}

void RunListView::SelectRuns(int first, int count) {
    SetActiveRun(first);
    for (int run = first; run < first + count; ++run) AddToSelection(run);
    scrollTo(sorted_.mapFromSource(model_.index(first + count - 2, RunListModel::Name)));
    scrollTo(currentIndex());
}

void RunListView::AddToSelection(int run) {
    const QModelIndex row = sorted_.mapFromSource(model_.index(run - 1, RunListModel::Name));
    selectionModel()->select(row, QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

std::string RunListView::SelectionAsTable() const {
    QModelIndexList rows = selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, &QModelIndex::row);
    const QHeaderView* header = horizontalHeader();
    QStringList lines;
    const auto add = [&](auto textOf) {
        QStringList cells;
        for (int place = 0; place < header->count(); ++place)
            if (const int column = header->logicalIndex(place); !isColumnHidden(column))
                cells += textOf(column).simplified();
        lines += cells.join(QLatin1Char('\t'));
    };
    add([&](int column) { return sorted_.headerData(column, Qt::Horizontal).toString(); });
    for (const QModelIndex& row : rows) add([&](int column) { return row.siblingAtColumn(column).data().toString(); });
    return FromQt(lines.join(QLatin1Char('\n'))) + "\n";
}

void RunListView::dropEvent(QDropEvent* event) {
    const QModelIndex target = indexAt(event->position().toPoint());
    const bool isBelow = dropIndicatorPosition() == BelowItem;
    event->setDropAction(Qt::CopyAction);  // the rows are moved in the study
    event->accept();
    if (event->source() != this || IsSorted() || !OnMoved) return;
    const int row = sorted_.mapToSource(target).row();
    OnMoved(target.isValid() ? row + (isBelow ? 2 : 1) : model_.rowCount() + 1);
}

void RunListView::WidenColumns() {
    {
        const QScopedValueRollback widening(isWidening_, true);
        for (int column = 0; column < RunListModel::ColumnCount; ++column)
            if (column != RunListModel::Status && !isColumnHidden(column))
                columns_->WidenTo(column, WidthNeeded(column));
    }
    FitStatus();
}

int RunListView::WidthNeeded(int column) const {
    const QString head = sorted_.headerData(column, Qt::Horizontal).toString();
    const int headWidth = horizontalHeader()->fontMetrics().size(0, head).width() + SortArrowRoom;
    const int row = model_.WidestRow(column, fontMetrics());
    if (row < 0) return headWidth;
    // Asked of the delegate: the row may be one that is not shown now.
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    return std::max(itemDelegate()->sizeHint(option, model_.index(row, column)).width() + 4, headWidth);
}

void RunListView::FitStatus() {
    QHeaderView* header = horizontalHeader();
    const int left = viewport()->width() - header->sectionPosition(RunListModel::Status);
    const int needed =
        std::min(WidthNeeded(RunListModel::Status), MostStatusLetters * fontMetrics().averageCharWidth());
    header->setStretchLastSection(left >= needed);
    if (left < needed) setColumnWidth(RunListModel::Status, needed);
}

void RunListView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    FitStatus();
}

void RunListView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    PaintEmptyText(*this, QString::fromLatin1(HiddenRuns() > 0 ? AllHiddenText : EmptyText));
}

}  // namespace vantor
