#include "core/forms/Theme.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QGroupBox>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QResource>
#include <QStyleFactory>
#include <QStyleOption>
#include <QSvgRenderer>
#include <QWidget>
#include <algorithm>

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

/// Draws an SVG whose strokes are "currentColor" in the text colour of the moment; each size and colour once.
class LineIconEngine : public QIconEngine {
public:
    explicit LineIconEngine(QByteArray svg) : svg_(std::move(svg)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const QSizeF size = QSizeF(rect.size()) * painter->device()->devicePixelRatio();
        painter->drawPixmap(rect, pixmap(size.toSize(), mode, state));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        const QPalette palette = QApplication::palette();
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
        QByteArray coloured = svg_;
        coloured.replace("currentColor", palette.color(group, role).name().toLatin1());
        const QString key =
            QStringLiteral("%1x%2 ").arg(size.width()).arg(size.height()) + QString::fromLatin1(coloured);
        QPixmap pixmap;
        if (QPixmapCache::find(key, &pixmap)) return pixmap;
        pixmap = QPixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        QSvgRenderer(coloured).render(&painter, QRectF(QPointF(), size));
        painter.end();
        QPixmapCache::insert(key, pixmap);
        return pixmap;
    }

    QIconEngine* clone() const override { return new LineIconEngine(*this); }

private:
    QByteArray svg_;
};

/// How much darker than the window Fusion draws the edge of a radio button, a line, a check box and a frame.
constexpr double Radio = 1.5;
constexpr double Line = 1.4;
constexpr double Check = Line / 1.1;
constexpr double Frame = Line / 1.08;

/// Fusion draws the edges of controls in the window's colour, darkened by that factor, which no dark window shows: the
/// palette under which they get ours.
QPalette EdgePalette(QPalette palette, double darkened) {
    const Colours& colours = ColoursOf(palette);
    const QColor edge = Ink(colours.Edge);
    palette.setColor(QPalette::Window, QColor::fromHsvF(edge.hsvHueF(), edge.hsvSaturationF(),
                                                        std::min(1.0F, edge.valueF() * static_cast<float>(darkened))));
    palette.setColor(QPalette::Highlight, Ink(colours.Link));
    return palette;
}

/// Draws with another palette, for an option of that kind; nothing for any other.
template <class Option, class Draw>
bool DrawnUnder(const QPalette& palette, const QStyleOption* option, Draw draw) {
    const auto* given = qstyleoption_cast<const Option*>(option);
    if (given == nullptr) return false;
    Option changed(*given);
    changed.palette = palette;
    draw(changed);
    return true;
}

/// The colour of buttons from which Fusion makes the window's for a tab.
QColor TabColour(const QColor& window) {
    QColor button = window;
    for (int i = 0; i < 4; ++i) {
        const float lighter =
            (100.0F + std::max(1.0F, static_cast<float>(180 - qGray(button.rgb())) / 6)) / 100 * 1.04F;
        button = QColor::fromHsvF(std::max(window.hsvHueF(), 0.0F), std::min(1.0F, window.hsvSaturationF() / 0.75F),
                                  window.valueF() / lighter);
    }
    return button;
}

QByteArray IconSource(const QString& name) {
    return QResource(QStringLiteral(":/icons/%1.svg").arg(name)).uncompressedData();
}

}  // namespace

HouseStyle::HouseStyle(QStyle* base)
    : QProxyStyle(base), isFusion_(baseStyle()->name().compare(QLatin1String("fusion"), Qt::CaseInsensitive) == 0) {}

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

void HouseStyle::DrawGroupFrame(const QStyleOption& option, QPainter& painter, const QWidget* widget) const {
    constexpr int Above = 3;
    constexpr double Radius = 2.5;
    const auto* box = qobject_cast<const QGroupBox*>(widget);
    const bool hasTitle = box == nullptr || box->isCheckable() || !box->title().isEmpty();
    const int title = std::max(pixelMetric(PM_ExclusiveIndicatorHeight, &option, widget), option.fontMetrics.height());
    const QRectF frame = QRectF(option.rect).adjusted(0.5, (hasTitle ? title : 0) + Above + 0.5, -0.5, -0.5);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Ink(ColoursOf(option.palette).Edge));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(frame, Radius, Radius);
    painter.restore();
}

void HouseStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    const auto draw = [&](const QStyleOption& changed) {
        QProxyStyle::drawPrimitive(element, &changed, painter, widget);
    };
    if (isFusion_) {
        const QPalette& palette = option->palette;
        switch (element) {
            case PE_IndicatorRadioButton:
                if (DrawnUnder<QStyleOptionButton>(EdgePalette(palette, Radio), option, draw)) return;
                break;
            case PE_IndicatorCheckBox:
                if (DrawnUnder<QStyleOptionButton>(EdgePalette(palette, Check), option, draw)) return;
                break;
            case PE_FrameLineEdit:
                if (DrawnUnder<QStyleOptionFrame>(EdgePalette(palette, Line), option, draw)) return;
                break;
            case PE_Frame:
                // Lists stand out by their ground.
                if (qobject_cast<const QAbstractScrollArea*>(widget) == nullptr &&
                    DrawnUnder<QStyleOptionFrame>(EdgePalette(palette, Frame), option, draw))
                    return;
                break;
            case PE_FrameGroupBox: return DrawGroupFrame(*option, *painter, widget);
            case PE_FrameTabWidget:
                painter->fillRect(option->rect, palette.window());
                painter->setPen(Ink(ColoursOf(palette).Edge));
                return painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
            default: break;
        }
    }
    draw(*option);
}

void HouseStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                    const QWidget* widget) const {
    const auto draw = [&](const QStyleOptionComplex& changed) {
        QProxyStyle::drawComplexControl(control, &changed, painter, widget);
    };
    if (isFusion_ && (control == CC_ComboBox || control == CC_SpinBox)) {
        const QPalette palette = EdgePalette(option->palette, Line);
        if (DrawnUnder<QStyleOptionComboBox>(palette, option, draw)) return;
        if (DrawnUnder<QStyleOptionSpinBox>(palette, option, draw)) return;
    }
    draw(*option);
}

void HouseStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
    const auto draw = [&](const QStyleOption& changed) {
        QProxyStyle::drawControl(element, &changed, painter, widget);
    };
    if (isFusion_ && element == CE_TabBarTabShape) {
        QPalette palette = EdgePalette(option->palette, Line);
        palette.setColor(QPalette::Button, TabColour(option->palette.color(QPalette::Window)));
        if (DrawnUnder<QStyleOptionTab>(palette, option, draw)) return;
    }
    draw(*option);
}

ThemeChoice ThemeNamed(const std::string& name) {
    if (name == "dark") return ThemeChoice::Dark;
    return name == "light" ? ThemeChoice::Light : ThemeChoice::Desktop;
}

void UseTheme(ThemeChoice choice) {
    if (choice == ThemeChoice::Desktop)
        QApplication::setPalette(QPalette());
    else
        QApplication::setPalette(PaletteOf(choice == ThemeChoice::Dark ? DarkColours : LightColours));
}

void ApplyTheme(QApplication& application, ThemeChoice choice) {
    LinkIcons();
    const auto* ours = qobject_cast<QProxyStyle*>(QApplication::style());
    const QString platformStyle = (ours != nullptr ? ours->baseStyle() : QApplication::style())->name();
    const bool platformHasOwn = platformStyle.compare(QLatin1String("windows"), Qt::CaseInsensitive) != 0;
    QApplication::setStyle(new HouseStyle(QStyleFactory::create(platformHasOwn ? platformStyle : "fusion")));
    UseTheme(choice);
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
