#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTabWidget>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/AppContext.h"
#include "core/Csv.h"
#include "core/forms/WrappedLabel.h"
#include "corridor/forms/CorridorDocument.h"
#include "corridor/forms/CorridorFigurePages.h"
#include "corridor/forms/CorridorMapPage.h"
#include "corridor/forms/CorridorNodesPane.h"
#include "corridor/forms/CorridorPlotPages.h"
#include "corridor/forms/CorridorRunPage.h"
#include "corridor/forms/CorridorRunsPane.h"

class QMenu;

namespace vantor {

/// "Corridors": a street with its nodes and the runs along it. What is chosen above, and the selected run, node and
/// way, hold for all tabs. A change is a step that can be taken back; nothing is written before Save.
class frmCorridor : public QDialog {
public:
    /// `path` nothing: the corridor that was open last, or the only one there is.
    frmCorridor(AppContext& context, const std::optional<std::string>& path);

    void done(int result) override;

private:
    QLayout* BuildFileRow();
    QLayout* BuildRunButtons();
    QLayout* BuildFilterRow();
    QLayout* BuildIdealSpeeds();
    QWidget* BuildLeft();
    QWidget* BuildStart();
    QWidget* BuildTabs();
    QLayout* BuildFoot();
    QPushButton* AddButton(const char* name, const QString& caption, const QString& tip, std::function<void()> act);
    /// Gives a button a menu, which is filled when it is opened.
    QPushButton* WithMenu(QPushButton* button, void (frmCorridor::*fill)(QMenu&));
    void AddKey(const char* keys, std::function<void()> act);

    void FillOpen(QMenu& menu);
    void FillAddRuns(QMenu& menu);
    void OpenFirst(const std::optional<std::string>& path);
    void ImportTracks();
    void ShowReport();
    void MakeStudies();
    void ChangeSettings();
    void ChangeOptions();
    void TakeFilter();
    void TakeIdealSpeed(Way way, int mph);

    void ShowHead();
    void ShowFilter();
    void ShowAll();
    std::vector<SheetRow> ShownSheet() const;
    std::string FileStart() const;

    AppContext& context_;
    CorridorDocument document_;
    bool isFilling_ = false;

    QLabel* lblCorridor_ = nullptr;
    QPushButton* btnOpen_ = nullptr;
    QPushButton* btnSave_ = nullptr;
    QPushButton* btnAddRuns_ = nullptr;
    std::vector<QPushButton*> onNodes_;  ///< what needs nodes
    QComboBox* cmbPeriod_ = nullptr;
    QComboBox* cmbCondition_ = nullptr;
    QComboBox* cmbWay_ = nullptr;
    WrappedLabel* lblWarnings_ = nullptr;
    std::array<QSpinBox*, 2> spnIdeal_{};
    std::array<QLabel*, 2> lblIdeal_{};
    CorridorNodesPane* nodes_ = nullptr;
    CorridorRunsPane* runs_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    QTabWidget* tabs_ = nullptr;
    CorridorTimeSpacePage* timeSpace_ = nullptr;
    CorridorResultsPage* results_ = nullptr;
    QWidget* resultsArea_ = nullptr;
    CorridorComparedPage* compared_ = nullptr;
    CorridorRunPage* run_ = nullptr;
    std::vector<QPushButton*> outButtons_;
};

}  // namespace vantor
