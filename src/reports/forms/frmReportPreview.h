#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>
#include <array>

#include "core/AppContext.h"
#include "reports/forms/ReportPagesView.h"
#include "reports/modReports.h"

namespace vantor {

/// "Print Report": the reports on the current study as they will be printed, to be printed or saved as a PDF file. The
/// choice of reports, paper and zoom is kept for the next time.
class frmReportPreview : public QDialog {
public:
    /// Error 6 for averages of the study that do not fit.
    explicit frmReportPreview(AppContext& context);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
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

    ReportChoice Choice() const;
    void ChoiceChanged();
    void ShowDocument();
    void ShowPage();
    void SetZoom(int index);
    /// To the next step of the zoom list in that direction.
    void StepZoom(int steps);
    void Print();
    void SaveAsPdf();

    AppContext& context_;
    ReportData data_;
    PagedDocument document_;

    QCheckBox* chkLeaveOutHeadings_ = nullptr;
    std::array<QCheckBox*, ReportNames.size()> chkReport_{};
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
