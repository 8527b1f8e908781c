#include "corridor/NodeOrder.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

#include "core/Numeric.h"
#include "core/Position.h"
#include "core/Text.h"

namespace vantor {
namespace {

using Order = std::vector<std::size_t>;

/// Feet from each place to each.
class Ways {
public:
    explicit Ways(const std::vector<Position>& places) : count_(places.size()), feet_(count_ * count_) {
        for (std::size_t i = 0; i < count_; ++i)
            for (std::size_t j = 0; j < count_; ++j) feet_[i * count_ + j] = FeetBetween(places[i], places[j]);
    }
    std::size_t Count() const { return count_; }
    double Between(std::size_t from, std::size_t to) const { return feet_[from * count_ + to]; }
    double Length(const Order& order) const {
        double length = 0;
        for (std::size_t i = 1; i < order.size(); ++i) length += Between(order[i - 1], order[i]);
        return length;
    }

private:
    std::size_t count_;
    std::vector<double> feet_;
};

/// From one place always to the nearest that is left.
Order NearestFrom(const Ways& ways, std::size_t first) {
    Order order(ways.Count());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::swap(order[0], order[first]);
    for (std::size_t i = 1; i < order.size(); ++i) {
        const auto nearest = std::min_element(
            order.begin() + static_cast<std::ptrdiff_t>(i), order.end(), [&](std::size_t left, std::size_t right) {
                return ways.Between(order[i - 1], left) < ways.Between(order[i - 1], right);
            });
        std::iter_swap(order.begin() + static_cast<std::ptrdiff_t>(i), nearest);
    }
    return order;
}

/// Feet that the order is longer for having its part from `first` to `last` turned round.
double GainOfTurning(const Ways& ways, const Order& order, std::size_t first, std::size_t last) {
    double gain = 0;
    if (first > 0) gain += ways.Between(order[first - 1], order[last]) - ways.Between(order[first - 1], order[first]);
    if (last + 1 < order.size())
        gain += ways.Between(order[first], order[last + 1]) - ways.Between(order[last], order[last + 1]);
    return gain;
}

/// Turns parts round for as long as that makes it shorter.
void Shorten(const Ways& ways, Order& order) {
    constexpr double Least = 0.1;
    for (bool isShorter = true; isShorter;) {
        isShorter = false;
        for (std::size_t first = 0; first < order.size(); ++first)
            for (std::size_t last = first + 1; last < order.size(); ++last) {
                if (GainOfTurning(ways, order, first, last) > -Least) continue;
                std::reverse(order.begin() + static_cast<std::ptrdiff_t>(first),
                             order.begin() + static_cast<std::ptrdiff_t>(last) + 1);
                isShorter = true;
            }
    }
}

Order ShortOrder(const Ways& ways) {
    Order best;
    for (std::size_t first = 0; first < ways.Count(); ++first) {
        Order order = NearestFrom(ways, first);
        if (best.empty() || ways.Length(order) < ways.Length(best)) best = std::move(order);
    }
    Shorten(ways, best);
    // The way in which they stand.
    if (std::ranges::find(best, std::size_t{0}) > std::ranges::find(best, best.size() - 1)) std::ranges::reverse(best);
    return best;
}

std::string Miles(double feet) { return OneDecimal(feet / 5280) + " miles"; }

}  // namespace

std::string OrderRemark(const std::vector<CorridorNode>& nodes) {
    constexpr double Shorter = 0.9;  // less may be a bend of the street
    std::vector<Position> places;
    std::vector<std::string> names;
    for (const CorridorNode& node : nodes) {
        if (!node.At) continue;
        places.push_back(*node.At);
        names.push_back(node.Name);
    }
    if (places.size() < 3) return {};
    const Ways ways(places);
    Order asTheyStand(places.size());
    std::iota(asTheyStand.begin(), asTheyStand.end(), std::size_t{0});
    const Order order = ShortOrder(ways);
    if (ways.Length(order) >= Shorter * ways.Length(asTheyStand)) return {};
    std::vector<std::string> ordered;
    for (const std::size_t node : order) ordered.push_back(names[node]);
    return "The nodes go forth and back as they stand, " + Miles(ways.Length(asTheyStand)) +
           " from the first to the last; in this order it is " + Miles(ways.Length(order)) + ": " +
           Joined(ordered, ", ") + ".";
}

}  // namespace vantor
