#pragma once

#include <QLabel>
#include <QResizeEvent>

namespace vantor {

/// A plain text that wraps and is never cut: what stands above and below it gives way, also in a splitter.
class WrappedLabel : public QLabel {
public:
    explicit WrappedLabel(QWidget* parent) : QLabel(parent) {
        setWordWrap(true);
        setTextFormat(Qt::PlainText);
    }

    QSize minimumSizeHint() const override {
        const QSize least = QLabel::minimumSizeHint();
        return {least.width(), text().isEmpty() ? least.height() : heightForWidth(width())};
    }

protected:
    void resizeEvent(QResizeEvent* event) override {
        QLabel::resizeEvent(event);
        if (event->oldSize().width() != width()) updateGeometry();
    }
};

}  // namespace vantor
