#include "editing/RunDetails.h"

#include <gmock/gmock.h>

#include "Profiles.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "editing/DateTexts.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::string Group = "/start/Study Groups/Main/";
constexpr int Node = 0x8000;

TEST(DateTexts, AreTakenInTheirUsualForms) {
    struct Case {
        const char* Text;
        std::string Iso;
    };
    for (const Case& c : {Case{"03/14/08", "2008-03-14"},
                          {" 3-4-1998 ", "1998-03-04"},
                          {"02/29/00", "2000-02-29"},
                          {"01/01/30", "1930-01-01"},
                          {"02/29/01", ""},
                          {"13/01/08", ""},
                          {"03/14", ""},
                          {"", ""},
                          {"3//08", ""},
                          {"03/14/08/1", ""},
                          {"1/1/99999999999", ""}}) {
        const auto date = DayOfText(c.Text);
        EXPECT_EQ(date ? IsoDateTime(*date).substr(0, 10) : "", c.Iso) << c.Text;
    }
    for (const Case& c : {Case{"07:45", "07:45:00"},
                          {"7:5", "07:05:00"},
                          {"23:59:59", "23:59:59"},
                          {"24:00", ""},
                          {"7", ""},
                          {"7:60", ""},
                          {"7:00 pm", ""}}) {
        const auto time = ClockOfText(c.Text);
        EXPECT_EQ(time ? IsoDateTime(*time).substr(11) : "", c.Iso) << c.Text;
    }
    EXPECT_EQ(WeekdayName(DateOf(2008, 3, 14)), "Friday");
    EXPECT_EQ(WeekdayName(DateOf(1899, 12, 25)), "Monday");
}

/// Run "A" of 12 s and 120 ft in the study, nodes after 3, 6 and 9 s, key 12 in second 5; boundaries at 50 and 90 ft.
class RunDetailsTest : public testing::Test, protected TestProgram {
protected:
    RunDetailsTest() {
        Files.CreateFolder(Group);
        State.Paths.LastStudyGroupPath = Group;
        RunRecord& run = State.CurrentRun;
        run = RunOf({10, 10, Node | 10, 10, 0x0C00 | 10, Node | 10, 10, 10, Node | 10, 10, 10, 10});
        int node = 0;
        for (const char* name : {"Start St", "Ash", "Birch", "Cedar", "End St"}) run.Header.SectionName[node++] = name;
        run.Header.RunDate = DateOf(2008, 3, 14);
        run.Header.RunTime = TimeOf(7, 59, 55);
        run.Header.ButtonLabel[12] = "Queue";
        PutRunFile(Files, run, Group, "A");
        Bytes = *Files.Bytes(Group + "A.rd2");
        AppendRun(State.CurrentStudy, "A");
        Entry().CDStartDist = 50;
        Entry().CDEndDist = 90;
        State.StudyUnchanged = true;
        Load();
    }

    void Load() {
        Details.emplace(State.CurrentRun, ProfileUnits{});
        Texts = DetailsOf(State.CurrentRun.Header);
    }
    StudyRunEntry& Entry() { return State.CurrentStudy.Entries[1]; }
    const RunHeader& Stored() const { return State.CurrentRun.Header; }
    std::string Save() {
        const DetailsSaved saved = Details->Save(State, Files, 1, Texts);
        Warning = saved.Warning;
        return saved.Refused ? saved.Refused->Text : "saved";
    }
    RunRecord OnDisk(const std::string& name) {
        RunRecord run;
        EXPECT_TRUE(ReadRunFile(Files, Messages, run, Group, name, true));
        return run;
    }
    std::vector<std::string> Names(int count) const {
        std::vector<std::string> names;
        for (int node = 0; node < count; ++node) names.push_back(Stored().SectionName[node]);
        return names;
    }
    void Insert(int row, const std::string& distance, const std::string& name) {
        ASSERT_FALSE(Details->Insert(row).has_value());
        Details->SetNodeName(row, name);
        Details->SetTypedDistance(row, distance);
    }
    void ExpectNothingStored(const RunRecord& run, const StudyRunEntry& entry) {
        EXPECT_EQ(State.CurrentRun, run);
        EXPECT_EQ(Entry(), entry);
        EXPECT_EQ(Files.Bytes(Group + "A.rd2"), Bytes);
        EXPECT_TRUE(State.StudyUnchanged);
    }

