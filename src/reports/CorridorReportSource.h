#pragma once

#include <memory>
#include <string>
#include <utility>

#include "core/ports/TileSource.h"
#include "reports/CorridorReport.h"
#include "reports/ReportSource.h"

namespace vantor {

/// The reports on a corridor, whose file of figures is written with them.
class CorridorReportSource : public ReportSource {
public:
    struct From {
        std::shared_ptr<const ReportedCorridor> Corridor;
        AppSettings Settings;
        Date Printed;
        std::string BaseMap;  ///< the path of the map under that of the runs; or empty
    };
    CorridorReportSource(From from, const TileFiles& tiles) : from_(std::move(from)), tiles_(tiles) {}

    std::vector<Part> Parts() const override;
    std::string ChoiceKey() const override { return "frmReportPreview.corridor"; }
    std::string LoadingText() const override { return "Computing the figures of the corridor"; }
    void Load(const FileSystem& files, const Progress& progress) override;
    std::vector<std::string> Problems() const override;
    std::string NoRunsText() const override;
    PagedDocument Make(const PrintChoice& choice, const TextMeasure& measure) const override;
    std::string PathToSave() const override;
    bool Save(FileSystem& files, const std::string& path, const PrintChoice& choice, const DocumentWriter& writer,
              const Progress& progress) const override;

private:
    From from_;
    const TileFiles& tiles_;
    CorridorReportData data_;
};

}  // namespace vantor
