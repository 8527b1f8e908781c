#include "editing/RunDetails.h"

#include <gmock/gmock.h>

#include "RunScene.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::HasSubstr;

/// Run "A" of 12 s and 120 ft, its boundaries at 50 and 90 ft.
class RunDetailsTest : public RunScene<ProgramScene> {
protected:
    RunDetailsTest() : RunScene(RunWithNodes()) {
        SetBoundaries(50, 90);
        Load();
    }

    void Load() {
        Details.emplace(State.CurrentRun, Units{});
        Texts = DetailsOf(State.CurrentRun.Header);
    }
    const RunHeader& Stored() const { return State.CurrentRun.Header; }
    std::string Save() {
        const DetailsSaved saved = Details->Save(State, Files, 1, Texts);
        Warning = saved.Warning;
        return saved.Refused ? saved.Refused->Text : "saved";
    }
    void Insert(int row, const std::string& distance, const std::string& name) {
        ASSERT_FALSE(Details->Insert(row).has_value());
        Details->SetNodeName(row, name);
        Details->SetTypedDistance(row, distance);
    }
    /// The texts are those of the trimmed run then.
    void Trim(std::optional<Refusal> (RunDetails::*trim)(const RunDetailTexts&)) {
        EXPECT_FALSE((*Details.*trim)(Texts).has_value());
        Texts = DetailsOf(Details->Run().Header);
    }

    std::optional<RunDetails> Details;
    RunDetailTexts Texts;
    std::string Warning;
};

TEST_F(RunDetailsTest, AnUntouchedRunKeepsItsValues) {
    RunRecord run = State.CurrentRun;
    run.Header.After = -1;  // neither of the two was set
    run.Header.HeaderWord2 = -1;
    EXPECT_FALSE(Details->HasChanges(Texts));
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(State.CurrentRun, run);
    EXPECT_EQ(OnDisk("A"), run);
    EXPECT_FALSE(Backup());
    EXPECT_EQ(Entry(), EntryBefore) << "without its figures computed anew";
    EXPECT_TRUE(State.StudyUnchanged);
}

TEST_F(RunDetailsTest, StoresTheFieldsUnderANewNameInANewFile) {
    Texts.Name = " B ";
    Texts.RunDate = "4/1/2009";
    Texts.RunTime = "16:30";
    Texts.IsPrimary = Texts.IsBefore = true;
    Texts.Notes = std::string(130, 'n');
    Texts.ButtonLabel[12] = "Queue Ω at the signal, much too long";
    Details->SetNodeName(1, "Ash – 1st Ω");
    EXPECT_TRUE(Details->HasChanges(Texts));
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(ShortDate(Stored().RunDate) + " " + ShortTime(Stored().RunTime), "04/01/09 16:30");
    EXPECT_EQ(std::tuple(Stored().HeaderWord1, Stored().HeaderWord2, Stored().Before, Stored().After),
              std::tuple(-1, 0, -1, 0));
    EXPECT_EQ(Stored().Notes, std::string(128, 'n'));
    EXPECT_EQ(Stored().ButtonLabel[12] + "|" + Stored().SectionName[1], "Queue ? at the signal, much too|Ash – 1st ?");
    EXPECT_EQ(OnDisk("B"), State.CurrentRun);
    EXPECT_EQ(Files.Bytes(Group + "A.rd2"), FileBefore);
    EXPECT_EQ(RunFileName(Entry()) + State.CurrentStudy.RunNames[1], "BB");
    EXPECT_FALSE(Details->HasChanges(DetailsOf(Stored())));
}

