#pragma once

#include <QLabel>
#include <QPushButton>
#include <array>
#include <functional>
#include <vector>

#include "core/Units.h"
#include "core/forms/LongList.h"
#include "core/ports/MessageBoxes.h"
#include "gpsobd/LogGaps.h"

namespace vantor {

/// "as standing", "by position" or "by the speeds beside it".
QString GapFillText(GapFill fill);

/// The gaps of a log under its review, with what they are filled as. Hidden while there are none.
class GapList : public QWidget {
public:
    GapList(QWidget* parent, MessageBoxes& messages, LongWork& work, const Units& units);

    /// Shows these; those that were selected stay selected as far as they are still there.
    void Show(std::vector<LogGap> gaps);

    /// The user went to a gap.
    std::function<void(const LogGap& gap)> OnChosen;
    /// The user wants the selected gaps filled so.
    std::function<void(const std::vector<LogGap>& gaps, GapFill fill)> OnFill;

private:
    std::vector<LongList::Column> Columns(const Units& units) const;
    void SelectAgain(const std::vector<LogGap>& selected);
    void ShowChoice();
    std::vector<LogGap> Selected() const;
    const LogGap& At(int row) const { return gaps_[static_cast<std::size_t>(row)]; }

    std::vector<LogGap> gaps_;  ///< one a row
    QLabel* lblGaps_ = nullptr;
    LongList* vaGaps_ = nullptr;
    std::array<QPushButton*, 3> fills_{};
    bool isFilling_ = false;
};

}  // namespace vantor
