#include "core/forms/Theme.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabWidget>

#include "Contrast.h"

namespace vantor {
namespace {

Colour ColourAt(const QImage& picture, int x, int y) { return Rgb(picture.pixel(x, y) & 0xFFFFFF); }

/// The edge of what is neither ticked nor typed into is all that tells of it.
TEST(Theme, EdgesStandOutAndPagesDoNot) {
    for (const auto& [choice, colours] :
         {std::pair{ThemeChoice::Light, LightColours}, {ThemeChoice::Dark, DarkColours}}) {
        ApplyTheme(*qApp, choice);
        QRadioButton radio;
        QCheckBox check;
        QGroupBox group;
        QLineEdit field;
        QSpinBox number;
        number.setAlignment(Qt::AlignRight);
        QComboBox list;
        QFrame frame;
        frame.setFrameShape(QFrame::StyledPanel);
        for (QWidget* control :
             {static_cast<QWidget*>(&radio), static_cast<QWidget*>(&check), static_cast<QWidget*>(&group),
              static_cast<QWidget*>(&field), static_cast<QWidget*>(&number), static_cast<QWidget*>(&list),
              static_cast<QWidget*>(&frame)}) {
            control->resize(control->sizeHint().expandedTo({40, 20}));
            const QImage picture = control->grab().toImage();
            double most = 1;
            for (int x = 0; x < 4; ++x)
                most = std::max(most, Contrast(ColourAt(picture, x, picture.height() / 2), colours.Window));
            EXPECT_GE(most, 3) << control->metaObject()->className();
        }
        QTabWidget tabs;
        tabs.addTab(new QWidget, QStringLiteral("Page"));
        tabs.resize(200, 200);
        EXPECT_EQ(ColourAt(tabs.grab().toImage(), 100, 100), colours.Window);
    }
}

}  // namespace
}  // namespace vantor
