#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "core/IndexedArray.h"
#include "core/RecordCodec.h"

namespace vantor {

inline constexpr std::size_t PathWidth = 80;

/// The settings record, stored whole as "VANTOR.bin". Flags are 0 / -1.
struct AppSettings {
    std::string TempRunsPath;
    std::string StudyGroupRootPath;
    std::string FieldDataPath;
    std::string SpareFolder4;
    std::string SpareFolder5;
    std::string SpareFolder6;
    std::string LastStudyGroupPath;
    std::string LastStudyName;
    std::int16_t UseStartUpScreen = 0;
    float SpeedFactor = 0;  ///< feet per second to miles per hour
    std::int16_t EnableStopDelay = 0;
    std::int16_t StopSpeedThreshold = 0;  ///< mph
    std::int16_t CommPort = 0;
    std::int32_t BaudRate = 0;     ///< bits per second
    std::int16_t MetricUnits = 0;  ///< 0 English, -1 metric
    std::int16_t AutoConvertVer1 = 0;
    std::string Reserved2;
    std::int16_t ShowRunNamesOnStats = 0;
    std::int16_t ShowPageNumbers = 0;
    std::int16_t Reserved16 = 0;
    std::string Reserved18;
    IndexedArray<std::string, 1, 3> ReportHeading;

    bool operator==(const AppSettings&) const = default;
};

inline constexpr auto AppSettingsFields = std::make_tuple(
    Field{0, "TempRunsPath", &AppSettings::TempRunsPath, PathWidth},
    Field{80, "StudyGroupRootPath", &AppSettings::StudyGroupRootPath, PathWidth},
    Field{160, "FieldDataPath", &AppSettings::FieldDataPath, PathWidth},
    Field{240, "SpareFolder4", &AppSettings::SpareFolder4, PathWidth},
    Field{320, "SpareFolder5", &AppSettings::SpareFolder5, PathWidth},
    Field{400, "SpareFolder6", &AppSettings::SpareFolder6, PathWidth},
    Field{480, "LastStudyGroupPath", &AppSettings::LastStudyGroupPath, PathWidth},
    Field{560, "LastStudyName", &AppSettings::LastStudyName, PathWidth},
    Field{640, "UseStartUpScreen", &AppSettings::UseStartUpScreen},
    Field{642, "SpeedFactor", &AppSettings::SpeedFactor}, Field{646, "EnableStopDelay", &AppSettings::EnableStopDelay},
    Field{648, "StopSpeedThreshold", &AppSettings::StopSpeedThreshold}, Field{650, "CommPort", &AppSettings::CommPort},
    Field{652, "BaudRate", &AppSettings::BaudRate}, Field{656, "MetricUnits", &AppSettings::MetricUnits},
    Field{658, "AutoConvertVer1", &AppSettings::AutoConvertVer1}, Field{660, "Reserved2", &AppSettings::Reserved2, 2},
    Field{662, "ShowRunNamesOnStats", &AppSettings::ShowRunNamesOnStats},
    Field{664, "ShowPageNumbers", &AppSettings::ShowPageNumbers}, Field{666, "Reserved16", &AppSettings::Reserved16},
    Field{668, "Reserved18", &AppSettings::Reserved18, 18},
    Field{686, "ReportHeading", &AppSettings::ReportHeading, 64});

inline constexpr std::size_t AppSettingsSize = 878;
static_assert(RecordSize(AppSettingsFields) == AppSettingsSize && IsGapless(AppSettingsFields));

}  // namespace vantor
