#pragma once

#include <QColor>
#include <QIcon>
#include <QPalette>
#include <QProxyStyle>
#include <QString>

class QApplication;

namespace vantor {

enum class ThemeChoice { Desktop, Light, Dark };

/// The platform's style with the program's margins and spacing, and without stock icons on dialog buttons.
class HouseStyle : public QProxyStyle {
public:
    explicit HouseStyle(QStyle* base);
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;
};

/// Sets style, palette and application icon.
void ApplyTheme(QApplication& application, ThemeChoice choice);

bool IsDark(const QPalette& palette);

/// A background and the text on it, contrast 4.5 : 1 or more.
struct ColourPair {
    QColor Background;
    QColor Text;
};
/// The light green of a counted run or a ready button, the light red of its opposite, and a neutral pair for a
/// warning; each with its pair for a dark palette.
ColourPair GreenPair(const QPalette& palette);
ColourPair RedPair(const QPalette& palette);
ColourPair AmberPair(const QPalette& palette);
/// The yellow of the field that is being edited.
ColourPair YellowPair(const QPalette& palette);
/// Red letters on a field's own background, contrast 4.5 : 1 or more.
QColor RedText(const QPalette& palette);

/// The background of a grade badge, green for "A" to red for "F", with the text on it.
ColourPair GradePair(const QString& grade, const QPalette& palette);

/// A line icon of the program's set (resources/icons), drawn in the palette's text colour; "new-study".
QIcon LineIcon(const QString& name);

/// Gives a button the face of the pair.
void SetFace(QWidget* button, const ColourPair& pair);

}  // namespace vantor
