#include "workspace/forms/ResultsPanel.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/Numeric.h"
#include "core/Text.h"
#include "core/Units.h"
#include "core/forms/Accessible.h"
#include "core/forms/FigureLabel.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

constexpr int FigurePadding = 4;
constexpr int FigureSpacing = 16;

void MakeLarge(QWidget& figure) {
    QFont font = figure.font();
    font.setPointSizeF(font.pointSizeF() * 2);
    font.setBold(true);
    figure.setFont(font);
    // Labels and boxes of one height have one baseline.
    figure.setFixedHeight(figure.fontMetrics().height() + 2 * FigurePadding);
}

void ShowFigure(QLabel& label, const std::optional<std::string>& figure) {
    label.setText(ToQt(figure.value_or("")));
    label.setAccessibleDescription(figure ? QString() : QStringLiteral("not computed yet"));
}

}  // namespace

ResultsPanel::ResultsPanel(QWidget* parent) : QWidget(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    auto* line = new QHBoxLayout;
    line->addWidget(BuildStudyResults(), 1);
    line->addWidget(BuildStopDelay());
    column->addLayout(line);
    ShowResults({}, {});
    ShowConditions({}, {});
    ShowCertainty({});
}

/// The figure under its caption, with its unit behind it on the same baseline.
QBoxLayout* ResultsPanel::Captioned(QWidget* figure, const char* caption, const char* unit, const char* unitName) {
    MakeLarge(*figure);
    if (qobject_cast<QLabel*>(figure) == nullptr) figure->setAccessibleName(QString::fromLatin1(caption));
    auto* line = new QHBoxLayout;
    line->setSpacing(4);
    line->addWidget(figure);
    if (*unit != '\0') {
        auto* unitLabel = new QLabel(QString::fromLatin1(unit), figure->parentWidget());
        unitLabel->setObjectName(QLatin1String(unitName));
        const int toBaseline = figure->fontMetrics().descent() - unitLabel->fontMetrics().descent();
        unitLabel->setContentsMargins(0, 0, 0, FigurePadding + toBaseline);
        line->addWidget(unitLabel, 0, Qt::AlignBottom);
    }
    line->addStretch();
    auto* block = new QVBoxLayout;
    block->setSpacing(4);
    block->addWidget(new QLabel(QString::fromLatin1(caption), figure->parentWidget()));
    block->addLayout(line);
    block->addStretch();
    captioned_.push_back(block);
    return block;
}

void ResultsPanel::SetLow(bool isLow) {
    isLow_ = isLow;
    PlaceParts();
}

