#pragma once

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "fakes/MemoryFileSystem.h"

namespace vantor {

/// Bytes of a log, field by field as they lie in the file.
class LogBytes {
public:
    LogBytes& Int16(int value) { return Low(static_cast<std::uint64_t>(value), 2); }
    LogBytes& Int32(int value) { return Low(static_cast<std::uint64_t>(value), 4); }
    LogBytes& Single(float value) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        return Low(bits, 4);
    }
    LogBytes& Double(double value) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        return Low(bits, 8);
    }
    LogBytes& Text(std::string text, std::size_t width) {
        text.resize(width, ' ');
        bytes_ += text;
        return *this;
    }
    LogBytes& Raw(std::string_view bytes) {
        bytes_ += bytes;
        return *this;
    }
    LogBytes& Add(const LogBytes& other) { return Raw(other.bytes_); }

    const std::string& Bytes() const { return bytes_; }

private:
    LogBytes& Low(std::uint64_t bits, int count) {
        for (int i = 0; i < count; ++i) bytes_ += static_cast<char>((bits >> (8 * i)) & 0xFF);
        return *this;
    }
    std::string bytes_;
};

constexpr double LogDay = 37755;  ///< 14 May 2003

inline LogBytes PrefixBytes(int formatNumber, double logDate = LogDay, const std::string& tag = "XX") {
    return LogBytes().Int16(formatNumber).Int16(0).Int16(0).Double(logDate).Text(tag, 2);
}

/// 100 bytes, with some that are no text.
inline LogBytes GpsHeaderBytes() {
    return LogBytes()
        .Text("Main St \xC4", 32)
        .Text(std::string("Main\0\0", 6), 20)
        .Text("", 32)
        .Int16(1)
        .Int16(4)
        .Int32(4800)
        .Int16(-1)
        .Raw(std::string_view("\x01\xff\0\x80 z", 6));
}

/// 120 bytes.
inline LogBytes ObdHeaderBytes() {
    return LogBytes()
        .Text("  Elm Ave ", 32)
        .Text("", 20)
        .Text("Car 7", 32)
        .Int16(1)
        .Int16(3)
        .Int32(38400)
        .Int16(0)
        .Int16(9)
        .Raw(std::string(23, '\xee'))
        .Raw("e");
}

/// 48 bytes.
inline LogBytes GpsRecord(int run, double dateTime, double longitude = -83.5) {
    return LogBytes()
        .Int16(run)
        .Int16(1)
        .Single(31.5F)
        .Single(271.25F)
        .Double(dateTime)
        .Double(42.5)
        .Double(longitude)
        .Int16(7)
        .Single(1.5F)
        .Int16(2)
        .Int16(16)
        .Int16(4);
}

/// 56 bytes.
inline LogBytes Ver1GpsRecord(int run, double dateTime, double latitude, double longitude) {
    return LogBytes()
        .Int16(run)
        .Int16(2)
        .Single(28.5F)
        .Double(dateTime)
        .Double(latitude)
        .Double(longitude)
        .Int16(6)
        .Single(2.5F)
        .Int16(3)
        .Int16(99)
        .Single(250)
        .Single(-34)
        .Single(1)
        .Int16(12);
}

/// 96 bytes.
inline LogBytes ObdRecord(int run, double dateTime) {
    LogBytes record;
    record.Int16(run).Double(dateTime);
    for (const float value : {33.5F, 2100.F, 41.5F, 17.25F, 190.F, 75.F, 12.5F, 1.75F}) record.Single(value);
    return record.Int16(5).Int16(15).Int16(2).Text("P0420", 16).Text("ready", 16).Text(std::string("\0warm", 5), 16);
}

}  // namespace vantor
