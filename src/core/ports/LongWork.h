#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/Progress.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// Work that takes its time, beside the window. It is given files and a progress of its own; everything else it uses
/// are values that the window does not touch until the work has ended. Its results are values that it leaves there.
class LongWork {
public:
    using Action = std::function<void(FileSystem& files, const Progress& progress)>;

    virtual ~LongWork() = default;

    /// Carries the work out and returns when it has come to its end, while the window lives on without taking input;
    /// `text` says what is done, "Converting counter file Day". False when the user asked to stop: what the work
    /// had finished by then is for the work to tell. Its errors come back.
    virtual bool Run(const std::string& text, const Action& work) = 0;

    /// Begins a short work, such as keeping a copy, and returns at once; the one begun before is waited for.
    virtual void Begin(Action work) = 0;
    /// Whether the work begun last is under way.
    virtual bool IsBusy() const = 0;
    /// Waits for the work begun last; true when it went well, or there was none.
    virtual bool Finish() = 0;

    /// One more of its kind, for works that are begun and go on beside those of this one.
    virtual std::unique_ptr<LongWork> Another() const = 0;
};

}  // namespace vantor
