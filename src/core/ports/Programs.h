#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/ports/FileSystem.h"

namespace vantor {

/// How far a program may go before it is ended.
struct ProgramLimits {
    std::chrono::seconds Time{600};
    std::uint64_t OutputBytes = 4ULL << 30;  ///< standard output and standard error
    std::function<bool()> GoesOn = {};       ///< asked several times a second while it is read; false ends it
};

/// A program that has ended.
struct ProgramEnd {
    bool WasStopped = false;  ///< by its limits, or because nobody read on
    int Status = 0;           ///< other than 0 where it failed
    std::string Messages;     ///< what it wrote to standard error, the last 64 KB of it
};

/// A program at work; it reads as a file that holds its standard output. Ends the program when it goes away.
class RunningProgram : public InputFile {
public:
    /// 0: not known before its end.
    std::uint64_t Size() const override { return 0; }
    /// Waits a moment for its end, then ends it; what was not read is left.
    virtual ProgramEnd End() = 0;
};

/// Other programs of this computer. They are started without a shell and without an input.
class Programs {
public:
    virtual ~Programs() = default;
    /// Nothing where there is no program of that name. May be called on any thread; its results stay on that thread.
    virtual std::unique_ptr<RunningProgram> Start(const std::string& name, const std::vector<std::string>& arguments,
                                                  const ProgramLimits& limits) const = 0;
};

}  // namespace vantor
