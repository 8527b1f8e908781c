#pragma once

#include <QDialog>
#include <functional>
#include <optional>

#include "core/AppContext.h"
#include "editing/forms/SpeedProfileControls.h"
#include "plots/SpeedProfile.h"

namespace vantor {

/// "Speed Profile": draws the current run, lets the user set its two control delay boundaries and an ideal speed, and
/// computes its figures. The study is changed by whoever opened the screen.
class frmPlotRunSpeedProfileHoriz : public QDialog {
public:
    using EntrySink = std::function<void(const StudyRunEntry&)>;

    /// `entryIndex` from 1 is the current run's entry in the study; any other index is error 9. `onChanged` gets the
    /// entry after each change, so that what is done outlasts the program's sudden end.
    frmPlotRunSpeedProfileHoriz(AppContext& context, int entryIndex, EntrySink onChanged = {});

    /// The run's entry of the study with what was done to it; nothing where the run was only looked at and left.
    std::optional<StudyRunEntry> ChangedEntry() const;

    /// Every way out: asks when the boundaries have not been dragged, takes over the run's name.
    void done(int result) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void ConnectControls();
    void ConnectPlot();

    void Toggle();
    void CutToBoundaries();
    void ChooseScale(int item, double anchor);
    void Zoom(int steps, double anchor);
    void Scroll(double axisValues);
    /// What stands in the ideal speed box, miles per hour, 0 for none; nothing when it cannot be one.
    std::optional<std::int32_t> TypedIdealSpeed() const;
    void TakeIdealSpeed();
    /// Takes over what was typed without Enter, or puts the old value back.
    void LeaveIdealSpeed();
    bool ComputesOnInput() const { return profile_.Drag().IsReady() || profile_.HasBothBoundaries(); }
    bool MayClose();
    bool IsOnlyLookedAt() const;
    void TellChange();

    /// Shows the profile along its axis as it is now and, where both boundaries are set, computes the run.
    void Draw();
    void ShowAxis();
    void ShowScrollBar();
    void ShowFigures();
    /// Tells of boundaries with which the figures mean nothing, and of the error of a computation.
    void ShowWarning();
    void ShowIdealSpeed();
    void ShowReadiness();
    void ShowReadOut(std::optional<double> x);

    /// Computes the run; errors pass through after the figures are shown.
    void Compute();
    /// Computes the run; an error is shown as a warning only, so that no message box opens under the mouse.
    void ComputeQuietly();

    AppContext& context_;
    RunRecord& run_;
    StudyRunEntry entry_;
    const StudyRunEntry entryOpened_;
    /// As it was when the screen was opened, or when the run was trimmed last: an older one does not fit the run.
    StudyRunEntry entryBefore_;
    StudyRunEntry entryTold_;  ///< the last one that onChanged_ got
    const EntrySink onChanged_;
    SpeedProfile profile_;
    SpeedProfileControls controls_;
    bool isComputed_ = false;
    QString problem_;  ///< the error of the last computation
};

}  // namespace vantor
