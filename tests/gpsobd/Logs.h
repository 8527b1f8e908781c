#pragma once

#include <gmock/gmock.h>

#include <bit>

#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"
#include "gpsobd/FieldLog.h"
#include "gpsobd/LogScreens.h"
#include "gpsobd/PalmDatabase.h"

namespace vantor {

/// Fields as they lie in a file, the least significant byte first: h in 2 bytes, i in 4, f as a single, d as a double.
template <class... Numbers>
std::string Pack(const char* layout, Numbers... numbers) {
    std::string bytes;
    const auto append = [&](auto bits) {
        for (std::size_t i = 0; i < sizeof bits; ++i) bytes += static_cast<char>(bits >> (8 * i));
    };
    const auto pack = [&](double number) {
        switch (*layout++) {
            case 'h': return append(static_cast<std::int16_t>(number));
            case 'i': return append(static_cast<std::int32_t>(number));
            case 'f': return append(std::bit_cast<std::uint32_t>(static_cast<float>(number)));
            default: return append(std::bit_cast<std::uint64_t>(number));
        }
    };
    (pack(static_cast<double>(numbers)), ...);
    return bytes;
}

inline std::string Padded(std::string text, std::size_t width) {
    text.resize(width, ' ');
    return text;
}

constexpr double LogDay = 37755;  ///< 14 May 2003

inline std::string Prefix(int formatNumber, double logDate = LogDay, const std::string& tag = "XX") {
    return Pack("hhhd", formatNumber, 0, 0, logDate) + tag;
}

/// 100 bytes, with some that are no text.
inline std::string GpsHeader() {
    return Padded("Main St \xC4", 32) + Padded(std::string("Main\0\0", 6), 20) + Padded("", 32) +
           Pack("hhih", 1, 4, 4800, -1) + std::string("\x01\xff\0\x80 z", 6);
}

/// 120 bytes.
inline std::string ObdHeader() {
    return Padded("  Elm Ave ", 32) + Padded("", 20) + Padded("Car 7", 32) + Pack("hhihh", 1, 3, 38400, 0, 9) +
           std::string(23, '\xee') + "e";
}

/// 48 bytes.
inline std::string GpsRecord(int run, double dateTime, double longitude = -83.5) {
    return Pack("hhffdddhfhhh", run, 1, 31.5, 271.25, dateTime, 42.5, longitude, 7, 1.5, 2, 16, 4);
}

/// 56 bytes.
inline std::string Ver1GpsRecord(int run, double dateTime, double latitude, double longitude) {
    return Pack("hhfdddhfhhfffh", run, 2, 28.5, dateTime, latitude, longitude, 6, 2.5, 3, 99, 250, -34, 1, 12);
}

/// 96 bytes.
inline std::string ObdRecord(int run, double dateTime) {
    return Pack("hdffffffffhhh", run, dateTime, 33.5, 2100, 41.5, 17.25, 190, 75, 12.5, 1.75, 5, 15, 2) +
           Padded("P0420", 16) + Padded("ready", 16) + Padded(std::string("\0warm", 5), 16);
}

/// A log with a point a second of run 1, from 06:00:00 on.
inline FieldLog ObdLog(const std::vector<float>& speeds) {
    FieldLog log = NewFieldLog(FormatOf(LogKind::ObdLaptop), "/start/Field Data Files/drive.od2");
    for (std::size_t i = 0; i < speeds.size(); ++i) {
        const Date time{LogDay + 0.25 + static_cast<double>(i) / 86400};
        log.Obd.push_back({1, time, speeds[i], 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, "", "", ""});
    }
    return log;
}

/// Log files of every kind on a disk in memory.
class LogFileScene : public testing::Test {
protected:
    LogSummary Summary(LogKind kind, const std::string& bytes, const std::string& path = "/f/Trip.log") {
        Files.PutText(path, bytes);
        return ReadLogSummary(Sources, FormatOf(kind), path).value();
    }
    FieldLog Whole(LogKind kind, const std::string& bytes, const std::string& path = "/f/Trip.log") {
        Files.PutText(path, bytes);
        return ReadFieldLog(Sources, FormatOf(kind), path);
    }
    /// Date, first and last time and runs as a summary tells them.
    static std::string Told(const LogSummary& summary) {
        std::string told = summary.StudyDate ? ShortDate(*summary.StudyDate) : "";
        for (const auto& time : {summary.StartTime, summary.EndTime}) told += "|" + (time ? IsoDateTime(*time) : "");
        return told + "|" + std::to_string(summary.Runs);
    }
    /// Where the error of that number was that an action ends with.
    static std::string PlaceOf(ErrorNumber number, const std::function<void()>& action) {
        try {
            action();
        } catch (const RunTimeError& error) {
            EXPECT_EQ(error.Number(), number);
            return error.Place();
        }
        return "none";
    }

    MemoryFileSystem Files;
    FakeDatabases Database;
    PalmDatabase Devices{Files};
    FixedClock Time;
    LogSources Sources{Files, Database, Devices, Time};
};

}  // namespace vantor
