#pragma once

#include <nlohmann/json.hpp>

#include "corridor/ReportedCorridor.h"

namespace vantor {

/// The findings as a FeatureCollection for a GIS: a Point a node with its delays, a LineString for each section of each
/// way and condition with its figures, and the track of each run that has positions. Feet, seconds, miles per hour;
/// each feature's property `role` tells what it is: `node`, `section`, `track`.
nlohmann::ordered_json FindingsGeoJson(const ReportedCorridor& corridor, const CorridorFindings& findings);

}  // namespace vantor
