#pragma once

#include <QDialog>
#include <QVBoxLayout>
#include <vector>

#include "analysis/StudyEdits.h"
#include "core/AppContext.h"
#include "core/forms/TickList.h"

namespace vantor {

/// What would become of runs with other boundaries, and which of them are to get them. Changes nothing.
class BoundsDialog : public QDialog {
public:
    /// The ticked ones.
    std::vector<BoundsPreview> Chosen() const;

protected:
    /// Places: each run has boundaries of its own, which the list shows.
    enum class Columns { Delays, DelaysAndPlaces };

    BoundsDialog(AppContext& context, QWidget* parent);

    /// What stands above the list is added here; BuildList comes behind it.
    QVBoxLayout& Head() { return *column_; }
    void BuildList(Columns columns);
    void ShowPreviews(std::vector<BoundsPreview> previews);

    AppContext& context_;

private:
    void AddPreview(std::size_t index);
    void SetPlace(int row, int column, std::int32_t feet, bool isThere);

    std::vector<BoundsPreview> previews_;
    int places_ = 0;  ///< columns of them
    QVBoxLayout* column_;
    TickList* vaRuns_ = nullptr;
    TickButtons* buttons_ = nullptr;
};

}  // namespace vantor
