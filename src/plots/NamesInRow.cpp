#include "plots/NamesInRow.h"

#include <algorithm>

namespace vantor {
namespace {

void MoveApart(PlotRange& left, PlotRange& right, double overlap, const PlotRange& row) {
    const auto move = [](PlotRange& range, double way) { range = {range.Low + way, range.High + way}; };
    const double leftRoom = left.Low - row.Low;
    const double rightRoom = row.High - right.High;
    const double toRight = std::max(std::min(overlap / 2, rightRoom), overlap - leftRoom);
    move(right, toRight);
    move(left, toRight - overlap);
}

}  // namespace

std::vector<PlotRange> PlaceInRow(std::span<const RowName> names, const PlotRange& row, double gap, Crowded crowded) {
    std::vector<PlotRange> rooms;
    std::size_t last = names.size();  // the last name that has room
    double from = row.Low;            // where its room may begin
    for (std::size_t i = 0; i < names.size(); ++i) {
        const RowName& name = names[i];
        const double left = std::clamp(name.Place - name.Width / 2, row.Low, std::max(row.Low, row.High - name.Width));
        PlotRange room{left, left + name.Width};
        const double overlap = last < i ? rooms[last].High + gap - room.Low : 0;
        if (overlap > 0 && crowded == Crowded::MovesApart) {
            MoveApart(rooms[last], room, overlap, row);
        } else if (overlap > 0) {
            const double parting = (names[last].Place + name.Place) / 2;
            const double end = std::min(rooms[last].High, parting - gap / 2);
            const PlotRange before{std::max(std::min(rooms[last].Low, end - names[last].Width), from), end};
            room.Low = std::max(room.Low, parting + gap / 2);
            room.High = std::min(room.Low + name.Width, row.High);
            if (before.Span() < names[last].Least || room.Span() < name.Least) {
                rooms.push_back({left, left});
                continue;
            }
            rooms[last] = before;
        }
        if (last < i) from = rooms[last].High + gap;
        rooms.push_back(room);
        last = i;
    }
    return rooms;
}

}  // namespace vantor
