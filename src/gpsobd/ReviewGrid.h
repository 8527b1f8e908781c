#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/Progress.h"
#include "gpsobd/LogGaps.h"
#include "gpsobd/ReviewColumns.h"

namespace vantor {

/// The grid of a review screen: the points of a log, one a row, with the repair of missing values, deletion of rows and
/// undo. Rows and columns count from 1. The rows keep the order they are loaded in: gaps and the seconds of a run are
/// counted by it.
class ReviewGrid {
public:
    static constexpr double Missing = MissingValue;
    /// Rows of the longest gap that FindAndFixAll fills.
    static constexpr int MaximumGap = 10;

    /// Brings the log into the order of the review (ArrangeForReview).
    explicit ReviewGrid(FieldLog log);
    ReviewGrid(FieldLog log, ReviewLayout layout);

    int RowCount() const { return static_cast<int>(rows_.size()); }
    int ColumnCount() const { return static_cast<int>(layout_.Columns.size()); }
    // Of a row or a column that is none: error 9.
    const ReviewColumn& Column(int column) const;
    std::string Text(int row, int column) const;
    /// The same with all the digits of a speed.
    std::string FullText(int row, int column) const;
    SheetCell Value(int row, int column) const;
    /// The numeric value of the cell's full text, the value that the repair goes by.
    double Number(int row, int column) const;
    /// True for a cell whose value was filled in.
    bool IsComputed(int row, int column) const;
    /// All of the grid; the sheet has no name. Stopped, it is not whole.
    Sheet AsSheet(const Progress& progress = {}) const;

    /// The active cell; row 0 of an empty grid.
    int ActiveRow() const { return activeRow_; }
    int ActiveColumn() const { return activeColumn_; }
    void SetActive(int row, int column);
    /// The row that FindNextMissing brought to the top.
    int TopRow() const { return topRow_; }
    /// Where the next search starts.
    int SearchRow() const { return searchRow_; }

    /// Rows are numbered in 16 bits here: a search that would go on behind row 32767 is error 6. OnFromThere goes on
    /// where that happened last, to the end of the log.
    enum class Search { FromSearchRow, OnFromThere };
    /// The row that a search in 16 bits did not reach; 0 where none stopped so.
    int UnreachedRow() const { return unreachedRow_; }

    /// Looks for a missing value from the search row on and makes it the active cell, with up to three rows above it in
    /// view; the search row becomes the topmost of these. False when there is none.
    bool FindNextMissing(Search search = Search::FromSearchRow) { return GoToMissing(NextMissing(search), search); }
    /// Its two parts, of which the first may take its time. Row 0 for none. `goOn` as of FindAndFixAll.
    int NextMissing(
        Search search, const std::function<bool()>& goOn = [] { return true; }) const;
    bool GoToMissing(int row, Search search);
    /// Fills the gap that begins in the active row, of any length, along a straight line from the value before it
    /// (0 where that is negative or missing) to the one after it (0 where there is none). Does nothing where no value
    /// is missing.
    void CalculateSpeed();
    /// Finds and fills every gap of up to MaximumGap rows from the search row on, as one step to undo. `goOn` is called
    /// between the steps; it may let events run but must leave the grid alone. When it returns false the repair stops
    /// with what is filled so far, and so does this. The search row is 1 afterwards.
    bool FindAndFixAll(const std::function<bool()>& goOn, Search search = Search::FromSearchRow);
    /// Deletes rows, each named once, as one step to undo; the one that takes the place of the first is active then. A
    /// gap beside a row that FillGapsAs filled is filled so as the longer gap that it becomes, too. Of two gaps that
    /// become one only what both were filled as stays.
    void DeleteRows(std::vector<int> rows);

    // A run by hand, one step to undo each; the row stays the active one. Rows of other runs between stay.
    /// Deletes the rows of a row's run before it, or behind it; how many there were.
    int StartRunAt(int row);
    int EndRunAt(int row);
    /// The rows of a row's run from it on become a run of their own, of the next number that no row has; that number. A
    /// gap keeps what it was filled as. 0 where the row is the first of its run. Error 6 where no number is left.
    std::int16_t SplitRunAt(int row);
    std::int16_t RunNumber(int row) const { return RunNumberAt(log_, PointOf(row)); }

