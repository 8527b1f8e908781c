#include "core/Colours.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <utility>
#include <vector>

#include "Contrast.h"

namespace vantor {
namespace {

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
        EXPECT_GE(Contrast(all.Edge, all.Window), 3);
        for (const Colour speed : all.Speeds) EXPECT_GE(Contrast(speed, all.Base), 3);
        // Told apart by their lightness alone, as in a grey print.
        for (std::size_t i = 1; i < all.Speeds.size(); ++i)
            EXPECT_GE(Contrast(all.Speeds[i - 1], all.Base) / Contrast(all.Speeds[i], all.Base), 1.25);
    }
    for (const Colour text : {PaperColours.Text, PaperColours.DimText})
        EXPECT_GE(Contrast(text, PaperColours.Base), 4.5);
    for (const Colour mark :
         {PaperColours.Rule, PaperColours.Trace, PaperColours.Node, PaperColours.Start, PaperColours.End})
        EXPECT_GE(Contrast(mark, PaperColours.Base), 3);
}

}  // namespace
}  // namespace vantor
