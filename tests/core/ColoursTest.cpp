#include "core/Colours.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

namespace vantor {
namespace {

/// Relative luminance and contrast by WCAG 2.1.
double Luminance(Colour colour) {
    const auto linear = [](int part) {
        const double value = part / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.Red) + 0.7152 * linear(colour.Green) + 0.0722 * linear(colour.Blue);
}
double Contrast(Colour one, Colour other) {
    const auto [dark, light] = std::minmax({Luminance(one), Luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

TEST(Colours, ContrastIsReckonedAsPublished) {
    EXPECT_NEAR(Contrast(Rgb(0x000000), Rgb(0xFFFFFF)), 21, 1e-9);
    EXPECT_NEAR(Contrast(Rgb(0xFF0000), Rgb(0xFFFFFF)), 3.998, 1e-3);
}

TEST(Colours, TextsAndMarksStandOutFromWhatTheyStandOn) {
    for (const Colours& all : {LightColours, DarkColours}) {
        const std::pair<Colour, Colour> texts[] = {{all.Text, all.Window},
                                                   {all.Text, all.Base},
                                                   {all.Text, all.AlternateBase},
                                                   {all.Text, all.Button},
                                                   {all.Text, all.ToolTip},
                                                   {all.HighlightedText, all.Highlight},
                                                   {all.Link, all.Base},
                                                   {all.Warning, all.Base},
                                                   {all.Warning, all.Window},
                                                   {all.DimText, all.Base},
                                                   {all.Green.Text, all.Green.Background},
                                                   {all.Red.Text, all.Red.Background},
                                                   {all.Amber.Text, all.Amber.Background},
                                                   {all.Yellow.Text, all.Yellow.Background},
                                                   {all.Unlocked.Text, all.Unlocked.Background}};
        for (const auto& [text, background] : texts) EXPECT_GE(Contrast(text, background), 4.5);
        for (const Colour mark : {all.Trace, all.Node, all.Key, all.Boundary, all.IdealSpeed, all.Delay, all.Average,
                                  all.AveragePoint, all.ClosedPort})
            EXPECT_GE(Contrast(mark, all.Base), 3);
    }
    for (const Colour text : {PaperColours.Text, PaperColours.DimText})
        EXPECT_GE(Contrast(text, PaperColours.Base), 4.5);
    for (const Colour mark :
         {PaperColours.Rule, PaperColours.Trace, PaperColours.Node, PaperColours.Start, PaperColours.End})
        EXPECT_GE(Contrast(mark, PaperColours.Base), 3);
}

}  // namespace
}  // namespace vantor
