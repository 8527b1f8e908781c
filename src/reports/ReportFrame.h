#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <utility>

#include "core/AppSettings.h"
#include "core/Date.h"
#include "reports/ReportPages.h"

namespace vantor {

/// The frame of the pages of a report on `subject`.
PageFrame FrameOf(const AppSettings& settings, const std::string& subject, Date printed, const PageChoice& choice);

/// Measures each text once: those of the tables are the same for run after run.
class RememberingMeasure : public TextMeasure {
public:
    explicit RememberingMeasure(const TextMeasure& measure) : measure_(measure) {}

    double TextWidth(const std::string& text, const TextStyle& style) const override;
    double LineHeight(const TextStyle& style) const override { return measure_.LineHeight(style); }

private:
    const TextMeasure& measure_;
    mutable std::map<std::pair<double, bool>, std::unordered_map<std::string, double>> widths_;
};

}  // namespace vantor
