#include <gtest/gtest.h>

#include "cli/CommandRunner.h"
#include "core/RunFile.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

/// Speeds of 30, 55, 31, 31, ... mph with a key on the spike and a node further on.
const std::vector<std::int16_t> WithSpike = {44, 0x0C00 | 81, 45, 45, 45 - 0x8000, 45, 45};

std::vector<std::byte> PutRun(CommandRunner& runner, const std::string& name, std::vector<std::int16_t> words) {
    runner.Files.CreateFolder("/g");
    RunRecord run;
    run.Header.CalConstant = 1000;
    run.Header.SampleCount = static_cast<std::int32_t>(words.size());
    run.RunSamples.ResizeTo(run.Header.SampleCount);
    run.SampleValues = OneBased<std::int16_t>(std::move(words));
    PutRunFile(runner.Files, run, "/g/", name);
    return *runner.Files.Bytes("/g/" + name + ".rd2");
}

nlohmann::json WordsIn(CommandRunner& runner, const std::string& path) {
    return runner.Json({"run", "show", path, "--samples"})["SampleValues"];
}

TEST(RepairCommands, RepairInPlaceKeepsTheFileSoFar) {
    CommandRunner runner;
    const auto before = PutRun(runner, "R1", WithSpike);
    EXPECT_EQ(runner.Json({"run", "despike", "/g/R1.rd2"}), nlohmann::json({{"changed", 1}}));
    EXPECT_EQ(WordsIn(runner, "/g/R1.rd2"), nlohmann::json({44, 0x0C00 | 44, 45, 45, 45 - 0x8000, 45, 45}));
    const auto header = runner.Json({"run", "show", "/g/R1.rd2"});
    EXPECT_EQ(header["RunLength"], 44 + 44 + 5 * 45);
    EXPECT_EQ(header["NumberOfSections"], 3);
    EXPECT_EQ(header["SectionDist"][1], 44 + 44 + 3 * 45);
    EXPECT_EQ(header["ButtonLong"][0], 88);
    EXPECT_EQ(runner.Files.Bytes("/g/R1.rd2.bak"), before);

    // Nothing is left to repair: neither file is written again.
    const auto repaired = runner.Files.Bytes("/g/R1.rd2");
    EXPECT_EQ(runner.Json({"run", "despike", "/g/R1.rd2"})["changed"], 0);
    EXPECT_EQ(runner.Files.Bytes("/g/R1.rd2"), repaired);
    EXPECT_EQ(runner.Files.Bytes("/g/R1.rd2.bak"), before);
}

TEST(RepairCommands, OutputLeavesTheSourceAlone) {
    CommandRunner runner;
    const auto before = PutRun(runner, "R1", {44, 66, 67, 67, 67});
    EXPECT_EQ(runner.Json({"run", "smooth", "/g/R1.rd2", "--factor", "15", "--output", "/g/S.rd2"})["changed"], 1);
    EXPECT_EQ(WordsIn(runner, "/g/S.rd2"), nlohmann::json({44, 56, 67, 67, 67}));
    EXPECT_EQ(runner.Json({"run", "show", "/g/S.rd2"})["RunName"], "S");
    EXPECT_EQ(runner.Json({"run", "smooth", "/g/R1.rd2", "--factor", "16", "--output", "/g/T.rd2"})["changed"], 0);
    EXPECT_EQ(WordsIn(runner, "/g/T.rd2"), nlohmann::json({44, 66, 67, 67, 67}));
    EXPECT_EQ(runner.Files.Bytes("/g/R1.rd2"), before);
    EXPECT_EQ(runner.Files.AllFiles(), std::vector<std::string>({"/g/R1.rd2", "/g/S.rd2", "/g/T.rd2"}));

    for (const char* taken : {"/g/T.rd2", "/g/R1.rd2"}) {
        EXPECT_EQ(runner.Run({"run", "despike", "/g/R1.rd2", "--output", taken}), 1);
        EXPECT_NE(runner.Err.find("Run-time error '58'"), std::string::npos) << runner.Err;
    }
    EXPECT_EQ(runner.Files.Bytes("/g/R1.rd2"), before);
}

TEST(RepairCommands, FailureLeavesEveryFileAsItWas) {
    CommandRunner runner;
    const auto before = PutRun(runner, "R1", WithSpike);
    struct Case {
        std::vector<std::string> Arguments;
        int Status;
    };
    for (const Case& c :
         {Case{{"run", "despike", "/g/No.rd2"}, 1}, Case{{"run", "despike", "/g/R1.rdf"}, 1},
          Case{{"run", "despike", "/g/R1.rd2", "--output", "/g/R2.txt"}, 1},
          Case{{"run", "despike", "/g/R1.rd2", "--output", ""}, 1},
          Case{{"run", "despike", "/g/R1.rd2", "--output", "/none/R2.rd2"}, 1}, Case{{"run", "smooth", "/g/R1.rd2"}, 2},
          Case{{"run", "smooth", "/g/R1.rd2", "--factor", "40000"}, 2},
          Case{{"run", "smooth", "/g/R1.rd2", "--factor", "fast"}, 2}}) {
        EXPECT_EQ(runner.Run(c.Arguments), c.Status) << c.Arguments.back();
        EXPECT_EQ(runner.Out, "");
        EXPECT_NE(runner.Err, "");
    }
    for (int changes = 0; changes < 2; ++changes) {
        runner.Files.FailChangeAfter(changes, ErrorNumber::DiskFull);
        EXPECT_EQ(runner.Run({"run", "despike", "/g/R1.rd2"}), 1);
        EXPECT_EQ(runner.Files.Bytes("/g/R1.rd2"), before);
    }
}

}  // namespace
}  // namespace vantor
