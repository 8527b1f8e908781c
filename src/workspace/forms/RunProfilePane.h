#pragma once

#include <QLabel>
#include <QTimer>
#include <QWidget>
#include <memory>

#include "core/AppContext.h"
#include "core/RunFile.h"
#include "plots/forms/ProfileView.h"

namespace vantor {

/// The speed profile of one run of the study, to be looked at beside the run list. The run is read beside the window,
/// and only when the user stays on it for a moment.
class RunProfilePane : public QWidget {
public:
    RunProfilePane(AppContext& context, QWidget* parent);

    /// Run `run` of the study (from 1) as it is now; 0 for none.
    void ShowRun(int run);

private:
    void BeginToRead();
    void ShowWhenRead();
    void ShowReading(RunReading reading);

    AppContext& context_;
    std::unique_ptr<LongWork> work_;
    std::shared_ptr<RunReading> reading_;
    StudyRunEntry entry_;
    QTimer soon_;
    QTimer whenRead_;
    QLabel* lblRunProfile_ = nullptr;
    ProfileView* view_ = nullptr;
};

}  // namespace vantor
