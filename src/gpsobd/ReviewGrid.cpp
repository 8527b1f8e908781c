#include "gpsobd/ReviewGrid.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <type_traits>

#include "core/Numeric.h"
#include "core/RunTimeError.h"
#include "gpsobd/LogPoints.h"

namespace vantor {
namespace {

/// Rows that stay in view above a missing value that was found.
constexpr int RowsAbove = 3;

bool IsSingle(const PointField& field) {
    return std::holds_alternative<float GpsPoint::*>(field) || std::holds_alternative<float ObdPoint::*>(field);
}

/// Only singles are taken over: speeds.
void TakeOver(float& held, double filled) { held = static_cast<float>(filled); }
template <class Other>
void TakeOver(Other&, double) {}

/// Runs an action when it goes out of scope, however that comes.
template <class Action>
struct AtEnd {
    Action Do;
    ~AtEnd() { Do(); }
};
template <class Action>
AtEnd(Action) -> AtEnd<Action>;

}  // namespace

ReviewGrid::ReviewGrid(FieldLog log) : ReviewGrid(std::move(log), ReviewLayout{}) { layout_ = log_.Format->Columns(); }

ReviewGrid::ReviewGrid(FieldLog log, ReviewLayout layout)
    : log_(std::move(log)), layout_(std::move(layout)), rows_(log_.PointCount()) {
    ArrangeForReview(log_);
    std::iota(rows_.begin(), rows_.end(), PointIndex{0});
    ActivateRow(1);
}

const ReviewColumn& ReviewGrid::Column(int column) const {
    if (column < 1 || column > ColumnCount()) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    return layout_.Columns[static_cast<std::size_t>(column - 1)];
}

std::uint64_t ReviewGrid::CellKey(PointIndex point, int column) {
    return (std::uint64_t{point} << 32U) | static_cast<std::uint32_t>(column);
}

ReviewGrid::PointIndex ReviewGrid::PointOf(int row) const {
    if (row < 1 || row > RowCount()) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    return rows_[static_cast<std::size_t>(row - 1)];
}

const double* ReviewGrid::FilledValue(int row, int column) const {
    const auto filled = filled_.find(CellKey(PointOf(row), column));
    return filled == filled_.end() ? nullptr : &filled->second;
}

std::string ReviewGrid::Text(int row, int column) const {
    const ReviewColumn& shown = Column(column);
    if (const double* filled = FilledValue(row, column))
        return ShownNumber(shown.Look, *filled, IsSingle(shown.Field) ? SingleDigits : DoubleDigits);
    return CellText(shown, log_, PointOf(row));
}

std::string ReviewGrid::FullText(int row, int column) const {
    const ReviewColumn& shown = Column(column);
    if (const double* filled = FilledValue(row, column))
        return SignificantDigits(*filled, IsSingle(shown.Field) ? SingleDigits : DoubleDigits);
    return FullCellText(shown, log_, PointOf(row));
}

SheetCell ReviewGrid::Value(int row, int column) const {
    const ReviewColumn& shown = Column(column);
    if (FilledValue(row, column) != nullptr) return Number(row, column);
    return CellValue(shown, log_, PointOf(row));
}

double ReviewGrid::Number(int row, int column) const { return Val(FullText(row, column)); }

bool ReviewGrid::IsComputed(int row, int column) const { return FilledValue(row, column) != nullptr; }

Sheet ReviewGrid::AsSheet(const Progress& progress) const {
    Sheet sheet;
    for (const ReviewColumn& column : layout_.Columns) sheet.Columns.push_back(SheetColumnOf(column));
    sheet.Rows.reserve(rows_.size());
    for (int row = 1; row <= RowCount() && progress(sheet.Rows.size(), rows_.size()); ++row) {
        std::vector<SheetCell>& cells = sheet.Rows.emplace_back();
        cells.reserve(layout_.Columns.size());
        for (int column = 1; column <= ColumnCount(); ++column) cells.push_back(Value(row, column));
    }
    return sheet;
}

void ReviewGrid::SetActive(int row, int column) {
    PointOf(row);
    Column(column);
    activeRow_ = row;
    activeColumn_ = column;
}

void ReviewGrid::ActivateRow(int row) { activeRow_ = std::clamp(row, std::min(1, RowCount()), RowCount()); }

bool ReviewGrid::IsMissing(int row) const {
    // The text decides; it is made only for values that are near.
    constexpr double near = 0.001;
    const auto isNear = [](const auto& held) {
        using Held = std::decay_t<decltype(held)>;
        if constexpr (std::is_arithmetic_v<Held>)
            return std::fabs(static_cast<double>(held) - Missing) < near;
        else
            return !std::is_same_v<Held, Date>;  // that of a date begins with its month
    };
    if (FilledValue(row, layout_.RepairColumn) == nullptr &&
        !WithField(Column(layout_.RepairColumn).Field, log_, PointOf(row), isNear))
        return false;
    return Number(row, layout_.RepairColumn) == Missing;
}

void ReviewGrid::SearchFrom(int row, Search search) {
    const bool isReached = row <= std::numeric_limits<std::int16_t>::max();
    if (search == Search::OnFromThere || !isReached) unreachedRow_ = row;
    if (search == Search::OnFromThere) return;
    if (!isReached)
        throw RunTimeError(ErrorNumber::Overflow,
                           "The search for missing values goes as far as row 32767. Choose Go On From There to search "
                           "the rows behind it.");
    searchRow_ = To16(row);
}

int ReviewGrid::NextMissing(Search search, const std::function<bool()>& goOn) const {
    constexpr int rowsBetween = 8192;
    for (int row = search == Search::OnFromThere ? unreachedRow_ : searchRow_; row <= RowCount(); ++row) {
        if (IsMissing(row)) return row;
        if (row % rowsBetween == 0 && !goOn()) break;
    }
    return 0;
}

bool ReviewGrid::GoToMissing(int row, Search search) {
    if (row == 0) return false;
    const int top = row > RowsAbove ? row - RowsAbove : row;
    SearchFrom(top, search);
    topRow_ = top;
    SetActive(row, layout_.RepairColumn);
    return true;
}

int ReviewGrid::FillGap(int longest) {
    const int first = activeRow_;
    int behind = first;
    while (behind <= RowCount() && IsMissing(behind)) ++behind;
    const int count = behind - first;
    if (count == 0 || count > longest) return behind;

    const auto valueIn = [&](int row, int column) { return row >= 1 && row <= RowCount() ? Number(row, column) : 0.0; };
    const double before = std::max(valueIn(first - 1, layout_.RepairColumn), 0.0);
    const auto step = static_cast<float>((valueIn(behind, layout_.RepairColumn) - before) / (count + 1));
    for (int i = 1; i <= count; ++i) Fill(first + i - 1, layout_.RepairColumn, before + static_cast<double>(step) * i);

    const int companion = layout_.CompanionColumn;
    if (companion == 0) return behind;
    const double companionBefore = valueIn(first - 1, companion);
    const double difference = valueIn(behind, companion) - companionBefore;
    for (int i = 1; i <= count; ++i) Fill(first + i - 1, companion, companionBefore + i * difference / (count + 1));
    return behind;
}

void ReviewGrid::CalculateSpeed() {
    if (activeRow_ != 0) FillGap(RowCount());
    EndStep();
}

bool ReviewGrid::FindAndFixAll(const std::function<bool()>& goOn, Search search) {
    const AtEnd restored{[this] {
        searchRow_ = 1;
        EndStep();
    }};
    bool isStopped = false;
    const auto goesOn = [&] {
        isStopped = isStopped || !goOn();
        return !isStopped;
    };
    while (GoToMissing(NextMissing(search, goesOn), search)) {
        if (!goesOn()) return false;
        const int behind = FillGap(MaximumGap);
        if (!goesOn()) return false;
        if (behind > RowCount()) break;
        SearchFrom(behind, search);
    }
    return !isStopped;
}

void ReviewGrid::DeleteRows(std::vector<int> rows) {
    if (rows.empty()) return;
    std::ranges::sort(rows);
    for (const int row : rows) underWay_.Deleted.push_back(PointOf(row));
    if (!gapFills_.empty())
        // The last one first: it leaves the others where they are.
        for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
            JoinGapsAt(*row);
            rows_.erase(rows_.begin() + (*row - 1));
        }
    TakeOut(underWay_.Deleted);
    ActivateRow(rows.front());
    EndStep();
}

