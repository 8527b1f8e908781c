#pragma once

#include <array>
#include <optional>

#include "plots/PlotParts.h"
#include "plots/SpeedProfile.h"

namespace vantor {

/// One of the three lines over a profile.
struct ProfileLineAt {
    double Place = 0;  ///< x of a boundary, y of the ideal speed
    bool IsSet = false;
    std::string Text;
};
/// In the order of AllLines; nothing for one that is not drawn.
using ProfileLinePlaces = std::array<std::optional<ProfileLineAt>, 3>;

/// Boundaries that are proposed: the start, then the end.
struct ProposedBoundaries {
    std::array<std::int32_t, 2> Feet{};
    std::array<std::int32_t, 2> Samples{};

    /// In feet or seconds, as the axis goes.
    std::int32_t PlaceOf(ProfileLine line, BoundaryAxis axis) const {
        const std::size_t index = line == ProfileLine::Start ? 0 : 1;
        return axis == BoundaryAxis::Time ? Samples[index] : Feet[index];
    }
};

/// "Start 3492 ft, proposed".
std::string ProposalLabel(const SpeedProfile& profile, const ProposedBoundaries& proposal, ProfileLine line);

/// The lines with their labels, placed in and above the area of a profile. The labels of the boundaries share a row.
class ProfileLines {
public:
    ProfileLines(const TextMeasure& measure, const PlotLook& look, const CanvasBox& area,
                 const ProfileLinePlaces& places);
    /// Those of the profile's screen; one that is not set waits at its edge.
    ProfileLines(const TextMeasure& measure, const PlotLook& look, const SpeedProfile& profile);

    /// Height of the row right above the area.
    static double LabelRow(const TextMeasure& measure, const PlotLook& look);

    /// What must be drawn anew when this line moves: the line and its label.
    CanvasBox BoundsOf(ProfileLine line) const;
    /// Draws what lies between the boundaries, then the lines. The label of the active line is filled.
    void Draw(Canvas& canvas, const PlotLook& look, ProfileLine active = ProfileLine::None) const;

private:
    struct Placed {
        ProfileLineAt At;
        bool IsVisible = false;
        CanvasBox Label;
    };

    void PlaceBoundaries(const TextMeasure& measure, const PlotLook& look);
    void PlaceIdealSpeed(const TextMeasure& measure, const PlotLook& look);
    void DrawLine(Canvas& canvas, const PlotLook& look, ProfileLine line, bool isActive) const;
    Placed& At(ProfileLine line) { return lines_[static_cast<std::size_t>(line) - 1]; }
    const Placed& At(ProfileLine line) const { return lines_[static_cast<std::size_t>(line) - 1]; }

    CanvasBox area_;
    std::array<Placed, 3> lines_;
};

/// Draws both as dashed lines that say what they are.
void DrawProposal(Canvas& canvas, const PlotLook& look, const SpeedProfile& profile,
                  const ProposedBoundaries& proposal);

}  // namespace vantor