    std::optional<RunDetails> Details;
    RunDetailTexts Texts;
    std::string Warning;
    std::vector<std::byte> Bytes;
};

TEST_F(RunDetailsTest, AnUntouchedRunKeepsItsValues) {
    RunRecord run = State.CurrentRun;
    run.Header.After = -1;  // neither of the two was set
    run.Header.HeaderWord2 = -1;
    EXPECT_FALSE(Details->HasChanges(Texts));
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(State.CurrentRun, run);
    EXPECT_EQ(OnDisk("A"), run);
    EXPECT_FALSE(Files.Bytes(Group + "A.rd2.bak").has_value());
}

TEST_F(RunDetailsTest, StoresTheFields) {
    Texts.RunDate = "4/1/2009";
    Texts.RunTime = "16:30";
    Texts.IsPrimary = Texts.IsBefore = true;
    Texts.Notes = std::string(130, 'n');
    Texts.ButtonLabel[12] = "Queue Ω at the signal, much too long";
    Details->SetNodeName(1, "Ash – 1st Ω");
    EXPECT_TRUE(Details->HasChanges(Texts));
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(ShortDate(Stored().RunDate) + " " + ShortTime(Stored().RunTime), "04/01/09 16:30");
    EXPECT_THAT((std::vector<int>{Stored().HeaderWord1, Stored().HeaderWord2, Stored().Before, Stored().After}),
                ElementsAre(-1, 0, -1, 0));
    EXPECT_EQ(Stored().Notes, std::string(128, 'n'));
    EXPECT_EQ(Stored().ButtonLabel[12], "Queue ? at the signal, much too");
    EXPECT_EQ(Stored().SectionName[1], "Ash – 1st ?");
    EXPECT_EQ(OnDisk("A"), State.CurrentRun);
    EXPECT_FALSE(Details->HasChanges(DetailsOf(Stored())));
}

TEST_F(RunDetailsTest, WrongInputIsToldAndStoresNothing) {
    const RunRecord run = State.CurrentRun;
    const StudyRunEntry entry = Entry();
    struct Case {
        std::string RunDetailTexts::*Text;
        const char* Typed;
        DetailsField Field;
    };
    for (const Case& c : {Case{&RunDetailTexts::Name, "a/b", DetailsField::Name},
                          {&RunDetailTexts::Name, " ", DetailsField::Name},
                          {&RunDetailTexts::Name, "a", DetailsField::Name},  // the same file
                          {&RunDetailTexts::RunDate, "2008", DetailsField::Date},
                          {&RunDetailTexts::RunTime, "", DetailsField::Time},
                          {&RunDetailTexts::CalConstant, "-1", DetailsField::CalConstant},
                          {&RunDetailTexts::CalConstant, "32768", DetailsField::CalConstant},
                          {&RunDetailTexts::CalConstant, "12.5", DetailsField::CalConstant}}) {
        RunDetailTexts texts = Texts;
        texts.*c.Text = c.Typed;
        const auto refusal = Details->Save(State, Files, 1, texts).Refused;
        ASSERT_TRUE(refusal.has_value()) << c.Typed;
        EXPECT_NE(refusal->Text, "");
        EXPECT_EQ(refusal->Field, c.Field) << c.Typed;
    }
    Insert(2, "nowhere", "");
    EXPECT_THAT(Save(), HasSubstr("Row 3"));
    ExpectNothingStored(run, entry);
}

