#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "core/ports/DocumentWriter.h"
#include "plots/PlotAxes.h"

namespace vantor {

/// Something in a plot that can be pointed at and chosen.
struct PlotItem {
    std::string Text;  ///< in one or several lines, told when it is pointed at or chosen
};

/// How a plot that has its own rules is laid out while it is shown whole.
class PlotFrame {
public:
    virtual ~PlotFrame() = default;
    virtual PlotMap MapOf(const TextMeasure& measure, const CanvasBox& box, const PlotLook& look) const = 0;
    virtual void Draw(Canvas& canvas, const CanvasBox& box, const PlotLook& look) const = 0;
    /// The parts are cut off at its edges.
    virtual CanvasBox Room(const CanvasBox& box, const PlotMap& map) const = 0;
};

/// A plot: parts over one mapping of values, drawn one after the other; the same list in a window, a picture and a
/// page.
struct Plot {
    PlotAxes Axes;
    std::vector<std::shared_ptr<const PlotPart>> Parts;
    std::vector<PlotItem> Items;  ///< item 1 first: parts number them from 1, in the order in which keys go
    std::string EmptyText;        ///< stands in its area, or in a window in its place, where it is not empty
    std::string ProblemText;      ///< begins what a window says when a place does not fit into 16 bits
    bool ZoomsUp = true;          ///< the upright axis, too
    std::shared_ptr<const PlotFrame> WholeFrame;

    template <class Part>
    void Add(Part part) {
        Parts.push_back(std::make_shared<const Part>(std::move(part)));
    }
    PlotWindow Whole() const { return {Axes.Across.Whole, Axes.Up.Whole}; }
    bool HasItem(int item) const { return item > 0 && item <= static_cast<int>(Items.size()); }
};

/// Where the values of a window lie when the plot fills a box.
PlotMap MapOf(const TextMeasure& measure, const CanvasBox& box, const Plot& plot, const PlotLook& look,
              const PlotWindow& window);

void DrawPlot(Canvas& canvas, const CanvasBox& box, const Plot& plot, const PlotLook& look, const PlotWindow& window);
/// Over a drawn plot: what belongs to an item, so that it stands out.
void DrawChosen(Canvas& canvas, const CanvasBox& box, const Plot& plot, const PlotLook& look, const PlotWindow& window,
                int item);

/// The item nearest to a place within reach of it.
PlotHit FindItem(const Plot& plot, const PlotMap& map, CanvasPoint place, double reach);

/// The window as a picture file in light colours.
std::vector<std::byte> PlotPicture(const DocumentWriter& documents, const Plot& plot, const PlotWindow& window,
                                   PictureFormat format, CanvasSize size = {720, 450});

}  // namespace vantor
