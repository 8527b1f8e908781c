#include "statistics/StatisticsCells.h"

#include "statistics/Figure.h"

namespace vantor {

std::string WithUnit(const std::string& name, FigureUnit unit, const Units& units) {
    const std::string label = UnitLabel(unit, units);
    return label.empty() ? name : name + " (" + label + ")";
}

StatisticsCell ValueCell(std::optional<double> value, FigureUnit unit, int decimals, const Units& units) {
    if (!value) return {NoValueText};
    return {ShownNumber(*value, unit, decimals, units), value};
}

StatisticsCell TextCell(std::string text, std::string note) { return {std::move(text), {}, false, std::move(note)}; }

StatisticsCell CountCell(int count) { return {std::to_string(count), count}; }

StatisticsCell CountCell(std::optional<int> count) { return count ? CountCell(*count) : TextCell(NoValueText); }

StatisticsCell ProbabilityCell(std::optional<double> p) {
    return {ProbabilityText(p), p && *p >= 0.001 ? p : std::nullopt};
}

}  // namespace vantor
