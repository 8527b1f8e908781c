#pragma once

#include <cstdint>
#include <optional>

namespace vantor {

/// The system's handle of an open serial port.
#ifdef _WIN32
using SerialHandle = void*;
#else
using SerialHandle = int;
#endif

/// How often a serial port's driver lost data so far. Only changes tell something.
struct LineCounters {
    std::uint32_t Overruns = 0;
    std::uint32_t BufferOverflows = 0;
};

/// Nothing where the driver does not count.
std::optional<LineCounters> ReadLineCounters(SerialHandle handle);

}  // namespace vantor
