#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>
#include <memory>
#include <vector>

#include "core/AppContext.h"
#include "corridor/ReportedCorridor.h"
#include "reports/ReportSource.h"
#include "reports/forms/ReportPagesView.h"

namespace vantor {

/// "Print Report": the reports on the current study, or on a corridor, as they will be printed, to be printed or saved
/// as a PDF file. The choice of reports, paper and zoom is kept for the next time, for both apart.
class frmReportPreview : public QDialog {
public:
    /// Error 6 for averages of the study that do not fit.
    explicit frmReportPreview(AppContext& context);
    frmReportPreview(AppContext& context, std::shared_ptr<const ReportedCorridor> corridor);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    frmReportPreview(AppContext& context, std::shared_ptr<ReportSource> source);
    void LoadData();
    QLayout* BuildChoices();
    QGroupBox* BuildReports();
    QGroupBox* BuildPaper();
    QLayout* BuildPageBar();
    QToolButton* BarButton(const char* name, const char* icon, const QString& caption);
    QLayout* BuildButtons();
    void ConnectAll();
    /// As it was left the last time.
    void RecallChoice();
    void StoreChoice();

    PrintChoice Choice() const;
    void ChoiceChanged();
    void ShowDocument();
    void ShowPage();
    void SetZoom(int index);
    /// To the next step of the zoom list in that direction.
    void StepZoom(int steps);
    void Print();
    void SaveAsPdf();

    AppContext& context_;
    std::shared_ptr<ReportSource> source_;
    PagedDocument document_;

    QCheckBox* chkLeaveOutHeadings_ = nullptr;
    std::vector<QCheckBox*> chkReport_;  ///< by the parts of the source
    QComboBox* cmbPaper_ = nullptr;
    QComboBox* cmbOrientation_ = nullptr;
    QComboBox* cmbZoom_ = nullptr;
    QSpinBox* txtPage_ = nullptr;
    QLabel* lblPages_ = nullptr;
    QToolButton* cmdPrevious_ = nullptr;
    QToolButton* cmdNext_ = nullptr;
    QToolButton* cmdZoomOut_ = nullptr;
    QToolButton* cmdZoomIn_ = nullptr;
    ReportPagesView* picReport_ = nullptr;
    QPushButton* BtnSavePdf_ = nullptr;
    QPushButton* BtnPrint_ = nullptr;
    QPushButton* BtnClose_ = nullptr;
};

}  // namespace vantor
