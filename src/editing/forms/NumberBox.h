#pragma once

#include <QLineEdit>
#include <functional>

namespace vantor {

/// A box for a number that is part of a picture: Enter takes what was typed, Up and Down step by one, with Shift by
/// ten, and Esc brings the old number back without leaving the screen. Once its text is taken, Undo is the screen's.
class NumberBox : public QLineEdit {
public:
    using QLineEdit::QLineEdit;

    std::function<void()> OnEnter;
    /// The keys go elsewhere, and something was typed.
    std::function<void()> OnLeave;
    /// Shows the old number again.
    std::function<void()> OnGiveUp;
    /// A key steps, as long as it is down.
    std::function<void(int units)> OnStep;
    std::function<void()> OnStepped;

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void EndSteps();

    int heldKey_ = 0;
};

}  // namespace vantor
