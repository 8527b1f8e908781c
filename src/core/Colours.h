#pragma once

#include <array>
#include <cstdint>

namespace vantor {

struct Colour {
    std::uint8_t Red = 0;
    std::uint8_t Green = 0;
    std::uint8_t Blue = 0;

    bool operator==(const Colour&) const = default;
};

/// 0xRRGGBB.
constexpr Colour Rgb(std::uint32_t value) {
    return {static_cast<std::uint8_t>(value >> 16 & 0xFF), static_cast<std::uint8_t>(value >> 8 & 0xFF),
            static_cast<std::uint8_t>(value & 0xFF)};
}

/// A background and the text on it.
struct Face {
    Colour Background;
    Colour Text;
};

/// The colours of a scale of speeds.
using SpeedInks = std::array<Colour, 6>;

/// Every colour of the windows with a light or a dark palette. Texts have a contrast of 4.5 : 1 or more to what they
/// stand on, what is drawn in plots and the edges of controls 3 : 1, by the rule of WCAG 2.1; grids and page edges are
/// meant to be faint.
struct Colours {
    // Windows and their controls.
    Colour Window{}, Base{}, AlternateBase{}, Text{}, DisabledText{}, Button{}, ToolTip{};
    Colour Highlight{}, HighlightedText{}, Link{};
    /// The outlines of what is ticked, typed into or grouped: on `Window`.
    Colour Edge{};
    /// Pages on a screen lie on the desk.
    Colour Desk{}, PageEdge{};

    /// The light green of a counted run or a ready button, the light red of its opposite, a neutral face for a warning,
    /// the yellow of a field that is being edited, and a distance that can be typed.
    Face Green{}, Red{}, Amber{}, Yellow{}, Unlocked{};
    /// Letters on `Base`: a warning, and a port that cannot be opened.
    Colour Warning{}, ClosedPort{};

    // Plots, on `Base`.
    Colour DimText{}, Grid{};
    Colour Trace{}, Node{}, Key{}, Boundary{}, IdealSpeed{};
    Colour Delay{}, Average{}, AveragePoint{};
    /// Tracks on a map by their speed, the slowest first: it stands out most, and in grey each is paler than the one
    /// before.
    SpeedInks Speeds{};
};

inline constexpr Colours LightColours = {
    .Window = Rgb(0xF3F4F6),
    .Base = Rgb(0xFFFFFF),
    .AlternateBase = Rgb(0xF7F8FA),
    .Text = Rgb(0x1C1E21),
    .DisabledText = Rgb(0x8A8D91),
    .Button = Rgb(0xF0F1F3),
    .ToolTip = Rgb(0xFFFFF0),
    .Highlight = Rgb(0x1F6FC4),
    .HighlightedText = Rgb(0xFFFFFF),
    .Link = Rgb(0x1F5FA8),
    .Edge = Rgb(0x767A81),
    .Desk = Rgb(0xDFE1E4),
    .PageEdge = Rgb(0xB8BBC0),
    .Green = {Rgb(0xC0FFC0), Rgb(0x102A10)},
    .Red = {Rgb(0xFFC0C0), Rgb(0x3A0C0C)},
    .Amber = {Rgb(0xFFEAB8), Rgb(0x3D2B00)},
    .Yellow = {Rgb(0xFFFF80), Rgb(0x2B2A00)},
    .Unlocked = {Rgb(0xFFFFFF), Rgb(0x1C1E21)},
    .Warning = Rgb(0xB01010),
    .ClosedPort = Rgb(0xFF0000),  // as on every counter screen so far
    .DimText = Rgb(0x5A5E64),
    .Grid = Rgb(0xE0E3E7),
    .Trace = Rgb(0x0B7A75),
    .Node = Rgb(0x8A9098),
    .Key = Rgb(0xA81B5C),
    .Boundary = Rgb(0x1D4ED8),
    .IdealSpeed = Rgb(0xB45309),
    .Delay = Rgb(0xFF0000),
    .Average = Rgb(0x000000),
    .AveragePoint = Rgb(0x0080C0),
    .Speeds = {Rgb(0x5E0B15), Rgb(0x84103F), Rgb(0x7A3290), Rgb(0x3465B4), Rgb(0x1C84AA), Rgb(0x43A06F)},
};

inline constexpr Colours DarkColours = {
    .Window = Rgb(0x2B2D30),
    .Base = Rgb(0x1F2124),
    .AlternateBase = Rgb(0x26282B),
    .Text = Rgb(0xE6E6E6),
    .DisabledText = Rgb(0x8A8D91),
    .Button = Rgb(0x3A3D41),
    .ToolTip = Rgb(0x3A3D41),
    .Highlight = Rgb(0x2F6FB5),
    .HighlightedText = Rgb(0xFFFFFF),
    .Link = Rgb(0x6CB2FF),
    .Edge = Rgb(0x80848A),
    .Desk = Rgb(0x3A3D41),
    .PageEdge = Rgb(0x101010),
    .Green = {Rgb(0x1E4D2B), Rgb(0xE3FFE3)},
    .Red = {Rgb(0x5A2626), Rgb(0xFFE6E6)},
    .Amber = {Rgb(0x574514), Rgb(0xFFF4D6)},
    .Yellow = {Rgb(0x5C5700), Rgb(0xFFFFE0)},
    .Unlocked = {Rgb(0xD8DADD), Rgb(0x141618)},
    .Warning = Rgb(0xFFA8A8),
    .ClosedPort = Rgb(0xFFA8A8),
    .DimText = Rgb(0xA8ACB1),
    .Grid = Rgb(0x3A3D41),
    .Trace = Rgb(0x4FD1C5),
    .Node = Rgb(0x8A9098),
    .Key = Rgb(0xF48FC0),
    .Boundary = Rgb(0x6CA8FF),
    .IdealSpeed = Rgb(0xF5B041),
    .Delay = Rgb(0xFF5A5A),
    .Average = Rgb(0xF2F2F2),
    .AveragePoint = Rgb(0x38A8E8),
    .Speeds = {Rgb(0xFFF2C4), Rgb(0xFFC861), Rgb(0xF59A6B), Rgb(0xCF78AA), Rgb(0x7C75C8), Rgb(0x3F70A4)},
};

/// Those of printed pages, which have no controls.
struct PaperInks {
    Colour Base, Text, DimText, Rule, Grid, Trace, Node, Start, End;
};
inline constexpr PaperInks PaperColours = {
    .Base = Rgb(0xFFFFFF),
    .Text = Rgb(0x202020),
    .DimText = Rgb(0x606060),
    .Rule = Rgb(0x808080),
    .Grid = Rgb(0xD8D8D8),
    .Trace = Rgb(0x1F4E8C),
    .Node = Rgb(0x8A8A8A),
    .Start = Rgb(0x1B7A3D),
    .End = Rgb(0xB02A2A),
};

}  // namespace vantor
