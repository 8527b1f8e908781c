#pragma once

#include <QColor>
#include <QIcon>
#include <QPalette>
#include <QProxyStyle>
#include <QString>
#include <string>

#include "core/Colours.h"

class QApplication;

namespace vantor {

enum class ThemeChoice { Desktop, Light, Dark };

/// The platform's style with the program's margins and spacing, and without stock icons on dialog buttons. Where the
/// platform has none, the edges of controls stand out on a dark ground, too, and pages of tabs have the window's.
class HouseStyle : public QProxyStyle {
public:
    explicit HouseStyle(QStyle* base);
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;

private:
    void DrawGroupFrame(const QStyleOption& option, QPainter& painter, const QWidget* widget) const;

    bool isFusion_;
};

/// The key of the user's choice, and what stands under it: "light", "dark", anything else for the desktop's.
inline constexpr const char* ThemeKey = "theme";
ThemeChoice ThemeNamed(const std::string& name);

/// Sets style, palette and application icon.
void ApplyTheme(QApplication& application, ThemeChoice choice);
/// Changes the palette alone, of the windows that are open, too.
void UseTheme(ThemeChoice choice);

bool IsDark(const QPalette& palette);

/// The program's colours for a palette.
const Colours& ColoursOf(const QPalette& palette);
inline QColor Ink(Colour colour) { return {colour.Red, colour.Green, colour.Blue}; }

/// A background and the text on it.
struct ColourPair {
    QColor Background;
    QColor Text;
};
inline ColourPair PairOf(const Face& face) { return {Ink(face.Background), Ink(face.Text)}; }
inline ColourPair GreenPair(const QPalette& palette) { return PairOf(ColoursOf(palette).Green); }
inline ColourPair RedPair(const QPalette& palette) { return PairOf(ColoursOf(palette).Red); }
inline ColourPair AmberPair(const QPalette& palette) { return PairOf(ColoursOf(palette).Amber); }
inline ColourPair YellowPair(const QPalette& palette) { return PairOf(ColoursOf(palette).Yellow); }
inline QColor RedText(const QPalette& palette) { return Ink(ColoursOf(palette).Warning); }

/// The background of a grade badge, green for "A" to red for "F", with the text on it.
ColourPair GradePair(const QString& grade, const QPalette& palette);

/// A line icon of the program's set (resources/icons), drawn in the palette's text colour; "new-study".
QIcon LineIcon(const QString& name);

/// Gives a button the face of the pair.
void SetFace(QWidget* button, const ColourPair& pair);

}  // namespace vantor
