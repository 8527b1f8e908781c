#include "core/forms/Job.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QProgressBar>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <thread>

#include "core/forms/Guarded.h"
#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using namespace std::chrono_literals;

class JobTest : public testing::Test {
protected:
    /// Acts in the job's window as soon as it is shown.
    void InWindow(std::function<void(QDialog&)> act) {
        auto* timer = new QTimer(&Owner);
        QObject::connect(timer, &QTimer::timeout, [timer, act] {
            for (QWidget* window : QApplication::topLevelWidgets())
                if (window->objectName() == "frmJob" && window->isVisible()) {
                    timer->stop();
                    act(*static_cast<QDialog*>(window));
                    return;
                }
        });
        timer->start(5ms);
    }
    /// Goes on until it is stopped.
    static void WorkOn(FileSystem&, const Progress& progress) {
        for (std::uint64_t done = 0; progress(done, 1000); done = std::min<std::uint64_t>(done + 1, 999))
            std::this_thread::sleep_for(1ms);
    }

    ScriptedMessageBoxes Messages;
    QObject Owner;
    Job Work{Messages, [] { return std::make_unique<MemoryFileSystem>(); }};
};

TEST_F(JobTest, RunsBesideTheWindowAndGivesItsErrorsBack) {
    const auto own = std::this_thread::get_id();
    EXPECT_TRUE(Work.Run("", [&](FileSystem&, const Progress&) { EXPECT_NE(std::this_thread::get_id(), own); }));
    EXPECT_ERROR(DiskFull,
                 Work.Run("", [](FileSystem&, const Progress&) { throw RunTimeError(ErrorNumber::DiskFull); }));
    Messages.Expect(
        "Run-time error '7':\nOut of memory\n\nThere is not enough memory for this. Close other programs, or "
        "take a smaller file, and try again.");
    Guarded(Messages, [&] { Work.Run("", [](FileSystem&, const Progress&) { throw std::bad_alloc(); }); });
}

TEST_F(JobTest, AWaitUnderHalfASecondShowsNothingAndTheWindowLives) {
    int ticks = 0;
    QTimer painting;
    QObject::connect(&painting, &QTimer::timeout, [&] { ++ticks; });
    painting.start(10ms);
    bool isShown = false;
    InWindow([&](QDialog&) { isShown = true; });
    const auto begin = std::chrono::steady_clock::now();
    Work.Run("300 ms", [](FileSystem&, const Progress&) { std::this_thread::sleep_for(300ms); });
    if (std::chrono::steady_clock::now() - begin > 450ms) GTEST_SKIP() << "The machine is too busy for a short wait.";
    EXPECT_FALSE(isShown);
    EXPECT_GT(ticks, 5);
}

TEST_F(JobTest, TheWindowShowsTheProgressAndStops) {
    InWindow([&](QDialog& window) {
        EXPECT_EQ(Find<QLabel>(window, "lblWork").text(), "Converting A & B");
        EXPECT_GT(Find<QProgressBar>(window, "prgWork").value(), 100);
        Click(window, "BtnStop");
    });
    EXPECT_FALSE(Work.Run("Converting A & B", WorkOn));
}

TEST_F(JobTest, EscAndClosingAskFirst) {
    const std::string question = "Do you want to stop this?\nNothing of it will be kept.";
    Messages.Expect(question, MessageAnswer::No);
    Messages.Expect(question, MessageAnswer::Yes);
    InWindow([&](QDialog& window) {
        QTest::keyClick(&window, Qt::Key_Escape);
        EXPECT_TRUE(window.isVisible());
        EXPECT_TRUE(Find<QWidget>(window, "BtnStop").isEnabled());
        window.close();
    });
    EXPECT_FALSE(Work.Run("", WorkOn));
}

TEST_F(JobTest, AProgramThatEndsStopsTheWork) {
    QTimer::singleShot(150ms, [] { QApplication::exit(); });
    EXPECT_FALSE(Work.Run("", WorkOn));
}

TEST_F(JobTest, BegunWorkIsWaitedFor) {
    std::atomic<bool> mayEnd = false;
    Work.Begin([&](FileSystem&, const Progress&) {
        while (!mayEnd) std::this_thread::sleep_for(1ms);
    });
    EXPECT_TRUE(Work.IsBusy());
    mayEnd = true;
    EXPECT_TRUE(Work.Finish());
    Work.Begin([](FileSystem&, const Progress&) { throw RunTimeError(ErrorNumber::DiskFull); });
    EXPECT_FALSE(Work.Finish());
    EXPECT_FALSE(Work.IsBusy());
}

}  // namespace
}  // namespace vantor
