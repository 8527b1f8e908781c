#include "counter/modUpload.h"

#include <gmock/gmock.h>

#include "CounterTexts.h"
#include "counter/CleanUp.h"
#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::ElementsAre;

class modUploadTest : public testing::Test, protected TestProgram {
protected:
    modUploadTest() {
        for (const char* name : {"A", "B", "C"}) Files.PutText(Temp + name + ".rd2", name);
    }

    bool Rename(RunNameTemplate& parts) { return RenameRuns(Work, Messages, Temp, {&A, &C}, parts); }

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

TEST_F(modUploadTest, AClashAStopOrABadNameRenamesNone) {
    RunNameTemplate parts{"Main", "NB", "001"};
    Work.AsksBeforeStop = 1;
    EXPECT_FALSE(Rename(parts));
    Work.AsksBeforeStop = 100;
    for (auto [bad, message] :
         {std::pair{RunNameTemplate{"../Main", "NB", "001"}, UnsafeName("../Main-NB-001")},
          {{"Main", "N/", "001"}, UnsafeName("Main-N/-001")},
          {{"Main \u8DEF", "NB", "001"},
           "\"Main \u8DEF-NB-001\" has letters that cannot be stored.\nUse other letters and try again."}}) {
        Messages.Expect(message);
        EXPECT_FALSE(Rename(bad));
    }
    RunNameTemplate tooLarge{"Main", "NB", "9e9"};
    EXPECT_ERROR(Overflow, Rename(tooLarge));
    Files.PutText(Temp + "main-nb-002.rd2", "other");
    EXPECT_ERROR(FileAlreadyExists, Rename(parts));
    EXPECT_EQ(TextsIn(Files, Temp), "A=A, B=B, C=C, main-nb-002=other");
    EXPECT_EQ(A.Name + C.Name + A.PreviousName + parts.RunNumber, "AC001");
}

TEST_F(modUploadTest, MakesAStudyGroupOnce) {
    const auto make = [&](const std::string& name, const std::string& current) {
        return MakeStudyGroup(Files, Messages, "/start/Study Groups", name, current);
    };
    EXPECT_TRUE(make(" Main St ", ""));
    EXPECT_TRUE(Files.Find(Groups + "Main St")->IsFolder);
    EXPECT_FALSE(make("main st", ""));
    EXPECT_FALSE(make("ELM", "Elm"));
    EXPECT_FALSE(Files.Find(Groups + "Elm"));
    Messages.Expect(UnsafeName("../x"));
    EXPECT_FALSE(make("../x", ""));
    Messages.Expect("The name is empty.\nEnter a name and try again.");
    EXPECT_FALSE(make("  ", ""));
}

TEST_F(modUploadTest, AStopMovesNoneAndAStudyWithRunsKeepsItsGroup) {
    const std::string group = Groups + "Main/";
    const auto move = [&] { return MoveRuns(State, Files, Work, Messages, group, {"A", "B", "C"}); };
    Files.CreateFolder(group);
    const std::string groupBefore = State.Paths.LastStudyGroupPath;
    Work.AsksBeforeStop = 2;
    EXPECT_FALSE(move());
    EXPECT_EQ(TextsIn(Files, Temp), "A=A, B=B, C=C");
    EXPECT_EQ(State.Paths.LastStudyGroupPath, groupBefore);

    State.CurrentStudy.RunNames.Append("Elm-NB-001");
    Work.AsksBeforeStop = 100;
    EXPECT_TRUE(move());
    EXPECT_EQ(TextsIn(Files, group), "A=A, B=B, C=C");
    EXPECT_EQ(State.Paths.LastStudyGroupPath, groupBefore);
}

class CleanUpTest : public testing::Test, protected TestProgram {
protected:
    CleanUpTest() {
        for (const char* name : {"A.rdf", "B.rdf", "B.rd2", "C.RDF", " A.rdf"}) Files.PutText(Temp + name, name);
    }
    void Delete(const std::vector<std::string>& names) {
        for (const std::string& name : names) Pending.Take(name);
        Pending.DeleteAll(Work, Messages);
    }

    PendingDeletions Pending{Temp, ".rdf"};
};

TEST_F(CleanUpTest, DeletesWhatWasTakenAndOnlyOnce) {
    Delete({"C", " A", "B"});
    EXPECT_THAT(Files.AllFiles(), ElementsAre(Temp + "A.rdf", Temp + "B.rd2"));
    EXPECT_EQ(Pending.Names().size(), 0u);
    Delete({});
}

TEST_F(CleanUpTest, NamesWhatCannotBeDeletedAndDeletesTheOthers) {
    Files.FailChangeAfter(1, ErrorNumber::PermissionDenied);
    Messages.Expect("These files could not be deleted:\n" + Temp + "B.rdf: Permission denied\n" + Temp +
                    "gone.rdf: File not found");
    Delete({"A", "B", "gone", "C"});
    EXPECT_THAT(Files.AllFiles(), ElementsAre(Temp + " A.rdf", Temp + "B.rd2", Temp + "B.rdf"));
}

TEST_F(CleanUpTest, AStopLeavesTheRest) {
    Work.AsksBeforeStop = 2;
    Delete({"A", "B", "C"});
    EXPECT_THAT(Files.AllFiles(), ElementsAre(Temp + " A.rdf", Temp + "B.rd2", Temp + "C.RDF"));
}

TEST_F(CleanUpTest, AMessageStaysReadable) {
    std::string told = "These files could not be deleted:";
    std::vector<std::string> gone;
    for (int i = 1; i <= 8; ++i) {
        gone.push_back("gone" + std::to_string(i));
        told += "\n" + Temp + gone.back() + ".rdf: File not found";
    }
    Messages.Expect(told);
    Delete(gone);
    gone.insert(gone.end(), {"gone9", "gone10"});
    Messages.Expect(told + "\nand 2 more");
    Delete(gone);
}

}  // namespace
}  // namespace vantor
