#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "core/Units.h"
#include "gpsobd/LogPoints.h"

namespace vantor {

/// What makes one look at a row of a review again.
struct LogProblem {
    enum class Kind {
        NoSpeed,
        Spike,  ///< the speed changes faster than a vehicle's
        Gap,    ///< with nothing logged behind the row
        Jump,   ///< a position farther away than could be driven
    };
    std::size_t Row = 0;  ///< from 0
    Kind What = Kind::NoSpeed;
    double Size = 0;  ///< of a spike mph a second, of a gap seconds, of a jump feet

    bool operator==(const LogProblem&) const = default;
};

/// The problems of rows in the order of the review, by row; each row is held against the one before it of its run.
/// Rules: docs/methods.md, "Problems of a log".
std::vector<LogProblem> FindProblems(std::span<const RunPoint> rows);

/// Those of one row among all, which are in order.
std::span<const LogProblem> ProblemsOfRow(std::span<const LogProblem> problems, std::size_t row);
/// The next row after `row` with a problem, from the first one on again where none follows. Row itself where it is the
/// only one, and where there is none.
std::size_t NextProblemRow(std::span<const LogProblem> problems, std::size_t row);

/// How many rows have one or more.
std::size_t CountRowsOf(std::span<const LogProblem> problems);

/// "no speed; 24 s without rows behind it".
std::string ProblemText(std::span<const LogProblem> ofRow, const Units& units);

}  // namespace vantor
