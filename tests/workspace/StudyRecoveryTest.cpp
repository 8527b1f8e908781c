#include "workspace/StudyRecovery.h"

#include <gmock/gmock.h>

#include "core/StudyBytes.h"
#include "workspace/MainStreet.h"
#include "workspace/StudyGroups.h"
#include "workspace/StudyWorkspace.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A program of its own on the disk of the first one.
struct OtherProgram {
    explicit OtherProgram(MainStreet& first)
        : Context{State,           first.Files,  Messages,        first.OtherScreens, first.DesktopServices,
                  first.Time,      first.End,    first.Memory,    first.Serial,       first.Device,
                  first.Databases, first.Sheets, first.Documents, first.Work} {
        LoadSettings(State, first.Files);
        NewStudy(State, first.Time);
    }
    ApplicationState State;
    ScriptedMessageBoxes Messages;
    AppContext Context;
    StudyRecovery Recovery{Context};
};

struct Recovery : MainStreet, testing::Test {
    StudyRecovery Kept{Context};

    Recovery() {
        PutStudy("AM", {{"R1", 20}, {"R2", 30}});
        Open(*this, Kept, "AM");
    }
    template <class Program>
    void Open(Program& program, StudyRecovery& recovery, const std::string& name) {
        ASSERT_TRUE(OpenStudy(program.State, Files, DesktopServices, Time, Group, name));
        recovery.OfferForOpened();
    }
    std::vector<std::string> FilesKept() const {
        std::vector<std::string> names;
        for (const std::string& path : Files.AllFiles())
            if (path.ends_with(RecoveryExtension)) names.push_back(path);
        return names;
    }
    static std::string Question(const std::string& study, const std::string& rest,
                                const std::string& group = "Main Street") {
        return "Study \"" + study + "\" in Study Group: " + group + "\nwas not closed properly" + rest +
               "\n\nDo you want to restore the changes?\nNo deletes them, Cancel leaves them for another time.";
    }
    const std::string AtEleven = ". Its changes were kept on 03/14/08 at 11:05.";
    /// The first program ends at once; its changes were kept an hour ago.
    void KeepAndCrash() {
        EXPECT_TRUE(Kept.KeepNow());
        for (const std::string& path : FilesKept())
            Files.Modified[path] = {DateOf(2008, 3, 14).Days + TimeOf(11, 5).Days};
    }
};

TEST_F(Recovery, KeepsChangesUntilTheStudyIsSavedOrLeft) {
    EXPECT_TRUE(Kept.KeepNow());
    EXPECT_THAT(FilesKept(), IsEmpty()) << "nothing was changed";
    const auto saved = Files.Bytes(Group + "AM.ld2");
    AddRuns(State, {"R3"});
    Kept.Keep();
    AddRuns(State, {"R4"});
    Kept.Keep();
    ASSERT_THAT(FilesKept(), ElementsAre(Group + "AM.1.ldr"));
    EXPECT_EQ(DecodeStudy(*Files.Bytes(Group + "AM.1.ldr")).RunNames[4], "R4");
    EXPECT_EQ(Files.Bytes(Group + "AM.ld2"), saved);
    EXPECT_FALSE(State.StudyUnchanged);
    EXPECT_EQ(ListStudies(Files, Group).size(), 1U);

    State.CurrentStudy.Record.StudyName = "PM";
    SaveStudy(State, Files);
    Kept.Keep();
    EXPECT_THAT(FilesKept(), IsEmpty());
    AddRuns(State, {"R5"});
    Kept.Keep();
    EXPECT_THAT(FilesKept(), ElementsAre(Group + "PM.1.ldr")) << "it is another file's study now";
    Kept.Discard();
    EXPECT_THAT(FilesKept(), IsEmpty());
}

