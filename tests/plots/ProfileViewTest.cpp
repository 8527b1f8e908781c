#include "plots/forms/ProfileView.h"

#include <gmock/gmock.h>

#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "fakes/Clicks.h"
#include "plots/Profiles.h"
#include "plots/forms/ProfilePicture.h"

namespace vantor {
namespace {

TEST(ProfileView, ShowsARunWithItsBoundariesOrSaysWhyThereIsNone) {
    // 60 s at 50 ft/s: 34 mph, an axis to 40 mph and 3000 of 5000 feet.
    const RunRecord run = RunOf(std::vector<int>(60, 50));
    StudyRunEntry entry;
    entry.CDStartDist = 1000;
    entry.CDEndDist = 2000;
    ProfileView view(nullptr);
    view.resize(700, 300);
    view.ShowRun(run, entry, EnglishSettings());
    EXPECT_EQ(view.accessibleDescription(), "Start boundary: 1000 Feet. End boundary: 2000 Feet. Ideal speed: 34 MPH.");
    const PlotRectangle area = PlotAreaOf(view.size(), view);
    const auto colourAt = [&](double feet, double ofHeight) {
        const double x = area.Left + feet / 5000 * (area.Right - area.Left);
        return view.grab().toImage().pixelColor(
            static_cast<int>(x), static_cast<int>(area.Baseline - ofHeight * (area.Baseline - area.Top)));
    };
    const QColor plain = view.palette().color(QPalette::Base);
    const QColor boundary = Ink(ColoursOf(view.palette()).Boundary);
    EXPECT_EQ(colourAt(1000, 0.95), boundary);
    EXPECT_EQ(colourAt(2000, 0.95), boundary);
    EXPECT_NE(colourAt(1750, 0.95), plain);  // shaded between them
    EXPECT_EQ(colourAt(4250, 0.6), plain);

    for (const auto& [odd, says] : {std::pair{RunOf({}), "no samples"}, {RunOf({0, 0}), "does not move"}}) {
        view.ShowRun(odd, entry, EnglishSettings());
        EXPECT_THAT(FromQt(view.accessibleDescription()), testing::HasSubstr(says));
        EXPECT_EQ(colourAt(1000, 0.95), plain);
    }
}

}  // namespace
}  // namespace vantor
