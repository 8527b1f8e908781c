#pragma once

#include <QComboBox>
#include <QLabel>
#include <QWidget>
#include <functional>
#include <vector>

#include "core/Units.h"
#include "core/forms/Table.h"
#include "core/ports/MessageBoxes.h"
#include "gpsobd/LogGaps.h"

namespace vantor {

/// "as standing", "by position" or "by the speeds beside it".
QString GapFillText(GapFill fill);

/// The gaps of a log under its review, with what they are filled as. Hidden while there are none.
class GapList : public QWidget {
public:
    GapList(QWidget* parent, MessageBoxes& messages, const Units& units);

    /// Shows these; those that were selected stay selected as far as they are still there.
    void Show(const std::vector<LogGap>& gaps);

    /// The user went to a gap.
    std::function<void(const LogGap& gap)> OnChosen;
    /// The user wants the selected gaps filled so.
    std::function<void(const std::vector<LogGap>& gaps, GapFill fill)> OnFill;

private:
    void Fill();
    void ShowChoice();
    std::vector<LogGap> Selected() const;

    Units units_;
    std::vector<LogGap> gaps_;
    QLabel* lblGaps_ = nullptr;
    Table* vaGaps_ = nullptr;
    QComboBox* cmbGapFill_ = nullptr;
    bool isFilling_ = false;
};

}  // namespace vantor
