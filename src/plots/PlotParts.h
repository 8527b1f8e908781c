#pragma once

#include <optional>
#include <string>
#include <vector>

#include "plots/PlotMap.h"

namespace vantor {

/// How a plot is drawn; lengths in the units of its canvas.
struct PlotLook {
    Colours Inks = LightColours;
    double TextSize = 9;
    bool HasLegend = true;
    bool HasTitle = true;
    /// How far a drawn trace may pass by its points; a window may be coarser than a picture that is looked at closely.
    double Tolerance = 0.1;

    TextStyle Text(TextSide side = TextSide::Left) const { return {TextSize, false, Inks.Text, side}; }
    TextStyle Dim(TextSide side = TextSide::Left) const { return {TextSize, false, Inks.DimText, side}; }
    TextStyle Title() const { return {TextSize * 1.25, true, Inks.Text}; }
};

/// Where an item of a plot was found.
struct PlotHit {
    int Item = 0;  ///< from 1; 0 for none
    PlotPoint At;
};

/// Looks for the item nearest to a place. What is offered later wins only where it is nearer.
class PlotSearch {
public:
    PlotSearch(const PlotMap& map, CanvasPoint place, double reach) : map_(map), place_(place), reach_(reach) {}

    void OfferPoint(int item, PlotPoint point);
    /// The way from one point to the next.
    void OfferWay(int item, PlotPoint from, PlotPoint to);
    /// What is pointed at wherever the place is, as by its value across.
    void Take(int item) { Offer(item, place_.X, place_.Y); }
    PlotPoint Place() const { return map_.ValueAt(place_); }
    const PlotHit& Found() const { return found_; }

private:
    void Offer(int item, double x, double y);

    const PlotMap& map_;
    CanvasPoint place_;
    double reach_;
    PlotHit found_;
};

/// One thing that is drawn over the mapping of its plot. What lies outside the plot's area is cut off.
class PlotPart {
public:
    virtual ~PlotPart() = default;
    virtual void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const = 0;
    /// Draws once more, so that it stands out, what belongs to an item.
    virtual void DrawChosen(Canvas&, const PlotMap&, const PlotLook&, int) const {}
    virtual void Search(PlotSearch&) const {}
    /// Where an item can be seen.
    virtual std::optional<PlotPoint> PlaceOf(int) const { return std::nullopt; }
};

/// The ink of a part in light and dark windows, and on paper as in light ones.
using PlotInk = Colour Colours::*;

/// What stands at a point.
enum class PlotMarker { None, Dot, Square, Diamond, Triangle, RingedDot, Ring };
void DrawMarker(Canvas& canvas, CanvasPoint centre, PlotMarker marker, double size, Colour ink, const Colours& inks);

/// A line through points whose x never falls.
struct PlotTrace : PlotPart {
    std::vector<PlotPoint> Points;
    PlotInk Ink = &Colours::Trace;
    double Width = 1.5;
    LinePattern Pattern = LinePattern::Solid;
    PlotMarker Marker = PlotMarker::None;  ///< at every point
    int Item = 0;                          ///< 0: not to be pointed at

    void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const override;
    void DrawChosen(Canvas& canvas, const PlotMap& map, const PlotLook& look, int item) const override;
    void Search(PlotSearch& search) const override;
    std::optional<PlotPoint> PlaceOf(int item) const override;

private:
    void DrawLine(Canvas& canvas, const PlotMap& map, const PlotLook& look, const LineStyle& style) const;
};

/// The surface between two lines over the same places. A place without both values parts it.
struct PlotBand : PlotPart {
    struct Slice {
        double X = 0;
        std::optional<PlotRange> Between;
    };
    std::vector<Slice> Slices;
    PlotInk Ink = &Colours::Trace;
    double Opacity = 0.2;
    LinePattern Edges = LinePattern::Solid;
    bool HasEdges = true;  ///< so that two bands can be told apart without colour

    void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const override;

private:
    void DrawRun(Canvas& canvas, const PlotMap& map, const PlotLook& look, std::size_t first, std::size_t end) const;
};

/// Points that each stand for themselves.
struct PlotPoints : PlotPart {
    struct Mark {
        PlotPoint At;
        int Item = 0;  ///< 0: not to be pointed at
        PlotMarker Marker = PlotMarker::Dot;
    };
    std::vector<Mark> Marks;
    PlotInk Ink = &Colours::Delay;
    double Size = 6;

    void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const override;
    void DrawChosen(Canvas& canvas, const PlotMap& map, const PlotLook& look, int item) const override;
    void Search(PlotSearch& search) const override;
    std::optional<PlotPoint> PlaceOf(int item) const override;
};

/// Values with what they may as well be: a mean and its interval.
struct PlotSpans : PlotPart {
    struct Span {
        PlotPoint At;
        std::optional<PlotRange> Between;  ///< of the upright axis
        int Item = 0;                      ///< 0: not to be pointed at
    };
    std::vector<Span> Spans;
    PlotInk Ink = &Colours::Trace;
    LinePattern Pattern = LinePattern::Solid;
    PlotMarker Marker = PlotMarker::Dot;

    void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const override;
    void DrawChosen(Canvas& canvas, const PlotMap& map, const PlotLook& look, int item) const override;
    void Search(PlotSearch& search) const override;
    std::optional<PlotPoint> PlaceOf(int item) const override;

private:
    void DrawSpan(Canvas& canvas, const PlotMap& map, const PlotLook& look, const Span& span, Colour ink) const;
};

/// Lines over the whole height or width of the area with their names; a name that would meet the one before is left
/// out, its line is not.
struct PlotLines : PlotPart {
    enum class Way { Upright, Level };
    struct Line {
        double Value = 0;
        std::string Name;
    };
    Way Along = Way::Level;
    std::vector<Line> Lines;
    PlotInk Ink = &Colours::Node;
    double Width = 1;
    LinePattern Pattern = LinePattern::Dashed;

    void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const override;
};

/// Level bands from one value up to the next, each with its name at the right: the grades. Every other one is shaded.
struct PlotLayers : PlotPart {
    struct Layer {
        double UpTo = 0;
        std::string Name;
    };
    std::vector<Layer> Layers;  ///< rising; the first begins at 0, the last goes on for ever

    void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const override;
};

/// What a legend says: a sample as it is drawn, and what it is.
struct PlotSample {
    std::string Caption;
    PlotInk Ink = &Colours::Trace;
    double Width = 1.5;  ///< of the line; 0 for none
    LinePattern Pattern = LinePattern::Solid;
    PlotMarker Marker = PlotMarker::None;
    PlotInk MarkerInk = nullptr;  ///< where it is another than the line's
    double Surface = 0;           ///< the opacity of a band; 0 for none
    double MarkerSize = 6;

    static constexpr double Length = 24;
    /// In the middle of a box.
    void Draw(Canvas& canvas, const CanvasBox& box, const PlotLook& look) const;
    /// With its caption beside it, `gap` between them.
    void DrawNamed(Canvas& canvas, const CanvasBox& box, const PlotLook& look, double gap) const;
    double NamedLength(const TextMeasure& measure, const PlotLook& look, double gap) const {
        return Length + gap + measure.TextWidth(Caption, look.Text());
    }
};

}  // namespace vantor
