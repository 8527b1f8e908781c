#pragma once

#include <QDialog>
#include <QListWidget>
#include <QPushButton>
#include <vector>

#include "core/AppContext.h"
#include "reports/forms/ReportPagesView.h"
#include "statistics/ComparedStudy.h"

namespace vantor {

/// "Compare Studies": the current study and others from the disk, each against the first, as the pages that can be
/// printed. Changes nothing.
class frmCompareStudies : public QDialog {
public:
    explicit frmCompareStudies(AppContext& context);

private:
    QLayout* BuildList();
    QLayout* BuildButtons();
    void AddStudyFile();
    void AddStudyGroup();
    void Add(ComparedStudy study);
    void Remove();
    void MakeFirst();
    void ShowDocument();
    void SaveAsPdf();

    AppContext& context_;
    const StatisticsOptions options_;
    std::vector<Condition> studies_;
    PagedDocument document_;
    QListWidget* lstStudies_ = nullptr;
    QPushButton* btnRemove_ = nullptr;
    QPushButton* btnFirst_ = nullptr;
    ReportPagesView* picReport_ = nullptr;
    QPushButton* BtnSavePdf_ = nullptr;
    QPushButton* BtnPrint_ = nullptr;
};

}  // namespace vantor