void ResultsPanel::PlaceParts() {
    // With the stop delays there is no room for the captions beside the figures, nor for what is said of them.
    const bool hasRoom = frStopDelayStats_->isHidden();
    const bool areBeside = isLow_ && hasRoom;
    auto* column = static_cast<QBoxLayout*>(layout());
    column->setSpacing(isLow_ ? 2 : -1);
    if (hasRoom)
        inResults_->addWidget(certainty_, 1, Qt::AlignVCenter);
    else
        column->addWidget(certainty_);
    static_cast<QBoxLayout*>(certainty_->layout())
        ->setDirection(hasRoom ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    for (const QGroupBox* group : findChildren<QGroupBox*>()) {
        QMargins margins = group->layout()->contentsMargins();
        constexpr int Usual = 12;
        constexpr int Low = 2;
        margins.setTop(isLow_ ? Low : Usual);
        margins.setBottom(margins.top());
        group->layout()->setContentsMargins(margins);
    }
    for (QBoxLayout* block : captioned_)
        block->setDirection(areBeside ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

QGroupBox* ResultsPanel::BuildStudyResults() {
    auto* group = Named<QGroupBox>(this, "FrStudyResults", QStringLiteral("Study Results"));
    lblAvgContDelay_ = Figure(group, "lblAvgContDelay", QStringLiteral("Avg. Control Delay (sec)"));
    lblLOSGrade_ = Figure(group, "lblLOSGrade", QStringLiteral("LOS Grade"));
    auto* line = new QHBoxLayout(group);
    line->setSpacing(FigureSpacing);
    line->addLayout(Captioned(lblAvgContDelay_, "Avg. Control Delay (sec)"));
    line->addLayout(Captioned(lblLOSGrade_, "LOS Grade"));
    line->addWidget(certainty_ = BuildCertainty(this), 1);
    inResults_ = line;
    return group;
}

QWidget* ResultsPanel::BuildCertainty(QWidget* parent) {
    auto* certainty = new QWidget(parent);
    auto* column = new QVBoxLayout(certainty);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    const auto add = [&](const char* name, const char* caption) {
        auto* label = Named<WrappedLabel>(certainty, name);
        SetValueCaption(*label, QString::fromLatin1(caption));
        column->addWidget(label, 1);
        return label;
    };
    lblDelayInterval_ = add("lblDelayInterval", "How sure the average is");
    lblRunsNeeded_ = add("lblRunsNeeded", "Runs needed");
    lblWithoutSetAside_ = add("lblWithoutSetAside", "Without the runs that are set aside");
    lblWithoutWarned_ = add("lblWithoutWarned", "Warnings");
    return certainty;
}

QGroupBox* ResultsPanel::BuildStopDelay() {
    frStopDelayStats_ = Named<QGroupBox>(this, "frStopDelayStats", QStringLiteral("Stop Delay Statistics"));
    txtStopSpdThreshold_ = Named<QLineEdit>(frStopDelayStats_, "txtStopSpdThreshold");
    txtStopSpdThreshold_->setReadOnly(true);
    txtStopSpdThreshold_->setFrame(false);
    txtStopSpdThreshold_->setTextMargins(-2, 0, 0, 0);
    QPalette clear = txtStopSpdThreshold_->palette();
    clear.setColor(QPalette::Base, Qt::transparent);
    txtStopSpdThreshold_->setPalette(clear);
    lblAvgStopDelay_ = Figure(frStopDelayStats_, "lblAvgStopDelay", QStringLiteral("Avg. Stop Delay"));
    lblControl2StopRatio_ =
        Figure(frStopDelayStats_, "lblControl2StopRatio", QStringLiteral("Ratio of Control to Stop Delay"));
    auto* column = new QVBoxLayout(frStopDelayStats_);
    auto* line = new QHBoxLayout;
    column->addLayout(line);
    column->addWidget(BuildOtherThresholds());
    line->setSpacing(FigureSpacing);
    line->addLayout(Captioned(txtStopSpdThreshold_, "Stop Speed Threshold", "MPH", "lblStopSpdUnit"));
    lblStopSpdUnit_ = frStopDelayStats_->findChild<QLabel*>(QStringLiteral("lblStopSpdUnit"));
    line->addLayout(Captioned(lblAvgStopDelay_, "Avg. Stop Delay", "s", "lblAvgStopDelayUnit"));
    lblAvgStopDelayUnit_ = frStopDelayStats_->findChild<QLabel*>(QStringLiteral("lblAvgStopDelayUnit"));
    line->addLayout(Captioned(lblControl2StopRatio_, "Ratio of Control to Stop Delay"));
    return frStopDelayStats_;
}

QWidget* ResultsPanel::BuildOtherThresholds() {
    otherThresholds_ = new QWidget(frStopDelayStats_);
    lblOtherThresholds_ = Named<QLabel>(otherThresholds_, "lblOtherThresholds");
    SetValueCaption(*lblOtherThresholds_, QStringLiteral("Thresholds of the stop delays"));
    lblOtherThresholds_->setTextFormat(Qt::PlainText);
    auto* button = Named<QPushButton>(otherThresholds_, "btnComputeAnew", QStringLiteral("Compute anew"));
    button->setToolTip(QStringLiteral("Count the stop delays anew at this threshold; all other figures stay"));
    connect(button, &QPushButton::clicked, this, [this] { OnComputeAnew(); });
    auto* line = new QHBoxLayout(otherThresholds_);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(lblOtherThresholds_, 1);
    line->addWidget(button);
    return otherThresholds_;
}

void ResultsPanel::ShowConditions(const std::string& withoutWarned, const std::string& otherThresholds) {
    lblWithoutWarned_->setText(ToQt(withoutWarned));
    lblWithoutWarned_->setVisible(!withoutWarned.empty());
    lblOtherThresholds_->setText(ToQt(otherThresholds));
    otherThresholds_->setVisible(!otherThresholds.empty());
}

void ResultsPanel::ShowCertainty(const StudyCertainty& certainty) {
    const auto show = [](QLabel& label, const std::string& text) {
        label.setText(ToQt(text));
        label.setVisible(!text.empty());
    };
    show(*lblDelayInterval_, certainty.Interval);
    show(*lblRunsNeeded_, certainty.RunsNeeded);
    show(*lblWithoutSetAside_, certainty.WithoutSetAside);
}

void ResultsPanel::ShowResults(const ResultLabels& labels, const AppSettings& settings) {
    ShowFigure(*lblAvgContDelay_, labels.AvgControlDelay);
    ShowFigure(*lblLOSGrade_, labels.LOSGrade);
    ShowFigure(*lblAvgStopDelay_, labels.AvgStopDelay);
    lblAvgStopDelayUnit_->setVisible(labels.AvgStopDelay.has_value());
    ShowFigure(*lblControl2StopRatio_, labels.Ratio);
    const QString threshold = ToQt(Trim(Str(settings.StopSpeedThreshold)));
    txtStopSpdThreshold_->setText(threshold);
    txtStopSpdThreshold_->setFixedWidth(txtStopSpdThreshold_->fontMetrics().horizontalAdvance(threshold) + 8);
    // The threshold is kept and compared in miles per hour, whatever the units on display.
    const QString unit = ToQt(UnitsOf(settings).MphBoxLabel(settings.StopSpeedThreshold));
    lblStopSpdUnit_->setText(unit);
    txtStopSpdThreshold_->setAccessibleDescription(unit);
    frStopDelayStats_->setVisible(settings.EnableStopDelay != 0);
    PlaceParts();
    ShowGrade();
}

void ResultsPanel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) ShowGrade();
}

void ResultsPanel::ShowGrade() {
    if (lblLOSGrade_->text().isEmpty()) return lblLOSGrade_->setStyleSheet(QString());
    const ColourPair pair = GradePair(lblLOSGrade_->text(), palette());
    lblLOSGrade_->setStyleSheet(
        QStringLiteral("background-color: %1; color: %2; border-radius: 6px; padding-left: 14px; padding-right: 14px")
            .arg(pair.Background.name(), pair.Text.name()));
}

}  // namespace vantor
