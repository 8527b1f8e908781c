#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/AppSettings.h"
#include "core/Csv.h"
#include "core/IndexedArray.h"
#include "core/RunRecords.h"
#include "core/StudyRecords.h"
#include "core/Units.h"

namespace vantor {

/// The figures of one section of a run, or of the whole run. All in feet, seconds and miles per hour.
struct SectionStatistics {
    int Number = 0;  ///< from 1; 0 for the whole run
    std::string FromName;
    std::string ToName;
    std::int32_t Length = 0;       ///< the sum of its samples' distance increments
    std::int32_t TravelTime = 0;   ///< its samples
    std::int32_t StoppedTime = 0;  ///< samples whose speed is at or below the stop threshold
    std::int32_t Stops = 0;        ///< stops that begin in it
    /// Its stopped seconds by the key that names their cause, 0 for those that no key names; their sum is StoppedTime.
    IndexedArray<std::int32_t, 0, KeySlots> DelaySeconds;

    std::int32_t RunningTime() const { return TravelTime - StoppedTime; }
    /// Length over running time; 0 where there is no running time.
    double MeanRunningSpeed() const;
};

/// The name of a node of a run: its own, "[Start]" for node 0, "[End]" for the last one, "Node 3".
std::string NodeName(const RunHeader& header, int node, int lastNode);

struct DelayKey {
    int Key = 0;
    std::string Label;  ///< the run's own, else the standard one, else "Key 17"; no two of a run are alike
};

struct RunStatistics {
    std::vector<SectionStatistics> Sections;  ///< none for a run without samples
    SectionStatistics Total;
    std::vector<DelayKey> Keys;  ///< the delay keys that were pressed in the run, by their numbers
};

/// The figures of a run between its consecutive nodes: its start, each sample that carries the node flag, its end. One
/// sample is one second; the sample with the flag is the last of the section that it closes. A node without a name is
/// "[Start]", "[End]" or "Node 3".
///
/// A stop is a series of stopped samples that no moving one interrupts; it is one stop, of the section where it
/// begins, even where a node lies within it. Travel time and delay studies note one cause for each stop (ITE Manual of
/// Transportation Engineering Studies), so a whole stop goes to one key: the delay key pressed last during the stop, or
/// else the one pressed last before it in the section where the stop begins. So one press does for a queue in which the
/// vehicle moves up and stops again, but for nothing behind the next node. Delay keys are all of 1 to 32 but those for
/// manoeuvres (2 to 4 and 6 to 8: movements, turns), which say where the vehicle went and not what held it up. A key
/// with no stop to follow has no seconds. Formulas: docs/methods.md, "Run statistics".
RunStatistics ComputeRunStatistics(const RunRecord& run, const AppSettings& settings);

/// The statistics as a table to show or to hand on: the heads, a row for each section, the row of the whole run.
/// Lengths are whole metres or feet, speeds have one decimal. With an entry, the whole run's row also has the run's
/// control delay and grade.
std::vector<SheetRow> StatisticsSheet(const RunStatistics& statistics, const Units& units, const StudyRunEntry* entry);

}  // namespace vantor
