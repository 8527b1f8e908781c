#pragma once

#include <QAbstractScrollArea>
#include <functional>

#include "core/ports/DocumentWriter.h"

namespace vantor {

/// Shows the pages of a document one below the other. Page Up, Page Down, Home and End go from page to page; the wheel
/// with Ctrl zooms.
class ReportPagesView : public QAbstractScrollArea {
public:
    /// A zoom that follows the window, or a percentage above 0.
    enum Fit { FitWidth = 0, FitPage = -1 };

    explicit ReportPagesView(QWidget* parent);

    /// Shows another document at the page that was shown, as far as there is one.
    void SetDocument(PagedDocument document);
    /// What stands in an empty document's place.
    void SetEmptyText(const QString& text);
    /// A Fit or a percentage, of the size on paper.
    void SetZoom(int zoom);
    /// The percentage at which pages are shown.
    double ShownPercent() const;

    int PageCount() const { return static_cast<int>(document_.Pages.size()); }
    /// The page at the upper part of the view, from 1; 0 where there is none.
    int CurrentPage() const;
    /// From 1; the nearest page where there is no such one.
    void GoToPage(int page);
    /// Carries out a key that goes to another page; false for any other key.
    bool Navigate(int key);

    std::function<void()> OnPageChanged;
    /// The user zooms with the wheel by so many steps.
    std::function<void(int steps)> OnZoom;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    /// Where a page (from 0) stands in the view.
    QRectF PageBox(int page) const;
    double PageStep() const;
    void PlacePages();
    void PaintPage(QPainter& painter, int page, const QRectF& box) const;

    PagedDocument document_;
    QString emptyText_;
    int zoom_ = FitWidth;
    double scale_ = 1;  ///< pixels to the point
    int wheelAngle_ = 0;
};

}  // namespace vantor
