#include "reports/CorridorReport.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/Units.h"
#include "corridor/FiguresFile.h"
#include "map/MapFromRun.h"
#include "reports/ReportFrame.h"
#include "reports/ReportParts.h"
#include "reports/ReportText.h"

namespace vantor {
namespace {

MapContents MapOf(const ReportedCorridor& corridor, const AppSettings& settings) {
    MapContents map;
    map.Shown = UnitsOf(settings);
    for (const MatchedRun& run : corridor.Runs) {
        if (!corridor.Filter.Takes(run) || !HasPositions(run.Read->Run)) continue;
        const CorridorRun& as = corridor.Of.Runs[run.Index];
        MapTrack track = TrackOf(run.Read->Run, as.Name);
        track.IsSetAside = !as.SetAside.empty();
        map.Tracks.push_back(std::move(track));
    }
    for (const CorridorNode& node : corridor.Of.Nodes)
        if (node.At) map.Nodes.push_back({node.Name, *node.At});
    return map;
}

}  // namespace

CorridorReportData MakeCorridorData(std::shared_ptr<const ReportedCorridor> corridor, const AppSettings& settings,
                                    Date printed) {
    CorridorReportData data;
    data.Findings = FindingsByPeriod(*corridor);
    data.Map = MapOf(*corridor, settings);
    data.Of = std::move(corridor);
    data.Settings = settings;
    data.Printed = printed;
    return data;
}

nlohmann::ordered_json FiguresOf(const CorridorReportData& data) {
    return FiguresAsJson(*data.Of, data.Findings, data.Settings, data.Printed);
}

PagedDocument MakeCorridorReport(const CorridorReportData& data, const CorridorReportChoice& choice,
                                 const TextMeasure& measure) {
    constexpr std::array Contents = {AddCorridorDelays,    AddCorridorSections, AddCorridorBeforeAfter,
                                     AddCorridorTimeSpace, AddCorridorMap,      AddCorridorSensitivity,
                                     AddCorridorMethod,    AddCorridorRuns};
    static_assert(Contents.size() == CorridorPartNames.size());
    const std::string& name = data.Of->Of.Name;
    const RememberingMeasure remembering(measure);
    ReportPages pages(FrameOf(data.Settings, name, data.Printed, choice), remembering);
    const bool isOneOfSeveral = std::ranges::count(choice.Parts, true) > 1;
    for (std::size_t part = 0; part < Contents.size(); ++part) {
        if (!choice.Parts[part]) continue;
        if (Contents[part] == AddCorridorBeforeAfter && !data.All().Before && isOneOfSeveral) continue;
        if (Contents[part] == AddCorridorMap && data.Map.Tracks.empty() && isOneOfSeveral) continue;
        pages.BeginReport(CorridorPartNames[part].Title);
        Contents[part](pages, data);
    }
    return pages.Finish(name.empty() ? "Corridor" : name);
}

}  // namespace vantor