    /// The rows as they stand now, for the runs that are made of them; in the order of the rows.
    std::vector<RunPoint> Points() const;
    /// The gaps between the rows as they stand now, filled by the rule of FindGaps or as FillGapsAs said.
    std::vector<LogGap> Gaps() const;
    /// Fills these gaps so, those without positions not by position; one step to undo.
    void FillGapsAs(std::span<const LogGap> gaps, GapFill fill);
    /// The row before a gap; 0 where there is none.
    int RowBefore(const LogGap& gap) const;

    bool CanUndo() const { return done_ > 0; }
    bool CanRedo() const { return done_ < steps_.size(); }
    /// Takes the last fill or deletion back, or does the next one again, and makes its place active. Nothing when there
    /// is none.
    void Undo();
    void Redo();

    /// The log with the rows as they stand now, filled speeds in their points. A number filled into a date or a time is
    /// a number in the grid only and leaves the point's time alone.
    FieldLog Edited() const;

private:
    using PointIndex = std::uint32_t;
    struct CellChange {
        PointIndex Point = 0;
        int Column = 0;
        std::optional<double> Before;
        std::optional<double> After;
    };
    /// Run number, first and last second.
    using GapPlace = std::tuple<std::int16_t, std::int64_t, std::int64_t>;
    struct GapChange {
        GapPlace Gap;
        std::optional<GapFill> Before;
        std::optional<GapFill> After;
    };
    struct Step {
        std::vector<CellChange> Cells;
        std::vector<GapChange> Gaps;
        std::vector<PointIndex> Deleted;  ///< ascending
        std::vector<PointIndex> Moved;    ///< ascending; to another run
        std::int16_t MovedFrom = 0;
        std::int16_t MovedTo = 0;

        bool IsEmpty() const { return Cells.empty() && Gaps.empty() && Deleted.empty() && Moved.empty(); }
    };

    static std::uint64_t CellKey(PointIndex point, int column);
    PointIndex PointOf(int row) const;
    const double* FilledValue(int row, int column) const;
    bool IsMissing(int row) const;
    void SearchFrom(int row, Search search);
    /// Fills the gap that begins in the active row unless it is longer; returns the first row behind it.
    int FillGap(int longest);
    void Fill(int row, int column, double value);
    void SetFilled(const CellChange& change, const std::optional<double>& value);
    void SetGapFill(const GapPlace& gap, std::optional<GapFill> fill);
    void ChangeGapFill(const GapPlace& gap, std::optional<GapFill> fill);
    void JoinGapsAt(int row);
    /// The points of a row's run in the rows `first` to `last`.
    std::vector<PointIndex> PointsOfRun(int row, int first, int last) const;
    std::int16_t FreeRunNumber(std::int16_t behind) const;
    void SetRunNumber(const std::vector<PointIndex>& points, std::int16_t number);
    void TakeOut(const std::vector<PointIndex>& points);
    void PutBack(const std::vector<PointIndex>& points);
    /// The second of the next row of the same run in that direction, 1 or -1; nothing where it is the last one.
    std::optional<std::int64_t> SecondBeside(int row, int direction) const;
    void EndStep();
    int FirstRowOf(const Step& step) const;
    void ActivateRow(int row);

    FieldLog log_;
    ReviewLayout layout_;
    std::vector<PointIndex> rows_;                      ///< points in the order of the rows; always ascending
    std::unordered_map<std::uint64_t, double> filled_;  ///< by CellKey
    std::map<GapPlace, GapFill> gapFills_;
    std::vector<Step> steps_;
    std::size_t done_ = 0;  ///< steps that are in force
    Step underWay_;
    int activeRow_ = 0;
    int activeColumn_ = 1;
    int topRow_ = 1;
    std::int16_t searchRow_ = 1;
    int unreachedRow_ = 0;
};

}  // namespace vantor
