#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <array>

#include "core/AppContext.h"
#include "core/Choices.h"
#include "core/Units.h"
#include "core/forms/WrappedLabel.h"

namespace vantor {

/// "Statistics Options": how the statistics of a study are made, and what the user writes on it for its report. Changes
/// nothing.
class frmStatisticsOptions : public QDialog {
public:
    frmStatisticsOptions(AppContext& context, const StudyChoices& choices);

    StudyChoices Choice() const;

private:
    /// A number in the unit on display. One that is not typed stays as exact as it was.
    struct NumberField {
        QDoubleSpinBox* Box = nullptr;
        double Stored = 0;
        double Shown = 0;
    };

    QGroupBox* BuildPrecision();
    QGroupBox* BuildSpeeds();
    QGroupBox* BuildGrades();
    QGroupBox* BuildLines(const StudyLines& lines);
    QDoubleSpinBox* NumberBox(QWidget* parent, const char* name, int decimals, double least, double most);
    /// Speeds are mph.
    void ShowSpeed(NumberField& field, double mph) const;
    double SpeedIn(const NumberField& field) const;
    void ShowOptions(const StatisticsOptions& options);
    StatisticsOptions ShownOptions() const;
    void ShowProblem();

    const Units units_;
    const bool hasLines_;
    QDoubleSpinBox* numConfidence_ = nullptr;
    QDoubleSpinBox* numError_ = nullptr;
    QComboBox* cmbError_ = nullptr;
    NumberField speedError_;
    NumberField stop_;
    NumberField go_;
    NumberField freeFlow_;
    QCheckBox* chkOwnGrades_ = nullptr;
    std::array<QDoubleSpinBox*, 5> numGrade_{};
    std::array<QLineEdit*, 4> txtLine_{};
    WrappedLabel* lblProblem_ = nullptr;
    QPushButton* btnOk_ = nullptr;
};

}  // namespace vantor
