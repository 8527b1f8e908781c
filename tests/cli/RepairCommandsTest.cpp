#include "cli/CommandRunner.h"

namespace vantor {
namespace {

/// Speeds of 30, 55, 31, 31, ... mph with a key on the spike and a node further on.
const std::vector<int> WithSpike = {44, 0x0C00 | 81, 45, 45, 45 - 0x8000, 45, 45};

class RepairCommands : public CommandTest {
protected:
    /// The bytes of the run R1.
    std::vector<std::byte> Put(const std::vector<int>& values) {
        PutRun("R1", values);
        return *Files.Bytes("/g/R1.rd2");
    }
    json WordsIn(const std::string& path) { return Json("run show", {path, "--samples"})["SampleValues"]; }
};

TEST_F(RepairCommands, RepairInPlaceKeepsTheFileSoFar) {
    const auto before = Put(WithSpike);
    EXPECT_EQ(Json("run despike /g/R1.rd2"), json({{"changed", 1}}));
    EXPECT_EQ(WordsIn("/g/R1.rd2"), json({44, 0x0C00 | 44, 45, 45, 45 - 0x8000, 45, 45}));
    const auto header = Json("run show /g/R1.rd2");
    ExpectHas(header, {{"RunLength", 44 + 44 + 5 * 45}, {"NumberOfSections", 3}});
    EXPECT_EQ(header["SectionDist"][1], 44 + 44 + 3 * 45);
    EXPECT_EQ(header["ButtonLong"][0], 88);
    EXPECT_EQ(Files.Bytes("/g/R1.rd2.bak"), before);

    // Nothing is left to repair: neither file is written again.
    const auto repaired = Files.Bytes("/g/R1.rd2");
    EXPECT_EQ(Json("run despike /g/R1.rd2")["changed"], 0);
    EXPECT_EQ(Files.Bytes("/g/R1.rd2"), repaired);
    EXPECT_EQ(Files.Bytes("/g/R1.rd2.bak"), before);
}

TEST_F(RepairCommands, OutputLeavesTheSourceAlone) {
    const auto before = Put({44, 66, 67, 67, 67});
    EXPECT_EQ(Json("run smooth /g/R1.rd2 --factor 15 --output /g/S.rd2")["changed"], 1);
    EXPECT_EQ(WordsIn("/g/S.rd2"), json({44, 56, 67, 67, 67}));
    EXPECT_EQ(Json("run show /g/S.rd2")["RunName"], "S");
    EXPECT_EQ(Json("run smooth /g/R1.rd2 --factor 16 --output /g/T.rd2")["changed"], 0);
    EXPECT_EQ(WordsIn("/g/T.rd2"), json({44, 66, 67, 67, 67}));
    EXPECT_EQ(Files.Bytes("/g/R1.rd2"), before);
    EXPECT_EQ(Files.AllFiles(), std::vector<std::string>({"/g/R1.rd2", "/g/S.rd2", "/g/T.rd2"}));

    for (const char* taken : {"/g/T.rd2", "/g/R1.rd2"}) {
        EXPECT_EQ(Status("run despike /g/R1.rd2 --output", {taken}), 1);
        EXPECT_NE(Err.find("Run-time error '58'"), std::string::npos) << Err;
    }
    EXPECT_EQ(Files.Bytes("/g/R1.rd2"), before);
}

TEST_F(RepairCommands, FailureLeavesEveryFileAsItWas) {
    const auto before = Put(WithSpike);
    const std::pair<const char*, int> cases[] = {{"run despike /g/No.rd2", 1},
                                                 {"run despike /g/R1.rdf", 1},
                                                 {"run despike /g/R1.rd2 --output /g/R2.txt", 1},
                                                 {"run despike /g/R1.rd2 --output /none/R2.rd2", 1},
                                                 {"run smooth /g/R1.rd2", 2},
                                                 {"run smooth /g/R1.rd2 --factor 40000", 2},
                                                 {"run smooth /g/R1.rd2 --factor fast", 2}};
    EXPECT_EQ(Status("run despike /g/R1.rd2 --output", {""}), 1);
    for (const auto& [command, status] : cases) {
        EXPECT_EQ(Status(command), status) << command;
        EXPECT_EQ(Out, "");
        EXPECT_NE(Err, "");
    }
    for (int changes = 0; changes < 2; ++changes) {
        Files.FailChangeAfter(changes, ErrorNumber::DiskFull);
        EXPECT_EQ(Status("run despike /g/R1.rd2"), 1);
        EXPECT_EQ(Files.Bytes("/g/R1.rd2"), before);
    }
}

}  // namespace
}  // namespace vantor
