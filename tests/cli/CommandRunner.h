#pragma once

#include <gtest/gtest.h>

#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/CommandLine.h"
#include "fakes/FakePorts.h"
#include "fakes/FakeTiles.h"
#include "fakes/PutFiles.h"

namespace vantor {

using Arguments = std::vector<std::string>;
using nlohmann::json;

/// Runs commands over a disk in memory and keeps what they print.
struct CommandRunner {
    MemoryFileSystem Files;
    FixedClock Time;
    FakeDatabases Databases;
    FakeSpreadsheet Sheets;
    FakeDocumentWriter Documents;
    FakePrograms OtherPrograms;
    FakeTiles Tiles;
    /// How often a command may ask whether to go on.
    int AsksBeforeStop = std::numeric_limits<int>::max();
    std::string In;  ///< standard input
    std::string Out;
    std::string Err;

    /// The exit status of a command: its words, parted by blanks, and what may have blanks itself.
    int Status(const std::string& words, const Arguments& more = {}) {
        std::istringstream line(words);
        Arguments arguments{std::istream_iterator<std::string>(line), {}};
        arguments.insert(arguments.end(), more.begin(), more.end());
        std::ostringstream out;
        std::ostringstream err;
        std::istringstream in(In);
        const Progress goesOn([&](double) { return AsksBeforeStop-- > 0; });
        const int status = RunCommandLine(
            arguments, {Files, Time, Databases, Sheets, Documents, OtherPrograms, Tiles, goesOn, &in}, out, err);
        Out = out.str();
        Err = err.str();
        return status;
    }

    /// The JSON that a command prints; it must end well.
    json Json(const std::string& words, const Arguments& more = {}) {
        const int status = Status("--json " + words, more);
        if (status != 0) throw std::runtime_error("status " + std::to_string(status) + ": " + Err);
        return json::parse(Out);
    }

    /// Puts a run of those sample values, one foot a pulse, into /g.
    void PutRun(const std::string& name, const std::vector<int>& values) {
        RunRecord run = RunOfValues(values);
        run.Header.RunDate = DateOf(2008, 3, 11);
        run.Header.RunTime = TimeOf(7, 5);
        Files.CreateFolder("/g");
        PutRunFile(Files, run, "/g/", name);
    }
};

struct CommandTest : testing::Test, CommandRunner {};

/// Expects members of an object; others may stand beside them.
inline void ExpectHas(const json& object, const json& members) {
    for (const auto& [name, value] : members.items()) EXPECT_EQ(object.value(name, json("none")), value) << name;
}

}  // namespace vantor
