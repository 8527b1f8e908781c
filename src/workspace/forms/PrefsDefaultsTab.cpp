#include "workspace/forms/PrefsDefaultsTab.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QVBoxLayout>
#include <array>
#include <limits>

#include "core/Numeric.h"
#include "core/RunTimeError.h"
#include "core/Units.h"
#include "core/forms/Named.h"
#include "core/forms/PortList.h"
#include "core/forms/Theme.h"
#include "workspace/Preferences.h"

namespace vantor {
namespace {

std::int16_t FlagOf(bool set) { return set ? -1 : 0; }

/// Adds the options name(0) and name(1), of which one is chosen, and returns the first.
QRadioButton* AddPair(QGroupBox* frame, const QString& name, const QString& first, const QString& second,
                      bool isFirst) {
    std::array<QRadioButton*, 2> pair{};
    auto* row = new QHBoxLayout;
    for (std::size_t i = 0; i < pair.size(); ++i) {
        pair[i] = Named<QRadioButton>(frame, "", i == 0 ? first : second);
        pair[i]->setObjectName(QStringLiteral("%1(%2)").arg(name).arg(i));
        row->addWidget(pair[i]);
    }
    row->addStretch();
    static_cast<QBoxLayout*>(frame->layout())->addLayout(row);
    pair[isFirst ? 0 : 1]->setChecked(true);
    return pair[0];
}

QGroupBox* Frame(QWidget* parent, const char* name, const QString& caption) {
    auto* frame = Named<QGroupBox>(parent, name, caption);
    new QVBoxLayout(frame);
    return frame;
}

/// A list of numbers that also takes one that is typed.
QComboBox* NumberList(QWidget* parent, const char* name, int largest) {
    auto* list = Named<QComboBox>(parent, name);
    list->setEditable(true);
    list->setInsertPolicy(QComboBox::NoInsert);
    list->setCompleter(nullptr);
    list->setValidator(new QIntValidator(1, largest, list));
    return list;
}

/// Reads a field by `read`. An error names the field, which gets the focus.
template <class Read>
auto NumberIn(QWidget& field, const QString& text, Read read) {
    try {
        return read(FromQt(text));
    } catch (const RunTimeError& error) {
        field.setFocus();
        throw RunTimeError(error.Number(),
                           FromQt(field.accessibleName()) + ": " + FromQt(text) + "\nCorrect it and try again.");
    }
}

}  // namespace

PrefsDefaultsTab::PrefsDefaultsTab(QWidget* parent, const AppSettings& settings, SerialPort& ports) : QWidget(parent) {
    setObjectName(QStringLiteral("fraDefaultValues"));
    auto* left = new QVBoxLayout;
    for (QGroupBox* frame : {BuildStartUp(settings), BuildVer1(settings), BuildUnits(settings), BuildLoggers()})
        left->addWidget(frame);
    auto* right = new QVBoxLayout;
    for (QGroupBox* frame : {BuildStudyParameters(settings), BuildSerialPort(settings, ports)}) right->addWidget(frame);
    auto* columns = new QHBoxLayout(this);
    for (QVBoxLayout* column : {left, right}) {
        column->addStretch();
        columns->addLayout(column, 1);
    }
}

QGroupBox* PrefsDefaultsTab::BuildStartUp(const AppSettings& settings) {
    QGroupBox* frame = Frame(this, "fraStartUp", QStringLiteral("Use StartUp Options Screen?"));
    optUseStartUp_ = AddPair(frame, QStringLiteral("OptUseStartUpWizard"), QStringLiteral("&Yes"),
                             QStringLiteral("&No"), settings.UseStartUpScreen != 0);
    return frame;
}

QGroupBox* PrefsDefaultsTab::BuildVer1(const AppSettings& settings) {
    QGroupBox* frame = Frame(this, "fraVer1", QStringLiteral("Version 1.x Run File Options"));
    optConvertVer1_ = AddPair(frame, QStringLiteral("optVer1"), QStringLiteral("&Convert automatically"),
                              QStringLiteral("Prompt &before converting"), settings.AutoConvertVer1 != 0);
    return frame;
}

QGroupBox* PrefsDefaultsTab::BuildUnits(const AppSettings& settings) {
    QGroupBox* frame = Frame(this, "fraUnits", QStringLiteral("Units"));
    optEnglish_ = AddPair(frame, QStringLiteral("optUnits"), QStringLiteral("&English"), QStringLiteral("&Metric"),
                          settings.MetricUnits == 0);
    return frame;
}

QGroupBox* PrefsDefaultsTab::BuildStudyParameters(const AppSettings& settings) {
    QGroupBox* frame = Frame(this, "fraStudyParameters", QStringLiteral("Study Parameters"));
    auto* question = Named<QLabel>(frame, "lblEnableStopDelay", QStringLiteral("Enable Stop Delay Statistics?"));
    frame->layout()->addWidget(question);
    optStopDelay_ = AddPair(frame, QStringLiteral("optEnableStopDelay"), QStringLiteral("Ye&s"), QStringLiteral("N&o"),
                            settings.EnableStopDelay != 0);
    for (auto* option : frame->findChildren<QRadioButton*>())
        option->setAccessibleDescription(question->accessibleName());

    txtStopSpeed_ = Named<QLineEdit>(frame, "txtStopSpeed");
    txtStopSpeed_->setText(QString::number(settings.StopSpeedThreshold));
    txtStopSpeed_->setAlignment(Qt::AlignRight);
    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(txtStopSpeed_, QStringLiteral("Stop Speed &Threshold")));
    row->addWidget(txtStopSpeed_);
    row->addWidget(lblStopSpeedUnit_ = Named<QLabel>(frame, "lblStopSpeedUnit"));
    static_cast<QBoxLayout*>(frame->layout())->addLayout(row);
    connect(txtStopSpeed_, &QLineEdit::textChanged, this, [this] { ShowThreshold(); });
    connect(optEnglish_, &QRadioButton::toggled, this, [this] {
        ShowThreshold();
        if (OnUnitsChanged) OnUnitsChanged();
    });
    ShowThreshold();
    return frame;
}

