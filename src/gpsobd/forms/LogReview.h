#pragma once

#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/AppContext.h"
#include "core/Choices.h"
#include "gpsobd/forms/GapList.h"
#include "gpsobd/forms/ReviewExport.h"
#include "gpsobd/forms/ReviewTable.h"
#include "gpsobd/forms/ReviewViews.h"

class QLayout;
class QMenu;

namespace vantor {

/// The format of a log's file, whatever it is; null where it is none, which was told then.
const LogFormat* FormatToReview(AppContext& context, const LogChoice& log);

/// The review of a log: frmGPSViewData, frmOBDViewData or frmGPSOBDViewData by the log's format. Shows every
/// point, marks problems and walks through them, repairs missing values, deletes rows, exports the rows and, on OK,
/// makes runs of them in the folder of temporary runs and writes the log back; it is accepted then.
class LogReview : public QDialog {
public:
    LogReview(AppContext& context, const LogFormat& format, const LogChoice& log);

    /// Rejected at once, without being shown, when the log could not be read, which was told then.
    int exec() override;
    /// Asks before changes are lost. While "Find and Fix All" runs it only requests the stop.
    void done(int result) override;

private:
    FieldLog LoadLog();
    QWidget* BuildLists();
    QLayout* BuildHead();
    QLayout* BuildActions();
    QLayout* BuildFoot();
    void BuildRunActions();
    bool StackOnSmallScreen();
    void OfferViews();
    QPushButton* AddButton(const char* name, const QString& caption, const char* icon = nullptr,
                           const QString& toolTip = {});
    void ConnectControls();

    void FindMissing(ReviewGrid::Search search);
    void CalculateSpeed();
    void FindAndFixAll(ReviewGrid::Search search);
    void OfferToGoOn();
    void GoOnFromThere();
    void ShowGaps();
    void ShowGap(const LogGap& gap);
    void ShowRow(int row);
    void FillGaps(const std::vector<LogGap>& gaps, GapFill fill);
    bool GoesOnAfterEvents();
    void SetRepairing(bool isRepairing);
    void DeleteRows();
    void NextProblem();
    void ShowRows(std::shared_ptr<const ReviewedRows> rows);
    void ShowActiveRow();
    void StartRun();
    void EndRun();
    void SplitRun();
    void Undo();
    void Redo();
    void Change(const std::function<void(ReviewGrid&)>& change, const QString& status);

    void MakeRuns();
    bool MayDiscard(bool hasChanges);

    void ShowState(const QString& status);
    QString RepairColumn() const;

    AppContext& context_;
    const LogFormat& format_;
    const ReviewScreen& screen_;
    const std::string logPath_;  ///< empty when no log was chosen
    bool isLoaded_ = false;
    bool isRepairing_ = false;
    bool stopRequested_ = false;
    bool isGoingOnFixing_ = false;  ///< what "Go On From There" does: fix all, or find the next
    QString studyName_;
    QString studyDate_;
    QString remarks_;  ///< what was found while the log was read, a line each, begun by its end
    std::vector<LogGap> gapsAsLoaded_;
    std::shared_ptr<const ReviewedRows> rows_;  ///< as the views show them
    ReviewModel model_;
    ReviewExport export_;
    ReviewTable* vaData_ = nullptr;
    QLabel* lblStatus_ = nullptr;
    QProgressBar* prgRepair_ = nullptr;
    GapList* gaps_ = nullptr;
    ReviewViews* views_ = nullptr;
    QMenu* mnuRunHere_ = nullptr;
    QPushButton* btnRunHere_ = nullptr;
    QPushButton* btnViews_ = nullptr;
    QPushButton* btnStop_ = nullptr;
    QPushButton* btnGoOn_ = nullptr;
    QPushButton* btnFindMissingData_ = nullptr;
    QPushButton* btnCalcSpeed_ = nullptr;
    QPushButton* btnFindAndFixAll_ = nullptr;
    QPushButton* btnNextProblem_ = nullptr;
    QPushButton* btnDeleteRow_ = nullptr;
    QPushButton* btnUndo_ = nullptr;
    QPushButton* btnRedo_ = nullptr;
    QPushButton* btnExport2Excel_ = nullptr;
    QPushButton* btnExportAs_ = nullptr;
    QPushButton* cmdHelp_ = nullptr;
    QPushButton* BtnOk_ = nullptr;
    QPushButton* BtnCancel_ = nullptr;
};

}  // namespace vantor
