#pragma once

#include <array>
#include <cstdint>

namespace vantor {

/// The lines that the user drags on the speed profile.
enum class ProfileLine : std::int16_t { None = 0, Start = 1, End = 2, IdealSpeed = 3 };

inline constexpr std::array AllLines = {ProfileLine::Start, ProfileLine::End, ProfileLine::IdealSpeed};

/// Which line is being dragged, and how far the user has come with the boundaries.
class ProfileDrag {
public:
    /// ReleaseCount once both releases are made; it stays so for the life of the screen.
    static constexpr std::int16_t Ready = 999;

    ProfileLine DragLine() const { return dragLine_; }
    /// Releases of a boundary line: 0, 1, 2, then Ready. Releases are counted, not distinct lines: dragging the same
    /// boundary twice is enough, on purpose.
    std::int16_t ReleaseCount() const { return releaseCount_; }
    bool IsReady() const { return releaseCount_ == Ready; }

    void Grab(ProfileLine line) { dragLine_ = line; }
    /// Lets the grabbed line go. True when the run's delay is to be computed now.
    bool Release();

private:
    ProfileLine dragLine_ = ProfileLine::None;
    std::int16_t releaseCount_ = 0;
};

}  // namespace vantor
