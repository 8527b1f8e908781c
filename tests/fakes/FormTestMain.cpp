#include <gtest/gtest.h>

#include <QApplication>

#include "core/forms/Theme.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    vantor::ApplyTheme(application, vantor::ThemeChoice::Light);
    return RUN_ALL_TESTS();
}
