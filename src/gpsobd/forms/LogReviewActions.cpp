#include <QApplication>
#include <QScrollBar>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "core/Counted.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "gpsobd/forms/LogReview.h"

// What the actions of a review do.

namespace vantor {
namespace {

QString RunText(int run, const QString& does, int row, int deleted) {
    const QString text = QStringLiteral("Run %1 %2 at row %3").arg(run).arg(does).arg(row);
    return deleted == 0 ? text + QStringLiteral(" already.")
                        : text + QStringLiteral("; %1 deleted.").arg(ToQt(Counted(deleted, "row")));
}

}  // namespace

void LogReview::FindMissing(ReviewGrid::Search search) {
    isGoingOnFixing_ = false;
    const bool isOn = search == ReviewGrid::Search::OnFromThere;
    const int from = isOn ? model_.Grid().UnreachedRow() : int{model_.Grid().SearchRow()};
    std::optional<bool> isFound;
    Guarded(context_.Messages, [&] {
        int row = 0;
        context_.Work.Run("Searching", [&](FileSystem&, const Progress&) { row = model_.Grid().NextMissing(search); });
        isFound = model_.GoToMissing(row, search);
    });
    if (!isFound) return OfferToGoOn();
    if (!*isFound)
        return ShowState(QStringLiteral("From row %1 on no row has -1 in column %2.").arg(from).arg(RepairColumn()));
    vaData_->ShowFound();
    ShowState(QStringLiteral("Row %1 has -1 in column %2.").arg(model_.Grid().ActiveRow()).arg(RepairColumn()));
}

void LogReview::CalculateSpeed() {
    const int row = model_.Grid().ActiveRow();
    const int column = format_.Columns().RepairColumn;
    const bool fills = row != 0 && model_.Grid().Number(row, column) == ReviewGrid::Missing;
    if (!fills) return ShowState(QStringLiteral("Row %1 has no -1 in column %2.").arg(row).arg(RepairColumn()));
    Change([](ReviewGrid& grid) { grid.CalculateSpeed(); },
           QStringLiteral("The gap that begins in row %1 is filled.").arg(row));
}

void LogReview::FindAndFixAll(ReviewGrid::Search search) {
    isGoingOnFixing_ = true;
    const bool hadChanges = model_.Grid().CanUndo();
    SetRepairing(true);
    bool isDone = false;
    Guarded(context_.Messages, [&] {
        model_.Change(
            [&](ReviewGrid& grid) { isDone = grid.FindAndFixAll([this] { return GoesOnAfterEvents(); }, search); });
    });
    SetRepairing(false);
    // Of what the repair did nothing is asked, of what was changed before it is.
    const bool wasStopped = std::exchange(stopRequested_, false);
    if (wasStopped && MayDiscard(hadChanges)) return QDialog::done(Rejected);
    ShowGaps();
    vaData_->ShowActive();
    vaData_->setFocus();
    if (wasStopped) return ShowState(QStringLiteral("Stopped. Undo takes back what was filled."));
    if (!isDone) return OfferToGoOn();
    ShowState(QStringLiteral("No gap of up to %1 rows is left in column %2.")
                  .arg(ReviewGrid::MaximumGap)
                  .arg(RepairColumn()));
}

/// A search that went as far as 16 bits reach can be had for the rest.
void LogReview::OfferToGoOn() {
    const int row = model_.Grid().UnreachedRow();
    ShowState(QStringLiteral("Searched as far as row 32767."));
    btnGoOn_->setVisible(row != 0);
    if (row != 0) btnGoOn_->setFocus();
}

void LogReview::GoOnFromThere() {
    if (isGoingOnFixing_)
        FindAndFixAll(ReviewGrid::Search::OnFromThere);
    else
        FindMissing(ReviewGrid::Search::OnFromThere);
}

void LogReview::ShowGaps() {
    std::vector<LogGap> gaps;
    const auto rows = std::make_shared<ReviewedRows>();
    context_.Work.Run("Looking for gaps", [&](FileSystem&, const Progress&) {
        gaps = model_.Grid().Gaps();
        rows->Points = model_.Grid().Points();
        rows->Problems = FindProblems(rows->Points);
    });
    gaps_->Show(std::move(gaps));
    ShowRows(rows);
}

void LogReview::ShowRows(std::shared_ptr<const ReviewedRows> rows) {
    rows_ = std::move(rows);
    model_.ShowProblems(rows_->Problems, UnitsOf(context_.State.Settings));
    views_->ShowRows(rows_);
    ShowActiveRow();
}

void LogReview::ShowActiveRow() {
    // While rows are changed their numbers are others than those of the views.
    if (rows_ != nullptr && std::ssize(rows_->Points) == model_.Grid().RowCount())
        views_->ShowRow(model_.Grid().ActiveRow());
}

void LogReview::NextProblem() {
    if (isRepairing_) return;
    if (model_.Problems().empty()) return ShowState(QStringLiteral("No row has a problem."));
    const auto active = static_cast<std::size_t>(std::max(model_.Grid().ActiveRow() - 1, 0));
    const int row = static_cast<int>(NextProblemRow(model_.Problems(), active)) + 1;
    ShowRow(row);
    ShowState(QStringLiteral("Row %1: %2.").arg(row).arg(model_.ProblemOf(row)));
}

void LogReview::ShowGap(const LogGap& gap) {
    const int row = model_.Grid().RowBefore(gap);
    if (row != 0) ShowRow(row);
}

void LogReview::ShowRow(int row) {
    model_.SetActiveRow(row);
    vaData_->ShowActive();
    // The row is brought to the middle, its columns stay where they are.
    QScrollBar* across = vaData_->horizontalScrollBar();
    const int place = across->value();
    vaData_->scrollTo(vaData_->currentIndex(), QAbstractItemView::PositionAtCenter);
    across->setValue(place);
}

void LogReview::FillGaps(const std::vector<LogGap>& gaps, GapFill fill) {
    const auto left = std::ranges::count_if(gaps, [&](const LogGap& gap) { return !CanBeFilled(gap, fill); });
    QString status =
        (gaps.size() == 1 ? QStringLiteral("The gap is filled ") : QStringLiteral("The gaps are filled ")) +
        GapFillText(fill) + QLatin1Char('.');
    if (left != 0) status += QStringLiteral(" %1 without positions stayed as before.").arg(left);
    Change([&](ReviewGrid& grid) { grid.FillGapsAs(gaps, fill); }, status);
}

bool LogReview::GoesOnAfterEvents() {
    prgRepair_->setValue(model_.Grid().ActiveRow());
    QApplication::processEvents();
    return !stopRequested_;
}

void LogReview::SetRepairing(bool isRepairing) {
    isRepairing_ = isRepairing;
    prgRepair_->setRange(0, model_.rowCount());
    prgRepair_->setVisible(isRepairing);
    btnStop_->setVisible(isRepairing);
    if (isRepairing) btnStop_->setFocus();
    ShowState(isRepairing ? QStringLiteral("Filling gaps...") : QString());
}

void LogReview::DeleteRows() {
    const std::vector<int> places = vaData_->SelectedPlaces();
    if (places.empty()) return;
    std::vector<int> rows;
    rows.reserve(places.size());
    for (const int place : places) rows.push_back(model_.GridRow(place));
    Change([&](ReviewGrid& grid) { grid.DeleteRows(rows); },
           rows.size() == 1 ? QStringLiteral("Row %1 is deleted.").arg(rows.front())
                            : QStringLiteral("%1 rows are deleted.").arg(rows.size()));
    // In a sorted grid the row that follows in the log may be anywhere.
    vaData_->ShowPlace(places.front());
}

void LogReview::StartRun() {
    const int row = model_.Grid().ActiveRow();
    if (row == 0 || isRepairing_) return;
    const int run = model_.Grid().RunNumber(row);
    int count = 0;
    Change([&](ReviewGrid& grid) { count = grid.StartRunAt(row); }, {});
    ShowState(RunText(run, QStringLiteral("starts"), model_.Grid().ActiveRow(), count));
}

void LogReview::EndRun() {
    const int row = model_.Grid().ActiveRow();
    if (row == 0 || isRepairing_) return;
    const int run = model_.Grid().RunNumber(row);
    int count = 0;
    Change([&](ReviewGrid& grid) { count = grid.EndRunAt(row); }, {});
    ShowState(RunText(run, QStringLiteral("ends"), model_.Grid().ActiveRow(), count));
}

void LogReview::SplitRun() {
    const int row = model_.Grid().ActiveRow();
    if (row == 0 || isRepairing_) return;
    const int run = model_.Grid().RunNumber(row);
    int next = 0;
    Change([&](ReviewGrid& grid) { next = grid.SplitRunAt(row); }, {});
    ShowState(next == 0
                  ? QStringLiteral("Run %1 begins at row %2 already.").arg(run).arg(row)
                  : QStringLiteral("Run %1 ends before row %2, run %3 begins there.").arg(run).arg(row).arg(next));
}

void LogReview::Undo() {
    if (!isRepairing_ && model_.Grid().CanUndo())
        Change([](ReviewGrid& grid) { grid.Undo(); }, QStringLiteral("Undone."));
}

void LogReview::Redo() {
    if (!isRepairing_ && model_.Grid().CanRedo())
        Change([](ReviewGrid& grid) { grid.Redo(); }, QStringLiteral("Done again."));
}

void LogReview::Change(const std::function<void(ReviewGrid&)>& change, const QString& status) {
    model_.Change(change);
    vaData_->ShowActive();
    ShowGaps();
    ShowState(status);
}

}  // namespace vantor
