#pragma once

#include <QComboBox>
#include <QDialog>
#include <QFrame>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <optional>

#include "core/AppContext.h"
#include "counter/CounterDownload.h"

namespace vantor {

/// Downloads a counter over a serial port. A whole dump closes the window; any other way out takes the unfinished file
/// away, which can be brought back for a week.
class frmReadTDC : public QDialog {
public:
    explicit frmReadTDC(AppContext& context);
    ~frmReadTDC() override;

    /// The file of the dump that was received or brought back, when it was accepted.
    const CounterFileChoice& Choice() const { return choice_; }

    void done(int result) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    /// Esc asks before it stops a dump.
    void keyPressEvent(QKeyEvent* event) override;

private:
    QFrame* BuildBaudRate();
    QFrame* BuildCommPort();
    QLayout* BuildButtons();
    QProgressBar* BuildProgress();
    QLayout* BuildKeptDump();
    void ConnectControls();

    /// Does a step of the download and shows the stage that it leads to, also where it fails.
    template <class Step>
    void Run(Step step);
    void BeginOrCancel();
    void ViewData();
    void TakeTick();
    bool MayStop();
    void LookForPorts(int shown);
    void BringDumpBack();
    void ShowPort();
    void ShowReceived();
    void ShowKeptDump();
    void ShowPrompt();
    void ShowStage();
    void ShowActivity(bool isReceiving);

    AppContext& context_;
    CounterDownload download_;
    CounterFileChoice choice_;
    std::optional<DownloadStage> shown_;
    bool isAsking_ = false;

    QFrame* fraBaudRate_ = nullptr;
    QFrame* fraCommPort_ = nullptr;
    QComboBox* cmbBaudRate_ = nullptr;
    QComboBox* cmbCommPort_ = nullptr;
    QLabel* lblPort_ = nullptr;
    QPushButton* cmdLookAgain_ = nullptr;
    QPushButton* cmdBegin_ = nullptr;
    QPushButton* cmdQuit_ = nullptr;
    QPushButton* cmdViewData_ = nullptr;
    QLabel* lblInstructions_ = nullptr;
    QProgressBar* prgProgress_ = nullptr;
    QLabel* lblReceived_ = nullptr;
    QTimer* tmrUpdate_ = nullptr;
    QPushButton* cmdBringBack_ = nullptr;
    QLabel* lblKept_ = nullptr;
};

}  // namespace vantor
