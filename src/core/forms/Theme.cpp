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

QPalette DarkPalette() {
    QPalette palette;
    const QColor window(0x2b, 0x2d, 0x30);
    const QColor base(0x1f, 0x21, 0x24);
    const QColor text(0xe6, 0xe6, 0xe6);
    const QColor dim(0x8a, 0x8d, 0x91);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x28, 0x2b));
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, QColor(0x3a, 0x3d, 0x41));
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3d, 0x41));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, dim);
    palette.setColor(QPalette::Link, QColor(0x6c, 0xb2, 0xff));
    palette.setColor(QPalette::Highlight, QColor(0x2f, 0x6f, 0xb5));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, dim);
    return palette;
}

QPalette LightPalette() {
    QPalette palette(QColor(0xf3, 0xf4, 0xf6));
    palette.setColor(QPalette::Window, QColor(0xf3, 0xf4, 0xf6));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0xf7, 0xf8, 0xfa));
    palette.setColor(QPalette::Button, QColor(0xf0, 0xf1, 0xf3));
    const QColor text(0x1c, 0x1e, 0x21);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) palette.setColor(role, text);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(0x8a, 0x8d, 0x91));
    palette.setColor(QPalette::Highlight, QColor(0x1f, 0x6f, 0xc4));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, QColor(0xff, 0xff, 0xf0));
    palette.setColor(QPalette::ToolTipText, text);
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
    if (choice == ThemeChoice::Dark) QApplication::setPalette(DarkPalette());
    if (choice == ThemeChoice::Light) QApplication::setPalette(LightPalette());
    application.setWindowIcon(LineIcon(QStringLiteral("vantor")));
}

bool IsDark(const QPalette& palette) { return palette.color(QPalette::Base).lightness() < 128; }

ColourPair GreenPair(const QPalette& palette) {
    if (IsDark(palette)) return {QColor(0x1e, 0x4d, 0x2b), QColor(0xe3, 0xff, 0xe3)};
    return {QColor(0xc0, 0xff, 0xc0), QColor(0x10, 0x2a, 0x10)};
}

ColourPair RedPair(const QPalette& palette) {
    if (IsDark(palette)) return {QColor(0x5a, 0x26, 0x26), QColor(0xff, 0xe6, 0xe6)};
    return {QColor(0xff, 0xc0, 0xc0), QColor(0x3a, 0x0c, 0x0c)};
}

ColourPair AmberPair(const QPalette& palette) {
    if (IsDark(palette)) return {QColor(0x57, 0x45, 0x14), QColor(0xff, 0xf4, 0xd6)};
    return {QColor(0xff, 0xea, 0xb8), QColor(0x3d, 0x2b, 0x00)};
}

ColourPair YellowPair(const QPalette& palette) {
    if (IsDark(palette)) return {QColor(0x5c, 0x57, 0x00), QColor(0xff, 0xff, 0xe0)};
    return {QColor(0xff, 0xff, 0x80), QColor(0x2b, 0x2a, 0x00)};
}

QColor RedText(const QPalette& palette) {
    return IsDark(palette) ? QColor(0xff, 0xa8, 0xa8) : QColor(0xb0, 0x10, 0x10);
}

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
