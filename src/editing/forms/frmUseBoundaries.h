#pragma once

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <vector>

#include "analysis/StudyEdits.h"
#include "core/AppContext.h"
#include "core/forms/Table.h"

namespace vantor {

/// "Use Boundaries": what would become of other runs with the boundaries of one, and which of them are to get them.
/// Changes nothing.
class frmUseBoundaries : public QDialog {
public:
    frmUseBoundaries(AppContext& context, std::vector<BoundsPreview> previews, const Bounds& bounds,
                     QWidget* parent = nullptr);

    /// The ticked ones.
    std::vector<BoundsPreview> Chosen() const;

private:
    void Fill();
    void AddPreview(std::size_t index);
    void TickAll(bool areTicked);
    void ShowCount();

    const std::vector<BoundsPreview> previews_;
    Table* vaRuns_;
    QLabel* lblCount_;
    QPushButton* btnOk_;
};

}  // namespace vantor
