#pragma once

#include <algorithm>
#include <vector>

#include "core/RunRecords.h"

namespace vantor {

/// Feet in each second of a drive, one after the other.
class Drive {
public:
    Drive& Cruise(int seconds, int feet = 60) {
        feet_.insert(feet_.end(), static_cast<std::size_t>(seconds), feet);
        return *this;
    }
    /// To another speed by so many feet a second each second.
    Drive& To(int feet, int rate) {
        for (int now = feet_.back() & 0xFF; now != feet; feet_.push_back(now))
            now = now < feet ? std::min(now + rate, feet) : std::max(now - rate, feet);
        return *this;
    }
    /// Brakes, stands and goes on.
    Drive& Stop(int seconds, int go = 60) { return To(0, 8).Cruise(seconds, 0).To(go, 5); }
    Drive& Node() {
        feet_.back() |= NodeFlag;
        return *this;
    }
    int Seconds() const { return static_cast<int>(feet_.size()); }
    const std::vector<int>& Values() const { return feet_; }

private:
    std::vector<int> feet_;
};

}  // namespace vantor
