#include "plots/forms/ProfileView.h"

#include <QPainter>

#include "core/forms/Accessible.h"
#include "plots/forms/ProfileLines.h"

namespace vantor {

/// The copies, and the profile over them.
struct ProfileView::Shown {
    Shown(RunRecord run, const StudyRunEntry& entry, const AppSettings& settings)
        : Run(std::move(run)),
          Settings(settings),
          Entry(entry),
          Profile(Run, Settings, Entry),
          Labels(LabelsOf(UnitsOf(settings))) {
        if (!Profile.HasBothBoundaries()) return;
        try {
            Profile.Compute();
        } catch (const RunTimeError&) {
            // There is no ideal speed to show then; the run's warnings say why.
        }
    }

    RunRecord Run;
    AppSettings Settings;
    StudyRunEntry Entry;
    SpeedProfile Profile;
    ProfileLabels Labels;
};

ProfileView::ProfileView(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("ProfileView"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    SetAccessibleRole(*this, QAccessible::Chart);
    setAccessibleName(QStringLiteral("Speed profile"));
}

ProfileView::~ProfileView() = default;

void ProfileView::ShowRun(RunRecord run, const StudyRunEntry& entry, const AppSettings& settings) {
    auto shown = std::make_unique<Shown>(std::move(run), entry, settings);
    const QString nothing = NothingToDraw(shown->Profile.Trace(), shown->Run.Header.CalConstant);
    if (!nothing.isEmpty()) return ShowText(nothing);
    shown_ = std::move(shown);
    text_.clear();
    setAccessibleDescription(PlacesInWords(shown_->Profile, shown_->Labels));
    update();
}

void ProfileView::ShowText(const QString& text) {
    shown_.reset();
    text_ = text;
    setAccessibleDescription(text);
    update();
}

QSize ProfileView::sizeHint() const { return {560, 280}; }
QSize ProfileView::minimumSizeHint() const { return {280, 160}; }

void ProfileView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ProfileColours colours(palette());
    if (!shown_) return PaintInsteadOfProfile(painter, rect(), text_, colours);
    const QFontMetricsF metrics(font());
    const PlotRectangle area = PlotAreaOf(size(), metrics);
    constexpr int LeastLines = 2;
    if (area.Baseline - area.Top < LeastLines * metrics.height())
        return PaintInsteadOfProfile(painter, rect(),
                                     QStringLiteral("There is too little room for the speed profile here."), colours);
    shown_->Profile.Geometry().SetRectangle(area);
    PaintProfile(painter, size(), shown_->Profile, shown_->Labels, colours);
    ProfileLines(shown_->Profile, shown_->Labels, metrics).Paint(painter, colours, ProfileLine::None);
}

}  // namespace vantor
