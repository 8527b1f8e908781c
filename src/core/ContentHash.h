#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "core/RunRecords.h"

namespace vantor {

/// FNV-1a, 64 bits: tells that bytes have changed, not who changed them. Stored, so it stays as it is.
std::uint64_t ContentHash(std::span<const std::byte> bytes);

/// The hash of what a run's figures are made of: its calibration and the pulses of its samples, in this order, each as
/// two bytes, the low one first. Names, notes, nodes and keys leave it alone.
std::uint64_t MovementHash(const RunRecord& run);

}  // namespace vantor
