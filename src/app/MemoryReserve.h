#pragma once

#include <memory>

namespace vantor {

/// Memory kept for the moment when none is left: the first request that fails frees it and fails all the same, so that
/// what is unwound has room. Some destructors ask for memory, and one that gets none ends the program.
class MemoryReserve {
public:
    MemoryReserve();
    ~MemoryReserve();
    MemoryReserve(const MemoryReserve&) = delete;
    MemoryReserve& operator=(const MemoryReserve&) = delete;

private:
    std::unique_ptr<char[]> block_;
};

}  // namespace vantor
