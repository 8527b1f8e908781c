#pragma once

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <functional>
#include <string>
#include <vector>

#include "analysis/StudyResults.h"
#include "core/AppSettings.h"
#include "core/forms/WrappedLabel.h"
#include "workspace/StudyCertainty.h"

class QBoxLayout;

namespace vantor {

/// The study's figures, large, with the grade as a badge.
class ResultsPanel : public QWidget {
public:
    explicit ResultsPanel(QWidget* parent);

    /// A figure that was never computed stays empty. The stop delay figures show only where they are enabled.
    void ShowResults(const ResultLabels& labels, const AppSettings& settings);
    /// What the figures hold under, as AverageWithoutWarned and OtherThresholds say it; empty where there is nothing.
    void ShowConditions(const std::string& withoutWarned, const std::string& otherThresholds);
    /// How sure the average is, beside it.
    void ShowCertainty(const StudyCertainty& certainty);
    /// Captions beside the figures where there is room, which needs less height, or above them.
    void SetLow(bool isLow);
    /// The stop delays are to be counted anew, at the threshold in force.
    std::function<void()> OnComputeAnew;

protected:
    void changeEvent(QEvent* event) override;

private:
    QGroupBox* BuildStudyResults();
    QGroupBox* BuildStopDelay();
    QWidget* BuildCertainty(QWidget* parent);
    QWidget* BuildOtherThresholds();
    void ShowGrade();

    QBoxLayout* Captioned(QWidget* figure, const char* caption, const char* unit = "", const char* unitName = "");

    void PlaceParts();

    std::vector<QBoxLayout*> captioned_;
    bool isLow_ = false;
    QBoxLayout* inResults_ = nullptr;  ///< beside the figures
    QWidget* certainty_ = nullptr;
    WrappedLabel* lblDelayInterval_ = nullptr;
    WrappedLabel* lblRunsNeeded_ = nullptr;
    WrappedLabel* lblWithoutSetAside_ = nullptr;
    WrappedLabel* lblWithoutWarned_ = nullptr;
    QWidget* otherThresholds_ = nullptr;
    QLabel* lblOtherThresholds_ = nullptr;
    QLabel* lblAvgContDelay_ = nullptr;
    QLabel* lblLOSGrade_ = nullptr;
    QGroupBox* frStopDelayStats_ = nullptr;
    QLineEdit* txtStopSpdThreshold_ = nullptr;
    QLabel* lblStopSpdUnit_ = nullptr;
    QLabel* lblAvgStopDelay_ = nullptr;
    QLabel* lblAvgStopDelayUnit_ = nullptr;
    QLabel* lblControl2StopRatio_ = nullptr;
};

}  // namespace vantor
