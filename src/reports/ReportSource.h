#pragma once

#include <string>
#include <vector>

#include "core/Progress.h"
#include "core/ports/DocumentWriter.h"
#include "core/ports/FileSystem.h"
#include "reports/ReportPages.h"

namespace vantor {

/// What of a report is printed, and on what.
struct PrintChoice {
    std::vector<bool> Parts;  ///< by those of the source
    PageChoice Pages;
};

/// What the preview shows the pages of.
class ReportSource {
public:
    struct Part {
        std::string Caption;  ///< with its access key
        bool IsUsual = true;  ///< printed where the user has not chosen
    };

    virtual ~ReportSource() = default;

    virtual std::vector<Part> Parts() const = 0;
    virtual std::string ChoiceKey() const = 0;  ///< what the user's choice is remembered under
    virtual std::string LoadingText() const = 0;
    /// Once, before what follows.
    virtual void Load(const FileSystem& files, const Progress& progress) = 0;
    /// The runs that are not printed, a line each.
    virtual std::vector<std::string> Problems() const = 0;
    virtual std::string NoRunsText() const = 0;  ///< empty where there are runs
    virtual PagedDocument Make(const PrintChoice& choice, const TextMeasure& measure) const = 0;
    virtual std::string PathToSave() const = 0;  ///< without extension
    /// Writes what Make gives as a PDF file, in place of what is there. False when it was stopped.
    virtual bool Save(FileSystem& files, const std::string& path, const PrintChoice& choice,
                      const DocumentWriter& writer, const Progress& progress) const = 0;
};

}  // namespace vantor
