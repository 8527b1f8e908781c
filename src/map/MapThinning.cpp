#include "map/MapThinning.h"

#include <algorithm>
#include <cmath>

namespace vantor {
namespace {

constexpr std::size_t BlockSize = 64;
/// Pixels that a line may pass by the points of the finer level, whose own deviation adds to it.
constexpr double Tolerance = 0.4;
constexpr double LeastColoured = 3;
/// A level is kept where it has at most this part of the points of the finer one.
constexpr double WorthKeeping = 0.75;

struct Way {
    double X = 0;
    double Y = 0;

    double Length() const { return std::hypot(X, Y); }
    double Cross(const Way& other) const { return X * other.Y - Y * other.X; }
};

Way Between(const WorldPoint& from, const WorldPoint& to) { return {to.X - from.X, to.Y - from.Y}; }

/// The directions in which a line from its start passes by all points so far within the tolerance.
class Cone {
public:
    explicit Cone(double tolerance) : tolerance_(tolerance) {}

    void Clear() { *this = Cone(tolerance_); }
    /// Whether a line to there does, and does not come back.
    bool Takes(const Way& way) const {
        const double length = way.Length();
        if (length < farthest_ - tolerance_) return false;
        return !isNarrow_ || (right_.Cross(way) >= 0 && way.Cross(left_) >= 0);
    }
    void Narrow(const Way& way) {
        const double length = way.Length();
        farthest_ = std::max(farthest_, length);
        if (length <= tolerance_) return;
        const double sine = tolerance_ / length;
        const double cosine = std::sqrt(1 - sine * sine);
        const Way left = {way.X * cosine - way.Y * sine, way.X * sine + way.Y * cosine};
        const Way right = {way.X * cosine + way.Y * sine, way.Y * cosine - way.X * sine};
        if (!isNarrow_ || left.Cross(left_) >= 0) left_ = left;
        if (!isNarrow_ || right_.Cross(right) >= 0) right_ = right;
        isNarrow_ = true;
    }

private:
    double tolerance_;
    double farthest_ = 0;
    bool isNarrow_ = false;
    Way left_;
    Way right_;
};

/// Thins points; `pixel` is the width of one.
std::vector<ThinPoint> Thinned(const std::vector<ThinPoint>& points, double pixel) {
    const double least = LeastColoured * pixel;
    std::vector<ThinPoint> kept;
    Cone cone(Tolerance * pixel);
    std::size_t start = 0;  // of the way that is being made
    int speed = SpeedScale::NoClass;
    const auto endWayAt = [&](std::size_t end) {
        if (end > start) {
            kept.push_back(points[end]);
            kept.back().Speed = static_cast<std::uint8_t>(speed);
        }
        start = end;
        speed = SpeedScale::NoClass;
        cone.Clear();
    };
    for (std::size_t i = 0; i < points.size(); ++i) {
        const ThinPoint& point = points[i];
        if (point.Begins) {
            if (i > 0) endWayAt(i - 1);
            start = i;
            kept.push_back(point);
            continue;
        }
        const std::size_t last = i - 1;
        const auto isLong = [&](std::size_t from, std::size_t to) {
            return Between(points[from].At, points[to].At).Length() >= least;
        };
        const bool changes = last > start && point.Speed != speed && (isLong(start, last) || isLong(last, i));
        if (changes || (last > start && !cone.Takes(Between(points[start].At, point.At)))) endWayAt(last);
        speed = std::min(speed, static_cast<int>(point.Speed));
        cone.Narrow(Between(points[start].At, point.At));
    }
    if (!points.empty()) endWayAt(points.size() - 1);
    return kept;
}

double PixelOf(int level) {
    MapWindow window;
    window.Zoom = ThinnedTrack::Levels - 1 - level;
    return 1 / window.Scale();
}

}  // namespace

int ThinnedTrack::LevelOf(double zoom) {
    return std::clamp(Levels - 1 - static_cast<int>(std::ceil(zoom)), 0, Levels - 1);
}

ThinnedTrack::ThinnedTrack(const MapTrack& track, const SpeedScale& scale) {
    std::vector<ThinPoint> points;
    points.reserve(track.Points().size());
    for (const MapPoint& point : track.Points()) {
        const auto number = static_cast<std::uint32_t>(points.size());
        points.push_back({point.At, number, static_cast<std::uint8_t>(scale.ClassOf(point.Mph)), point.Begins});
    }
    auto finest = std::make_shared<Level>(Level{std::move(points), {}});
    AddBlocks(*finest);
    levels_.push_back(std::move(finest));
    for (int level = 1; level < Levels; ++level) {
        const std::vector<ThinPoint>& finer = levels_.back()->Points;
        auto coarser = std::make_shared<Level>(Level{Thinned(finer, PixelOf(level)), {}});
        if (static_cast<double>(coarser->Points.size()) > WorthKeeping * static_cast<double>(finer.size())) {
            levels_.push_back(levels_.back());
            continue;
        }
        AddBlocks(*coarser);
        levels_.push_back(std::move(coarser));
    }
}

void ThinnedTrack::AddBlocks(Level& level) {
    const std::vector<ThinPoint>& points = level.Points;
    level.Blocks.resize((points.size() + BlockSize - 1) / BlockSize);
    for (std::size_t i = 0; i < points.size(); ++i) {
        WorldBox& block = level.Blocks[i / BlockSize];
        block.Include(points[i].At);
        if (!points[i].Begins) block.Include(points[i - 1].At);
    }
}

std::vector<ThinnedTrack::Run> ThinnedTrack::Seen(int level, const WorldBox& view) const {
    const Level& shown = *levels_[static_cast<std::size_t>(level)];
    std::vector<Run> runs;
    std::size_t end = 0;  // of the last run
    for (std::size_t block = 0; block < shown.Blocks.size(); ++block) {
        if (!shown.Blocks[block].Meets(view)) continue;
        const std::size_t first = block * BlockSize;
        const std::size_t next = std::min(first + BlockSize, shown.Points.size());
        if (!runs.empty() && end == first) {
            runs.back() = Run(runs.back().data(), runs.back().size() + next - first);
        } else {
            // The way to the first point begins at the one before.
            const std::size_t from = first - (shown.Points[first].Begins ? 0 : 1);
            runs.emplace_back(&shown.Points[from], next - from);
        }
        end = next;
    }
    return runs;
}

std::size_t ThinnedTrack::CountSeen(int level, const WorldBox& view) const {
    const Level& shown = *levels_[static_cast<std::size_t>(level)];
    std::size_t count = 0;
    for (std::size_t block = 0; block < shown.Blocks.size(); ++block)
        if (shown.Blocks[block].Meets(view)) count += std::min(BlockSize, shown.Points.size() - block * BlockSize);
    return count;
}

}  // namespace vantor
