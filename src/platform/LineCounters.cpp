#include "platform/LineCounters.h"

#ifdef _WIN32
#include <windows.h>
#elif defined(__linux__)
#include <linux/serial.h>
#include <sys/ioctl.h>
#endif

namespace vantor {

#ifdef _WIN32

namespace {

/// What IOCTL_SERIAL_GET_STATS answers; its header belongs to the driver kit.
struct SerialStatistics {
    ULONG Received;
    ULONG Sent;
    ULONG FrameErrors;
    ULONG Overruns;
    ULONG BufferOverflows;
    ULONG ParityErrors;
};
constexpr DWORD GetSerialStatistics = 0x1B008C;

}  // namespace

// The line status of ClearCommError would not do: whoever asks for the length of the queue clears it.
std::optional<LineCounters> ReadLineCounters(SerialHandle handle) {
    SerialStatistics statistics{};
    OVERLAPPED overlapped{};
    overlapped.hEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (overlapped.hEvent == nullptr) return std::nullopt;
    DWORD size = 0;
    bool isRead = DeviceIoControl(handle, GetSerialStatistics, nullptr, 0, &statistics, sizeof statistics, nullptr,
                                  &overlapped) != 0;
    if (isRead || GetLastError() == ERROR_IO_PENDING)
        isRead = GetOverlappedResult(handle, &overlapped, &size, TRUE) != 0 && size >= sizeof statistics;
    CloseHandle(overlapped.hEvent);
    if (!isRead) return std::nullopt;
    return LineCounters{statistics.Overruns, statistics.BufferOverflows};
}

#elif defined(__linux__)

std::optional<LineCounters> ReadLineCounters(SerialHandle handle) {
    serial_icounter_struct counters{};
    if (ioctl(handle, TIOCGICOUNT, &counters) != 0) return std::nullopt;
    return LineCounters{static_cast<std::uint32_t>(counters.overrun), static_cast<std::uint32_t>(counters.buf_overrun)};
}

#else

std::optional<LineCounters> ReadLineCounters(SerialHandle) { return std::nullopt; }

#endif

}  // namespace vantor