TEST_F(RunDetailsTest, WrongInputIsToldAndStoresNothing) {
    using T = RunDetailTexts;
    using Case = std::tuple<std::string T::*, const char*, const char*>;
    for (const auto& [text, typed, field] :
         {Case{&T::Name, "a/b", "RunDetailsName"}, Case{&T::Name, " ", "RunDetailsName"},
          Case{&T::Name, "a", "RunDetailsName"},  // the same file
          Case{&T::RunDate, "2008", "RunDetailsDate"}, Case{&T::RunTime, "", "RunDetailsTime"},
          Case{&T::CalConstant, "-1", "RunDetailsCalConst"}, Case{&T::CalConstant, "32768", "RunDetailsCalConst"},
          Case{&T::CalConstant, "12.5", "RunDetailsCalConst"}}) {
        T texts = Texts;
        texts.*text = typed;
        const auto refusal = Details->Save(State, Files, 1, texts).Refused;
        ASSERT_TRUE(refusal.has_value()) << typed;
        EXPECT_NE(refusal->Text, "");
        EXPECT_EQ(refusal->Field, field) << typed;
    }
    Insert(2, "nowhere", "");
    EXPECT_THAT(Save(), HasSubstr("Row 3"));
    ExpectNothingStored();
}

TEST_F(RunDetailsTest, NodesAreDecodedAnewAndTheOldFileIsKept) {
    EXPECT_FALSE(Details->Delete(1).has_value());  // Ash, 30 ft
    Insert(1, "21", "New");
    Insert(3, "78", "Newer");
    EXPECT_EQ(Files.Bytes(Group + "A.rd2"), FileBefore);
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(NamesOf(Stored(), 7), "Start St|New|Birch|Newer|Cedar|End St|");
    EXPECT_EQ(Stored().NumberOfSections, 6);
    const auto& feet = Stored().SectionDist;
    EXPECT_EQ(std::tuple(feet[1], feet[2], feet[3], feet[4], feet[5]), std::tuple(20, 40, 20, 10, 30));
    EXPECT_EQ(Stored().ButtonLabel[12], "Queue");
    EXPECT_EQ(Backup(), FileBefore);
    EXPECT_EQ(OnDisk("A"), State.CurrentRun);
    EXPECT_FALSE(State.StudyUnchanged);

    EXPECT_FALSE(Details->Delete(2).has_value());
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(NamesOf(Stored(), 6), "Start St|New|Newer|Cedar|End St|") << "fewer nodes leave no name behind";
}

TEST_F(RunDetailsTest, ACalibrationMeasuresAnew) {
    Texts.CalConstant = "2000";
    for (const char* typed : {"2000", "two"}) {
        Details->Calibrate(typed);
        EXPECT_EQ(Details->Rows()[1].Feet, 60);
    }
    Insert(1, "41", "New");
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(Stored().RunLength, 240);
    EXPECT_TRUE(HasNode(State.CurrentRun.SampleValues[2]));
}

TEST_F(RunDetailsTest, TrimsMakeTheFirstNodeTheStartAndTheLastTheEnd) {
    Trim(&RunDetails::TrimStart);
    EXPECT_EQ(Texts.RunTime, "07:59");
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(std::tuple(Stored().SampleCount, CivilOf(Stored().RunTime).Second), std::tuple(9, 58));
    EXPECT_EQ(NamesOf(Stored(), 5), "Ash|Birch|Cedar|End St|");
    EXPECT_EQ(BoundariesOf(Entry()), std::pair(20, 60));
    EXPECT_EQ(Backup(), FileBefore);

    Trim(&RunDetails::TrimEnd);
    EXPECT_EQ(Details->Rows().back().Name, "Cedar");
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(State.CurrentRun.SampleValues, RunOf({10, 0x0C00 | 10, Node | 10, 10, 10, 10}).SampleValues);
    EXPECT_EQ(Stored().NumberOfSections, 3);
    EXPECT_EQ(NamesOf(Stored(), 5), "Ash|Birch|Cedar||");
    EXPECT_EQ(BoundariesOf(Entry()), std::pair(20, 60));
    EXPECT_EQ(Warning, "");
}

TEST_F(RunDetailsTest, TrimsAddUpAndTakeOverWhatWasTyped) {
    Texts.RunTime = "10:00:00";
    Texts.ButtonLabel[12] = "Wait";
    Insert(1, "19", "New");
    Trim(&RunDetails::TrimStart);  // to 20 ft
    Texts.CalConstant = "3000";    // the boundaries are moved by what they were measured with
    Trim(&RunDetails::TrimStart);
    EXPECT_EQ(Details->Rows()[0].Name, "Ash");
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(IsoDateTime(Stored().RunTime).substr(11) + Stored().ButtonLabel[12], "10:00:03Wait");
    EXPECT_EQ(std::pair(Stored().RunLength, Entry().CDStartDist), std::pair(270, 20));
}

