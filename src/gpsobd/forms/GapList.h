#pragma once

#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <array>
#include <functional>
#include <vector>

#include "core/Units.h"
#include "core/forms/TableColumns.h"
#include "core/ports/MessageBoxes.h"
#include "gpsobd/forms/GapModel.h"

namespace vantor {

/// The gaps of a log under its review, with what they are filled as. Hidden while there are none.
class GapList : public QWidget {
public:
    GapList(QWidget* parent, MessageBoxes& messages, const Units& units);

    /// Shows these; those that were selected stay selected as far as they are still there.
    void Show(std::vector<LogGap> gaps);

    /// The user went to a gap.
    std::function<void(const LogGap& gap)> OnChosen;
    /// The user wants the selected gaps filled so.
    std::function<void(const std::vector<LogGap>& gaps, GapFill fill)> OnFill;

private:
    void WidenColumns();
    void SelectAgain(const std::vector<LogGap>& selected);
    void ShowChoice();
    std::vector<LogGap> Selected() const;

    GapModel model_;
    QLabel* lblGaps_ = nullptr;
    QTableView* vaGaps_ = nullptr;
    TableColumns* columns_ = nullptr;
    std::array<QPushButton*, 3> fills_{};
    bool isFilling_ = false;
};

}  // namespace vantor
