#include "counter/modUpload.h"

#include <gmock/gmock.h>

#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::ElementsAre;

const std::string Temp = "/start/Temp/";
const std::string Groups = "/start/Study Groups/";

class modUploadTest : public testing::Test {
protected:
    modUploadTest() {
        for (const char* name : {"A", "B", "C"}) Program.Files.PutText(Temp + name + ".rd2", name);
    }

    bool Rename(RunNameTemplate& parts) { return RenameRuns(Program.Work, Program.Messages, Temp, {&A, &C}, parts); }
    /// The run files of a folder with what stands in them: "A=A".
    std::vector<std::string> FilesIn(const std::string& folder) {
        std::vector<std::string> found;
        for (const std::string& path : Program.Files.AllFiles())
            if (path.starts_with(folder)) {
                const auto bytes = *Program.Files.Bytes(path);
                found.push_back(path.substr(folder.size(), path.size() - folder.size() - 4) + "=" +
                                std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
            }
        return found;
    }

    TestProgram Program;
    UploadRun A{"A", ""};
    UploadRun C{"C", ""};
};

TEST(RunNameTemplate, CountsInThreeDigits) {
    const std::vector<std::pair<std::string, std::string>> numbers = {
        {"001", "002"}, {"009", "010"}, {"099", "100"}, {"999", "000"}, {"7", "008"}, {"", "001"}, {"A", "001"}};
    for (const auto& [number, next] : numbers) EXPECT_EQ(NextRunNumber(number), next);
    EXPECT_EQ(RunNameOf({"  Main St ", "NB", "001"}), "Main St-NB-001");
    EXPECT_EQ(RunNameOf({"Main", "", "7"}), "Main--7");
}

TEST_F(modUploadTest, RenamesInOrderAndUndoes) {
    RunNameTemplate parts{"Main", "SB", "999"};
    EXPECT_TRUE(Rename(parts));
    EXPECT_THAT(FilesIn(Temp), ElementsAre("B=B", "Main-SB-000=C", "Main-SB-999=A"));
    EXPECT_EQ(parts.RunNumber, "001");
    EXPECT_EQ(A.PreviousName, "A");
    UploadRun notRenamed{"B", ""};
    UndoRename(Program.Work, Temp, {&A, &notRenamed, &C});
    EXPECT_THAT(FilesIn(Temp), ElementsAre("A=A", "B=B", "C=C"));
    EXPECT_EQ(A.Name, "A");
    EXPECT_EQ(A.PreviousName, "");
}

TEST_F(modUploadTest, AClashOrAStopRenamesNone) {
    RunNameTemplate parts{"Main", "NB", "001"};
    Program.Work.AsksBeforeStop = 1;
    EXPECT_FALSE(Rename(parts));
    Program.Work.AsksBeforeStop = 100;
    Program.Files.PutText(Temp + "main-nb-002.rd2", "other");
    EXPECT_ERROR(FileAlreadyExists, Rename(parts));
    EXPECT_THAT(FilesIn(Temp), ElementsAre("A=A", "B=B", "C=C", "main-nb-002=other"));
    EXPECT_EQ(A.Name + C.Name + A.PreviousName, "AC");
    EXPECT_EQ(parts.RunNumber, "001");
}

TEST_F(modUploadTest, RefusesNamesThatCannotBeStored) {
    const std::vector<std::pair<RunNameTemplate, std::string>> refused = {
        {{"../Main", "NB", "001"},
         "\"../Main-NB-001\" cannot be used as a name.\n"
         "Leave out \"..\" and the characters / \\ : * ? \" < > | and try again."},
        {{"Main", "N/", "001"},
         "\"Main-N/-001\" cannot be used as a name.\n"
         "Leave out \"..\" and the characters / \\ : * ? \" < > | and try again."},
        {{"Main \u8DEF", "NB", "001"},
         "\"Main \u8DEF-NB-001\" has letters that cannot be stored.\nUse other letters and try again."}};
    for (auto [parts, message] : refused) {
        Program.Messages.Expect(message);
        EXPECT_FALSE(Rename(parts));
    }
    EXPECT_THAT(FilesIn(Temp), ElementsAre("A=A", "B=B", "C=C"));
    RunNameTemplate tooLarge{"Main", "NB", "9e9"};
    EXPECT_ERROR(Overflow, Rename(tooLarge));
    EXPECT_THAT(FilesIn(Temp), ElementsAre("A=A", "B=B", "C=C"));
}

TEST_F(modUploadTest, MakesAStudyGroupOnce) {
    const auto make = [&](const std::string& name, const std::string& current) {
        return MakeStudyGroup(Program.Files, Program.Messages, "/start/Study Groups", name, current);
    };
    EXPECT_TRUE(make(" Main St ", ""));
    EXPECT_TRUE(Program.Files.Find(Groups + "Main St")->IsFolder);
    EXPECT_FALSE(make("main st", ""));
    EXPECT_FALSE(make("ELM", "Elm"));
    EXPECT_FALSE(Program.Files.Find(Groups + "Elm"));
    Program.Messages.Expect(
        "\"../x\" cannot be used as a name.\nLeave out \"..\" and the characters "
        "/ \\ : * ? \" < > | and try again.");
    EXPECT_FALSE(make("../x", ""));
    Program.Messages.Expect("The name is empty.\nEnter a name and try again.");
    EXPECT_FALSE(make("  ", ""));
}

TEST_F(modUploadTest, AnErrorOrAStopMovesNone) {
    const auto move = [&] {
        return MoveRuns(Program.State, Program.Files, Program.Work, Program.Messages, Groups + "Main/",
                        {"A", "B", "C"});
    };
    Program.Files.CreateFolder(Groups + "Main/");
    const std::string groupBefore = Program.State.Paths.LastStudyGroupPath;
    Program.Files.FailChangeAfter(1, ErrorNumber::PermissionDenied);
    EXPECT_ERROR(PermissionDenied, move());
    Program.Work.AsksBeforeStop = 2;
    EXPECT_FALSE(move());
    EXPECT_THAT(FilesIn(Temp), ElementsAre("A=A", "B=B", "C=C"));
    EXPECT_THAT(FilesIn(Groups + "Main/"), ElementsAre());
    EXPECT_EQ(Program.State.Paths.LastStudyGroupPath, groupBefore);
}

}  // namespace
}  // namespace vantor
