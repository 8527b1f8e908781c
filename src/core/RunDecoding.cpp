#include "core/RunDecoding.h"

#include <algorithm>

#include "core/Numeric.h"
#include "core/RunArithmetic.h"
#include "core/modMain.h"

namespace vantor {
namespace {

void ClearDerivedValues(RunHeader& header) {
    header.ButtonWord = {};
    header.ButtonLabel = {};
    header.HeaderWord3 = 0;
    // Only the first 32 sections are cleared: what lies behind the number of sections in use is never read.
    for (int section = 1; section <= 32; ++section) header.SectionDist[section] = 0;
}

void TakeKey(RunHeader& header, int key, std::int32_t position) {
    if (key > KeySlots) return;
    // A run keeps 32 events; every later one overwrites the last.
    header.HeaderWord3 = static_cast<std::int16_t>(std::min(header.HeaderWord3 + 1, KeySlots));
    header.ButtonWord[key] = -1;
    header.ButtonLong[header.HeaderWord3] = position;
    header.ButtonWord2[header.HeaderWord3] = static_cast<std::int16_t>(key);
    header.ButtonLabel[key] = EventCodeLabel(static_cast<std::int16_t>(key));
}

/// Closes the section before node number `node` (the start of the run is node 1).
void CloseSection(RunHeader& header, int node, std::int32_t pulses) {
    if (node <= DecodedSections) header.SectionDist[node - 1] = pulses;
}

}  // namespace

void DecodeRunSamples(RunRecord& run) {
    RunHeader& header = run.Header;
    ClearDerivedValues(header);
    std::int32_t sectionPulses = 0;
    std::int32_t totalPulses = 0;
    int nodeCount = 1;
    for (const std::int16_t value : run.SampleValues) {
        sectionPulses += PulsesOf(value);
        totalPulses += PulsesOf(value);
        if (HasNode(value)) {
            CloseSection(header, ++nodeCount, sectionPulses);
            sectionPulses = 0;
        } else if (HighByteOf(value) >= 1) {
            TakeKey(header, HighByteOf(value), totalPulses);
        }
    }
    CloseSection(header, ++nodeCount, sectionPulses);
    header.NumberOfSections = static_cast<std::int16_t>(std::min(nodeCount, DecodedSections));
    header.RunLength = FeetOfPulses(header.CalConstant, totalPulses);
    header.Duration = To16(static_cast<std::int64_t>(run.SampleValues.size()));
}

void DecodeEditedRun(RunRecord& run) {
    const auto labels = run.Header.ButtonLabel;
    const auto used = run.Header.ButtonWord;
    DecodeRunSamples(run);
    for (int key = 1; key <= KeySlots; ++key)
        if (run.Header.ButtonWord[key] != 0 && used[key] != 0) run.Header.ButtonLabel[key] = labels[key];
}

void DecodeNewRun(RunRecord& run) {
    DecodeRunSamples(run);
    const bool primary = run.Header.NumberOfSections >= 3;
    run.Header.HeaderWord1 = primary ? -1 : 0;
    run.Header.HeaderWord2 = primary ? 0 : -1;
    run.Header.Before = -1;
    run.Header.After = 0;
}

}  // namespace vantor