/// The threshold is kept and compared in miles per hour, whatever the units on display.
void PrefsDefaultsTab::ShowThreshold() {
    QString unit = QStringLiteral("MPH");
    try {
        unit = ToQt(Units{IsMetric()}.MphBoxLabel(WholePartOf(FromQt(txtStopSpeed_->text()))));
    } catch (const RunTimeError&) {
        // What is no number is told on OK.
    }
    lblStopSpeedUnit_->setText(unit);
    txtStopSpeed_->setAccessibleDescription(unit);
}

QGroupBox* PrefsDefaultsTab::BuildSerialPort(const AppSettings& settings, SerialPort& ports) {
    QGroupBox* frame = Frame(this, "fraSerialPort", QStringLiteral("Serial Port Options"));
    cmbCommPort_ = NumberList(frame, "cmbCommPort", SerialPort::LastNumber);
    cmbBaudRate_ = NumberList(frame, "cmbBaudRate", std::numeric_limits<std::int32_t>::max());
    auto* form = new QFormLayout;
    form->addRow(LabelFor(cmbCommPort_, QStringLiteral("Comm &Port")), cmbCommPort_);
    form->addRow(
        Named<QLabel>(frame, "lblCommText", QStringLiteral("Choose a port # (only available ports listed)...")));
    form->addRow(LabelFor(cmbBaudRate_, QStringLiteral("Ba&ud Rate")), cmbBaudRate_);
    form->addRow(Named<QLabel>(frame, "lblBaudText", QStringLiteral("Choose a connection speed (in bps)...")));
    static_cast<QBoxLayout*>(frame->layout())->addLayout(form);

    FillPorts(*cmbCommPort_, ports);
    connect(cmbCommPort_, &QComboBox::editTextChanged, this, [this, &ports] { TellPort(*cmbCommPort_, ports); });
    ShowNumber(*cmbCommPort_, settings.CommPort);
    TellPort(*cmbCommPort_, ports);
    FillBaudRates(*cmbBaudRate_);
    ShowNumber(*cmbBaudRate_, settings.BaudRate);
    return frame;
}

QGroupBox* PrefsDefaultsTab::BuildLoggers() {
    QGroupBox* frame = Frame(this, "fraLoggers", QStringLiteral("GPS Loggers"));
    chkSignedCoordinates_ =
        Named<QCheckBox>(frame, "chkSignedCoordinates", QStringLiteral("Loggers write si&gned coordinates"));
    chkSignedCoordinates_->setToolTip(
        QStringLiteral("Positions of logs stay as they are read. Otherwise longitudes are taken for western ones."));
    frame->layout()->addWidget(chkSignedCoordinates_);
    return frame;
}

void PrefsDefaultsTab::Take(AppSettings& settings) const {
    settings.UseStartUpScreen = FlagOf(optUseStartUp_->isChecked());
    settings.AutoConvertVer1 = FlagOf(optConvertVer1_->isChecked());
    settings.MetricUnits = FlagOf(!optEnglish_->isChecked());
    settings.EnableStopDelay = FlagOf(optStopDelay_->isChecked());
    settings.StopSpeedThreshold = NumberIn(*txtStopSpeed_, txtStopSpeed_->text(), WholePartOf);
    settings.CommPort = NumberIn(*cmbCommPort_, cmbCommPort_->currentText(), WholePartOf);
    settings.BaudRate = NumberIn(*cmbBaudRate_, cmbBaudRate_->currentText(), IntegerOfText);
}

}  // namespace vantor
