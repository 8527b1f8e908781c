#include "analysis/RunStatistics.h"

#include <algorithm>

#include "core/Numeric.h"
#include "core/RunArithmetic.h"
#include "core/Settings.h"
#include "core/Text.h"
#include "core/modMain.h"

namespace vantor {
namespace {

bool IsDelayKey(int key) {
    const bool isManoeuvre = (key >= 2 && key <= 4) || (key >= 6 && key <= 8);
    return key >= 1 && key <= KeySlots && !isManoeuvre;
}

/// The delay key pressed in a sample; 0 where there is none.
int DelayKeyOf(std::int16_t sampleValue) {
    const int key = HasNode(sampleValue) ? 0 : HighByteOf(sampleValue);
    return IsDelayKey(key) ? key : 0;
}

/// Takes a run's samples one after the other and sorts them into sections and stops.
class SampleSorter {
public:
    SampleSorter(const RunHeader& header, const AppSettings& settings, std::vector<SectionStatistics>& sections)
        : arithmetic_(header.CalConstant, settings.SpeedFactor),
          threshold_(static_cast<float>(settings.StopSpeedThreshold)),
          sections_(sections) {
        sections_.emplace_back();
    }

    void Take(std::int16_t value) {
        SectionStatistics& section = sections_.back();
        section.Length = Add32(section.Length, arithmetic_.DistanceIncrement(value));
        ++section.TravelTime;
        const int key = DelayKeyOf(value);
        if (key != 0) sectionKey_ = key;
        if (arithmetic_.Speed(value) <= threshold_)
            TakeStopped(key);
        else
            EndStop();
        if (!HasNode(value)) return;
        sections_.emplace_back();
        sectionKey_ = 0;
    }

    void Finish() { EndStop(); }

private:
    void TakeStopped(int key) {
        SectionStatistics& section = sections_.back();
        if (stop_.empty()) {
            ++section.Stops;
            stopKey_ = sectionKey_;
        }
        ++section.StoppedTime;
        stop_.push_back(sections_.size() - 1);
        if (key != 0) stopKey_ = key;
    }

    void EndStop() {
        for (const std::size_t section : stop_) ++sections_[section].DelaySeconds[stopKey_];
        stop_.clear();
    }