void ReviewGrid::TakeOut(const std::vector<PointIndex>& points) {
    std::erase_if(rows_, [&](PointIndex point) { return std::ranges::binary_search(points, point); });
}

void ReviewGrid::PutBack(const std::vector<PointIndex>& points) {
    const auto middle = rows_.insert(rows_.end(), points.begin(), points.end());
    std::inplace_merge(rows_.begin(), middle, rows_.end());
}

void ReviewGrid::Fill(int row, int column, double value) {
    if (IsSingle(Column(column).Field)) value = static_cast<double>(static_cast<float>(value));
    CellChange change{PointOf(row), column, std::nullopt, value};
    if (const double* filled = FilledValue(row, column)) change.Before = *filled;
    SetFilled(change, change.After);
    underWay_.Cells.push_back(change);
}

void ReviewGrid::SetFilled(const CellChange& change, const std::optional<double>& value) {
    const std::uint64_t key = CellKey(change.Point, change.Column);
    if (value)
        filled_[key] = *value;
    else
        filled_.erase(key);
}

void ReviewGrid::SetGapFill(const GapPlace& gap, std::optional<GapFill> fill) {
    if (fill)
        gapFills_[gap] = *fill;
    else
        gapFills_.erase(gap);
}

std::vector<RunPoint> ReviewGrid::Points() const {
    std::vector<RunPoint> points;
    points.reserve(rows_.size());
    const PointField& repaired = Column(layout_.RepairColumn).Field;
    for (const PointIndex index : rows_) {
        const auto filled = filled_.find(CellKey(index, layout_.RepairColumn));
        if (filled == filled_.end()) {
            points.push_back(RunPointAt(log_, index));
            continue;
        }
        FieldLog one;
        one.Format = log_.Format;
        one.Add(log_.At(index));
        WithField(repaired, one, 0, [&](auto& held) { TakeOver(held, filled->second); });
        points.push_back(RunPointAt(one, 0));
    }
    return points;
}

