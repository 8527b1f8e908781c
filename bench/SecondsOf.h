#pragma once

#include <chrono>

namespace vantor {

template <class Action>
double SecondsOf(Action action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace vantor
