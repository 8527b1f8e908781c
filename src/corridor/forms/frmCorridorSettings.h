#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <array>

#include "core/AppContext.h"
#include "core/Units.h"
#include "core/forms/WrappedLabel.h"
#include "corridor/Corridor.h"

namespace vantor {

/// "Corridor Settings": the names of the directions, the periods of the day, how runs are matched. Changes nothing.
class frmCorridorSettings : public QDialog {
public:
    frmCorridorSettings(AppContext& context, const Corridor& corridor, QWidget* parent = nullptr);

    /// The corridor as it is set.
    Corridor Choice() const;

private:
    QLayout* BuildFields();
    QLayout* BuildFoot(AppContext& context);
    QSpinBox* LengthBox(const char* name, double feet);
    double FeetIn(const QSpinBox& box, double stored) const;
    /// What is wrong with what is set; empty where nothing is.
    std::string Problem() const;
    void ShowProblem();

    const Corridor corridor_;
    const Units units_;
    std::array<QLineEdit*, 2> txtWay_{};
    QPlainTextEdit* txtPeriods_ = nullptr;
    QSpinBox* spnTolerance_ = nullptr;
    QSpinBox* spnLead_ = nullptr;
    QCheckBox* chkOverlap_ = nullptr;
    WrappedLabel* lblProblem_ = nullptr;
    QPushButton* btnOk_ = nullptr;
};

}  // namespace vantor
