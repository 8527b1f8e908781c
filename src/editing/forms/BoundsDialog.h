#pragma once

#include <QDialog>
#include <QVBoxLayout>
#include <vector>

#include "analysis/StudyEdits.h"
#include "core/AppContext.h"
#include "editing/forms/TickList.h"

namespace vantor {

/// What would become of runs with other boundaries, and which of them are to get them. Changes nothing.
class BoundsDialog : public QDialog {
public:
    /// The ticked ones.
    std::vector<BoundsPreview> Chosen() const;

protected:
    /// Places: each run has boundaries of its own, which the list shows.
    enum class Columns { Delays, DelaysAndPlaces };

    BoundsDialog(AppContext& context, QWidget* parent, Columns columns);

    /// What stands above the list is added here.
    QVBoxLayout& Head() { return *head_; }
    void ShowPreviews(std::vector<BoundsPreview> previews);

    AppContext& context_;

private:
    void BuildTable(Columns columns);
    void AddPreview(std::size_t index);
    void SetPlace(int row, int column, std::int32_t feet, bool isThere);

    std::vector<BoundsPreview> previews_;
    const int places_;  ///< columns of them
    QVBoxLayout* head_;
    TickList* vaRuns_;
    TickButtons* buttons_;
};

}  // namespace vantor
