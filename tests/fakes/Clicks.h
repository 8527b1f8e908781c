#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <QWidget>

namespace vantor {

/// The control of that name; fails the test where the window has none.
template <class Control>
Control& Find(QWidget& window, const char* name) {
    auto* control = window.findChild<Control*>(QLatin1String(name));
    if (control == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *control;
}

inline void Click(QWidget& window, const char* name) {
    auto& button = Find<QAbstractButton>(window, name);
    EXPECT_TRUE(button.isEnabled()) << name << " is disabled";
    QTest::mouseClick(&button, Qt::LeftButton);
}

inline void Type(QWidget& window, const char* name, const QString& text) {
    auto& field = Find<QLineEdit>(window, name);
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, text);
}

}  // namespace vantor
