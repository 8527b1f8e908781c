#include "workspace/StudyRecovery.h"

#include "core/StudyBytes.h"
#include "workspace/MainStreet.h"
#include "workspace/StudyGroups.h"
#include "workspace/StudyWorkspace.h"

namespace vantor {
namespace {

/// A program of its own on the disk of the first one.
struct OtherProgram {
    explicit OtherProgram(TestProgram& first)
        : Context{State,           first.Files,  Messages,        first.OtherScreens,  first.DesktopServices,
                  first.Time,      first.End,    first.Memory,    first.Serial,        first.Device,
                  first.Databases, first.Sheets, first.Documents, first.OtherPrograms, first.Work,
                  first.Tiles} {
        LoadSettings(State, first.Files);
        NewStudy(State, first.Time);
    }
    ApplicationState State;
    ScriptedMessageBoxes Messages;
    AppContext Context;
    StudyRecovery Recovery{Context};
};

struct RecoveryTest : MainStreet<TestProgram>, testing::Test {
    const std::string Path = Group + "AM.1.ldr";
    StudyRecovery Recovery{Context};

    RecoveryTest() {
        PutStudy("AM", {{"R1", 20}, {"R2", 30}});
        Open(*this);
    }
    template <class Program>
    void Open(Program& program) {
        ASSERT_TRUE(OpenStudy(program.State, Files, DesktopServices, Time, Group, "AM"));
        program.Recovery.OfferForOpened();
    }
    void KeepRun(const std::string& name) {
        AddRuns(State, {name});
        Recovery.Keep();
    }
    Names FilesKept() const {
        Names names = Files.AllFiles();
        std::erase_if(names, [](const std::string& path) { return !path.ends_with(RecoveryExtension); });
        return names;
    }
    Names RunsKept(const std::string& path) const { return RunsOf(DecodeStudy(*Files.Bytes(path))); }
    /// The first program ends at once with a third run; its changes were kept an hour ago.
    void Crash() {
        AddRuns(State, {"R3"});
        EXPECT_TRUE(Recovery.KeepNow());
        for (const std::string& path : FilesKept()) Files.Modified[path] = ElevenFive;
    }
};

TEST_F(RecoveryTest, KeepsChangesUntilTheStudyIsSavedOrLeft) {
    EXPECT_TRUE(Recovery.KeepNow());
    EXPECT_THAT(FilesKept(), IsEmpty()) << "nothing was changed";
    const auto saved = Files.Bytes(Group + "AM.ld2");
    KeepRun("R3");
    KeepRun("R4");
    ASSERT_THAT(FilesKept(), ElementsAre(Path));
    EXPECT_THAT(RunsKept(Path), ElementsAre("R1", "R2", "R3", "R4"));
    EXPECT_EQ(Files.Bytes(Group + "AM.ld2"), saved);
    EXPECT_FALSE(State.StudyUnchanged);
    EXPECT_EQ(ListStudies(Files, Group).size(), 1U);

    State.CurrentStudy.Record.StudyName = "PM";
    SaveStudy(State, Files);
    Recovery.Keep();
    EXPECT_THAT(FilesKept(), IsEmpty());
    KeepRun("R5");
    EXPECT_THAT(FilesKept(), ElementsAre(Group + "PM.1.ldr")) << "it is another file's study now";
    Recovery.Discard();
    EXPECT_THAT(FilesKept(), IsEmpty());
}

TEST_F(RecoveryTest, WritesWhatIsNewAtOnceAndTheSameOnceAMinute) {
    KeepRun("R3");
    const auto writes = [&] {
        Files.PutText(Path, "");
        Recovery.Keep();
        return !Files.Bytes(Path)->empty();
    };
    EXPECT_FALSE(writes());
    State.CurrentStudy.Record.StudyNotes = "rain";
    EXPECT_TRUE(writes());
    Time.Moment.Days += 59 / 86400.0;
    EXPECT_FALSE(writes());
    Time.Moment.Days += 2 / 86400.0;
    EXPECT_TRUE(writes()) << "another window tells by it that this one lives";

    State.CurrentStudy.Record.StudyNotes = "snow";
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    EXPECT_FALSE(writes());
    EXPECT_TRUE(writes()) << "what failed is tried again";
}

TEST_F(RecoveryTest, AStudyThatWasNeverSavedIsFoundInAnyGroup) {
    SaveSettings(State, Files);
    NewStudy(State, Time);
    State.Paths.LastStudyGroupPath = OakElm;  // made by an upload
    Recovery.Settle();
    Crash();
    EXPECT_THAT(FilesKept(), ElementsAre(OakElm + "New study.1.ldr"));
    OtherProgram next(*this);
    next.Messages.Expect(AsksToRestore(AtEleven, "New study", "Oak & Elm Ave"), Yes);
    next.Recovery.OfferAll();
    EXPECT_EQ(next.State.Paths.LastStudyGroupPath, OakElm);
    EXPECT_THAT(RunsOf(next.State.CurrentStudy), ElementsAre("R3"));
    EXPECT_EQ(SavePromptNeeded(next.State, Files), SavePrompt::NotSavedYet);

    State.Paths.LastStudyGroupPath = "/start/gone/";
    Recovery.Keep();
    EXPECT_THAT(FilesKept(), testing::Contains("/start/Temp/New study.1.ldr"));
}

TEST_F(RecoveryTest, TwoProgramsOnOneStudyKeepTheirChangesApart) {
    OtherProgram second(*this);
    Open(second);
    KeepRun("R3");
    AddRuns(second.State, {"R4"});
    second.Recovery.Keep();
    const std::string other = Group + "AM.2.ldr";
    EXPECT_THAT(FilesKept(), ElementsAre(Path, other));
    Recovery.Discard();
    EXPECT_THAT(FilesKept(), ElementsAre(other));

    // The first program asks about what the second one, still running, has kept this minute.
    Files.Modified[other] = Time.Moment;
    const std::string orOpen = ", or it is still open in another window. Its changes were kept on 03/14/08 at 12:00.";
    Messages.Expect(AsksToRestore(orOpen), No);
    Open(*this);
    EXPECT_THAT(FilesKept(), IsEmpty());
    second.Recovery.Keep();
    EXPECT_THAT(RunsKept(other), ElementsAre("R1", "R2", "R4")) << "its changes are kept all the same";
}

TEST_F(RecoveryTest, AFileThatIsDamagedIsNotOffered) {
    Crash();
    const auto whole = *Files.Bytes(Path);
    auto negative = whole, longer = whole;
    negative[42] = negative[43] = std::byte{0xFF};
    longer.push_back(std::byte{'x'});
    for (const auto& damaged : {std::vector<std::byte>{}, {whole.begin(), whole.end() - 2}, longer, negative}) {
        Files.Put(Path, damaged);
        OtherProgram next(*this);
        next.Recovery.OfferAll();
        Open(next);
        EXPECT_EQ(next.State.CurrentStudy.Record.RunCount, 2);
        EXPECT_EQ(Files.Bytes(Path), damaged);
    }
}

TEST_F(RecoveryTest, AFolderThatCannotBeWrittenDisturbsNothing) {
    const auto protect = [this] { Files.FailChangeAfter(0, ErrorNumber::PermissionDenied); };
    AddRuns(State, {"R3"});
    protect();
    EXPECT_FALSE(Recovery.KeepNow());
    EXPECT_THAT(FilesKept(), IsEmpty());
    Crash();
    OtherProgram next(*this);
    next.Messages.Expect(AsksToRestore(AtEleven), Yes);
    protect();
    next.Recovery.OfferAll();
    EXPECT_EQ(next.State.CurrentStudy.Record.RunCount, 3);
    EXPECT_THAT(FilesKept(), ElementsAre(Path)) << "it is the only copy of the changes";
    next.Recovery.Keep();
    protect();
    next.Recovery.Discard();
}

}  // namespace
}  // namespace vantor
