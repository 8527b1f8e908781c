#pragma once

#include <QComboBox>
#include <QDialog>
#include <QPushButton>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/AppContext.h"
#include "core/forms/Table.h"
#include "workspace/StudyGroups.h"

namespace vantor {

/// Adds runs of the Study Group to the current study; version 1 run files are converted on the way. Accepted when at
/// least one was added. A study without runs may take them from any Study Group, which becomes the study's own.
class frmRunSelect : public QDialog {
public:
    explicit frmRunSelect(AppContext& context);

private:
    QLayout* BuildGroupChooser();
    QLayout* BuildRuns();
    void ListGroup();
    void AddRow(const ListedRun& run, const Units& units);
    /// Why the run cannot be added, for its tool tip, and the word for it; both empty when it can.
    struct Hindrance {
        std::string Word;
        std::string Reason;
    };
    Hindrance HindranceOf(const ListedRun& run) const;
    std::vector<ListedRun> ChosenRuns() const;
    bool IsConverted(const std::string& name);
    void AddChosen();

    std::string Group() const;

    AppContext& context_;
    QComboBox* cmbStudyGroup_;
    Table* vaSelRuns_;
    QPushButton* BtnAdd_;
    QPushButton* BtnSelectAll_;
    std::vector<ListedRun> runs_;
    std::unordered_map<std::string, int> inStudy_;  ///< RunsByKey of the study
};

}  // namespace vantor
