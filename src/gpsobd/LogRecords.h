#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "core/Date.h"
#include "core/RecordCodec.h"

namespace vantor {

// What the loggers store. A value that a log lacks is -1 in heading, speed, position, delay number and direction.

/// What every log file of the laptop begins with.
struct LogPrefix {
    std::int16_t FormatNumber = 0;  ///< 0 or 1: first format; any other: second. Written as 2.
    std::int16_t Reserved1 = 0;
    std::int16_t Reserved2 = 0;
    Date LogDate;
    std::string Tag;

    bool operator==(const LogPrefix&) const = default;
};
inline constexpr auto LogPrefixFields =
    std::make_tuple(Field{0, "FormatNumber", &LogPrefix::FormatNumber}, Field{2, "Reserved1", &LogPrefix::Reserved1},
                    Field{4, "Reserved2", &LogPrefix::Reserved2}, Field{6, "LogDate", &LogPrefix::LogDate},
                    Field{14, "Tag", &LogPrefix::Tag, 2});
inline constexpr std::size_t LogPrefixSize = 16;
static_assert(RecordSize(LogPrefixFields) == LogPrefixSize && IsGapless(LogPrefixFields));

/// The settings record of the GPS logger. Carried through unchanged.
struct GpsLogHeader {
    std::string StudyName;
    std::string BaseName;
    std::string Comment;
    std::int16_t LogInterval = 0;  ///< seconds
    std::int16_t CommPort = 0;
    std::int32_t BaudRate = 0;
    std::int16_t Units = 0;  ///< 0 English, -1 metric
    RawBytes<6> Spare{};

    bool operator==(const GpsLogHeader&) const = default;
};
inline constexpr auto GpsLogHeaderFields = std::make_tuple(
    Field{0, "StudyName", &GpsLogHeader::StudyName, 32}, Field{32, "BaseName", &GpsLogHeader::BaseName, 20},
    Field{52, "Comment", &GpsLogHeader::Comment, 32}, Field{84, "LogInterval", &GpsLogHeader::LogInterval},
    Field{86, "CommPort", &GpsLogHeader::CommPort}, Field{88, "BaudRate", &GpsLogHeader::BaudRate},
    Field{92, "Units", &GpsLogHeader::Units}, Field{94, "Spare", &GpsLogHeader::Spare});
inline constexpr std::size_t GpsLogHeaderSize = 100;
static_assert(RecordSize(GpsLogHeaderFields) == GpsLogHeaderSize && IsGapless(GpsLogHeaderFields));

/// A logged point of GPS, as the second format stores it.
struct GpsPoint {
    std::int16_t RunNumber = 0;  ///< 0: outside any run
    std::int16_t FixQuality = 0;
    float Speed = 0;    ///< mph
    float Heading = 0;  ///< degrees
    Date DateTime;
    double Latitude = 0;   ///< decimal degrees
    double Longitude = 0;  ///< decimal degrees, negative west
    std::int16_t SatUsed = 0;
    float HDOP = 0;
    std::int16_t Node = 0;
    std::int16_t DelayNumber = 0;
    std::int16_t Direction = 0;  ///< see DirectionText

    bool operator==(const GpsPoint&) const = default;
};
inline constexpr auto GpsPointFields =
    std::make_tuple(Field{0, "RunNumber", &GpsPoint::RunNumber}, Field{2, "FixQuality", &GpsPoint::FixQuality},
                    Field{4, "Speed", &GpsPoint::Speed}, Field{8, "Heading", &GpsPoint::Heading},
                    Field{12, "DateTime", &GpsPoint::DateTime}, Field{20, "Latitude", &GpsPoint::Latitude},
                    Field{28, "Longitude", &GpsPoint::Longitude}, Field{36, "SatUsed", &GpsPoint::SatUsed},
                    Field{38, "HDOP", &GpsPoint::HDOP}, Field{42, "Node", &GpsPoint::Node},
                    Field{44, "DelayNumber", &GpsPoint::DelayNumber}, Field{46, "Direction", &GpsPoint::Direction});
inline constexpr std::size_t GpsPointSize = 48;
static_assert(RecordSize(GpsPointFields) == GpsPointSize && IsGapless(GpsPointFields));

/// A logged point as the first format stores it.
struct Ver1GpsPoint {
    std::int16_t RunNumber = 0;
    std::int16_t FixQuality = 0;
    float Speed = 0;
    Date DateTime;
    double Latitude = 0;   ///< degrees and minutes, dddmm.mmmm
    double Longitude = 0;  ///< degrees and minutes, dddmm.mmmm
    std::int16_t SatUsed = 0;
    float HDOP = 0;
    std::int16_t Node = 0;
    std::int16_t Unused = 0;
    float Altitude = 0;
    float GeoidSeparation = 0;
    float CorrectionAge = 0;
    std::int16_t Station = 0;
};
inline constexpr auto Ver1GpsPointFields = std::make_tuple(
    Field{0, "RunNumber", &Ver1GpsPoint::RunNumber}, Field{2, "FixQuality", &Ver1GpsPoint::FixQuality},
    Field{4, "Speed", &Ver1GpsPoint::Speed}, Field{8, "DateTime", &Ver1GpsPoint::DateTime},
    Field{16, "Latitude", &Ver1GpsPoint::Latitude}, Field{24, "Longitude", &Ver1GpsPoint::Longitude},
    Field{32, "SatUsed", &Ver1GpsPoint::SatUsed}, Field{34, "HDOP", &Ver1GpsPoint::HDOP},
    Field{38, "Node", &Ver1GpsPoint::Node}, Field{40, "Unused", &Ver1GpsPoint::Unused},
    Field{42, "Altitude", &Ver1GpsPoint::Altitude}, Field{46, "GeoidSeparation", &Ver1GpsPoint::GeoidSeparation},
    Field{50, "CorrectionAge", &Ver1GpsPoint::CorrectionAge}, Field{54, "Station", &Ver1GpsPoint::Station});
inline constexpr std::size_t Ver1GpsPointSize = 56;
static_assert(RecordSize(Ver1GpsPointFields) == Ver1GpsPointSize && IsGapless(Ver1GpsPointFields));

/// The settings record of the OBD logger. Carried through unchanged.
struct ObdLogHeader {
    std::string StudyName;
    std::string BaseName;
    std::string VehicleId;
    std::int16_t LogInterval = 0;  ///< seconds
    std::int16_t CommPort = 0;
    std::int32_t BaudRate = 0;
    std::int16_t Units = 0;  ///< 0 English, -1 metric
    std::int16_t Protocol = 0;
    RawBytes<24> Spare{};

