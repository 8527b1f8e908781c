#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QScreen>
#include <QScrollArea>
#include <QTabWidget>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>

#include "EveryScreen.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "fakes/Clicks.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

/// What a window does not show whole on the screen that the tests run with; a line each.
class Sight {
public:
    explicit Sight(QWidget& window) : window_(window) {
        const QRect room = window.screen()->availableGeometry();
        if (!room.contains(window.frameGeometry())) Miss(window, "lies beyond the screen");
        auto* tabs = window.findChild<QTabWidget*>();
        for (int page = 0; page < (tabs == nullptr ? 1 : tabs->count()); ++page) {
            if (tabs != nullptr) tabs->setCurrentIndex(page);
            QCoreApplication::processEvents();
            LookAtControls();
        }
    }
    std::vector<std::string> Problems;

private:
    void LookAtControls() {
        for (QWidget* control : window_.findChildren<QWidget*>()) {
            if (!control->isVisible()) continue;
            const auto* button = qobject_cast<QAbstractButton*>(control);
            const bool isCaption = button != nullptr && !button->text().isEmpty();
            if (isCaption && control->visibleRegion().boundingRect() != control->rect()) Miss(*control, "is hidden");
            const auto* label = qobject_cast<QLabel*>(control);
            if (label != nullptr && label->property("valueCaption").isValid()) LookAtFigure(*label);
        }
    }

    void LookAtFigure(const QLabel& figure) {
        const QSize text = figure.fontMetrics().size(0, figure.text());
        const QRect room = figure.contentsRect();
        const bool fits = figure.wordWrap() ? figure.height() >= figure.heightForWidth(figure.width())
                                            : room.width() >= text.width() && room.height() >= text.height();
        if (!fits) Miss(figure, "is narrower than " + FromQt(figure.text()));
    }

    void Miss(const QWidget& widget, const std::string& what) {
        const QRect place = widget.isWindow() ? widget.frameGeometry() : widget.geometry();
        Problems.push_back(FromQt(widget.objectName()) + " " + what + " (" + std::to_string(place.x()) + ", " +
                           std::to_string(place.y()) + ", " + std::to_string(place.width()) + " x " +
                           std::to_string(place.height()) + ")");
    }

    QWidget& window_;
};

class ScreenLayoutTest : public testing::TestWithParam<ScreenCase> {};

TEST_P(ScreenLayoutTest, IsWholeAtEveryStart) {
    ShownProgram program(true);
    program.State.CurrentStudy.Entries[1].ControlDelay = -1234;
    for (const char* start : {"first", "second", "after a larger screen"}) {
        program.State.MainFormLoaded = false;
        const auto window = GetParam().Open(program);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        EXPECT_THAT(Sight(*window).Problems, testing::IsEmpty()) << start << " start";
        if (start == std::string("second")) window->setGeometry(4000, 3000, 3800, 2100);
        window->hide();
    }
}

TEST(ScreenLayout, AWindowThatComesToScrollKeepsItsKeys) {
    QDialog window;
    auto* column = new QVBoxLayout(&window);
    for (const char* name : {"first", "second"}) column->addWidget(Named<QLineEdit>(&window, name));
    Find<QLineEdit>(window, "first").setMinimumWidth(5000);
    Find<QLineEdit>(window, "second").setFocus();
    FitToScreen(window);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    EXPECT_NE(window.findChild<QScrollArea*>(), nullptr);
    EXPECT_TRUE(Find<QLineEdit>(window, "second").hasFocus());
}

/// Drags the edge of a column of the run list.
void DragEdge(QTableView& list, int column, int pixels) {
    QWidget* head = list.horizontalHeader()->viewport();
    const QPoint edge(list.columnViewportPosition(column) + list.columnWidth(column) - 1, head->height() / 2);
    QTest::mousePress(head, Qt::LeftButton, {}, edge);
    QTest::mouseMove(head, edge + QPoint(pixels / 2, 0));
    QTest::mouseMove(head, edge + QPoint(pixels, 0));
    QTest::mouseRelease(head, Qt::LeftButton, {}, edge + QPoint(pixels, 0));
}

TEST(TableColumns, OnlyDraggedWidthsAreRemembered) {
    constexpr int Name = 0, Date = 1, Time = 2;
    ShownProgram program(true);
    const auto open = [&] {
        program.State.MainFormLoaded = false;
        auto window = std::make_unique<frmMain>(program.Program);
        window->Start();
        window->show();
        return window;
    };
    auto window = open();
    auto* list = window->findChild<QTableView*>(QStringLiteral("vaRunList"));
    const int fitted = list->columnWidth(Name);
    const int dragged = list->columnWidth(Date) + 30;
    DragEdge(*list, Date, 30);
    EXPECT_EQ(list->columnWidth(Date), dragged);
    DragEdge(*list, Time, -40);
    window->hide();

    const std::string longName = "!Kestrel-11-Mockingbird-AM-2026";
    program.State.CurrentStudy.Entries[1].EntryRunName = longName;
    program.State.CurrentStudy.RunNames[1] = longName;
    PutStudyFile(program.Files, program.State.CurrentStudy, program.Group, "AM Peak");
    window = open();
    list = window->findChild<QTableView*>(QStringLiteral("vaRunList"));
    EXPECT_GT(list->columnWidth(Name), fitted);
    EXPECT_EQ(list->columnWidth(Date), dragged);
    DragEdge(*list, Name, -80);
    const QPoint cell = list->visualRect(list->model()->index(0, Name)).center();
    QHelpEvent help(QEvent::ToolTip, cell, list->viewport()->mapToGlobal(cell));
    QCoreApplication::sendEvent(list->viewport(), &help);
    EXPECT_THAT(FromQt(QToolTip::text()), testing::StartsWith(longName));
    window->hide();
}

std::string NameOfScreen(const testing::TestParamInfo<ScreenCase>& test) { return test.param.Name; }

INSTANTIATE_TEST_SUITE_P(Screens, ScreenLayoutTest, testing::ValuesIn(EveryScreen()), NameOfScreen);

}  // namespace
}  // namespace vantor
