#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>

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
    QLayout* BuildButtons();
    void ShowSeries();
    void ShowReadOut();
    void CopyPicture();
    std::string PictureStart() const;
    void Save();

    AppContext& context_;
    const RunList runs_;
    DelaySeries series_;
    PlotView* plot_ = nullptr;
    QCheckBox* chkCountedOnly_ = nullptr;
    QWidget* legendNotCounted_ = nullptr;
    QLabel* lblReadOut_ = nullptr;
};

}  // namespace vantor