    RunArithmetic arithmetic_;
    float threshold_;
    std::vector<SectionStatistics>& sections_;
    std::vector<std::size_t> stop_;  ///< the section of each second of the stop under way
    int stopKey_ = 0;                ///< the key that names its cause so far
    int sectionKey_ = 0;             ///< the delay key pressed last in the current section
};

void NameSections(const RunHeader& header, std::vector<SectionStatistics>& sections) {
    const int lastNode = static_cast<int>(sections.size());
    int node = 0;
    for (SectionStatistics& section : sections) {
        section.FromName = NodeName(header, node, lastNode);
        section.Number = ++node;
        section.ToName = NodeName(header, node, lastNode);
    }
}

SectionStatistics TotalOf(const std::vector<SectionStatistics>& sections) {
    SectionStatistics total;
    if (sections.empty()) return total;
    total.FromName = sections.front().FromName;
    total.ToName = sections.back().ToName;
    for (const SectionStatistics& section : sections) {
        total.Length = Add32(total.Length, section.Length);
        total.TravelTime += section.TravelTime;
        total.StoppedTime += section.StoppedTime;
        total.Stops += section.Stops;
        for (int key = 0; key <= KeySlots; ++key) total.DelaySeconds[key] += section.DelaySeconds[key];
    }
    return total;
}

std::string LabelOf(const RunHeader& header, int key) {
    const std::string own(Trim(header.ButtonLabel[key]));
    if (!own.empty()) return own;
    const std::string standard = EventCodeLabel(static_cast<std::int16_t>(key));
    return standard.empty() ? "Key " + std::to_string(key) : standard;
}

std::vector<DelayKey> PressedKeys(const RunRecord& run) {
    IndexedArray<bool, 0, KeySlots> isPressed;
    for (const std::int16_t value : run.SampleValues) isPressed[DelayKeyOf(value)] = true;
    std::vector<DelayKey> keys;
    for (int key = 1; key <= KeySlots; ++key) {
        if (!isPressed[key]) continue;
        std::string label = LabelOf(run.Header, key);
        const bool isTaken =
            std::any_of(keys.begin(), keys.end(), [&](const DelayKey& other) { return other.Label == label; });
        if (isTaken) label += ", Key " + std::to_string(key);
        keys.push_back({key, std::move(label)});
    }
    return keys;
}

SheetField Number(std::int64_t value) { return {std::to_string(value), true}; }

SheetRow RowOf(const SectionStatistics& section, const std::vector<DelayKey>& keys, const Units& units) {
    SheetRow row = {{section.FromName},
                    {section.ToName},
                    Number(units.WholeLength(section.Length)),
                    Number(section.TravelTime),
                    Number(section.RunningTime()),
                    Number(section.StoppedTime),
                    Number(section.Stops),
                    {OneDecimal(units.SpeedOfMph(section.MeanRunningSpeed())), true}};
    for (const DelayKey& key : keys) row.push_back(Number(section.DelaySeconds[key.Key]));
    row.push_back(Number(section.DelaySeconds[0]));
    row.insert(row.begin(), section.Number == 0 ? SheetField{"Total"} : Number(section.Number));
    return row;
}

SheetRow HeadsOf(const std::vector<DelayKey>& keys, const Units& units) {
    SheetRow heads = {{"Section"},
                      {"From"},
                      {"To"},
                      {std::string("Length (") + units.LengthLabel() + ")"},
                      {"Travel Time (s)"},
                      {"Running Time (s)"},
                      {"Stopped Time (s)"},
                      {"Stops"},
                      {std::string("Mean Running Speed (") + units.SpeedLabel() + ")"}};
    for (const DelayKey& key : keys) heads.push_back({key.Label + " (s)"});
    heads.push_back({"No Key (s)"});
    return heads;
}

}  // namespace

std::string NodeName(const RunHeader& header, int node, int lastNode) {
    constexpr int LastName = decltype(RunHeader::SectionName)::LastIndex;
    const std::string name(node <= LastName ? Trim(header.SectionName[node]) : std::string_view());
    if (!name.empty()) return name;
    if (node == 0) return "[Start]";
    return node == lastNode ? "[End]" : "Node " + std::to_string(node);
}

double SectionStatistics::MeanRunningSpeed() const {
    const std::int32_t seconds = RunningTime();
    return seconds == 0 ? 0 : Length * (SecondsPerHour / FeetPerMile) / seconds;
}

RunStatistics ComputeRunStatistics(const RunRecord& run, const AppSettings& settings) {
    RunStatistics statistics;
    if (run.SampleValues.IsEmpty()) return statistics;
    SampleSorter sorter(run.Header, settings, statistics.Sections);
    for (const std::int16_t value : run.SampleValues) sorter.Take(value);
    sorter.Finish();
    NameSections(run.Header, statistics.Sections);
    statistics.Total = TotalOf(statistics.Sections);
    statistics.Keys = PressedKeys(run);
    return statistics;
}

std::vector<SheetRow> StatisticsSheet(const RunStatistics& statistics, const Units& units, const StudyRunEntry* entry) {
    std::vector<SheetRow> rows = {HeadsOf(statistics.Keys, units)};
    for (const SectionStatistics& section : statistics.Sections) rows.push_back(RowOf(section, statistics.Keys, units));
    rows.push_back(RowOf(statistics.Total, statistics.Keys, units));
    if (entry == nullptr) return rows;
    for (SheetRow& row : rows) row.insert(row.end(), {{""}, {""}});
    const auto setLast = [](SheetRow& row, SheetField delay, SheetField grade) {
        row[row.size() - 2] = std::move(delay);
        row.back() = std::move(grade);
    };
    setLast(rows.front(), {"Control Delay (s)"}, {"LOS Grade"});
    setLast(rows.back(), Number(entry->ControlDelay), {std::string(Trim(entry->LOSGrade))});
    return rows;
}

}  // namespace vantor
