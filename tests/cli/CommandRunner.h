#pragma once

#include <limits>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/CommandLine.h"
#include "core/RunTimeError.h"
#include "fakes/FakePorts.h"

namespace vantor {

/// Runs commands over a disk in memory and keeps what they print.
struct CommandRunner {
    MemoryFileSystem Files;
    FixedClock Time;
    FakeDatabases Databases;
    FakeSpreadsheet Sheets;
    FakeDocumentWriter Documents;
    /// How often a command may ask whether to go on.
    int AsksBeforeStop = std::numeric_limits<int>::max();
    std::string Out;
    std::string Err;

    int Run(const std::vector<std::string>& arguments) {
        std::ostringstream out;
        std::ostringstream err;
        const int status = RunCommandLine(
            arguments,
            {Files, Time, Databases, Sheets, Documents, Progress([&](double) { return AsksBeforeStop-- > 0; })}, out,
            err);
        Out = out.str();
        Err = err.str();
        return status;
    }

    /// The JSON that a command prints; it must end well.
    nlohmann::json Json(std::vector<std::string> arguments) {
        arguments.push_back("--json");
        const int status = Run(arguments);
        if (status != 0) throw std::runtime_error("status " + std::to_string(status) + ": " + Err);
        return nlohmann::json::parse(Out);
    }
};

}  // namespace vantor
