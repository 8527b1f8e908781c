#pragma once

#include <string>
#include <utility>

#include "core/ports/TileSource.h"
#include "reports/ReportSource.h"
#include "reports/modReports.h"

namespace vantor {

/// The reports on a study.
class StudyReportSource : public ReportSource {
public:
    struct From {
        Study Contents;
        std::string Folder;  ///< with a final separator
        AppSettings Settings;
        Date Printed;
        std::string BaseMap;  ///< the path of the map under that of the runs; or empty
    };
    StudyReportSource(From from, const TileFiles& tiles) : from_(std::move(from)), tiles_(tiles) {}

    std::vector<Part> Parts() const override;
    std::string ChoiceKey() const override { return "frmReportPreview.reports"; }
    std::string LoadingText() const override { return "Reading the runs of the study"; }
    /// Error 6 for averages of the study that do not fit.
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
    ReportData data_;
};

}  // namespace vantor
