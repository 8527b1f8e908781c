// What the screen of the speed profile shows.

#include <QSignalBlocker>
#include <algorithm>
#include <cmath>

#include "analysis/RunFacts.h"
#include "core/Numeric.h"
#include "core/Text.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "editing/forms/frmPlotRunSpeedProfileHoriz.h"
#include "plots/forms/ProfileWords.h"

namespace vantor {

void frmPlotRunSpeedProfileHoriz::Draw() {
    ShowAxis();
    // Over time a computation moves the boundaries onto samples; looking at the run alone must not do that.
    if (profile_.Axis() == BoundaryAxis::Distance && profile_.HasBothBoundaries() && profile_.Trace().HasMovement())
        ComputeQuietly();
    controls_.Plot->Redraw();
    ShowFigures();
}

void frmPlotRunSpeedProfileHoriz::ShowAxis() {
    const bool inTime = profile_.Axis() == BoundaryAxis::Time;
    controls_.btnToggleSpdTime->setText(inTime ? QStringLiteral("Plot Speed vs &Dist.")
                                               : QStringLiteral("Plot Speed vs &Time"));
    controls_.btnToggleSpdTime->setAccessibleName(WithoutAccessKey(controls_.btnToggleSpdTime->text()));
    const QString unit = QLatin1String(profile_.Geometry().AxisUnit());
    for (QLabel* label :
         std::initializer_list<QLabel*>{controls_.PlotScale, controls_.lblStartUnit, controls_.lblEndUnit})
        label->setText(unit);
    const auto item = std::find(ScaleSteps.begin(), ScaleSteps.end(), profile_.Geometry().ScaleStep());
    const QSignalBlocker blocker(controls_.cmbPlotScaleList);
    controls_.cmbPlotScaleList->setCurrentIndex(static_cast<int>(item - ScaleSteps.begin()));
    ShowScrollBar();
}

void frmPlotRunSpeedProfileHoriz::ShowScrollBar() {
    const ProfileGeometry& geometry = profile_.Geometry();
    const QSignalBlocker blocker(controls_.HScroll1);
    controls_.HScroll1->setRange(0, static_cast<int>(std::ceil(geometry.MostOffset())));
    controls_.HScroll1->setSingleStep(geometry.ScaleStep());
    controls_.HScroll1->setPageStep(static_cast<int>(geometry.Visible()));
    controls_.HScroll1->setValue(Round32(geometry.Offset()));
    controls_.HScroll1->setEnabled(geometry.MostOffset() > 0);
}

std::optional<std::int32_t> frmPlotRunSpeedProfileHoriz::Typed(ProfileLine line) {
    const QString text = BoxOf(line).text().trimmed();
    const bool isSpeed = line == ProfileLine::IdealSpeed;
    if (isSpeed && text.isEmpty()) return 0;
    return CountOfText(FromQt(text), isSpeed ? MostIdealSpeed : profile_.LastShownBoundary());
}

void frmPlotRunSpeedProfileHoriz::ShowReadiness() {
    const bool isReady = profile_.Drag().IsReady();
    anyIsReady_ = anyIsReady_ || isReady;
    // What is typed is taken on the way out: it counts as the release that it will be.
    int releases = profile_.Drag().ReleaseCount();
    for (const ProfileLine line : {ProfileLine::Start, ProfileLine::End})
        if (BoxOf(line).isModified() && Typed(line)) ++releases;
    controls_.BtnPlotSpeedExit->setEnabled(anyIsReady_ || releases >= 2);
    controls_.btnTrim->setEnabled(isReady);
    if (anyIsReady_) SetFace(controls_.BtnPlotSpeedExit, GreenPair(palette()));
}

void frmPlotRunSpeedProfileHoriz::ShowFigures() {
    const StudyRunEntry& entry = visits_.Entry();
    QLabel* lblContDelay = controls_.lblContDelay;
    lblContDelay->setText(isComputed_ ? ToQt(Str(entry.ControlDelay)) : QStringLiteral("–"));
    lblContDelay->setAccessibleDescription(isComputed_ ? QString() : QStringLiteral("not computed yet"));
    const QString grade = isComputed_ ? ToQt(Trim(entry.LOSGrade)) : QString();
    controls_.lblLOS->setText(grade.isEmpty() ? QStringLiteral("–") : grade);
    const ColourPair pair = GradePair(grade, palette());
    QPalette badge = palette();
    badge.setColor(QPalette::Window, pair.Background);
    badge.setColor(QPalette::WindowText, pair.Text);
    controls_.lblLOS->setPalette(badge);
    ShowBoxes();
    ShowWarning();
    controls_.lblBetween->setText(BetweenInWords(profile_));

    controls_.Plot->UpdateLines();
    QString places = PlacesInWords(profile_);
    if (proposal_)
        for (const ProfileLine line : {ProfileLine::Start, ProfileLine::End})
            places += QLatin1Char(' ') + ToQt(ProposalLabel(profile_, *proposal_, line)) + QLatin1Char('.');
    controls_.Plot->setAccessibleDescription(
        QStringLiteral("%1 The arrow keys move the %2.").arg(places, NameOf(controls_.Plot->ActiveLine()).toLower()));
    ShowReadOut(std::nullopt);
    visits_.Tell();
}

void frmPlotRunSpeedProfileHoriz::ShowWarning() {
    std::string problem = isComputed_ ? BoundaryProblem(run_, profile_.Plot(), visits_.Entry()) : std::string();
    if (!problem.empty()) problem += " The figures mean nothing then.";
    controls_.lblWarning->setText(problem_.isEmpty() ? ToQt(problem) : problem_.simplified());
    controls_.lblWarning->setToolTip(controls_.lblWarning->text());
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, RedText(palette()));
    controls_.lblWarning->setPalette(colours);
}

