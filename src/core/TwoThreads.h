#pragma once

#include <cstddef>
#include <future>
#include <system_error>

namespace vantor {

/// Below that, a second thread costs more than it saves.
inline constexpr std::size_t ManyPieces = 100;

/// Does work of so many pieces: `mine` on this thread and, where there are many, `other` on a second one at the same
/// time, which take the next piece that neither has taken. For reading many small files most of the time goes to
/// waiting. An error of either is thrown when both have ended.
template <class Mine, class Other>
void OnTwoThreads(std::size_t pieces, Mine mine, Other other) {
    std::future<void> second;
    try {
        if (pieces >= ManyPieces) second = std::async(std::launch::async, other);
    } catch (const std::system_error&) {
        // One thread is enough.
    }
    mine();
    if (second.valid()) second.get();
}

}  // namespace vantor
