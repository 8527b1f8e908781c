#include "core/ContentHash.h"

namespace vantor {
namespace {

constexpr std::uint64_t OffsetBasis = 0xCBF29CE484222325;
constexpr std::uint64_t Prime = 0x100000001B3;

std::uint64_t With(std::uint64_t hash, unsigned byte) { return (hash ^ byte) * Prime; }
std::uint64_t WithWord(std::uint64_t hash, unsigned word) { return With(With(hash, word & 0xFF), word >> 8); }

}  // namespace

std::uint64_t ContentHash(std::span<const std::byte> bytes) {
    std::uint64_t hash = OffsetBasis;
    for (const std::byte byte : bytes) hash = With(hash, std::to_integer<unsigned>(byte));
    return hash;
}

std::uint64_t MovementHash(const RunRecord& run) {
    std::uint64_t hash = WithWord(OffsetBasis, static_cast<std::uint16_t>(run.Header.CalConstant));
    for (const std::int16_t value : run.SampleValues) hash = WithWord(hash, static_cast<unsigned>(PulsesOf(value)));
    return hash;
}

}  // namespace vantor
