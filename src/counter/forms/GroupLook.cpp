#include "counter/forms/GroupLook.h"

#include "core/forms/Guarded.h"

namespace vantor {
namespace {

constexpr int BetweenLooksInMilliseconds = 50;

}  // namespace

/// Shared with the work, which may end after the window.
struct GroupLook::Look {
    std::string File;
    std::atomic<bool> IsStopped = false;
    RunsFound Found;  ///< the work's until it has ended
};

/// The work's alone.
struct GroupLook::Groups {
    bool AreRead = false;
    RunsInGroups Runs;
};

GroupLook::GroupLook(AppContext& context, std::function<void(const RunsFound& found)> onFound)
    : context_(context),
      onFound_(std::move(onFound)),
      work_(context.Work.Another()),
      groups_(std::make_shared<Groups>()) {
    timer_.setInterval(BetweenLooksInMilliseconds);
    Connect(&timer_, &QTimer::timeout, &timer_, context_.Messages, [this] { GoOn(); });
}

GroupLook::~GroupLook() { Stop(); }

void GroupLook::Stop() {
    timer_.stop();
    if (look_) look_->IsStopped = true;
    look_.reset();
}

void GroupLook::LookFor(const std::string& counterFile) {
    Stop();
    look_ = std::make_shared<Look>();
    look_->File = counterFile;
    isBegun_ = false;
    timer_.start();
    GoOn();
}

void GroupLook::GoOn() {
    if (!isBegun_ && !work_->IsBusy()) Begin();
    if (!isBegun_ || work_->IsBusy()) return;
    const RunsFound found = look_->Found;
    Stop();
    onFound_(found);
}

void GroupLook::Begin() {
    isBegun_ = true;
    work_->Begin([look = look_, groups = groups_, root = context_.State.Paths.StudyGroupRootPath](FileSystem& files,
                                                                                                  const Progress&) {
        const Progress progress([&](double) { return !look->IsStopped; });
        if (!groups->AreRead) {
            groups->Runs = ListRunsInGroups(files, root, progress);
            groups->AreRead = !look->IsStopped;
        }
        if (!look->IsStopped) look->Found = FindRunsOf(files, look->File, groups->Runs, progress);
    });
}

}  // namespace vantor
