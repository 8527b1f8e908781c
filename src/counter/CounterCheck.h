#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/ports/FileSystem.h"

namespace vantor {

/// What is hurt in a counter file.
struct CounterFault {
    int Record = 0;  ///< from 1
    std::string Reason;
};

/// A counter file as far as it is whole.
struct CounterCheck {
    int Runs = 0;  ///< whole ones, before the fault
    std::optional<CounterFault> Fault;
    std::uint64_t WholeBytes = 0;  ///< of the file: up to the end mark, or to the record with the fault
};

/// Reads a counter file as listing and conversion do, and reports what would end the one or the other: a record that
/// begins with neither "T" nor ":", an impossible date or time, a number too large, too many data words, a missing end
/// mark. The fault is in the record that is hurt: one whose data words break off would otherwise pass as a shorter run.
/// Errors are those of the file system alone. Stopped, it tells of the records read by then.
CounterCheck CheckCounterFile(const FileSystem& files, const std::string& path, const Progress& progress = {});

/// Gives a counter file the name of a backup, where no list finds it, and returns that path.
std::string SetAside(FileSystem& files, const std::string& path);

/// Sets a damaged counter file aside and puts one of its whole runs in its place, with an end mark. Returns the path of
/// the damaged one. After an error it is where it was; when it was stopped, too, and the path is empty then.
std::string KeepWholeRuns(FileSystem& files, const std::string& path, const CounterCheck& check,
                          const Progress& progress = {});

}  // namespace vantor
