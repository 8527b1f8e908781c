#pragma once

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <functional>
#include <string>

#include "analysis/StudyResults.h"
#include "core/AppSettings.h"

namespace vantor {

/// The study's figures, large, with the grade as a badge.
class ResultsPanel : public QWidget {
public:
    explicit ResultsPanel(QWidget* parent);

    /// A figure that was never computed stays empty. The stop delay figures show only where they are enabled.
    void ShowResults(const ResultLabels& labels, const AppSettings& settings);
    /// What the figures hold under, as AverageWithoutWarned and OtherThresholds say it; empty where there is nothing.
    void ShowConditions(const std::string& withoutWarned, const std::string& otherThresholds);
    /// The stop delays are to be counted anew, at the threshold in force.
    std::function<void()> OnComputeAnew;

protected:
    void changeEvent(QEvent* event) override;

private:
    QGroupBox* BuildStudyResults();
    QGroupBox* BuildStopDelay();
    QWidget* BuildOtherThresholds();
    void ShowGrade();

    QLabel* lblWithoutWarned_ = nullptr;
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
