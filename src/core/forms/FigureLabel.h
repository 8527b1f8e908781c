#pragma once

#include <QLabel>

namespace vantor {

/// A label that shows a figure: a layout never makes it narrower than its text, nor than the widest one that is
/// expected, so that what stands beside it keeps its place while the figure changes.
class FigureLabel : public QLabel {
public:
    using QLabel::QLabel;

    void SetWidest(const QString& text) { widest_ = text; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

private:
    QString widest_;
};

/// A figure under its name, of plain text, that is heard with its caption.
FigureLabel* Figure(QWidget* parent, const char* name, const QString& caption, const QString& widest = {});

}  // namespace vantor
