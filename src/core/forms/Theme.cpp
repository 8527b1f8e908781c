#include "core/forms/Theme.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QResource>
#include <QStyleFactory>
#include <QSvgRenderer>
#include <QWidget>

/// The icons lie in a static library; without this the linker leaves them out. The macro works outside namespaces only.
static void LinkIcons() { Q_INIT_RESOURCE(icons); }

namespace vantor {
namespace {

constexpr int Margin = 12;
constexpr int Spacing = 8;
constexpr int CellMargin = 6;

QPalette PaletteOf(const Colours& colours) {
    QPalette palette(Ink(colours.Window));
    palette.setColor(QPalette::Window, Ink(colours.Window));
    palette.setColor(QPalette::Base, Ink(colours.Base));
    palette.setColor(QPalette::AlternateBase, Ink(colours.AlternateBase));
    palette.setColor(QPalette::Button, Ink(colours.Button));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, Ink(colours.Text));
        palette.setColor(QPalette::Disabled, role, Ink(colours.DisabledText));
    }
    palette.setColor(QPalette::PlaceholderText, Ink(colours.DisabledText));
    palette.setColor(QPalette::Link, Ink(colours.Link));
    palette.setColor(QPalette::Highlight, Ink(colours.Highlight));
    palette.setColor(QPalette::HighlightedText, Ink(colours.HighlightedText));
    palette.setColor(QPalette::ToolTipBase, Ink(colours.ToolTip));
    palette.setColor(QPalette::ToolTipText, Ink(colours.Text));
    return palette;
}

/// Draws an SVG whose strokes are "currentColor" in the text colour of the moment.
class LineIconEngine : public QIconEngine {
public:
    explicit LineIconEngine(QByteArray svg) : svg_(std::move(svg)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const QPalette palette = QApplication::palette();
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
        QByteArray coloured = svg_;
        coloured.replace("currentColor", palette.color(group, role).name().toLatin1());
        QSvgRenderer(coloured).render(painter, rect);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new LineIconEngine(*this); }

private:
    QByteArray svg_;
};

QByteArray IconSource(const QString& name) {
    return QResource(QStringLiteral(":/icons/%1.svg").arg(name)).uncompressedData();
}

}  // namespace

HouseStyle::HouseStyle(QStyle* base) : QProxyStyle(base) {}

int HouseStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
        case PM_LayoutLeftMargin:
        case PM_LayoutTopMargin:
        case PM_LayoutRightMargin:
        case PM_LayoutBottomMargin: return Margin;
        case PM_LayoutHorizontalSpacing:
        case PM_LayoutVerticalSpacing: return Spacing;
        case PM_FocusFrameHMargin:  // on both sides of a text in a table's cell
        case PM_HeaderMargin: return CellMargin;
        default: return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int HouseStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* returned) const {
    // An etched disabled text looks smeared on a dark background.
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons || hint == SH_EtchDisabledText) return 0;
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

void ApplyTheme(QApplication& application, ThemeChoice choice) {
    LinkIcons();
    const QString platformStyle = QApplication::style()->name();
    const bool platformHasOwn = platformStyle.compare(QLatin1String("windows"), Qt::CaseInsensitive) != 0;
    QApplication::setStyle(new HouseStyle(QStyleFactory::create(platformHasOwn ? platformStyle : "fusion")));
    if (choice == ThemeChoice::Dark) QApplication::setPalette(PaletteOf(DarkColours));
    if (choice == ThemeChoice::Light) QApplication::setPalette(PaletteOf(LightColours));
    application.setWindowIcon(LineIcon(QStringLiteral("vantor")));
}

bool IsDark(const QPalette& palette) { return palette.color(QPalette::Base).lightness() < 128; }

const Colours& ColoursOf(const QPalette& palette) { return IsDark(palette) ? DarkColours : LightColours; }

ColourPair GradePair(const QString& grade, const QPalette& palette) {
    if (grade == QLatin1String("A") || grade == QLatin1String("B")) return GreenPair(palette);
    if (grade == QLatin1String("C") || grade == QLatin1String("D")) return AmberPair(palette);
    if (grade.isEmpty()) return {palette.color(QPalette::Button), palette.color(QPalette::ButtonText)};
    return RedPair(palette);
}

QIcon LineIcon(const QString& name) { return QIcon(new LineIconEngine(IconSource(name))); }

void SetFace(QWidget* button, const ColourPair& pair) {
    QPalette palette = button->palette();
    palette.setColor(QPalette::Button, pair.Background);
    palette.setColor(QPalette::ButtonText, pair.Text);
    button->setPalette(palette);
}

}  // namespace vantor
