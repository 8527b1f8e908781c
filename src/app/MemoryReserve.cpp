#include "app/MemoryReserve.h"

#include <atomic>
#include <cstddef>
#include <new>

namespace vantor {
namespace {

/// Bytes; half of them, and so on, where there is not so much. Never written to, so they cost addresses and no pages.
constexpr std::size_t ReserveSize = std::size_t{32} << 20;

/// The handler of the language takes no arguments.
std::atomic<std::unique_ptr<char[]>*> reserve{nullptr};

[[noreturn]] void FreeReserve() {
    if (std::unique_ptr<char[]>* const block = reserve.exchange(nullptr)) block->reset();
    throw std::bad_alloc();
}

}  // namespace

MemoryReserve::MemoryReserve() {
    for (std::size_t size = ReserveSize; size > 0 && !block_; size /= 2) block_.reset(new (std::nothrow) char[size]);
    reserve = &block_;
    std::set_new_handler(FreeReserve);
}

MemoryReserve::~MemoryReserve() {
    std::set_new_handler(nullptr);
    reserve = nullptr;
}

}  // namespace vantor
