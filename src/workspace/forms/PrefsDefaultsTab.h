#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <functional>

#include "core/AppSettings.h"
#include "core/ports/SerialPort.h"

namespace vantor {

/// The default values of the preferences: start-up screen, version 1 runs, units, stop delay and serial port.
class PrefsDefaultsTab : public QWidget {
public:
    /// Tries every port once.
    PrefsDefaultsTab(QWidget* parent, const AppSettings& settings, SerialPort& ports);

    /// Error 13 for a field that holds no number, 6 for one too large; the field has the focus then and `settings` are
    /// incomplete.
    void Take(AppSettings& settings) const;
    bool IsMetric() const { return !optEnglish_->isChecked(); }

    /// Called when other units are chosen.
    std::function<void()> OnUnitsChanged;

    /// Not in the settings record: the user's own choice.
    QCheckBox* SignedCoordinates() const { return chkSignedCoordinates_; }

private:
    QGroupBox* BuildStartUp(const AppSettings& settings);
    QGroupBox* BuildVer1(const AppSettings& settings);
    QGroupBox* BuildUnits(const AppSettings& settings);
    QGroupBox* BuildStudyParameters(const AppSettings& settings);
    QGroupBox* BuildSerialPort(const AppSettings& settings, SerialPort& ports);
    void ShowThreshold();
    QGroupBox* BuildLoggers();

    QRadioButton* optUseStartUp_ = nullptr;
    QRadioButton* optConvertVer1_ = nullptr;
    QRadioButton* optEnglish_ = nullptr;
    QRadioButton* optStopDelay_ = nullptr;
    QLineEdit* txtStopSpeed_ = nullptr;
    QLabel* lblStopSpeedUnit_ = nullptr;
    QCheckBox* chkSignedCoordinates_ = nullptr;
    QComboBox* cmbCommPort_ = nullptr;
    QComboBox* cmbBaudRate_ = nullptr;
};

}  // namespace vantor
