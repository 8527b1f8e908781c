#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <memory>
#include <vector>

#include "core/AppContext.h"
#include "core/Choices.h"
#include "core/forms/LongList.h"
#include "core/forms/WrappedLabel.h"
#include "plots/forms/PlotView.h"
#include "statistics/DetailedStatistics.h"
#include "statistics/forms/StatisticsTableView.h"

namespace vantor {

/// "Statistics in Detail": the figures over the runs of the current study, its sections, its runs over time and
/// distance, and before against after. What is chosen above holds for all tabs, and so does the selected run. Changes
/// nothing: what the user chose is for the caller to take.
class frmStudyStatistics : public QDialog {
public:
    /// `run` of the study, from 1, is selected to begin with; 0 for none.
    frmStudyStatistics(AppContext& context, int run);

    StatisticsVisit Outcome() const { return {selected_, {study_.Options, study_.Lines}}; }

private:
    enum Page { SummaryPage, SectionsPage, TimeSpacePage, OverlayPage, ComparedPage };

    QLayout* BuildHead();
    QLayout* BuildFilter();
    QWidget* BuildWarnings();
    QWidget* BuildTabs();
    QWidget* BuildTimeSpace();
    QWidget* BuildOverlay();
    QWidget* BuildCompared();
    QLayout* BuildDifference(QWidget* page);
    QWidget* BuildRuns();
    QLayout* BuildButtons();
    PlotView* AddPlot(QWidget* page, const char* name, const QString& caption);
    StatisticsTableView* AddTable(QWidget* page, const char* name, const QString& caption);
    /// Keeps a switch for the next visit.
    void StoreChoice(const char* key, bool isTaken);

    /// Reads the runs with the options of study_; false, and nothing changed, when it was stopped.
    bool ReadRuns();
    /// Offers what the runs differ in.
    void FillFilter();
    RunFilter Filter() const;
    /// Shows what is chosen above.
    void ShowChosen();
    void ShowTexts();
    void ShowTables();
    void ShowPlots();
    void ShowRuns();
    const MeasuredRun& RunOfRow(int row) const;
    void ShowDifference();
    void SelectRun(int run);
    void ShowSelected();
    int RunOfItem(int item) const;

    void ChangeOptions();
    /// The tab in view as a table.
    std::vector<SheetRow> ShownSheet() const;
    std::string FileStart() const;

    AppContext& context_;
    const Units units_;
    Study study_;  ///< a copy, with the options as the user has changed them
    std::shared_ptr<const TracedRuns> runs_ = std::make_shared<TracedRuns>();
    DetailedStatistics shown_;
    int selected_ = 0;  ///< the run of the study, from 1
    bool isFilling_ = false;
    bool hasDifference_ = false;

    QComboBox* cmbPeriod_ = nullptr;
    QComboBox* cmbDirection_ = nullptr;
    QLabel* lblDirection_ = nullptr;
    QComboBox* cmbGroup_ = nullptr;
    QCheckBox* chkWithoutSetAside_ = nullptr;
    QLabel* lblRestsOn_ = nullptr;
    WrappedLabel* lblWarnings_ = nullptr;
    QTabWidget* tabs_ = nullptr;
    StatisticsTableView* vaSummary_ = nullptr;
    StatisticsTableView* vaSections_ = nullptr;
    WrappedLabel* lblApart_ = nullptr;
    QComboBox* cmbClock_ = nullptr;
    QCheckBox* chkSingleRuns_ = nullptr;
    std::vector<PlotView*> plots_;
    std::vector<WrappedLabel*> plotNotes_;
    WrappedLabel* lblSentences_ = nullptr;
    StatisticsTableView* vaCompared_ = nullptr;
    StatisticsTableView* vaComparedSections_ = nullptr;
    QDoubleSpinBox* numDifference_ = nullptr;
    QLabel* lblDifference_ = nullptr;
    LongList* vaRuns_ = nullptr;
    std::vector<QPushButton*> outButtons_;
};

}  // namespace vantor
