#include "core/forms/Job.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <atomic>
#include <chrono>
#include <optional>
#include <system_error>
#include <utility>

#include "core/RunTimeError.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"

namespace vantor {
namespace {

using namespace std::chrono_literals;

/// The window takes no events for that long, so that what short works make is painted once.
constexpr auto Unnoticed = 20ms;
constexpr auto UntilCursor = 100ms;
constexpr auto UntilShown = 500ms;
/// While the window shows nothing yet, so that what ends early is not waited for.
constexpr auto BetweenFirstLooks = 4ms;
constexpr auto BetweenLooks = 20ms;
constexpr int Steps = 1000;

/// The pointer of a wait, for as long as this lives.
class WaitCursor {
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

/// Tells how much of a work is done and takes the wish to stop it.
class JobDialog : public QDialog {
public:
    JobDialog(const QString& text, MessageBoxes& messages, std::function<void()> stop)
        : QDialog(QApplication::activeWindow()), messages_(messages), stop_(std::move(stop)) {
        setObjectName(QStringLiteral("frmJob"));
        setWindowTitle(QStringLiteral("Vantor"));
        setModal(true);
        lblWork_ = Named<QLabel>(this, "lblWork", text);
        lblWork_->setTextFormat(Qt::PlainText);
        lblWork_->setWordWrap(true);
        prgWork_ = Named<QProgressBar>(this, "prgWork");
        prgWork_->setAccessibleName(text);
        prgWork_->setRange(0, Steps);
        BtnStop_ = Named<QPushButton>(this, "BtnStop", QStringLiteral("&Stop"));
        BtnStop_->setAutoDefault(false);
        Connect(BtnStop_, &QPushButton::clicked, this, messages, [this] { Stop(); });
        auto* foot = new QHBoxLayout;
        foot->addStretch();
        foot->addWidget(BtnStop_);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(lblWork_);
        layout->addWidget(prgWork_);
        layout->addLayout(foot);
        setMinimumWidth(fontMetrics().averageCharWidth() * 64);
    }

    void Show(double done) { prgWork_->setValue(static_cast<int>(done * Steps)); }

    /// Esc and the window's close button come here.
    void reject() override {
        if (BtnStop_->isEnabled() && messages_.ConfirmLoss("Do you want to stop this?\nNothing of it will be kept."))
            Stop();
    }

private:
    void Stop() {
        stop_();
        BtnStop_->setEnabled(false);
        lblWork_->setText(QStringLiteral("Stopping..."));
    }

    MessageBoxes& messages_;
    std::function<void()> stop_;
    QLabel* lblWork_;
    QProgressBar* prgWork_;
    QPushButton* BtnStop_;
};

}  // namespace

/// What the two threads share while a work is under way.
struct Job::Running {
    std::atomic<double> Done{0};
    std::atomic<bool> IsStopped{false};
    std::future<void> End;

    bool HasEnded() const { return End.wait_for(0s) == std::future_status::ready; }
};

Job::Job(MessageBoxes& messages, MakeFiles makeFiles) : messages_(messages), makeFiles_(std::move(makeFiles)) {}

Job::~Job() { StopAll(); }

bool Job::Run(const std::string& text, const Action& work) {
    Running running;
    const auto files = makeFiles_();
    const Progress progress([&running](double done) {
        running.Done = done;
        return !running.IsStopped;
    });
    try {
        running.End = std::async(std::launch::async, [&] { work(*files, progress); });
    } catch (const std::system_error&) {
        throw OutOfMemoryError();
    }
    Running* const outer = std::exchange(running_, &running);
    WaitFor(running, text);
    running_ = outer;
    running.End.get();
    return !running.IsStopped;
}

/// Returns when the work has ended, or is to end at once because the program ends.
void Job::WaitFor(Running& running, const std::string& text) {
    if (running.End.wait_for(Unnoticed) == std::future_status::ready) return;
    QEventLoop loop;
    QElapsedTimer waited;
    waited.start();
    std::optional<WaitCursor> cursor;
    std::optional<JobDialog> dialog;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (dialog) dialog->Show(running.Done);
        if (running.HasEnded() || (!dialog && waited.hasExpired(UntilShown.count()))) loop.quit();
        if (!dialog && !cursor && waited.hasExpired(UntilCursor.count())) cursor.emplace();
    });
    look.start(BetweenFirstLooks);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    cursor.reset();
    if (running.HasEnded()) return;
    dialog.emplace(ToQt(text), messages_, [&running] { running.IsStopped = true; });
    dialog->Show(running.Done);
    look.start(BetweenLooks);
    dialog->show();
    loop.exec();
    // The loop also ends with the program.
    if (!running.HasEnded()) running.IsStopped = true;
}

void Job::Begin(Action work) {
    Finish();
    const auto goesWell = [this, files = std::shared_ptr<FileSystem>(makeFiles_()), work = std::move(work)] {
        try {
            work(*files, Progress([this](double) { return !isEnding_; }));
            return true;
        } catch (const RunTimeError&) {
            return false;
        } catch (const std::bad_alloc&) {
            return false;
        }
    };
    try {
        begun_ = std::async(std::launch::async, goesWell);
    } catch (const std::system_error&) {
        std::promise<bool> notBegun;
        notBegun.set_value(false);
        begun_ = notBegun.get_future();
    }
}

bool Job::IsBusy() const { return begun_.valid() && begun_.wait_for(0s) != std::future_status::ready; }

bool Job::Finish() { return !begun_.valid() || begun_.get(); }

std::unique_ptr<LongWork> Job::Another() const { return std::make_unique<Job>(messages_, makeFiles_); }

void Job::StopAll() {
    isEnding_ = true;
    if (running_ != nullptr) {
        running_->IsStopped = true;
        running_->End.wait();
    }
    Finish();
}

}  // namespace vantor
