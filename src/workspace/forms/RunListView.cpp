#include "workspace/forms/RunListView.h"

#include <QHeaderView>
#include <algorithm>

namespace vantor {
namespace {

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
    setSelectionMode(QAbstractItemView::SingleSelection);
    horizontalHeader()->setDefaultSectionSize(horizontalHeader()->minimumSectionSize());
    columns_ = new TableColumns(*this);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column) {
        if (column != RunListModel::Status) FitStatus();
    });
}

void RunListView::SetRows(std::vector<RunListRow> rows) {
    const int active = ActiveRun();
    model_.SetRows(std::move(rows));
    SetActiveRun(std::clamp(active, 1, std::max(1, model_.rowCount())));
    WidenColumns();
    setAccessibleDescription(model_.rowCount() == 0 ? QString::fromLatin1(EmptyText) : QString());
}

void RunListView::ShowStopDelay(bool shown) { setColumnHidden(RunListModel::StopDelay, !shown); }

int RunListView::ActiveRun() const { return sorted_.mapToSource(currentIndex()).row() + 1; }

void RunListView::SetActiveRun(int run) {
    const QModelIndex index = sorted_.mapFromSource(model_.index(run - 1, RunListModel::Name));
    if (index.isValid()) setCurrentIndex(index);
}

void RunListView::WidenColumns() {
    for (int column = 0; column < RunListModel::Status; ++column)
        if (!isColumnHidden(column)) columns_->WidenTo(column, WidthNeeded(column));
    FitStatus();
}

int RunListView::WidthNeeded(int column) const {
    const QString head = sorted_.headerData(column, Qt::Horizontal).toString();
    const int headWidth = horizontalHeader()->fontMetrics().size(0, head).width() + SortArrowRoom;
    return std::max(sizeHintForColumn(column) + 4, headWidth);
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
    PaintEmptyText(*this, QString::fromLatin1(EmptyText));
}

}  // namespace vantor