TEST_F(RunDetailsTest, NodesAreDecodedAnewAndTheOldFileIsKept) {
    EXPECT_FALSE(Details->Delete(1).has_value());  // Ash, 30 ft
    Insert(1, "21", "New");
    Insert(3, "78", "Newer");
    EXPECT_EQ(Files.Bytes(Group + "A.rd2"), Bytes);
    EXPECT_EQ(Save(), "saved");
    EXPECT_THAT(Names(7), ElementsAre("Start St", "New", "Birch", "Newer", "Cedar", "End St", ""));
    EXPECT_EQ(Stored().NumberOfSections, 6);
    EXPECT_THAT((std::vector<int>{Stored().SectionDist[1], Stored().SectionDist[2], Stored().SectionDist[3],
                                  Stored().SectionDist[4], Stored().SectionDist[5]}),
                ElementsAre(20, 40, 20, 10, 30));
    EXPECT_EQ(Stored().ButtonLabel[12], "Queue");
    EXPECT_EQ(Files.Bytes(Group + "A.rd2.bak"), Bytes);
    EXPECT_EQ(OnDisk("A"), State.CurrentRun);
    EXPECT_FALSE(State.StudyUnchanged);
}

TEST_F(RunDetailsTest, FewerNodesLeaveNoNameBehind) {
    EXPECT_FALSE(Details->Delete(2).has_value());
    EXPECT_EQ(Save(), "saved");
    EXPECT_THAT(Names(6), ElementsAre("Start St", "Ash", "Cedar", "End St", "", ""));
}

TEST_F(RunDetailsTest, ACalibrationMeasuresAnew) {
    Texts.CalConstant = "2000";
    Details->Calibrate("2000");
    EXPECT_EQ(Details->Rows()[1].Feet, 60);
    Details->Calibrate("two");
    EXPECT_EQ(Details->Rows()[1].Feet, 60);
    Insert(1, "41", "New");
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(Stored().RunLength, 240);
    EXPECT_TRUE(HasNode(State.CurrentRun.SampleValues[2]));
}

TEST_F(RunDetailsTest, TrimStartMakesTheFirstNodeTheStart) {
    EXPECT_FALSE(Details->TrimStart(Texts).has_value());
    Texts = DetailsOf(Details->Run().Header);
    EXPECT_EQ(Texts.RunTime, "07:59");
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(Stored().SampleCount, 9);
    EXPECT_THAT(Names(5), ElementsAre("Ash", "Birch", "Cedar", "End St", ""));
    EXPECT_EQ(CivilOf(Stored().RunTime).Second, 58);
    EXPECT_EQ(Entry().CDStartDist, 20);
    EXPECT_EQ(Entry().CDEndDist, 60);
    EXPECT_EQ(Files.Bytes(Group + "A.rd2.bak"), Bytes);
}

TEST_F(RunDetailsTest, TrimsAddUpAndTakeOverWhatWasTyped) {
    Texts.RunTime = "10:00:00";
    Texts.ButtonLabel[12] = "Wait";
    Insert(1, "19", "New");
    EXPECT_FALSE(Details->TrimStart(Texts).has_value());  // to 20 ft
    Texts = DetailsOf(Details->Run().Header);
    Texts.CalConstant = "3000";  // the boundaries are moved by what they were measured with
    EXPECT_FALSE(Details->TrimStart(Texts).has_value());
    Texts = DetailsOf(Details->Run().Header);
    EXPECT_EQ(Details->Rows()[0].Name, "Ash");
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(CivilOf(Stored().RunTime).Second, 3);
    EXPECT_EQ(Stored().ButtonLabel[12], "Wait");
    EXPECT_EQ(Stored().RunLength, 270);
    EXPECT_EQ(Entry().CDStartDist, 20);
}

TEST_F(RunDetailsTest, TrimEndMakesTheLastNodeTheEnd) {
    EXPECT_FALSE(Details->TrimEnd(Texts).has_value());
    EXPECT_EQ(Details->Rows().back().Name, "Cedar");
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(Stored().SampleCount, 9);
    EXPECT_FALSE(HasNode(State.CurrentRun.SampleValues[9]));
    EXPECT_EQ(Stored().NumberOfSections, 4);
    EXPECT_THAT(Names(6), ElementsAre("Start St", "Ash", "Birch", "Cedar", "", ""));
    EXPECT_EQ(Entry().CDEndDist, 90);
    EXPECT_EQ(Warning, "");
}

