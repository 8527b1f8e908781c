#pragma once

#include <gtest/gtest.h>

#include "fakes/RecordingCanvas.h"

namespace vantor {

/// All texts lie within a canvas of that size, none over another one, and each has room for its words.
inline void ExpectTextsApart(const RecordingCanvas& canvas, double width, double height) {
    EXPECT_FALSE(canvas.Texts.empty());
    for (std::size_t i = 0; i < canvas.Texts.size(); ++i) {
        const CanvasBox& one = canvas.Texts[i].Box;
        EXPECT_TRUE(one.X >= 0 && one.Y >= 0 && one.X + one.Width <= width && one.Y + one.Height <= height)
            << canvas.Texts[i].Shown;
        EXPECT_LE(canvas.TextWidth(canvas.Texts[i].Shown, canvas.Texts[i].Style), one.Width) << canvas.Texts[i].Shown;
        for (std::size_t k = 0; k < i; ++k) {
            const CanvasBox& other = canvas.Texts[k].Box;
            const bool isApart = one.X >= other.X + other.Width || other.X >= one.X + one.Width ||
                                 one.Y >= other.Y + other.Height || other.Y >= one.Y + one.Height;
            EXPECT_TRUE(isApart) << canvas.Texts[i].Shown << " and " << canvas.Texts[k].Shown;
        }
    }
}

}  // namespace vantor
