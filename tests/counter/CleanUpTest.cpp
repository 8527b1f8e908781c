#include "counter/CleanUp.h"

#include <gmock/gmock.h>

#include "fakes/FakeLongWork.h"
#include "fakes/MemoryFileSystem.h"
#include "fakes/ScriptedMessageBoxes.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CleanUpTest : public testing::Test {
protected:
    CleanUpTest() {
        for (const char* name : {"A.rdf", "B.rdf", "B.rd2", "C.RDF", " A.rdf"}) Files.PutText(Temp + name, name);
    }

    const std::string Temp = "/start/Temp/";
    MemoryFileSystem Files;
    FakeLongWork Work{Files};
    ScriptedMessageBoxes Messages;
    PendingDeletions Pending{Temp, ".rdf"};
};

TEST_F(CleanUpTest, DeletesWhatWasTakenAndOnlyOnce) {
    for (const char* name : {"C", " A", "B"}) Pending.Take(name);
    Pending.DeleteAll(Work, Messages);
    EXPECT_THAT(Files.AllFiles(), ElementsAre(Temp + "A.rdf", Temp + "B.rd2"));
    EXPECT_THAT(Pending.Names(), IsEmpty());
    Pending.DeleteAll(Work, Messages);
}

TEST_F(CleanUpTest, NamesWhatCannotBeDeletedAndDeletesTheOthers) {
    for (const char* name : {"A", "B", "gone", "C"}) Pending.Take(name);
    Files.FailChangeAfter(1, ErrorNumber::PermissionDenied);
    Messages.Expect("These files could not be deleted:\n" + Temp + "B.rdf: Permission denied\n" + Temp +
                    "gone.rdf: File not found");
    Pending.DeleteAll(Work, Messages);
    EXPECT_THAT(Files.AllFiles(), ElementsAre(Temp + " A.rdf", Temp + "B.rd2", Temp + "B.rdf"));
}

TEST_F(CleanUpTest, AStopLeavesTheRest) {
    for (const char* name : {"A", "B", "C"}) Pending.Take(name);
    Work.AsksBeforeStop = 2;
    Pending.DeleteAll(Work, Messages);
    EXPECT_THAT(Files.AllFiles(), ElementsAre(Temp + " A.rdf", Temp + "B.rd2", Temp + "C.RDF"));
}

TEST_F(CleanUpTest, AMessageStaysReadable) {
    for (const int count : {8, 10}) {
        std::string told = "These files could not be deleted:";
        for (int i = 1; i <= count; ++i) {
            const std::string name = "gone" + std::to_string(i);
            Pending.Take(name);
            if (i <= 8) told += "\n" + Temp + name + ".rdf: File not found";
        }
        Messages.Expect(told + (count == 10 ? "\nand 2 more" : ""));
        Pending.DeleteAll(Work, Messages);
    }
}

}  // namespace
}  // namespace vantor