void frmPlotRunSpeedProfileHoriz::ShowBoxes() {
    for (const ProfileLine line : {ProfileLine::Start, ProfileLine::End}) {
        const auto place = profile_.ShownBoundary(line);
        BoxOf(line).setText(place ? QString::number(*place) : QString());
    }
    ShowIdealSpeed();
}

void frmPlotRunSpeedProfileHoriz::ShowIdealSpeed() {
    const auto speed = profile_.WholeIdealSpeed();
    controls_.txtIdealSpeed->setText(speed ? QString::number(*speed) : QString());
    const QString source = profile_.HasUserIdealSpeed() ? QStringLiteral(" (set by hand)")
                           : speed                      ? QStringLiteral(" (computed)")
                                                        : QString();
    const std::string unit = speed ? profile_.Geometry().Units().MphBoxLabel(*speed) : "MPH";
    controls_.lblIdealSpeedSource->setText(ToQt(unit) + source);
}

void frmPlotRunSpeedProfileHoriz::ShowReadOut(std::optional<double> x) {
    if (!profile_.Trace().HasMovement()) return;
    const ProfileLine dragged = profile_.Drag().DragLine();
    QString text = QStringLiteral("1, 2, 3 and the arrow keys move the lines, too.");
    if (dragged != ProfileLine::None)
        text = PlaceInWords(profile_, dragged);
    else if (x)
        text = PointInWords(profile_, *x);
    controls_.lblReadOut->setText(text);
}

void frmPlotRunSpeedProfileHoriz::Compute() {
    problem_.clear();
    try {
        profile_.Compute();
        isComputed_ = true;
    } catch (const RunTimeError& error) {
        problem_ = ToQt(error.Message());
        ShowFigures();
        throw;
    }
    ShowFigures();
}

void frmPlotRunSpeedProfileHoriz::ComputeQuietly() {
    try {
        Compute();
    } catch (const RunTimeError&) {
        // Compute has kept its text.
    }
}

}  // namespace vantor
