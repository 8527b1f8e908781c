#include "gpsobd/ReviewColumns.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

#include "core/Numeric.h"
#include "core/Text.h"

namespace vantor {
namespace {

/// The speed among the columns of an OBD log.
constexpr int ObdSpeedColumn = 6;

std::vector<ReviewColumn> GpsColumns() {
    return {{"Run #", "RunNumber", ColumnLook::Whole, &GpsPoint::RunNumber},
            {"Direction", "Direction", ColumnLook::Direction, &GpsPoint::Direction},
            {"Node", "Node", ColumnLook::Whole, &GpsPoint::Node},
            {"Date", "DateTime", ColumnLook::Day, &GpsPoint::DateTime},
            {"Time", "DateTime", ColumnLook::Time, &GpsPoint::DateTime},
            {"Speed", "Speed", ColumnLook::Speed, &GpsPoint::Speed},
            {"Heading", "Heading", ColumnLook::OneDecimal, &GpsPoint::Heading},
            {"Delay #", "DelayNumber", ColumnLook::Whole, &GpsPoint::DelayNumber},
            {"Latitude", "Latitude", ColumnLook::SixDecimals, &GpsPoint::Latitude},
            {"Longitude", "Longitude", ColumnLook::SixDecimals, &GpsPoint::Longitude},
            {"HDOP", "HDOP", ColumnLook::OneDecimal, &GpsPoint::HDOP},
            {"Quality", "FixQuality", ColumnLook::Whole, &GpsPoint::FixQuality},
            {"Sat Used", "SatUsed", ColumnLook::Whole, &GpsPoint::SatUsed}};
}

std::vector<ReviewColumn> ObdColumns() {
    return {{"Run #", "RunNumber", ColumnLook::Whole, &ObdPoint::RunNumber},
            {"Direction", "Direction", ColumnLook::Direction, &ObdPoint::Direction},
            {"Node", "Node", ColumnLook::Whole, &ObdPoint::Node},
            {"Date", "DateTime", ColumnLook::Day, &ObdPoint::DateTime},
            {"Time", "DateTime", ColumnLook::Time, &ObdPoint::DateTime},
            {"Speed (MPH)", "Speed", ColumnLook::Speed, &ObdPoint::Speed},
            {"Engine Speed (rpm)", "Rpm", ColumnLook::Number, &ObdPoint::Rpm},
            {"Load (%)", "Load", ColumnLook::Number, &ObdPoint::Load},
            {"Throttle (%)", "Throttle", ColumnLook::Number, &ObdPoint::Throttle},
            {"Coolant (°F)", "CoolantTemp", ColumnLook::Number, &ObdPoint::CoolantTemp},
            {"Intake Air (°F)", "IntakeTemp", ColumnLook::Number, &ObdPoint::IntakeTemp},
            {"Air Flow (g/s)", "AirFlow", ColumnLook::Number, &ObdPoint::AirFlow},
            {"Fuel Rate (gal/h)", "FuelRate", ColumnLook::Number, &ObdPoint::FuelRate},
            {"Delay #", "DelayNumber", ColumnLook::Whole, &ObdPoint::DelayNumber},
            {"Trouble Codes", "TroubleCodes", ColumnLook::Text, &ObdPoint::TroubleCodes},
            {"Monitor Status", "MonitorStatus", ColumnLook::Text, &ObdPoint::MonitorStatus},
            {"Comment", "Comment", ColumnLook::Text, &ObdPoint::Comment}};
}

std::string TextOf(ColumnLook look, std::int16_t value) {
    return look == ColumnLook::Direction ? DirectionText(value) : std::to_string(value);
}
std::string TextOf(ColumnLook look, double value) { return ShownNumber(look, value, SingleDigits); }
std::string TextOf(ColumnLook look, Date value) {
    return look == ColumnLook::Day ? ShortDate(value) : ClockText(value);
}
std::string TextOf(ColumnLook, const std::string& value) { return std::string(TrimRight(value)); }

SheetCell ValueOf(ColumnLook look, std::int16_t value) {
    if (look != ColumnLook::Direction) return static_cast<double>(value);
    return DirectionText(value);
}
SheetCell ValueOf(ColumnLook, double value) { return std::isfinite(value) ? SheetCell(value) : SheetCell(); }
/// A single is meant as the decimal number it was written as, not as the double nearest to it.
SheetCell ValueOf(ColumnLook, float value) {
    return std::isfinite(value) ? SheetCell(Val(SignificantDigits(value, SingleDigits))) : SheetCell();
}
SheetCell ValueOf(ColumnLook look, Date value) {
    if (!IsValidDate(value)) return {};
    return look == ColumnLook::Day ? ShownDay(value) : ShownClock(value);
}
SheetCell ValueOf(ColumnLook, const std::string& value) { return std::string(TrimRight(value)); }

}  // namespace

// Of a GPS log the columns 4 and 5 are repaired, date and time, not the speed, and that is meant to stay: the number a
// date begins with is its month and never -1, so the speeds of a GPS log stay as they were received, and seconds
// without one are bridged only where a run is made of them.
ReviewLayout GpsReviewLayout() { return {GpsColumns(), 4, 5}; }

ReviewLayout ObdReviewLayout() { return {ObdColumns(), ObdSpeedColumn}; }

// The GPS columns, then those of the OBD half; both repair the speed that runs are made from first of all, the
// vehicle's own.
ReviewLayout CombinedReviewLayout() {
    ReviewLayout layout{GpsColumns()};
    const std::vector<ReviewColumn> obd = ObdColumns();
    for (std::size_t i = 1; i < obd.size(); ++i) {
        // Run number and time of a combined point are those of its GPS half.
        if (obd[i].Key == std::string_view("DateTime")) continue;
        ReviewColumn& column = layout.Columns.emplace_back(obd[i]);
        column.Caption.insert(0, "OBD ");
        if (i + 1 == ObdSpeedColumn) layout.RepairColumn = static_cast<int>(layout.Columns.size());
    }
    return layout;
}

bool IsOfObd(const PointField& field) {
    return std::visit([](auto member) { return std::is_invocable_v<decltype(member), const ObdPoint&>; }, field);
}

std::string ClockText(Date time) {
    if (!IsValidDate(time)) return {};
    const CivilTime civil = CivilOf(time);
    char text[64];
    const int length = std::snprintf(text, sizeof text, "%d:%02d:%02d %s", civil.Hour % 12 == 0 ? 12 : civil.Hour % 12,
                                     civil.Minute, civil.Second, civil.Hour < 12 ? "AM" : "PM");
    return {text, static_cast<std::size_t>(length)};
}

std::string CellText(const ReviewColumn& column, const FieldLog& log, std::size_t index) {
    return WithField(column.Field, log, index, [&](const auto& value) { return TextOf(column.Look, value); });
}

std::string FullCellText(const ReviewColumn& column, const FieldLog& log, std::size_t index) {
    const ColumnLook look = column.Look == ColumnLook::Speed ? ColumnLook::Number : column.Look;
    return WithField(column.Field, log, index, [&](const auto& value) { return TextOf(look, value); });
}

std::string ShownNumber(ColumnLook look, double value, int digits) {
    if (look == ColumnLook::OneDecimal || (look == ColumnLook::Speed && value != MissingValue))
        return FixedDecimals(value, 1);
    if (look == ColumnLook::SixDecimals) return FixedDecimals(value, 6);
    return SignificantDigits(value, digits);
}

SheetCell CellValue(const ReviewColumn& column, const FieldLog& log, std::size_t index) {
    return WithField(column.Field, log, index, [&](const auto& value) { return ValueOf(column.Look, value); });
}

SheetColumn SheetColumnOf(const ReviewColumn& column) {
    SheetColumn sheet{column.Caption};
    switch (column.Look) {
        case ColumnLook::Day: sheet.Format = "mm/dd/yy"; break;
        case ColumnLook::Time: sheet.Format = "h:mm:ss AM/PM"; break;
        case ColumnLook::OneDecimal: sheet.Format = "0.0"; break;
        case ColumnLook::SixDecimals: sheet.Format = "0.000000"; break;
        default: break;
    }
    sheet.Width = column.Look == ColumnLook::Text ? 18 : std::max(10, static_cast<int>(column.Caption.size()) + 2);
    return sheet;
}

}  // namespace vantor