std::vector<LogGap> ReviewGrid::Gaps() const {
    std::vector<RunPoint> points = Points();
    SortByRun(points);
    std::vector<LogGap> gaps = FindGaps(RunsAmong(points));
    for (LogGap& gap : gaps)
        if (const auto fill = gapFills_.find({gap.RunNumber, gap.From, gap.To}); fill != gapFills_.end())
            gap.Filled = fill->second;
    return gaps;
}

void ReviewGrid::FillGapsAs(std::span<const LogGap> gaps, GapFill fill) {
    for (const LogGap& gap : gaps) {
        if (gap.Filled == fill || !CanBeFilled(gap, fill)) continue;
        ChangeGapFill({gap.RunNumber, gap.From, gap.To}, fill);
    }
    EndStep();
}

void ReviewGrid::ChangeGapFill(const GapPlace& gap, std::optional<GapFill> fill) {
    GapChange change{gap, std::nullopt, fill};
    if (const auto before = gapFills_.find(gap); before != gapFills_.end()) change.Before = before->second;
    SetGapFill(gap, fill);
    underWay_.Gaps.push_back(change);
}

void ReviewGrid::JoinGapsAt(int row) {
    const std::int16_t run = RunNumberAt(log_, PointOf(row));
    const std::int64_t second = SecondAt(log_, PointOf(row));
    const auto before = SecondBeside(row, -1);
    const auto behind = SecondBeside(row, 1);
    // Another row of the second, or the end of the run: no gap becomes longer.
    if (!before || !behind || *before == second || *behind == second) return;
    const auto takeFill = [&](std::int64_t from, std::int64_t to) {
        const auto filled = gapFills_.find({run, from, to});
        const auto fill = filled == gapFills_.end() ? std::nullopt : std::optional(filled->second);
        if (fill) ChangeGapFill({run, from, to}, std::nullopt);
        return fill;
    };
    const auto left = takeFill(*before, second);
    const auto right = takeFill(second, *behind);
    const bool isOneGap = second - *before < ShortestGap || *behind - second < ShortestGap;
    if (isOneGap || left == right)
        if (const auto fill = left ? left : right) ChangeGapFill({run, *before, *behind}, fill);
}

