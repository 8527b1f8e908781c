#pragma once

#include <QDialog>
#include <QPushButton>
#include <cstddef>
#include <string>
#include <vector>

#include "core/AppContext.h"
#include "core/forms/Table.h"
#include "core/forms/WrappedLabel.h"
#include "corridor/Corridor.h"

namespace vantor {

/// "Timing of Oak": when the signal of a node is green, a line for each way, condition and period. Changes nothing.
class frmSignalTimings : public QDialog {
public:
    frmSignalTimings(AppContext& context, const Corridor& corridor, std::size_t node, QWidget* parent = nullptr);

    /// The corridor as it is set.
    Corridor Choice() const;
    void reject() override;

private:
    enum Column { Of, Condition, Period, Cycle, GreenStart, Green, Columns };

    void BuildTable();
    QLayout* BuildFoot();
    void AddLine(const SignalTiming& timing);
    SignalTiming TimingIn(int row) const;
    double SecondsIn(int row, Column column) const;
    void Add();
    void Remove();
    std::vector<QString> Texts() const;
    /// What is wrong with what is set; empty where nothing is.
    std::string Problem() const;
    /// A line that never holds, because one above it is for the same runs; empty where there is none.
    std::string Remark() const;
    void ShowProblem();

    AppContext& context_;
    const Corridor corridor_;
    const std::size_t node_;
    std::vector<std::string> periods_;  ///< that can be chosen, behind any
    Table* vaTimings_ = nullptr;
    WrappedLabel* lblProblem_ = nullptr;
    QPushButton* btnDelete_ = nullptr;
    QPushButton* btnOk_ = nullptr;
    std::vector<QString> atFirst_;
};

}  // namespace vantor
