#include "statistics/forms/frmStatisticsOptions.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"

namespace vantor {
namespace {

constexpr double FastestSpeed = 400;  // in either unit
constexpr double LongestDelay = 3600;
/// What is offered where the user has no limits of grades yet: those of the study's own scale.
constexpr std::array<double, 5> UsualLimits = {10, 20, 35, 55, 80};

struct LineField {
    const char* Name;
    const char* Caption;
    std::string StudyLines::*Line;
};
constexpr std::array LineFields = {LineField{"txtWeather", "&Weather", &StudyLines::Weather},
                                   LineField{"txtObserver", "O&bserver", &StudyLines::Observer},
                                   LineField{"txtPreparedBy", "Pre&pared by", &StudyLines::PreparedBy},
                                   LineField{"txtCheckedBy", "Chec&ked by", &StudyLines::CheckedBy}};

QHBoxLayout* Beside(std::initializer_list<QWidget*> parts) {
    auto* line = new QHBoxLayout;
    for (QWidget* part : parts) line->addWidget(part);
    line->addStretch();
    return line;
}

}  // namespace

frmStatisticsOptions::frmStatisticsOptions(AppContext& context, const StudyChoices& choices)
    : units_(UnitsOf(context.State.Settings)), hasLines_(choices.HasLines) {
    setObjectName(QStringLiteral("frmStatisticsOptions"));
    setWindowTitle(QStringLiteral("Statistics Options"));
    auto* column = new QVBoxLayout(this);
    auto* groups = new QGridLayout;
    groups->addWidget(BuildPrecision(), 0, 0);
    groups->addWidget(BuildSpeeds(), 1, 0);
    groups->addWidget(BuildGrades(), 0, 1);
    QGroupBox* lines = BuildLines(choices.Lines);
    lines->setVisible(hasLines_);
    groups->addWidget(lines, 1, 1);
    column->addLayout(groups);
    lblProblem_ = Named<WrappedLabel>(this, "lblProblem");
    column->addWidget(lblProblem_);
    auto* usual = Named<QPushButton>(this, "btnAsUsual", QStringLiteral("As &Usual"));
    usual->setToolTip(QStringLiteral("95 %, 10 % of the mean, 3 MPH, stops from 5 to 10 MPH, nothing of your own"));
    Connect(usual, &QPushButton::clicked, this, context.Messages, [this] { ShowOptions({}); });
    btnOk_ = Named<QPushButton>(this, "btnOK", QStringLiteral("OK"));
    btnOk_->setDefault(true);
    Connect(btnOk_, &QPushButton::clicked, this, context.Messages, [this] { accept(); });
    auto* cancel = Named<QPushButton>(this, "btnCancel", QStringLiteral("Cancel"));
    Connect(cancel, &QPushButton::clicked, this, context.Messages, [this] { reject(); });
    auto* foot = new QHBoxLayout;
    foot->addWidget(HelpButton(*this, context, HelpTopic::Statistics));
    foot->addWidget(usual);
    foot->addStretch();
    foot->addWidget(btnOk_);
    foot->addWidget(cancel);
    column->addLayout(foot);
    ShowOptions(choices.Options);
    RememberLayout(*this, context.Memory);
}

QDoubleSpinBox* frmStatisticsOptions::NumberBox(QWidget* parent, const char* name, int decimals, double least,
                                                double most) {
    auto* box = Named<QDoubleSpinBox>(parent, name);
    box->setDecimals(decimals);
    box->setRange(least, most);
    connect(box, &QDoubleSpinBox::valueChanged, this, [this] { ShowProblem(); });
    return box;
}

QGroupBox* frmStatisticsOptions::BuildPrecision() {
    auto* frame = Named<QGroupBox>(this, "fraPrecision", QStringLiteral("How sure the figures are to be"));
    numConfidence_ = NumberBox(frame, "numConfidence", 1, 50, 99.9);
    numError_ = NumberBox(frame, "numError", 1, 0, LongestDelay);
    cmbError_ = Named<QComboBox>(frame, "cmbError");
    cmbError_->addItems({QStringLiteral("% of the mean"), QStringLiteral("s")});
    cmbError_->setAccessibleName(QStringLiteral("Unit of the permitted error"));
    speedError_.Box = NumberBox(frame, "numSpeedError", 1, 0, FastestSpeed);
    auto* form = new QFormLayout(frame);
    form->addRow(LabelFor(numConfidence_, QStringLiteral("&Confidence")),
                 Beside({numConfidence_, new QLabel(QStringLiteral("%"), frame)}));
    form->addRow(LabelFor(numError_, QStringLiteral("Permitted &error of a mean")), Beside({numError_, cmbError_}));
    form->addRow(LabelFor(speedError_.Box, QStringLiteral("Permitted error of a &speed")),
                 Beside({speedError_.Box, new QLabel(QLatin1String(units_.SpeedLabel()), frame)}));
    return frame;
}

QGroupBox* frmStatisticsOptions::BuildSpeeds() {
    auto* frame = Named<QGroupBox>(this, "fraSpeeds", QStringLiteral("Speeds"));
    stop_.Box = NumberBox(frame, "numStop", 1, 0, FastestSpeed);
    go_.Box = NumberBox(frame, "numGo", 1, 0, FastestSpeed);
    freeFlow_.Box = NumberBox(frame, "numFreeFlow", 1, 0, FastestSpeed);
    freeFlow_.Box->setSpecialValueText(QStringLiteral("not known"));
    const auto unit = [&] { return new QLabel(QLatin1String(units_.SpeedLabel()), frame); };
    auto* form = new QFormLayout(frame);
    form->addRow(LabelFor(stop_.Box, QStringLiteral("A vehicle s&tands below")), Beside({stop_.Box, unit()}));
    form->addRow(LabelFor(go_.Box, QStringLiteral("It &moves again from")), Beside({go_.Box, unit()}));
    form->addRow(LabelFor(freeFlow_.Box, QStringLiteral("&Free-flow speed")), Beside({freeFlow_.Box, unit()}));
    return frame;
}

QGroupBox* frmStatisticsOptions::BuildGrades() {
    auto* frame = Named<QGroupBox>(this, "fraGrades", QStringLiteral("Grades"));
    chkOwnGrades_ = Named<QCheckBox>(frame, "chkOwnGrades",
                                     QStringLiteral("&Grades of your own, too, for delays in seconds up to"));
    auto* column = new QVBoxLayout(frame);
    column->addWidget(chkOwnGrades_);
    auto* line = new QHBoxLayout;
    for (std::size_t i = 0; i < numGrade_.size(); ++i) {
        numGrade_[i] = NumberBox(frame, "", 1, 0, LongestDelay);
        numGrade_[i]->setObjectName(QStringLiteral("numGrade(%1)").arg(i + 1));
        line->addWidget(LabelFor(numGrade_[i], QChar(static_cast<char16_t>(u'A' + i))));
        line->addWidget(numGrade_[i]);
    }
    line->addStretch();
    column->addLayout(line);
    connect(chkOwnGrades_, &QCheckBox::toggled, this, [this](bool isOn) {
        for (QDoubleSpinBox* box : numGrade_) box->setEnabled(isOn);
        ShowProblem();
    });
    return frame;
}

QGroupBox* frmStatisticsOptions::BuildLines(const StudyLines& lines) {
    auto* frame = Named<QGroupBox>(this, "fraLines", QStringLiteral("Lines of the report"));
    auto* form = new QFormLayout(frame);
    for (std::size_t i = 0; i < LineFields.size(); ++i) {
        txtLine_[i] = Named<QLineEdit>(frame, LineFields[i].Name);
        txtLine_[i]->setText(ToQt(lines.*LineFields[i].Line));
        form->addRow(LabelFor(txtLine_[i], QString::fromLatin1(LineFields[i].Caption)), txtLine_[i]);
    }
    return frame;
}

void frmStatisticsOptions::ShowSpeed(NumberField& field, double mph) const {
    field.Stored = mph;
    field.Box->setValue(units_.SpeedOfMph(mph));
    field.Shown = field.Box->value();
}

double frmStatisticsOptions::SpeedIn(const NumberField& field) const {
    return field.Box->value() == field.Shown ? field.Stored : units_.MphOfSpeed(field.Box->value());
}

void frmStatisticsOptions::ShowOptions(const StatisticsOptions& options) {
    numConfidence_->setValue(options.Confidence);
    numError_->setValue(options.Error.Value);
    cmbError_->setCurrentIndex(options.Error.Of == PermittedError::Kind::Absolute ? 1 : 0);
    ShowSpeed(speedError_, options.SpeedError);
    ShowSpeed(stop_, options.Stops.Stop);
    ShowSpeed(go_, options.Stops.Go);
    ShowSpeed(freeFlow_, options.FreeFlowSpeed.value_or(0));
    const auto limits = options.GradeLimits.value_or(UsualLimits);
    for (std::size_t i = 0; i < limits.size(); ++i) {
        numGrade_[i]->setValue(limits[i]);
        numGrade_[i]->setEnabled(options.GradeLimits.has_value());
    }
    chkOwnGrades_->setChecked(options.GradeLimits.has_value());
    ShowProblem();
}

StatisticsOptions frmStatisticsOptions::ShownOptions() const {
    StatisticsOptions options;
    options.Confidence = numConfidence_->value();
    options.Error = {cmbError_->currentIndex() == 1 ? PermittedError::Kind::Absolute : PermittedError::Kind::Percent,
                     numError_->value()};
    options.SpeedError = SpeedIn(speedError_);
    options.Stops = {SpeedIn(stop_), SpeedIn(go_)};
    if (freeFlow_.Box->value() > 0) options.FreeFlowSpeed = SpeedIn(freeFlow_);
    if (chkOwnGrades_->isChecked()) {
        auto& limits = options.GradeLimits.emplace();
        for (std::size_t i = 0; i < limits.size(); ++i) limits[i] = numGrade_[i]->value();
    }
    return options;
}

StudyChoices frmStatisticsOptions::Choice() const {
    StudyChoices choices{ShownOptions(), {}, hasLines_};
    for (std::size_t i = 0; i < LineFields.size(); ++i)
        choices.Lines.*LineFields[i].Line = FromQt(txtLine_[i]->text().simplified());
    return choices;
}

void frmStatisticsOptions::ShowProblem() {
    if (btnOk_ == nullptr) return;
    const std::string problem = ProblemOf(ShownOptions());
    lblProblem_->setText(ToQt(problem));
    btnOk_->setEnabled(problem.empty());
}

}  // namespace vantor
