#pragma once

#include <QPainter>
#include <QRectF>
#include <QString>
#include <array>

#include "plots/forms/ProfilePicture.h"

namespace vantor {

/// The three lines over the profile with their labels, placed for the moment.
class ProfileLines {
public:
    ProfileLines(const SpeedProfile& profile, const ProfileLabels& labels, const QFontMetricsF& metrics);

    /// What must be painted anew when this line moves: the line and its label.
    QRect BoundsOf(ProfileLine line) const;
    /// Paints what lies between the boundaries, then the lines. The label of the active line is filled.
    void Paint(QPainter& painter, const ProfileColours& colours, ProfileLine active) const;

private:
    struct Placed {
        bool IsSet = false;
        double Pixel = 0;  ///< x of a boundary, y of the ideal speed
        bool IsVisible = false;
        QString Label;
        QRectF LabelRect;
    };

    void PlaceBoundary(ProfileLine line, const QFontMetricsF& metrics);
    void PlaceIdealSpeed(const QFontMetricsF& metrics);
    void KeepLabelsApart();
    void PaintLine(QPainter& painter, const ProfileColours& colours, ProfileLine line, bool isActive) const;
    Placed& At(ProfileLine line) { return lines_[static_cast<std::size_t>(line) - 1]; }
    const Placed& At(ProfileLine line) const { return lines_[static_cast<std::size_t>(line) - 1]; }

    const SpeedProfile& profile_;
    const ProfileLabels& labels_;
    PlotRectangle area_;
    std::array<Placed, 3> lines_;
};

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
QString ProposalLabel(const SpeedProfile& profile, const ProfileLabels& labels, const ProposedBoundaries& proposal,
                      ProfileLine line);
/// Paints both as dashed lines that say what they are.
void PaintProposal(QPainter& painter, const SpeedProfile& profile, const ProfileLabels& labels,
                   const ProposedBoundaries& proposal, const ProfileColours& colours);

}  // namespace vantor