TEST_F(RunDetailsTest, ABoundaryThatATrimCutsOffIsNoLongerSet) {
    Entry().CDStartDist = 30;  // in the node's second, the last one that goes
    EXPECT_FALSE(Details->TrimStart(Texts).has_value());
    Texts = DetailsOf(Details->Run().Header);
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(Entry().CDStartDist, 0);
    EXPECT_EQ(Entry().CDEndDist, 60);
    EXPECT_THAT(Warning, HasSubstr("The start boundary of run A has no place"));
    Entry().CDStartDist = 10;
    Entry().CDEndDist = 71;  // 9 s become 6, and second 6 is never looked at
    EXPECT_FALSE(Details->TrimEnd(Texts).has_value());
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(Entry().CDStartDist, 10);
    EXPECT_EQ(Entry().CDEndDist, 0);
    EXPECT_THAT(Warning, HasSubstr("The end boundary"));
}

TEST_F(RunDetailsTest, TrimsBeepWhereNothingWouldBeLeftToTrim) {
    for (const auto& values : {std::vector<int>{}, {10}, {10, 10, 10, 10}}) {
        State.CurrentRun = RunOf(values);
        Load();
        EXPECT_EQ(Details->TrimStart(Texts)->Text, "");
        EXPECT_EQ(Details->TrimEnd(Texts)->Text, "");
        EXPECT_EQ(Details->Rows().size(), 2u);
    }
    State.CurrentRun = RunOf({10, Node | 10});
    Load();
    EXPECT_EQ(Details->TrimStart(Texts)->Text, "");
    EXPECT_FALSE(Details->TrimEnd(Texts).has_value());
    EXPECT_EQ(Details->Run().Header.NumberOfSections, 2);
}

TEST_F(RunDetailsTest, ANewNameIsANewFile) {
    Texts.Name = " B ";
    EXPECT_FALSE(Details->Delete(1).has_value());
    EXPECT_EQ(Save(), "saved");
    EXPECT_EQ(Files.Bytes(Group + "A.rd2"), Bytes);
    EXPECT_EQ(OnDisk("B"), State.CurrentRun);
    EXPECT_EQ(RunFileName(Entry()), "B");
    EXPECT_EQ(State.CurrentStudy.RunNames[1], "B");
    EXPECT_FALSE(Details->HasChanges(DetailsOf(Stored())));
}

TEST_F(RunDetailsTest, ARunOfNoStudyIsStoredToo) {
    const StudyRunEntry entry = Entry();
    Texts.Notes = "seen";
    EXPECT_FALSE(Details->Save(State, Files, 0, Texts).Refused.has_value());
    EXPECT_EQ(OnDisk("A").Header.Notes, "seen");
    EXPECT_EQ(Entry(), entry);
}

TEST_F(RunDetailsTest, AFailingDiskStoresNothing) {
    const RunRecord run = State.CurrentRun;
    const StudyRunEntry entry = Entry();
    EXPECT_FALSE(Details->TrimStart(Texts).has_value());
    Texts = DetailsOf(Details->Run().Header);
    int changes = 0;
    for (; changes < 10; ++changes) {
        Files.FailChangeAfter(changes, ErrorNumber::DiskFull);
        if (ErrorOf([&] { Save(); }) != ErrorNumber::DiskFull) break;
        ExpectNothingStored(run, entry);
        EXPECT_TRUE(Details->HasChanges(Texts));
    }
    EXPECT_GE(changes, 2);  // the copy and the run
}

TEST_F(RunDetailsTest, AFailingComputationStoresNothing) {
    const RunRecord run = State.CurrentRun;
    const StudyRunEntry entry = Entry();
    Texts.CalConstant = "40";  // so little a second that the vehicle stands
    EXPECT_ERROR(DivisionByZero, Save());
    ExpectNothingStored(run, entry);
}

TEST_F(RunDetailsTest, NamesAreCopiedByPosition) {
    RunHeader other;
    other.NumberOfSections = 3;
    int node = 0;
    for (const char* name : {"One", "", "Three", "stale"}) other.SectionName[node++] = name;
    EXPECT_EQ(Details->TakeNames(other), 2);
    EXPECT_EQ(Save(), "saved");
    EXPECT_THAT(Names(5), ElementsAre("One", "Ash", "Three", "Cedar", "End St"));
    EXPECT_FALSE(Files.Bytes(Group + "A.rd2.bak").has_value());
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
