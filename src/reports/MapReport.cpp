#include "reports/ReportContents.h"
#include "reports/ReportParts.h"
#include "reports/ReportText.h"

namespace vantor {

void AddMap(ReportPages& pages, const ReportData& data) {
    if (data.Map.Tracks.empty())
        return pages.AddText("No run of this study has positions, as runs of counters have none.", BodyStyle);
    AddMapPicture(pages, data.Map, data.UnderMap, data.Runs.size());
}

}  // namespace vantor