TEST_F(Recovery, WritesWhatIsNewAtOnceAndTheSameOnceAMinute) {
    AddRuns(State, {"R3"});
    Kept.Keep();
    const std::string path = Group + "AM.1.ldr";
    const auto writes = [&] {
        Files.PutText(path, "");
        Kept.Keep();
        return !Files.Bytes(path)->empty();
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

TEST_F(Recovery, TheNextProgramRestoresTheChangesAsChanges) {
    AddRuns(State, {"R3"});
    State.CurrentStudy.Record.StudyNotes = "rain";
    KeepAndCrash();
    OtherProgram next(*this);
    next.Messages.Expect(Question("AM", AtEleven), MessageAnswer::Yes);
    next.Recovery.OfferAll();
    EXPECT_EQ(next.State.CurrentStudy.RunNames[3], "R3");
    EXPECT_EQ(next.State.CurrentStudy.Record.StudyNotes, "rain");
    EXPECT_EQ(next.State.Paths.LastStudyGroupPath, Group);
    EXPECT_EQ(next.State.Paths.LastStudyName, "AM");
    EXPECT_TRUE(next.State.StudyLoaded);
    EXPECT_EQ(SavePromptNeeded(next.State, Files), SavePrompt::ParametersChanged);
    EXPECT_EQ(FilesKept().size(), 1U) << "a second crash loses nothing either";
    SaveStudy(next.State, Files);
    next.Recovery.Keep();
    EXPECT_THAT(FilesKept(), IsEmpty());
    EXPECT_EQ(Saved("AM").RunNames[3], "R3");
}

TEST_F(Recovery, NoDeletesTheChangesAndCancelAsksAnotherTime) {
    AddRuns(State, {"R3"});
    KeepAndCrash();
    for (const auto answer : {MessageAnswer::Cancel, MessageAnswer::No}) {
        OtherProgram next(*this);
        next.Messages.Expect(Question("AM", AtEleven), answer);
        Open(next, next.Recovery, "AM");
        EXPECT_EQ(next.State.CurrentStudy.Record.RunCount, 2);
        EXPECT_TRUE(next.State.StudyUnchanged);
        EXPECT_EQ(FilesKept().empty(), answer == MessageAnswer::No);
    }
}

TEST_F(Recovery, AStudyThatWasNeverSavedIsFoundInAnyGroup) {
    SaveSettings(State, Files);
    NewStudy(State, Time);
    State.Paths.LastStudyGroupPath = "/start/Study Groups/Elm/";  // made by an upload
    Files.CreateFolder("/start/Study Groups/Elm");
    Kept.Settle();
    AddRuns(State, {"E1"});
    KeepAndCrash();
    EXPECT_THAT(FilesKept(), ElementsAre("/start/Study Groups/Elm/New study.1.ldr"));
    OtherProgram next(*this);
    next.Messages.Expect(Question("New study", AtEleven, "Elm"), MessageAnswer::Yes);
    next.Recovery.OfferAll();
    EXPECT_EQ(next.State.Paths.LastStudyGroupPath, "/start/Study Groups/Elm/");
    EXPECT_EQ(next.State.CurrentStudy.RunNames[1], "E1");
    EXPECT_EQ(SavePromptNeeded(next.State, Files), SavePrompt::NotSavedYet);

    State.Paths.LastStudyGroupPath = "/start/gone/";
    Kept.Keep();
    EXPECT_THAT(FilesKept(), testing::Contains("/start/Temp/New study.1.ldr"));
}

TEST_F(Recovery, TwoProgramsOnOneStudyKeepTheirChangesApart) {
    OtherProgram second(*this);
    Open(second, second.Recovery, "AM");
    AddRuns(State, {"R3"});
    AddRuns(second.State, {"R4"});
    Kept.Keep();
    second.Recovery.Keep();
    EXPECT_THAT(FilesKept(), ElementsAre(Group + "AM.1.ldr", Group + "AM.2.ldr"));
    Kept.Discard();
    EXPECT_THAT(FilesKept(), ElementsAre(Group + "AM.2.ldr"));

    // The first program asks about what the second one, still running, has kept this minute.
    Files.Modified[Group + "AM.2.ldr"] = Time.Moment;
    Messages.Expect(
        Question("AM", ", or it is still open in another window. Its changes were kept on 03/14/08 at 12:00."),
        MessageAnswer::No);
    Open(*this, Kept, "AM");
    EXPECT_THAT(FilesKept(), IsEmpty());
    second.Recovery.Keep();
    EXPECT_EQ(DecodeStudy(*Files.Bytes(Group + "AM.2.ldr")).RunNames[3], "R4") << "its changes are kept all the same";
}

TEST_F(Recovery, AFileThatIsDamagedIsNotOffered) {
    AddRuns(State, {"R3"});
    KeepAndCrash();
    const std::string path = Group + "AM.1.ldr";
    const auto whole = *Files.Bytes(path);
    auto negative = whole;
    negative[42] = negative[43] = std::byte{0xFF};
    auto longer = whole;
    longer.push_back(std::byte{'x'});
    for (const auto& damaged : {std::vector<std::byte>{}, {whole.begin(), whole.end() - 2}, longer, negative}) {
        Files.Put(path, damaged);
        OtherProgram next(*this);
        next.Recovery.OfferAll();
        Open(next, next.Recovery, "AM");
        EXPECT_EQ(next.State.CurrentStudy.Record.RunCount, 2);
        EXPECT_EQ(Files.Bytes(path), damaged);
    }
}

TEST_F(Recovery, AFolderThatCannotBeWrittenDisturbsNothing) {
    AddRuns(State, {"R3"});
    for (const int changes : {0, 1}) {
        Files.FailChangeAfter(changes, ErrorNumber::PermissionDenied);
        EXPECT_FALSE(Kept.KeepNow());
        EXPECT_THAT(FilesKept(), IsEmpty());
        EXPECT_FALSE(State.StudyUnchanged);
    }
    KeepAndCrash();
    OtherProgram next(*this);
    next.Messages.Expect(Question("AM", AtEleven), MessageAnswer::Yes);
    Files.FailChangeAfter(0, ErrorNumber::PermissionDenied);
    next.Recovery.OfferAll();
    EXPECT_EQ(next.State.CurrentStudy.Record.RunCount, 3);
    EXPECT_THAT(FilesKept(), ElementsAre(Group + "AM.1.ldr")) << "it is the only copy of the changes";
    next.Recovery.Keep();
    Files.FailChangeAfter(0, ErrorNumber::PermissionDenied);
    next.Recovery.Discard();
}

}  // namespace
}  // namespace vantor
