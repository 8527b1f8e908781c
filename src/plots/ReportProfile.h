#pragma once

#include <string>
#include <vector>

#include "analysis/ProfileTrace.h"
#include "core/AppSettings.h"
#include "core/Axis.h"
#include "core/StudyRecords.h"
#include "core/Units.h"
#include "core/ports/Canvas.h"
#include "core/ports/DocumentWriter.h"

namespace vantor {

struct ReportNode {
    double Feet = 0;
    std::string Name;
};

/// What is drawn of a run's speed: a few points for every column of the picture, however many samples it has.
struct ReportProfile {
    std::vector<TracePoint> Points;  ///< x in feet from the start of the run
    std::vector<ReportNode> Nodes;
    double Feet = 0;     ///< where the run ends
    float TopSpeed = 0;  ///< miles per hour
    bool HasMovement = false;
};

ReportProfile MakeReportProfile(const RunRecord& run, const AppSettings& settings);

/// The axes of a picture in the shown unit, and the boundaries and the ideal speed of the entry.
struct ProfileFrame {
    vantor::Units Units;
    SpeedAxis Speeds;
    StudyRunEntry Entry;
};

/// Draws speed against distance into the box, with the axes, the nodes and the boundaries.
void DrawReportProfile(Canvas& canvas, const CanvasBox& box, const ReportProfile& profile, const ProfileFrame& frame);

/// The profile as a picture file, under a title; over distance and whole, as a report prints it.
std::vector<std::byte> ProfilePictureFile(const DocumentWriter& documents, const RunRecord& run,
                                          const StudyRunEntry& entry, const AppSettings& settings,
                                          const std::string& title, PictureFormat format);

}  // namespace vantor
