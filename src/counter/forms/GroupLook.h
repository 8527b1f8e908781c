#pragma once

#include <QTimer>
#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "core/AppContext.h"
#include "counter/RunsInGroups.h"

namespace vantor {

/// Looks beside the window which runs of a counter file lie in Study Groups already. The groups are read once.
class GroupLook {
public:
    /// `onFound` is called once for each file that was asked for, unless another was asked for before.
    GroupLook(AppContext& context, std::function<void(const RunsFound& found)> onFound);
    ~GroupLook();
    GroupLook(const GroupLook&) = delete;
    GroupLook& operator=(const GroupLook&) = delete;

    void LookFor(const std::string& counterFile);
    /// Nothing is told any more.
    void Stop();

private:
    struct Look;
    struct Groups;
    void Begin();
    void GoOn();

    AppContext& context_;
    std::function<void(const RunsFound& found)> onFound_;
    std::unique_ptr<LongWork> work_;
    std::shared_ptr<Groups> groups_;
    std::shared_ptr<Look> look_;  ///< the one that was asked for; none: nothing is to be told
    bool isBegun_ = false;
    QTimer timer_;
};

}  // namespace vantor
