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

/// Downloads a counter over a serial port. A whole dump closes the window; any other way out deletes the unfinished
/// file.
class frmReadTDC : public QDialog {
public:
    explicit frmReadTDC(AppContext& context);
    ~frmReadTDC() override;

    /// The file of the dump, when it was accepted.
    const CounterFileChoice& Choice() const { return choice_; }

    void done(int result) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QFrame* BuildBaudRate();
    QFrame* BuildCommPort();
    QLayout* BuildButtons();
    QProgressBar* BuildProgress();
    void ConnectControls();

    /// Does a step of the download and shows the stage that it leads to, also where it fails.
    template <class Step>
    void Run(Step step);
    void BeginOrCancel();
    void ViewData();
    void TakeTick();
    void ShowPrompt();
    void ShowStage();
    void ShowActivity(bool isReceiving);

    AppContext& context_;
    CounterDownload download_;
    CounterFileChoice choice_;
    std::optional<DownloadStage> shown_;

    QFrame* fraBaudRate_ = nullptr;
    QFrame* fraCommPort_ = nullptr;
    QComboBox* cmbBaudRate_ = nullptr;
    QComboBox* cmbCommPort_ = nullptr;
    QPushButton* cmdBegin_ = nullptr;
    QPushButton* cmdQuit_ = nullptr;
    QPushButton* cmdViewData_ = nullptr;
    QLabel* lblInstructions_ = nullptr;
    QProgressBar* prgProgress_ = nullptr;
    QTimer* tmrUpdate_ = nullptr;
};

}  // namespace vantor