std::optional<std::int64_t> ReviewGrid::SecondBeside(int row, int direction) const {
    const std::int16_t run = RunNumberAt(log_, PointOf(row));
    for (int other = row + direction; other >= 1 && other <= RowCount(); other += direction)
        if (RunNumberAt(log_, PointOf(other)) == run) return SecondAt(log_, PointOf(other));
    return std::nullopt;
}

int ReviewGrid::RowBefore(const LogGap& gap) const {
    const auto row = std::ranges::find_if(rows_, [&](PointIndex index) {
        return RunNumberAt(log_, index) == gap.RunNumber && SecondAt(log_, index) == gap.From;
    });
    return row == rows_.end() ? 0 : static_cast<int>(row - rows_.begin()) + 1;
}

void ReviewGrid::EndStep() {
    if (underWay_.IsEmpty()) return;
    steps_.resize(done_);
    underWay_.Cells.shrink_to_fit();
    steps_.push_back(std::exchange(underWay_, Step{}));
    done_ = steps_.size();
}

void ReviewGrid::Undo() {
    if (!CanUndo()) return;
    const Step& step = steps_[--done_];
    for (auto change = step.Cells.rbegin(); change != step.Cells.rend(); ++change) SetFilled(*change, change->Before);
    for (auto change = step.Gaps.rbegin(); change != step.Gaps.rend(); ++change)
        SetGapFill(change->Gap, change->Before);
    SetRunNumber(step.Moved, step.MovedFrom);
    PutBack(step.Deleted);
    ActivateRow(FirstRowOf(step));
}

void ReviewGrid::Redo() {
    if (!CanRedo()) return;
    const Step& step = steps_[done_++];
    for (const CellChange& change : step.Cells) SetFilled(change, change.After);
    for (const GapChange& change : step.Gaps) SetGapFill(change.Gap, change.After);
    SetRunNumber(step.Moved, step.MovedTo);
    TakeOut(step.Deleted);
    ActivateRow(FirstRowOf(step));
}

int ReviewGrid::FirstRowOf(const Step& step) const {
    if (step.Deleted.empty() && step.Cells.empty() && step.Moved.empty()) return activeRow_;
    const PointIndex first = !step.Deleted.empty() ? step.Deleted.front()
                             : !step.Moved.empty() ? step.Moved.front()
                                                   : step.Cells.front().Point;
    const auto place = std::ranges::lower_bound(rows_, first);
    return static_cast<int>(place - rows_.begin()) + 1;
}

FieldLog ReviewGrid::Edited() const {
    FieldLog edited;
    static_cast<LogHead&>(edited) = log_.Head();
    edited.IsArranged = true;
    for (const PointIndex point : rows_) edited.Add(log_.At(point));
    for (const auto& [key, value] : filled_) {
        // A row that was deleted after it was filled is not there any more.
        const auto point = static_cast<PointIndex>(key >> 32U);
        const auto place = std::lower_bound(rows_.begin(), rows_.end(), point);
        if (place == rows_.end() || *place != point) continue;
        WithField(Column(static_cast<int>(key & 0xFFFFFFFFU)).Field, edited,
                  static_cast<std::size_t>(place - rows_.begin()),
                  [value = value](auto& held) { TakeOver(held, value); });
    }
    return edited;
}

}  // namespace vantor
