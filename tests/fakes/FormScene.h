#pragma once

#include <memory>
#include <string>
#include <utility>

#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"

namespace vantor {

/// A program around a disk in memory and one of its screens. What was to be asked has been asked in the end.
template <class Form>
class FormScene : public testing::Test, protected TestProgram {
protected:
    ~FormScene() override {
        if (Window && !Window->isHidden()) Window->hide();
        EXPECT_TRUE(Messages.IsDone());
    }

    /// Opens the screen, which takes the keys then.
    template <class... Arguments>
    Form& Open(Arguments&&... arguments) {
        Window = std::make_unique<Form>(Context, std::forward<Arguments>(arguments)...);
        Window->show();
        Window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(Window.get()));
        return *Window;
    }
    bool IsAccepted() const { return Window->isHidden() && Window->result() == Form::Accepted; }

    template <class Control>
    Control& Get(const char* name) {
        return Find<Control>(*Window, name);
    }
    void Press(const char* button) { Click(*Window, button); }
    void TypeInto(const char* field, const QString& text) { Type(*Window, field, text); }
    void Pick(const char* list, const char* text) { Choose(*Window, list, text); }
    std::string Text(const char* name) { return TextOf(*Window, name); }
    bool IsEnabled(const char* name) { return Get<QWidget>(name).isEnabled(); }
    bool IsShown(const char* name) { return Get<QWidget>(name).isVisible(); }
    bool IsChecked(const char* name) { return Get<QAbstractButton>(name).isChecked(); }
    void PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QWidget* focus = QApplication::focusWidget();
        QTest::keyClick(focus == nullptr ? Window.get() : focus, key, modifiers);
    }
    /// Waits until the screen has closed, as after a button that is pressed by its access key.
    bool Closes() {
        return QTest::qWaitFor([this] { return Window->isHidden(); });
    }

    std::unique_ptr<Form> Window;
};

}  // namespace vantor