TEST_F(RunDetailsTest, ABoundaryThatATrimCutsOffIsNoLongerSet) {
    SetBoundaries(30, 90);  // in the node's second, the last one that goes
    Trim(&RunDetails::TrimStart);
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(BoundariesOf(Entry()), std::pair(0, 60));
    EXPECT_THAT(Warning, HasSubstr("The start boundary of run A has no place"));
    SetBoundaries(10, 71);  // 9 s become 6, and second 6 is never looked at
    Trim(&RunDetails::TrimEnd);
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(BoundariesOf(Entry()), std::pair(10, 0));
    EXPECT_THAT(Warning, HasSubstr("The end boundary"));
}

TEST_F(RunDetailsTest, TrimsBeepWhereNothingWouldBeLeftToTrim) {
    for (const auto& values : {std::vector<int>{}, {10}, {10, 10, 10, 10}}) {
        State.CurrentRun = RunOf(values);
        Load();
        EXPECT_EQ(Details->TrimStart(Texts)->Text + Details->TrimEnd(Texts)->Text, "");
        EXPECT_EQ(Details->Rows().size(), 2u);
    }
    State.CurrentRun = RunOf({10, Node | 10});
    Load();
    EXPECT_EQ(Details->TrimStart(Texts)->Text, "");
    Trim(&RunDetails::TrimEnd);
    EXPECT_EQ(Details->Run().Header.NumberOfSections, 2);
}

TEST_F(RunDetailsTest, ARunOfNoStudyIsStoredToo) {
    Texts.Notes = "seen";
    EXPECT_FALSE(Details->Save(State, Files, 0, Texts).Refused.has_value());
    EXPECT_EQ(OnDisk("A").Header.Notes, "seen");
    EXPECT_EQ(Entry(), EntryBefore);
}

TEST_F(RunDetailsTest, AFailingComputationOrDiskStoresNothing) {
    Texts.CalConstant = "40";  // so little a second that the vehicle stands
    EXPECT_ERROR(DivisionByZero, Save());
    ExpectNothingStored();
    Texts.CalConstant = "1000";
    Trim(&RunDetails::TrimStart);
    int changes = 0;
    for (; changes < 10; ++changes) {
        Files.FailChangeAfter(changes, ErrorNumber::DiskFull);
        if (ErrorOf([&] { Save(); }) != ErrorNumber::DiskFull) break;
        ExpectNothingStored();
        EXPECT_FALSE(Backup());
        EXPECT_TRUE(Details->HasChanges(Texts));
    }
    EXPECT_GE(changes, 2);  // the copy and the run
}

TEST_F(RunDetailsTest, NamesAreCopiedByPosition) {
    RunHeader other;
    other.NumberOfSections = 3;
    Name(other, {"One", "", "Three", "stale"});
    EXPECT_EQ(Details->TakeNames(other), 2);
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(NamesOf(Stored(), 5), "One|Ash|Three|Cedar|End St");
    EXPECT_FALSE(Backup());
    EXPECT_EQ(Details->TakeNames(RunHeader{}), 0);
}

TEST_F(RunDetailsTest, ReadsTheNamesOfBothVersions) {
    EXPECT_EQ(ReadHeaderOfRunFile(Files, Group + "a.RD2")->SectionName[1], "Ash");
    Files.PutCopyOf(VANTOR_SAMPLES "Version 1 runs/MAINNB03.rdf", "/usb/Old.rdf");
    EXPECT_NE(ReadHeaderOfRunFile(Files, "/usb/Old.rdf")->SectionName[1], "");
    for (const char* missing : {"/usb/none.rd2", "/usb/none.rdf", "/usb/Old.txt"})
        EXPECT_FALSE(ReadHeaderOfRunFile(Files, missing).has_value()) << missing;
}

}  // namespace
}  // namespace vantor
