#include "plots/forms/ProfileView.h"

#include <QPainter>

#include "core/forms/Accessible.h"
#include "core/forms/WindowCanvas.h"
#include "plots/ProfileLines.h"
#include "plots/forms/ProfilePicture.h"

namespace vantor {

/// The copies, and the profile over them.
struct ProfileView::Shown {
    Shown(RunRecord run, const StudyRunEntry& entry, const AppSettings& settings)
        : Run(std::move(run)), Settings(settings), Entry(entry), Profile(Run, Settings, Entry) {
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
    setAccessibleDescription(PlacesInWords(shown_->Profile));
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
    if (!shown_) return PaintInsteadOfProfile(painter, *this, text_);
    const PlotRectangle area = PlotAreaOf(size(), *this);
    constexpr int LeastLines = 2;
    if (area.Baseline - area.Top < LeastLines * fontMetrics().height())
        return PaintInsteadOfProfile(painter, *this,
                                     QStringLiteral("There is too little room for the speed profile here."));
    shown_->Profile.Geometry().SetRectangle(area);
    PaintProfile(painter, *this, shown_->Profile);
    WindowCanvas canvas(painter);
    const PlotLook look = LookOf(*this);
    ProfileLines(canvas, look, shown_->Profile).Draw(canvas, look);
}

}  // namespace vantor
