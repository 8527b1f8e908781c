#include "reports/forms/ReportPagesView.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "core/forms/PainterCanvas.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

constexpr double PointsPerInch = 72;
constexpr double PageGap = 16;
constexpr int WheelStep = 120;
constexpr int ScrollStep = 48;

}  // namespace

ReportPagesView::ReportPagesView(QWidget* parent) : QAbstractScrollArea(parent) {
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setBackgroundRole(QPalette::NoRole);
    verticalScrollBar()->setSingleStep(ScrollStep);
    horizontalScrollBar()->setSingleStep(ScrollStep);
    // A bar that comes and goes would change the width that pages are to fit.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
}

void ReportPagesView::SetDocument(PagedDocument document) {
    const int page = CurrentPage();
    document_ = std::move(document);
    PlacePages();
    GoToPage(page);
    viewport()->update();
    if (OnPageChanged) OnPageChanged();
}

void ReportPagesView::SetEmptyText(const QString& text) {
    emptyText_ = text;
    viewport()->update();
}

void ReportPagesView::SetZoom(int zoom) {
    // The point in the middle of the view stays there.
    const auto middleOf = [](const QScrollBar* bar) {
        return (bar->value() + bar->pageStep() / 2.0) / std::max(1, bar->maximum() + bar->pageStep());
    };
    const double across = middleOf(horizontalScrollBar());
    const double down = middleOf(verticalScrollBar());
    zoom_ = zoom;
    PlacePages();
    const auto place = [](QScrollBar* bar, double middle) {
        bar->setValue(static_cast<int>(middle * (bar->maximum() + bar->pageStep()) - bar->pageStep() / 2.0));
    };
    place(horizontalScrollBar(), across);
    place(verticalScrollBar(), down);
    viewport()->update();
    if (OnPageChanged) OnPageChanged();
}

double ReportPagesView::ShownPercent() const { return scale_ * PointsPerInch / logicalDpiY() * 100; }

double ReportPagesView::PageStep() const { return document_.Page.Height * scale_ + PageGap; }

QRectF ReportPagesView::PageBox(int page) const {
    const double width = document_.Page.Width * scale_;
    const double room = viewport()->width();
    const double left = std::max((room - width) / 2, PageGap) - horizontalScrollBar()->value();
    return {left, PageGap + page * PageStep() - verticalScrollBar()->value(), width, document_.Page.Height * scale_};
}

void ReportPagesView::PlacePages() {
    if (document_.Pages.empty()) {
        verticalScrollBar()->setRange(0, 0);
        horizontalScrollBar()->setRange(0, 0);
        return;
    }
    const QSize room = viewport()->size();
    const double fitWidth = (room.width() - 2 * PageGap) / document_.Page.Width;
    const double fitHeight = (room.height() - 2 * PageGap) / document_.Page.Height;
    if (zoom_ > 0)
        scale_ = zoom_ / 100.0 * logicalDpiY() / PointsPerInch;
    else
        scale_ = std::max(0.05, zoom_ == FitWidth ? fitWidth : std::min(fitWidth, fitHeight));
    const auto setRange = [](QScrollBar* bar, double length, int shown) {
        bar->setPageStep(shown);
        bar->setRange(0, std::max(0, static_cast<int>(std::ceil(length)) - shown));
    };
    setRange(verticalScrollBar(), PageGap + PageCount() * PageStep(), room.height());
    setRange(horizontalScrollBar(), document_.Page.Width * scale_ + 2 * PageGap, room.width());
}

int ReportPagesView::CurrentPage() const {
    if (document_.Pages.empty()) return 0;
    const QScrollBar* bar = verticalScrollBar();
    if (bar->maximum() > 0 && bar->value() == bar->maximum()) return PageCount();
    // A page that is mostly scrolled away is no longer the one that is read.
    const double place = bar->value() + std::min<double>(viewport()->height(), PageStep()) / 3 - PageGap;
    return std::clamp(static_cast<int>(place / PageStep()) + 1, 1, PageCount());
}

void ReportPagesView::GoToPage(int page) {
    const int nearest = std::clamp(page, 1, std::max(1, PageCount()));
    verticalScrollBar()->setValue(static_cast<int>((nearest - 1) * PageStep()));
}

bool ReportPagesView::Navigate(int key) {
    switch (key) {
        case Qt::Key_PageUp: GoToPage(CurrentPage() - 1); return true;
        case Qt::Key_PageDown: GoToPage(CurrentPage() + 1); return true;
        case Qt::Key_Home: GoToPage(1); return true;
        case Qt::Key_End: GoToPage(PageCount()); return true;
        default: return false;
    }
}

void ReportPagesView::PaintPage(QPainter& painter, int page, const QRectF& box) const {
    constexpr int ShadowWidth = 3;
    const bool isDark = IsDark(palette());
    for (int i = ShadowWidth; i > 0; --i) painter.fillRect(box.translated(i, i), QColor(0, 0, 0, isDark ? 60 : 24));
    painter.fillRect(box, Qt::white);
    painter.save();
    painter.setClipRect(box, Qt::IntersectClip);
    painter.translate(box.topLeft());
    painter.scale(scale_, scale_);
    PainterCanvas canvas(painter);
    document_.Pages[static_cast<std::size_t>(page)](canvas);
    painter.restore();
    painter.setPen(Ink(ColoursOf(palette()).PageEdge));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(box);
}

void ReportPagesView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.fillRect(event->rect(), Ink(ColoursOf(palette()).Desk));
    if (document_.Pages.empty()) {
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(viewport()->rect().adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap, emptyText_);
        return;
    }
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.setClipRegion(event->region());
    for (int page = 0; page < PageCount(); ++page) {
        const QRectF box = PageBox(page);
        if (box.adjusted(-1, -1, 4, 4).intersects(event->rect())) PaintPage(painter, page, box);
    }
}

void ReportPagesView::resizeEvent(QResizeEvent*) {
    const int page = CurrentPage();
    PlacePages();
    if (zoom_ <= 0) GoToPage(page);
}

void ReportPagesView::scrollContentsBy(int dx, int dy) {
    QAbstractScrollArea::scrollContentsBy(dx, dy);
    if (OnPageChanged) OnPageChanged();
}

void ReportPagesView::keyPressEvent(QKeyEvent* event) {
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (!isPlain || !Navigate(event->key())) QAbstractScrollArea::keyPressEvent(event);
}

void ReportPagesView::wheelEvent(QWheelEvent* event) {
    if (!event->modifiers().testFlag(Qt::ControlModifier)) return QAbstractScrollArea::wheelEvent(event);
    wheelAngle_ += event->angleDelta().y();
    const int steps = wheelAngle_ / WheelStep;
    wheelAngle_ -= steps * WheelStep;
    if (steps != 0 && OnZoom) OnZoom(steps);
    event->accept();
}

}  // namespace vantor
