#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <vector>

#include "core/AppContext.h"
#include "plots/DelayChart.h"
#include "plots/forms/PlotView.h"

namespace vantor {

/// "Control Delays & Running Avg. for Current Study": shows whether enough runs have been driven for the average to
/// settle. Changes nothing.
class frmContDelayVsAvg : public QDialog {
public:
    /// Overflow (error 6) where a delay of the study does not fit the chart.
    explicit frmContDelayVsAvg(AppContext& context);

private:
    QLayout* BuildLegend();
    QLayout* BuildLayers();
    QCheckBox* Switch(const char* name, const QString& caption, const char* tip, const char* key);
    QWidget* AddToLegend(const PlotSample& sample, const char* name, const char* labelName);
    QLayout* BuildButtons();
    void ShowSeries();
    void ShowReadOut();
    void CopyPicture();
    std::string PictureStart() const;
    void Save();

    AppContext& context_;
    const RunList runs_;
    DelaySeries series_;
    DelayChartLayers layers_;
    PlotView* plot_ = nullptr;
    QCheckBox* chkCountedOnly_ = nullptr;
    QCheckBox* chkInterval_ = nullptr;
    QCheckBox* chkError_ = nullptr;
    QCheckBox* chkGrades_ = nullptr;
    QComboBox* cmbOrder_ = nullptr;
    QGroupBox* fraLegend_ = nullptr;
    QWidget* legendNotCounted_ = nullptr;
    std::vector<QWidget*> legendLayers_;  ///< the samples of what lies under the delays
    QLabel* lblReadOut_ = nullptr;
};

}  // namespace vantor
