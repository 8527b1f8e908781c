#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>

#include "core/AppContext.h"
#include "editing/SensorEdits.h"
#include "editing/SensorView.h"
#include "editing/forms/SensorPlot.h"

namespace vantor {

/// "Sensor Data for ...": shows and repairs the data words of the current run. It works on a copy; saving makes the
/// copy the current run and writes its file.
class frmEditPulseData : public QDialog {
public:
    /// `entryIndex` from 1 is the current run's entry in the study, 0 stands for none; any other is error 9.
    frmEditPulseData(AppContext& context, int entryIndex);

    /// Every way out: asks to save what was changed.
    void done(int result) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLayout* LayOutHead();
    QLayout* LayOutLegend();
    QLayout* LayOutPlot();
    QLayout* LayOutRepairs();
    QLayout* LayOutFoot();
    void ConnectControls();
    void AddShortcuts();

    void DeSpike();
    void Smooth();
    void EditPoint();
    void Undo();
    void Redo();
    void Save();
    bool MayLeave();
    /// Says while it is typed what becomes of a text that is not taken as it stands.
    void ShowTyped(QLineEdit* box);
    void Choose(std::int32_t point);
    void Zoom(int steps, double anchor);

    /// Makes the changes, as one step, and says what was done.
    void Change(WordChanges changes, const QString& done, const QString& nothingDone);
    /// Shows the words as they are now, and what was done.
    void ShowWords(const QString& status);
    void ShowPoint();
    void ShowScrollBar();
    /// A word's speed in the shown unit; empty where the speed is no 16-bit number.
    QString ShownSpeed(std::int16_t word) const;
    QString PointInWords(std::int32_t point) const;
    bool HasPoints() const { return view_.PointCount() > 0; }

    AppContext& context_;
    const int entryIndex_;
    RunRecord run_;  ///< the working copy
    const QString name_;
    const QString speedUnit_;
    const SensorData data_;
    SensorEdits edits_;
    SensorView view_;

    SensorPlot* plot_;
    QScrollBar* VScroll1_;
    QLabel* lblReadOut_;
    QLabel* lblStatus_;
    QPushButton* btnDeSpike_;
    QPushButton* btnSmoothData_;
    QLineEdit* txtSmoothingFactor_;
    QLineEdit* txtEditDataPoint_;
    QPushButton* btnUndo_;
    QPushButton* btnRedo_;
    QPushButton* btnSave_;
    QPushButton* BtnEditSensorDataExit_;
};

}  // namespace vantor
