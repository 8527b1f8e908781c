#include "core/Paths.h"
#include "core/forms/Table.h"
#include "fakes/FormScene.h"
#include "workspace/MainStreet.h"
#include "workspace/forms/frmRunSelect.h"
#include "workspace/forms/frmStartUp.h"
#include "workspace/forms/frmStudyOpen.h"
#include "workspace/forms/frmStudySaveAs.h"

namespace vantor {
namespace {

struct frmStartUpTest : MainStreet<FormScene<frmStartUp>> {
    frmStartUpTest() {
        PutStudy("AM & PM", {});
        State.Paths.LastStudyName = "AM & PM";
    }
    void ExpectChosen(StartUpChoice choice) {
        EXPECT_TRUE(Closes());
        EXPECT_EQ(IsAccepted(), choice != StartUpChoice::None);
        EXPECT_EQ(Window->Choice(), choice);
    }
};

TEST_F(frmStartUpTest, EachChoiceIsHandedOver) {
    // In the order of StartUpChoice; two choices have a key alone.
    for (int choice = 0; const char* button :
                         {"BtnCancel", "BtnNewStudy", "BtnOpenStudy", "BtnLastStudy", "ReadTDCBut", "BtnProcessTDC",
                          "BtnProcessTemp", "BtnProcessRoamlap", "BtnProcessRoampad", "BtnProcessRevlap",
                          "BtnProcessRevpad", "", "", "BtnPreferences", "BtnExit", "BtnImportTracks", "BtnCorridors"}) {
        const auto expected = static_cast<StartUpChoice>(choice++);
        if (*button == '\0') continue;
        Open();
        EXPECT_EQ(Get<QAbstractButton>("BtnLastStudy").text(), "&Continue with AM && PM");
        Press(button);
        ExpectChosen(expected);
    }
}

TEST_F(frmStartUpTest, OffersOnlyWhatIsThere) {
    for (const char* name : {"blank", "", "Gone", "../Main Street/AM & PM"}) {
        State.Paths.LastStudyName = name;
        EXPECT_EQ(Open().findChild<QWidget*>("BtnLastStudy"), nullptr) << name;
    }
}

TEST_F(frmStartUpTest, WorksByKeyboard) {
    const std::tuple<Qt::Key, Qt::KeyboardModifier, StartUpChoice> keys[] = {
        {Qt::Key_P, Qt::NoModifier, StartUpChoice::ProcessCombined},
        {Qt::Key_B, Qt::NoModifier, StartUpChoice::ProcessBattelle},
        {Qt::Key_P, Qt::ShiftModifier, StartUpChoice::ProcessCombined},
        {Qt::Key_B, Qt::ShiftModifier, StartUpChoice::ProcessBattelle},
        {Qt::Key_F, Qt::AltModifier, StartUpChoice::ProcessTempRuns},
        {Qt::Key_I, Qt::AltModifier, StartUpChoice::ImportTracks},
        {Qt::Key_Escape, Qt::NoModifier, StartUpChoice::None}};
    for (const auto& [key, modifier, choice] : keys) {
        Open();
        PressKey(key, modifier);
        ExpectChosen(choice);
    }
    Open();
    EXPECT_TRUE(Get<QWidget>("BtnLastStudy").hasFocus());
    PressKey(Qt::Key_Down);
    PressKey(Qt::Key_Down);
    EXPECT_TRUE(Window->isVisible()) << "an arrow key chose";
    PressKey(Qt::Key_Return);
    ExpectChosen(StartUpChoice::OpenStudy);
}

struct frmStudyOpenTest : MainStreet<FormScene<frmStudyOpen>> {
    frmStudyOpenTest() {
        Study morning = StudyOf("AM Peak", {{"R1"}, {"Gone"}});
        morning.Record.StudyAvgControlDelay = 42;
        morning.Record.StudyLOSGrade = "D";
        PutStudyFile(Files, morning, Group, "AM Peak");
        PutStudy("PM Peak", {});
        Files.PutText(Group + "Old.ld2", std::string(42, '\0') + "\xfb\xff" + std::string(276, '\0'));  // -5 runs
        PutStudy("Retiming", {{"S1"}}, OakElm);
        State.Paths.LastStudyName = "blank";
        State.CurrentStudy = StudyOf("Unsaved", {});
    }
    void ExpectOpened(const std::string& group, const std::string& name) {
        EXPECT_TRUE(IsAccepted());
        EXPECT_EQ(State.CurrentStudy.Record.StudyName, name);
        EXPECT_EQ(LastStudyOf(State), group + name);
    }
    void ExpectStays() {
        EXPECT_TRUE(Window->isVisible());
        EXPECT_EQ(State.CurrentStudy.Record.StudyName, "Unsaved");
    }
    std::string EmptyText(const char* table) { return FromQt(Get<QWidget>(table).accessibleDescription()); }
};

TEST_F(frmStudyOpenTest, ShowsTheCurrentGroupWithTheLastStudyChosenAndWhatIsDamaged) {
    State.Paths.LastStudyName = "am peak";
    Open();
    EXPECT_THAT(Rows(*Window, "vaStudies"),
                ElementsAre("AM Peak|03/14/08|2|42|D", "Old|Damaged|||", "PM Peak|03/14/08|0||"));
    EXPECT_THAT(Rows(*Window, "vaStudyRuns"), ElementsAre("R1|", "Gone|Missing in this Study Group"));
    EXPECT_TRUE(IsEnabled("BtnOpen"));

    const std::string problem =
        "This study cannot be opened.\nSubscript out of range\n/start/Study Groups/Main Street/Old.ld2\n"
        "The file tells of -5 runs. It is damaged or no study file.";
    DoubleClickRow(*Window, "vaStudies", 1);
    EXPECT_EQ(EmptyText("vaStudyRuns"), problem);
    EXPECT_EQ(Get<QTableView>("vaStudies").model()->index(1, 0).data(Qt::ToolTipRole).toString(), ToQt(problem));
    EXPECT_FALSE(IsEnabled("BtnOpen"));
    ExpectStays();
    PressKey(Qt::Key_Escape);
    EXPECT_EQ(Window->result(), QDialog::Rejected);
}

TEST_F(frmStudyOpenTest, OpensByButtonDoubleClickAndEnter) {
    Open();
    EXPECT_FALSE(IsEnabled("BtnOpen"));
    ClickRow(*Window, "vaStudies", 0);
    Press("BtnOpen");
    ExpectOpened(Group, "AM Peak");
    EXPECT_THAT(RunsOf(State.CurrentStudy), ElementsAre("R1", "Gone"));
    Open();
    Get<QTableView>("vaStudies").sortByColumn(0, Qt::DescendingOrder);
    DoubleClickRow(*Window, "vaStudies", 0);
    ExpectOpened(Group, "PM Peak");
    Open();
    ClickFolder(*Window, "treStudyGroups", "Oak & Elm Ave");
    ClickRow(*Window, "vaStudies", 0);
    PressKey(Qt::Key_Return);
    ExpectOpened(OakElm, "Retiming");
}

TEST_F(frmStudyOpenTest, SaysWhatIsEmpty) {
    Files.CreateFolder(Root + "New");
    Open();
    ClickRow(*Window, "vaStudies", 0);
    QTest::keyClick(&Get<QWidget>("treStudyGroups"), Qt::Key_Down);
    EXPECT_EQ(Text("lblStudies"), "Studies in Study Group: New");
    EXPECT_EQ(EmptyText("vaStudies"), "There are no studies in this Study Group.");
    EXPECT_EQ(EmptyText("vaStudyRuns"), "Choose a study to see its runs.");
    EXPECT_FALSE(IsEnabled("BtnOpen"));

    State.Paths.LastStudyGroupPath = State.Paths.StudyGroupRootPath = "/start/Elsewhere";
    Open();
    EXPECT_EQ(EmptyText("vaStudies"), "The folder of this Study Group does not exist.");
}

TEST_F(frmStudyOpenTest, FaultsOfTheDisk) {
    Open();
    ClickRow(*Window, "vaStudies", 0);
    Files.Delete(Group + "AM Peak.ld2");
    Messages.Expect("The file of study: AM Peak\n is no longer in Study Group: Main Street");
    Press("BtnOpen");
    ExpectStays();
    EXPECT_THAT(Column(*Window, "vaStudies", 0), ElementsAre("Old", "PM Peak"));

    // The study is open though the settings cannot be saved.
    ClickRow(*Window, "vaStudies", 1);
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    Messages.Expect("Run-time error '61':\nDisk full\n\n/program/VANTOR.bin");
    Press("BtnOpen");
    ExpectOpened(Group, "PM Peak");
}

struct frmStudySaveAsTest : MainStreet<FormScene<frmStudySaveAs>> {
    frmStudySaveAsTest() {
        State.CurrentStudy = StudyOf("AM Peak", {{"R1"}, {"R2"}, {"R3"}});
        PutStudyFile(Files, State.CurrentStudy, Group, "AM Peak");
        State.Paths.LastStudyName = "AM Peak";
        State.StudyUnchanged = false;
    }
    void Save(const std::string& question, MessageAnswer answer = Yes) {
        Messages.Expect(question, answer);
        Press("BtnSave");
    }
    void ExpectSaved(const std::string& group, const std::string& name) {
        EXPECT_TRUE(IsAccepted());
        EXPECT_EQ(State.CurrentStudy.Record.StudyName, name);
        EXPECT_EQ(LastStudyOf(State), group + name);
        EXPECT_EQ(Saved(name, group).Record.StudyName, name);
        EXPECT_EQ(RunsOf(Saved(name, group)), (Names{"R1", "R2", "R3"}));
    }
    void ExpectNotSaved() {
        EXPECT_TRUE(Window->isVisible());
        EXPECT_EQ(State.CurrentStudy.Record.StudyName, "AM Peak");
        EXPECT_EQ(LastStudyOf(State), Group + "AM Peak");
        EXPECT_FALSE(State.StudyUnchanged);
    }
};

TEST_F(frmStudySaveAsTest, SavesUnderANewName) {
    const auto old = Files.Bytes(Group + "AM Peak.ld2");
    Open();
    TypeInto("txtStudyName", "Morning and evening, 32 characters");
    // The study is saved though the settings cannot be.
    Files.FailChangeAfter(2, ErrorNumber::PermissionDenied);
    Messages.Expect("Run-time error '70':\nPermission denied\n\n/program/VANTOR.bin");
    PressKey(Qt::Key_Return);
    ExpectSaved(Group, "Morning and evening, 32 characte");
    EXPECT_EQ(Files.Bytes(Group + "AM Peak.ld2"), old);
}

TEST_F(frmStudySaveAsTest, AsksBeforeItReplacesAStudy) {
    PutStudy("PM Peak", {});
    Open();
    ClickRow(*Window, "vaStudies", 1);
    const std::string question =
        "Study: PM Peak\n exists already in Study Group: Main Street\nDo you want to replace it?\n\n"
        "It will be kept as PM Peak.ld2.bak.";
    Save(question, No);
    ExpectNotSaved();
    EXPECT_EQ(Saved("PM Peak").Record.RunCount, 0);
    Save(question);
    ExpectSaved(Group, "PM Peak");
}

TEST_F(frmStudySaveAsTest, RefusesNamesThatCannotBeFiles) {
    const auto files = Files.AllFiles();
    const std::tuple<const char*, const char*, std::string> cases[] = {
        {"  ", "Main Street", UnsafeNameMessage("")},
        {"Ωmega", "Main Street",
         "\"Ωmega\" cannot be used as a name.\nA name has at most 32 letters, digits and signs of the Western alphabet "
         "and no blank at its ends."},
        {"Fine", "../Temp", UnsafeNameMessage("../Temp")}};
    for (const auto& [name, group, message] : cases) {
        Open();
        Get<QLineEdit>("txtStudyName").setText(QString::fromUtf8(name));
        TypeInto("txtStudyGroup", group);
        Save(message, MessageAnswer::Ok);
        ExpectNotSaved();
    }
    EXPECT_EQ(Files.AllFiles(), files);
}

TEST_F(frmStudySaveAsTest, AnotherGroupGetsTheRunsItLacks) {
    PutRun(OakElm, "R2", "another survey");
    const auto others = Files.Bytes(OakElm + "R2.rd2");
    const auto question = [](const std::string& group, const std::string& rest) {
        return "A study uses the runs of its own Study Group.\n"
               "There are other runs of the same names in Study Group: " +
               group + "\nThey stay as they are, and the study will use them: R2\nDo you want to " + rest;
    };
    const std::string copies = question("Oak & Elm Ave", "copy these runs to Study Group: Oak & Elm Ave ?\nR1, R3");
    Open();
    ClickFolder(*Window, "treStudyGroups", "Oak & Elm Ave");
    EXPECT_EQ(Text("txtStudyGroup"), "Oak & Elm Ave");
    Messages.Expect(copies, No);
    Save("The study was not saved, because its runs are not in Study Group: Oak & Elm Ave", MessageAnswer::Ok);
    ExpectNotSaved();
    EXPECT_FALSE(HasFile(OakElm + "R1.rd2"));
    Save(copies);
    ExpectSaved(OakElm, "AM Peak");
    EXPECT_EQ(Files.Bytes(OakElm + "R1.rd2"), Files.Bytes(Group + "R1.rd2"));
    EXPECT_EQ(Files.Bytes(OakElm + "R2.rd2"), others);

    // Back again: there is nothing to copy, but one run is another.
    Open();
    TypeInto("txtStudyGroup", "main street");
    TypeInto("txtStudyName", "PM Peak");
    Save(question("Main Street", "save the study there?"));
    ExpectSaved(Group, "PM Peak");
}

TEST_F(frmStudySaveAsTest, ATypedGroupIsMadeOnSave) {
    for (const char* run : {"R1", "R2", "R3"}) Files.Delete(Group + run + ".rd2");
    Open();
    TypeInto("txtStudyGroup", "Elm St");
    EXPECT_EQ(Get<QWidget>("vaStudies").accessibleDescription(),
              "A new Study Group: its folder is made when the study is saved.");
    PressKey(Qt::Key_Tab);
    EXPECT_TRUE(Get<QWidget>("treStudyGroups").hasFocus());
    EXPECT_EQ(Text("txtStudyGroup"), "Elm St");
    EXPECT_FALSE(Files.Find(Root + "Elm St"));
    Files.FailChangeAfter(1, ErrorNumber::DiskFull);
    Save("Run-time error '61':\nDisk full\n\n" + Root + "Elm St/AM Peak.ld2", MessageAnswer::Ok);
    ExpectNotSaved();
    Press("BtnSave");
    ExpectSaved(Root + "Elm St/", "AM Peak");
}

struct frmRunSelectTest : MainStreet<FormScene<frmRunSelect>> {
    frmRunSelectTest() { State.Paths.LastStudyGroupPath = OakElm; }
    void PutVer1Run(const std::string& name) {
        Files.PutCopyOf(VANTOR_SAMPLES "Version 1 runs/MAINNB01.rdf", OakElm + name + ".rdf");
    }
    Table& List() { return Get<Table>("vaSelRuns"); }
    std::string Tip(int row, int column = 0) { return FromQt(List().item(row, column)->toolTip()); }
    Names Chosen() const { return RunsOf(State.CurrentStudy); }
};

TEST_F(frmRunSelectTest, ListsRunsWithTheirState) {
    PutRun(OakElm, "NB-002", "wet road");
    PutRun(OakElm, "NB-001");
    PutRun(OakElm, "MAINNB02");
    for (const char* run : {"MAINNB01", "mainnb02"}) PutVer1Run(run);
    AppendRun(State.CurrentStudy, "nb-001");
    Open();
    EXPECT_THAT(Rows(*Window, "vaSelRuns"),
                ElementsAre("MAINNB01|10/08/96|07:20|Primary|7953|227|7|Before|Dry, light rain later. Signals not "
                            "coordinated.|Version 1",
                            "MAINNB02|03/11/08|07:05|Primary|5280|0|0|Before||",
                            "NB-001|03/11/08|07:05|Primary|5280|0|0|Before||In study",
                            "NB-002|03/11/08|07:05|Primary|5280|0|0|Before|wet road|"));
    EXPECT_EQ(Tip(2), "This run is in the study already.");
    EXPECT_EQ(Tip(0, 9), "A version 1 run file. It is converted when the run is added.");
    DoubleClickRow(*Window, "vaSelRuns", 2);
    EXPECT_FALSE(IsEnabled("BtnAdd"));
    EXPECT_TRUE(Window->isVisible());

    // The title keeps the label of the start, so the value, a mile, names its own unit.
    State.Settings.MetricUnits = -1;
    Open();
    EXPECT_EQ(List().horizontalHeaderItem(4)->text(), "Length (ft)");
    EXPECT_EQ(List().Text(3, 4), "1609 m");
}

TEST_F(frmRunSelectTest, AddsByDoubleClickEnterAndButton) {
    State.Paths.LastStudyGroupPath = Group;
    Open();
    DoubleClickRow(*Window, "vaSelRuns", 1);
    EXPECT_TRUE(IsAccepted());
    Open();
    ClickRow(*Window, "vaSelRuns", 3);
    PressKey(Qt::Key_Return);
    EXPECT_TRUE(IsAccepted());
    Open();
    List().sortByColumn(0, Qt::DescendingOrder);
    Press("BtnSelectAll");
    Press("BtnAdd");
    EXPECT_TRUE(IsAccepted());
    EXPECT_THAT(Chosen(), ElementsAre("R2", "R4", "R3", "R1"));
    EXPECT_FALSE(State.StudyUnchanged);
    Open();
    EXPECT_FALSE(IsEnabled("BtnSelectAll"));
}

TEST_F(frmRunSelectTest, ConvertsVersion1RunsAutomatically) {
    for (const char* run : {"OLD1", "OLD2"}) PutVer1Run(run);
    PutRun(OakElm, "NB-001");
    Files.PutText(OakElm + "OLD1.rdx", "converted before");
    State.CurrentRun.Header.RunName = "the one in hand";
    Open();
    Press("BtnSelectAll");
    Messages.Expect("Run-time error '58':\nFile already exists\n\n" + OakElm +
                    "OLD1.rdx\nThe run was converted before. Move that file away first.");
    Press("BtnAdd");
    EXPECT_TRUE(IsAccepted());
    EXPECT_THAT(Chosen(), ElementsAre("NB-001", "OLD2"));
    EXPECT_TRUE(HasFile(OakElm + "OLD2.rd2") && HasFile(OakElm + "OLD1.rdf"));
    EXPECT_EQ(State.CurrentRun.Header.RunName, "the one in hand");
}

TEST_F(frmRunSelectTest, AsksBeforeEachConversion) {
    State.Settings.AutoConvertVer1 = 0;
    for (const char* run : {"OLD1", "OLD2"}) PutVer1Run(run);
    Open();
    for (const auto answer : {No, Yes}) {
        Press("BtnSelectAll");
        Messages.Expect("Do you want to convert Ver 1 run file OLD1 to a Ver 2 run file?", No);
        Messages.Expect("Do you want to convert Ver 1 run file OLD2 to a Ver 2 run file?", answer);
        if (answer == Yes)
            Messages.Expect(
                "Ver 1 run file OLD2 (.rdf) converted to a Ver 2 run file (.rd2).\n"
                "The original .rdf file was renamed to an .rdx file.");
        Press("BtnAdd");
        EXPECT_EQ(IsAccepted(), answer == Yes);
    }
    EXPECT_THAT(Chosen(), ElementsAre("OLD2"));
}

TEST_F(frmRunSelectTest, FilesThatAreNoUsableRunsCannotBeAdded) {
    const std::string tooShort = "\nThe file is too short for a run. It is damaged.";
    std::string tooMany(8448, '\0');
    tooMany[52] = 1;  // 65536 samples
    const std::tuple<std::string, std::string, std::string> files[] = {
        {"A.rd2", "short", "Input past end of file\n" + OakElm + "A.rd2" + tooShort},
        {"B.rdf", "short", "Input past end of file\n" + OakElm + "B.rdf" + tooShort},
        {"C.rd2", tooMany,
         "Overflow\n" + OakElm + "C.rd2\nThe file tells of 65536 samples; a run holds at most 32767. It is damaged."},
        {"D has a name of thirty-three chars.rd2", std::string(8448, '\0'),
         "\"D has a name of thirty-three chars\" cannot be used as a name.\nA name has at most 32 letters, digits and "
         "signs of the Western alphabet and no blank at its ends."}};
    for (const auto& [name, bytes, reason] : files) Files.PutText(OakElm + name, bytes);
    Open();
    for (int row = 0; const auto& [name, bytes, reason] : files) {
        EXPECT_EQ(List().Text(row, 9), "Not usable");
        EXPECT_EQ(Tip(row), "This run cannot be added.\n" + reason);
        DoubleClickRow(*Window, "vaSelRuns", row++);
    }
    QTest::keyClick(&List(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_FALSE(IsEnabled("BtnSelectAll"));
    EXPECT_FALSE(IsEnabled("BtnAdd"));
    EXPECT_TRUE(Window->isVisible());
    EXPECT_THAT(Chosen(), IsEmpty());
}

TEST_F(frmRunSelectTest, OnlyAStudyWithoutRunsChoosesItsGroup) {
    PutRun(OakElm, "SB-001");
    State.Paths.LastStudyGroupPath = Root;
    Open();
    EXPECT_EQ(Text("cmbStudyGroup"), "Study Groups");
    QTest::keyClick(&Get<QWidget>("cmbStudyGroup"), Qt::Key_Up);
    EXPECT_EQ(Text("cmbStudyGroup"), "Oak & Elm Ave");
    EXPECT_EQ(State.Paths.LastStudyGroupPath, Root);
    ClickRow(*Window, "vaSelRuns", 0);
    Press("BtnAdd");
    EXPECT_EQ(State.Paths.LastStudyGroupPath, OakElm);
    Open();
    EXPECT_FALSE(IsEnabled("cmbStudyGroup"));
    EXPECT_EQ(Text("cmbStudyGroup"), "Oak & Elm Ave");
    PressKey(Qt::Key_Escape);
    EXPECT_EQ(Window->result(), QDialog::Rejected);
    EXPECT_THAT(Chosen(), ElementsAre("SB-001"));
}

}  // namespace
}  // namespace vantor
