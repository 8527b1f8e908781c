#pragma once

#include <atomic>
#include <functional>
#include <future>
#include <memory>

#include "core/ports/LongWork.h"
#include "core/ports/MessageBoxes.h"

namespace vantor {

/// Long work on a thread of its own. A wait under a tenth of a second shows nothing, then the pointer tells of it;
/// after half a second a window shows how much is done and has a Stop button. Esc and closing that window ask whether
/// to stop.
class Job : public LongWork {
public:
    using MakeFiles = std::function<std::unique_ptr<FileSystem>()>;
    /// `makeFiles` makes the file system that each work is given.
    Job(MessageBoxes& messages, MakeFiles makeFiles);
    ~Job() override;
    Job(const Job&) = delete;
    Job& operator=(const Job&) = delete;

    bool Run(const std::string& text, const Action& work) override;
    void Begin(Action work) override;
    bool IsBusy() const override;
    bool Finish() override;
    std::unique_ptr<LongWork> Another() const override;

    /// Stops what is under way and returns when it has come to its end; for the end of the program.
    void StopAll();

private:
    struct Running;
    void WaitFor(Running& running, const std::string& text);

    MessageBoxes& messages_;
    MakeFiles makeFiles_;
    Running* running_ = nullptr;
    std::future<bool> begun_;
    std::atomic<bool> isEnding_{false};
};

}  // namespace vantor
