#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialog>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <map>
#include <string>
#include <vector>

#include "core/AppContext.h"
#include "core/forms/WrappedLabel.h"
#include "gpsobd/forms/ZoneBox.h"
#include "tracks/CsvMapping.h"

class QLayout;

namespace vantor {

/// "Columns": what the columns of CSV files hold and how their numbers and times are told. What follows from each
/// choice is shown at once; OK keeps it for all files with the same head.
class frmTrackColumns : public QDialog {
public:
    /// The first of the files is shown first; there is at least one.
    frmTrackColumns(AppContext& context, const std::vector<std::string>& paths, QWidget* parent = nullptr);

    void accept() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct File {
        CsvPreview Preview;  ///< with the mapping as it is chosen
        bool IsChanged = false;
    };

    QLayout* BuildForm();
    void ConnectControls();
    File& Chosen();
    void ShowFile();
    void ShowRows();
    void ShowStart();
    QWidget* KindBox(int column);
    void TakeColumn(int column, int kind);
    void TakeSplitting();
    void TakeMeaning();
    void ShowOutcome();
    std::string Outcome();

    AppContext& context_;
    std::vector<std::string> paths_;
    std::map<std::string, File> files_;  ///< that were looked at
    QComboBox* cmbFile_ = nullptr;
    QComboBox* cmbDelimiter_ = nullptr;
    QSpinBox* spnHead_ = nullptr;
    QCheckBox* chkComma_ = nullptr;
    QComboBox* cmbUnit_ = nullptr;
    QComboBox* cmbTimes_ = nullptr;
    QComboBox* cmbOrder_ = nullptr;
    ZoneBox* cmbZone_ = nullptr;
    QDateTimeEdit* dteStart_ = nullptr;
    QTableWidget* vaRows_ = nullptr;
    WrappedLabel* lblOutcome_ = nullptr;
    QPushButton* cmdHelp_ = nullptr;
    QPushButton* btnOk_ = nullptr;
    bool isShowing_ = false;
};

}  // namespace vantor
