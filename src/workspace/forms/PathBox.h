#pragma once

#include <QLineEdit>
#include <functional>
#include <string>

namespace vantor {

/// A field for a folder, marked in yellow while it is the one being edited.
class PathBox : public QLineEdit {
public:
    explicit PathBox(QWidget* parent) : QLineEdit(parent) {}

    /// The user came to the box, by a click or by the keyboard.
    std::function<void()> OnEntered;
    /// The user pressed Enter in it, which goes no further.
    std::function<void()> OnAccepted;

    void ShowMarked(bool marked);
    /// The folder without the blanks around it.
    std::string Folder() const;

protected:
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace vantor