    bool operator==(const ObdLogHeader&) const = default;
};
inline constexpr auto ObdLogHeaderFields = std::make_tuple(
    Field{0, "StudyName", &ObdLogHeader::StudyName, 32}, Field{32, "BaseName", &ObdLogHeader::BaseName, 20},
    Field{52, "VehicleId", &ObdLogHeader::VehicleId, 32}, Field{84, "LogInterval", &ObdLogHeader::LogInterval},
    Field{86, "CommPort", &ObdLogHeader::CommPort}, Field{88, "BaudRate", &ObdLogHeader::BaudRate},
    Field{92, "Units", &ObdLogHeader::Units}, Field{94, "Protocol", &ObdLogHeader::Protocol},
    Field{96, "Spare", &ObdLogHeader::Spare});
inline constexpr std::size_t ObdLogHeaderSize = 120;
static_assert(RecordSize(ObdLogHeaderFields) == ObdLogHeaderSize && IsGapless(ObdLogHeaderFields));

/// A logged point of the vehicle's diagnostic port.
struct ObdPoint {
    std::int16_t RunNumber = 0;  ///< 0: outside any run
    Date DateTime;
    float Speed = 0;        ///< mph
    float Rpm = 0;          ///< engine speed
    float Load = 0;         ///< engine load, %
    float Throttle = 0;     ///< %
    float CoolantTemp = 0;  ///< degrees Fahrenheit
    float IntakeTemp = 0;   ///< intake air, degrees Fahrenheit
    float AirFlow = 0;      ///< g/s
    float FuelRate = 0;     ///< gal/h
    std::int16_t Node = 0;
    std::int16_t DelayNumber = 0;
    std::int16_t Direction = 0;
    std::string TroubleCodes;
    std::string MonitorStatus;
    std::string Comment;

    bool operator==(const ObdPoint&) const = default;
};
inline constexpr auto ObdPointFields = std::make_tuple(
    Field{0, "RunNumber", &ObdPoint::RunNumber}, Field{2, "DateTime", &ObdPoint::DateTime},
    Field{10, "Speed", &ObdPoint::Speed}, Field{14, "Rpm", &ObdPoint::Rpm}, Field{18, "Load", &ObdPoint::Load},
    Field{22, "Throttle", &ObdPoint::Throttle}, Field{26, "CoolantTemp", &ObdPoint::CoolantTemp},
    Field{30, "IntakeTemp", &ObdPoint::IntakeTemp}, Field{34, "AirFlow", &ObdPoint::AirFlow},
    Field{38, "FuelRate", &ObdPoint::FuelRate}, Field{42, "Node", &ObdPoint::Node},
    Field{44, "DelayNumber", &ObdPoint::DelayNumber}, Field{46, "Direction", &ObdPoint::Direction},
    Field{48, "TroubleCodes", &ObdPoint::TroubleCodes, 16}, Field{64, "MonitorStatus", &ObdPoint::MonitorStatus, 16},
    Field{80, "Comment", &ObdPoint::Comment, 16});
inline constexpr std::size_t ObdPointSize = 96;
static_assert(RecordSize(ObdPointFields) == ObdPointSize && IsGapless(ObdPointFields));

/// A record of a combined log: a GPS point and an OBD point, one behind the other.
inline constexpr std::size_t CombinedPointSize = GpsPointSize + ObdPointSize;

}  // namespace vantor
