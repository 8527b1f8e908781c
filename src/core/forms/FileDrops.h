#pragma once

#include <QObject>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

namespace vantor {

/// Takes files that are dropped anywhere onto a window, and hands their paths over when the drop has ended. Lives as
/// long as the window; to be made when its controls exist.
class FileDrops : public QObject {
public:
    using Sink = std::function<void(const std::vector<std::string>& paths)>;

    FileDrops(QWidget& window, Sink sink);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Sink sink_;
};

}  // namespace vantor
