#pragma once

#include <QDialog>
#include <QLabel>

#include "analysis/RunStatistics.h"
#include "core/AppContext.h"
#include "core/forms/Table.h"

namespace vantor {

/// "Run Statistics": the figures of the current run by section and in all, to copy and to save.
class frmRunStatistics : public QDialog {
public:
    /// `entryIndex` is the run's entry in the study, from 1, whose control delay and grade are shown once both its
    /// boundaries are set; 0 where the run is none of the study's.
    frmRunStatistics(AppContext& context, int entryIndex);

protected:
    void changeEvent(QEvent* event) override;

private:
    QLayout* BuildHead();
    QLayout* BuildFigures();
    QLayout* BuildButtons();
    void FillTable();
    void ShowTotalBold();
    /// Sorts the sections; the row of the whole run stays the last one.
    void SortSections(int column, Qt::SortOrder order);
    void ShowGrade();
    void Copy();
    void SaveAsCsv();

    AppContext& context_;
    std::string runName_;
    Units units_;
    RunStatistics statistics_;
    const StudyRunEntry* entry_ = nullptr;  ///< only with both boundaries

    Table* vaRunStatistics_ = nullptr;
    QLabel* lblLOS_ = nullptr;
};

}  // namespace vantor
