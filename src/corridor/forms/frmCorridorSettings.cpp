#include "corridor/forms/frmCorridorSettings.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <string>

#include "core/Text.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "corridor/CorridorPeriods.h"
#include "corridor/CorridorRules.h"

namespace vantor {
namespace {

constexpr int Farthest = 5000;  // in either unit
constexpr int PeriodLines = 5;

}  // namespace

frmCorridorSettings::frmCorridorSettings(AppContext& context, const Corridor& corridor, QWidget* parent)
    : QDialog(parent), corridor_(corridor), units_(UnitsOf(context.State.Settings)) {
    setObjectName(QStringLiteral("frmCorridorSettings"));
    setWindowTitle(QStringLiteral("Corridor Settings"));
    auto* column = new QVBoxLayout(this);
    column->addLayout(BuildFields());
    lblProblem_ = Named<WrappedLabel>(this, "lblProblem");
    column->addWidget(lblProblem_);
    column->addLayout(BuildFoot(context));
    ShowProblem();
    resize(480, 0);
    RememberLayout(*this, context.Memory);
}

QSpinBox* frmCorridorSettings::LengthBox(const char* name, double feet) {
    auto* box = Named<QSpinBox>(this, name);
    box->setRange(1, Farthest);
    box->setSuffix(QLatin1Char(' ') + QLatin1String(units_.LengthLabel()));
    box->setValue(units_.WholeLength(feet));
    connect(box, &QSpinBox::valueChanged, this, [this] { ShowProblem(); });
    return box;
}

QLayout* frmCorridorSettings::BuildFields() {
    auto* form = new QFormLayout;
    static constexpr std::array Captions = {"&Forward is called", "&Back is called"};
    for (const Way way : BothWays) {
        const auto index = static_cast<std::size_t>(way);
        txtWay_[index] = Named<QLineEdit>(this, index == 0 ? "txtForward" : "txtBack");
        txtWay_[index]->setText(ToQt(corridor_.Of(way).Name));
        connect(txtWay_[index], &QLineEdit::textChanged, this, [this] { ShowProblem(); });
        form->addRow(LabelFor(txtWay_[index], QString::fromLatin1(Captions[index])), txtWay_[index]);
    }
    txtPeriods_ = Named<QPlainTextEdit>(this, "txtPeriods");
    txtPeriods_->setTabChangesFocus(true);
    txtPeriods_->setPlaceholderText(QStringLiteral("07:00-09:00 AM peak\n15:30-18:00 PM peak"));
    txtPeriods_->setToolTip(QStringLiteral("A line each: from, to, and its name"));
    txtPeriods_->setFixedHeight(PeriodLines * txtPeriods_->fontMetrics().lineSpacing() + 12);
    std::vector<std::string> lines;
    for (const CorridorPeriod& period : corridor_.Periods) lines.push_back(TextOf(period));
    txtPeriods_->setPlainText(ToQt(Joined(lines, "\n")));
    connect(txtPeriods_, &QPlainTextEdit::textChanged, this, [this] { ShowProblem(); });
    form->addRow(LabelFor(txtPeriods_, QStringLiteral("&Periods of the day")), txtPeriods_);
    spnTolerance_ = LengthBox("spnTolerance", corridor_.Matching.ToleranceFt);
    form->addRow(LabelFor(spnTolerance_, QStringLiteral("Tracks lie beside the &line by at most")), spnTolerance_);
    spnLead_ = LengthBox("spnLead", corridor_.Matching.LeadFt);
    form->addRow(LabelFor(spnLead_, QStringLiteral("Tracks are cut before the first band by")), spnLead_);
    chkOverlap_ = Named<QCheckBox>(this, "chkOverlap", QStringLiteral("Bands may &overlap"));
    chkOverlap_->setToolTip(QStringLiteral("Else bands that would overlap end in the middle of what they share"));
    chkOverlap_->setChecked(corridor_.BandsMayOverlap);
    form->addRow(chkOverlap_);
    return form;
}

QLayout* frmCorridorSettings::BuildFoot(AppContext& context) {
    btnOk_ = Named<QPushButton>(this, "btnOK", QStringLiteral("OK"));
    btnOk_->setDefault(true);
    Connect(btnOk_, &QPushButton::clicked, this, context.Messages, [this] { accept(); });
    auto* cancel = Named<QPushButton>(this, "btnCancel", QStringLiteral("Cancel"));
    Connect(cancel, &QPushButton::clicked, this, context.Messages, [this] { reject(); });
    auto* foot = new QHBoxLayout;
    foot->addWidget(HelpButton(*this, context, HelpTopic::Corridor));
    foot->addStretch();
    foot->addWidget(btnOk_);
    foot->addWidget(cancel);
    return foot;
}

double frmCorridorSettings::FeetIn(const QSpinBox& box, double stored) const {
    return box.value() == units_.WholeLength(stored) ? stored : units_.FeetOfLength(box.value());
}

Corridor frmCorridorSettings::Choice() const {
    Corridor set = corridor_;
    for (const Way way : BothWays)
        set.Of(way).Name = FromQt(txtWay_[static_cast<std::size_t>(way)]->text().simplified());
    set.Periods.clear();
    for (const QString& line : txtPeriods_->toPlainText().split(QLatin1Char('\n')))
        if (const auto period = PeriodOfText(FromQt(line.simplified()))) set.Periods.push_back(*period);
    set.Matching.ToleranceFt = FeetIn(*spnTolerance_, corridor_.Matching.ToleranceFt);
    set.Matching.LeadFt = FeetIn(*spnLead_, corridor_.Matching.LeadFt);
    set.BandsMayOverlap = chkOverlap_->isChecked();
    return set;
}

std::string frmCorridorSettings::Problem() const {
    for (const QString& line : txtPeriods_->toPlainText().split(QLatin1Char('\n')))
        if (!line.simplified().isEmpty() && !PeriodOfText(FromQt(line.simplified())))
            return "\"" + FromQt(line) + "\" is no period. Write it as 07:00-09:00 AM peak.";
    return ProblemOf(Choice());
}

void frmCorridorSettings::ShowProblem() {
    if (btnOk_ == nullptr) return;
    const std::string problem = Problem();
    lblProblem_->setText(ToQt(problem));
    lblProblem_->setVisible(!problem.empty());
    btnOk_->setEnabled(problem.empty());
}

}  // namespace vantor
