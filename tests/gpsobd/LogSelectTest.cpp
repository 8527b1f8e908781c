#include "gpsobd/forms/LogSelect.h"

#include <gmock/gmock.h>

#include <QPointer>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <thread>

#include "LogBytes.h"
#include "core/forms/Job.h"
#include "counter/TableClicks.h"
#include "fakes/FakePorts.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Lt;

const std::string FieldData = "/start/Field Data Files/";

/// A container without records.
std::string EmptyPalm(std::string name) {
    name.resize(78);
    return name;
}

/// Databases of very many records. The second one is read slowly, for minutes if nobody stops it.
class LongDatabases : public DatabaseEngine {
public:
    mutable std::atomic<int> RecordsRead = 0;
    static constexpr int Records = 100000;

    std::unique_ptr<RecordSet> OpenTable(const std::string&, const std::string&) const override {
        return std::make_unique<Reader>(*this);
    }

private:
    class Reader : public RecordSet {
    public:
        explicit Reader(const LongDatabases& all) : all_(all) {}
        int FieldCount() const override { return 9; }
        bool Next() override {
            if (++all_.RecordsRead > Records + 200) std::this_thread::sleep_for(std::chrono::milliseconds(1));
            return ++read_ <= Records;
        }
        std::string Text(int position) const override { return position == 0 ? "37755.5" : "1"; }

    private:
        const LongDatabases& all_;
        int read_ = 0;
    };
};

class PromptRecorder : public MessageBoxes {
public:
    std::vector<Prompt> Prompts;
    MessageAnswer Answer = MessageAnswer::Yes;  ///< to every question
    MessageAnswer Ask(const Prompt& prompt) override {
        Prompts.push_back(prompt);
        return prompt.Buttons == MessageButtons::Ok ? MessageAnswer::Ok : Answer;
    }
};

class LogSelectTest : public testing::Test {
protected:
    static void WaitForLogs(LogSelect& form) {
        // A table can be sorted when it is filled.
        EXPECT_TRUE(QTest::qWaitFor([&] { return form.findChild<Table*>()->isSortingEnabled(); }));
    }
    static void Open(LogSelect& form) {
        form.show();
        form.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
        WaitForLogs(form);
    }
    static void ChooseFolder(LogSelect& form, const QString& name) {
        auto& tree = *form.findChild<FolderTree*>();
        tree.setCurrentItem(tree.findItems(name, Qt::MatchExactly | Qt::MatchRecursive).front());
    }
    void Put(const std::string& name, const LogBytes& bytes) { Program.Files.PutText(FieldData + name, bytes.Bytes()); }
    void ExpectOffer(const std::string& program) {
        Program.Messages.Expect("If you wish to have Vantor copy \n" + program +
                                    " database files into your \nselected field data folder, place \nyour Pocket-PC "
                                    "device in its cradle now \n& click Yes. Otherwise, click No.\n",
                                MessageAnswer::No);
    }
    AppContext With(MessageBoxes& messages, const DatabaseEngine& databases) {
        return With(messages, databases, Program.Context.Work);
    }
    AppContext With(MessageBoxes& messages, const DatabaseEngine& databases, LongWork& work) {
        const AppContext& all = Program.Context;
        return {all.State,  all.Files,  messages,   all.OtherScreens, all.DesktopServices, all.Time,      all.End,
                all.Memory, all.Serial, all.Device, databases,        all.Sheets,          all.Documents, work};
    }

    TestProgram Program;
};

TEST_F(LogSelectTest, EachKindHasItsScreen) {
    struct Expected {
        LogKind Kind;
        const char *Form, *Caption, *Tree, *Grid, *Extension, *Program;
        std::vector<std::string> Heads;
    };
    const std::vector<std::string> laptop{"File Name", "Date",   "Start Time", "End Time",
                                          "# Runs",    "Format", "Extension"};
    const std::vector<std::string> handheld{"File Name", "Start Time", "End Time", "# Runs", "Type"};
    const std::vector<Expected> screens{
        {LogKind::GpsLaptop, "frmGPSLaptopSelect", "Select GPS Data", "treGPSPath", "vaSelGPSFile", ".gd2", "", laptop},
        {LogKind::ObdLaptop, "frmOBDLaptopSelect", "Select OBD Data", "treOBDPath", "vaSelOBDFile", ".od2", "", laptop},
        {LogKind::GpsHandheld, "frmGPSPDASelect", "Select GPS Database to Process", "treGPSPath", "vaSelGPSFile",
         ".mdb", "Roampad", handheld},
        {LogKind::ObdHandheld, "frmOBDPDASelect", "Select OBD Database to Process", "treOBDPath", "vaSelOBDFile",
         ".mdb", "Revpad", handheld},
        {LogKind::GpsObd,
         "frmGPSOBDSelect",
         "Select GPS-Revlap Study",
         "treGPSOBDPath",
         "vaSelGPSOBDFile",
         ".ddf",
         "",
         {"File Name", "Start Time", "End Time", "# Runs"}},
        {LogKind::Battelle,
         "frmBatelleGPSSelect",
         "Select Batelle GPS File",
         "treBatelleGPSPath",
         "vaBatelleGPSFile",
         ".txt",
         "",
         {"File Name", "Date", "Start", "# Runs"}}};
    for (const Expected& screen : screens) {
        SCOPED_TRACE(screen.Form);
        Program.State.SelectedDataFile = "of another time";
        Program.State.SelectedDataIsPdb = true;
        if (*screen.Program != '\0') ExpectOffer(screen.Program);
        LogSelect form(Program.Context, screen.Kind);
        Open(form);
        EXPECT_EQ(form.objectName(), screen.Form);
        EXPECT_EQ(form.windowTitle(), screen.Caption);
        EXPECT_EQ(Find<FolderTree>(form, screen.Tree).SelectedFolder(), FieldData);
        EXPECT_EQ(Heads(form, screen.Grid), screen.Heads);
        EXPECT_EQ(Find<Table>(form, screen.Grid).isColumnHidden(5), screen.Heads == laptop);
        EXPECT_TRUE(Program.Messages.IsDone());
        QTest::keyClick(&form, Qt::Key_F1);
        // A button that is pressed by its key stays down for a moment.
        EXPECT_TRUE(QTest::qWaitFor([&] { return !Program.DesktopServices.Opened.empty(); }));
        EXPECT_THAT(std::exchange(Program.DesktopServices.Opened, {}), ElementsAre("/program/VANTOR.HLP#62"));
        Click(form, "BtnSelect");  // of no log at all
        EXPECT_TRUE(Program.State.DataFileSelected);
        EXPECT_EQ(Program.State.SelectedDataFile, "");
        EXPECT_EQ(Program.State.SelectedDataExt, screen.Extension);
        EXPECT_FALSE(Program.State.SelectedDataIsPdb);
    }
}

TEST_F(LogSelectTest, ListsLaptopLogs) {
    Put("b.gd2", PrefixBytes(2)
                     .Add(GpsHeaderBytes())
                     .Add(GpsRecord(0, LogDay + 0.5))
                     .Add(GpsRecord(3, LogDay + 0.75))
                     .Add(GpsRecord(2, LogDay + 0.625)));
    Put("A.GDF", PrefixBytes(1, 0).Add(GpsHeaderBytes()).Add(Ver1GpsRecord(1, LogDay + 0.25, 4230, 8330)));
    Put("c.gd2", PrefixBytes(2)
                     .Add(GpsHeaderBytes())
                     .Add(GpsRecord(1, LogDay + 0.5))
                     .Add(GpsRecord(1, LogDay + 1.25))
                     .Raw("cut off"));
    Put("d.gd2", LogBytes().Raw("This is no log, but a letter."));
    Put("a.txt", LogBytes().Raw("$s\n"));
    LogSelect form(Program.Context, LogKind::GpsLaptop);
    Open(form);
    auto& grid = Find<Table>(form, "vaSelGPSFile");
    ASSERT_EQ(grid.rowCount(), 4);
    // The log without a date is listed under today's.
    EXPECT_THAT(Row(form, "vaSelGPSFile", 0), ElementsAre("A", "03/14/08", "06:00:00", "06:00:00", "1", "1", ".GDF"));
    EXPECT_THAT(Row(form, "vaSelGPSFile", 1), ElementsAre("b", "05/14/03", "12:00:00", "18:00:00", "3", "2", ".gd2"));
    EXPECT_THAT(Row(form, "vaSelGPSFile", 2),
                ElementsAre("c", "05/14/03", "05/14/03 12:00:00", "05/15/03 06:00:00", "1", "2", ".gd2"))
        << "over two days";
    EXPECT_THAT(Row(form, "vaSelGPSFile", 3), ElementsAre("d", "", "", "", "", "2", ".gd2"));
    auto& note = Find<QLabel>(form, "lblNote");
    EXPECT_TRUE(note.isHidden());
    ClickRow(form, "vaSelGPSFile", 2);
    EXPECT_THAT(FromQt(note.text()), HasSubstr("7 bytes"));
    ClickRow(form, "vaSelGPSFile", 3);
    EXPECT_FALSE(note.isHidden());
    EXPECT_THAT(FromQt(note.text()), HasSubstr(FieldData + "d.gd2"));
    EXPECT_EQ(grid.item(3, 0)->toolTip(), note.text());
}

TEST_F(LogSelectTest, ChoosesByButtonEnterAndDoubleClick) {
    Put(" a.odf", PrefixBytes(2).Add(ObdHeaderBytes()));
    Put("b.od2", PrefixBytes(2).Add(ObdHeaderBytes()));
    const auto chosenBy = [&](int row, const std::function<void(LogSelect&, Table&)>& act) {
        Program.State.DataFileSelected = false;
        LogSelect form(Program.Context, LogKind::ObdLaptop);
        Open(form);
        auto& grid = Find<Table>(form, "vaSelOBDFile");
        grid.sortByColumn(0, Qt::DescendingOrder);
        ClickRow(form, "vaSelOBDFile", row);
        act(form, grid);
        EXPECT_EQ(form.result(), QDialog::Accepted);
        EXPECT_TRUE(Program.State.DataFileSelected);
        return Program.State.SelectedDataFolder + "|" + Program.State.SelectedDataFile + "|" +
               Program.State.SelectedDataExt;
    };
    EXPECT_EQ(chosenBy(1, [](LogSelect& form, Table&) { Click(form, "BtnSelect"); }), FieldData + "|a|.odf");
    EXPECT_EQ(chosenBy(0, [](LogSelect&, Table& grid) { QTest::keyClick(&grid, Qt::Key_Return); }),
              FieldData + "|b|.od2");
    EXPECT_EQ(chosenBy(0,
                       [](LogSelect&, Table& grid) {
                           QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {},
                                              grid.visualItemRect(grid.item(0, 0)).center());
                       }),
              FieldData + "|b|.od2");
}

TEST_F(LogSelectTest, ListsHandheldDatabases) {
    for (const char* name : {"GPSData.mdb", "broken.mdb"}) Put(name, LogBytes());
    Put("GPSData.pdb", LogBytes().Raw(EmptyPalm("GPSData")));
    Put("other.pdb", LogBytes().Raw(EmptyPalm("Contacts")));
    Program.Databases.Path = FieldData + "GPSData.mdb";
    Program.Databases.Table = "GPSData";
    Program.Databases.Records = {{"05/14/2003 22:00:17", "", "", "", "", "", "", "", "0"},
                                 {"05/15/2003 00:01:02", "", "", "", "", "", "", "", "2"},
                                 {"05/14/2003 22:00:19", "", "", "", "", "", "", "", "1"}};
    ExpectOffer("Roampad");
    Program.Messages.Expect("unable to open broken.mdb");
    Program.Messages.Expect("unable to open other.pdb");
    LogSelect form(Program.Context, LogKind::GpsHandheld);
    Open(form);
    const char* grid = "vaSelGPSFile";
    EXPECT_THAT(Row(form, grid, 0), ElementsAre("broken", "", "", "", "MDB"));
    EXPECT_THAT(Row(form, grid, 1), ElementsAre("GPSData", "05/14/03 22:00:17", "05/15/03 00:01:02", "2", "MDB"));
    EXPECT_THAT(Row(form, grid, 2), ElementsAre("GPSData", "", "", "0", "PDB"));
    EXPECT_THAT(Row(form, grid, 3), ElementsAre("other", "", "", "", "PDB"));
    ClickRow(form, grid, 2);
    Click(form, "BtnSelect");
    EXPECT_EQ(Program.State.SelectedDataFile + Program.State.SelectedDataExt, "GPSData.pdb");
    EXPECT_TRUE(Program.State.SelectedDataIsPdb);

    Program.Databases.Table = "OBDData";
    ExpectOffer("Revpad");
    Program.Messages.Expect("unable to open broken.mdb", MessageAnswer::OkForAll);  // and not for the other one
    LogSelect obd(Program.Context, LogKind::ObdHandheld);
    Open(obd);
    EXPECT_EQ(Find<Table>(obd, "vaSelOBDFile").item(1, 1)->toolTip(), "05/14/03 22:00:17");
    EXPECT_EQ(Find<Table>(obd, "vaSelOBDFile").item(2, 0)->toolTip(),
              "This is a GPS database. Open it with File > Process Roampad Data.");
    EXPECT_THAT(Row(obd, "vaSelOBDFile", 1), ElementsAre("GPSData", "22:00:17", "00:01:02", "2", "MDB"));
}

TEST_F(LogSelectTest, ListsCombinedAndBattelleLogs) {
    Put("x.ddf", PrefixBytes(2).Add(ObdHeaderBytes()).Add(GpsRecord(1, LogDay + 0.5)).Add(ObdRecord(1, LogDay)));
    Put("y.txt", LogBytes().Raw("$G,05/14/03,21:07:40\r\n$s\r\n$G,05/14/03,22:00:00\n$s"));
    LogSelect combined(Program.Context, LogKind::GpsObd);
    Open(combined);
    EXPECT_THAT(Row(combined, "vaSelGPSOBDFile", 0), ElementsAre("x", "05/14/03 12:00:00", "05/14/03 12:00:00", "1"));
    Put("z.txt", LogBytes().Raw("Minutes of the meeting"));
    LogSelect battelle(Program.Context, LogKind::Battelle);
    Open(battelle);
    EXPECT_THAT(Row(battelle, "vaBatelleGPSFile", 0), ElementsAre("y", "05/14/03", "21:07", "2"));
    EXPECT_TRUE(Find<Table>(battelle, "vaBatelleGPSFile").item(0, 0)->icon().isNull());
    EXPECT_THAT(Row(battelle, "vaBatelleGPSFile", 1), ElementsAre("z", "", "", "0"));
    EXPECT_FALSE(Find<Table>(battelle, "vaBatelleGPSFile").item(1, 0)->icon().isNull());
}

TEST_F(LogSelectTest, CopiesTheDatabaseOfTheHandheldFirst) {
    PromptRecorder messages;
    AppContext context = With(messages, Program.Databases);
    const auto open = [&] {
        messages.Prompts.clear();
        LogSelect form(context, LogKind::ObdHandheld);
        Open(form);
        return Column(form, "vaSelOBDFile", 0);
    };
    const auto expectTold = [&](const std::string& title, const std::string& text) {
        ASSERT_EQ(messages.Prompts.size(), 2U);
        EXPECT_EQ(messages.Prompts[0].Title, "Pocket-PC Data Transfer Alert");
        EXPECT_EQ(messages.Prompts[0].Buttons, MessageButtons::YesNo);
        EXPECT_EQ(messages.Prompts[1].Title, title);
        EXPECT_EQ(messages.Prompts[1].Text, text);
        for (const Prompt& prompt : messages.Prompts) EXPECT_EQ(prompt.Icon, MessageIcon::Warning);
    };
    Program.Device.Failing = "CeRapiInitEx";
    EXPECT_THAT(open(), IsEmpty());
    expectTold("Error Connecting to PDA",
               "Cannot connect with PDA.\nCheck that PDA is in cradle and turned on.\nAlso check that Active Sync is "
               "running.\nIf problem continues, contact Technical Support.\n");
    Program.Device.Failing.clear();
    EXPECT_THAT(open(), IsEmpty());  // the device has no such file
    expectTold("Error Copying Files", " Error number 1 detected. Contact Technical Support for help.");

    Program.Device.Files["\\Program Files\\Revpad\\OBDData.pdb"] = BytesOf(EmptyPalm("OBDData"));
    Put("OBDData.pdb", LogBytes().Raw("an old one"));
    const Date begin = Program.Time.Moment;
    QTimer passing;
    QObject::connect(&passing, &QTimer::timeout, [&] { Program.Time.Moment.Days += 0.25 / 86400; });
    passing.start(5);
    for (int time = 0; time < 2; ++time) {  // the connection is free again for the second
        Program.Time.Moment = begin;
        EXPECT_THAT(open(), ElementsAre("OBDData"));
        EXPECT_EQ(messages.Prompts.size(), 1U);
        EXPECT_FALSE(Program.State.Handheld.ConnectionOpen);
        EXPECT_EQ(Program.Files.Bytes(FieldData + "OBDData.pdb.bak"), BytesOf("an old one"));
        EXPECT_FALSE(Program.Files.Bytes(FieldData + "OBDData.pdb.bak2")) << "the second copy brought nothing new";
        EXPECT_GT((Program.Time.Moment.Days - begin.Days) * 86400, 1);
    }
}

TEST_F(LogSelectTest, TheWaitAfterTheCopyEndsWithTheScreen) {
    PromptRecorder messages;
    AppContext context = With(messages, Program.Databases);
    Program.Device.Files["\\Program Files\\Roampad\\GPSData.pdb"] = BytesOf(EmptyPalm("GPSData"));
    LogSelect form(context, LogKind::GpsHandheld);
    QTimer::singleShot(50, &form, [&] { QTest::keyClick(&form, Qt::Key_Escape); });
    form.exec();  // the clock stands still
    EXPECT_FALSE(Program.State.DataFileSelected);
    EXPECT_FALSE(Program.State.Handheld.ConnectionOpen);
    EXPECT_EQ(form.findChild<Table*>()->rowCount(), 0);
}

TEST_F(LogSelectTest, StaysAliveWhileALongLogIsRead) {
    for (const char* name : {"a.mdb", "b.mdb", "c.mdb"}) Put(name, LogBytes());
    Program.Files.PutText("/start/Temp/old.pdb", EmptyPalm("GPSData"));
    const auto openAnd = [&](const std::function<void(LogSelect&)>& act) {
        PromptRecorder messages;
        messages.Answer = MessageAnswer::No;
        LongDatabases databases;
        Job work(messages, [&] { return std::make_unique<MemoryFileSystem>(Program.Files); });
        AppContext context = With(messages, databases, work);
        auto* form = new LogSelect(context, LogKind::GpsHandheld);
        const QPointer<LogSelect> alive(form);
        form->show();
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return Find<QLabel>(*form, "lblProgress").text() == QLatin1String("Reading 2 of 3..."); }));
        EXPECT_THAT(Column(*form, "vaSelGPSFile", 0), ElementsAre("a"));
        EXPECT_THAT(Column(*form, "vaSelGPSFile", 3), ElementsAre("1"));
        act(*form);
        if (alive && form->isVisible()) WaitForLogs(*form);
        EXPECT_THAT(databases.RecordsRead.load(), Lt(LongDatabases::Records + 5000));
        const auto rows = alive ? Column(*form, "vaSelGPSFile", 0) : std::vector<std::string>();
        delete alive;
        return rows;
    };
    EXPECT_THAT(openAnd([](LogSelect& form) { ChooseFolder(form, "Temp"); }), ElementsAre("old"));
    EXPECT_EQ(Program.State.SelectedDataFolder, "/start/Temp/");
    Program.State.DataFileSelected = true;
    EXPECT_THAT(openAnd([](LogSelect& form) { QTest::keyClick(&form, Qt::Key_Escape); }), ElementsAre("a"));
    EXPECT_FALSE(Program.State.DataFileSelected);
    openAnd([](LogSelect& form) { Click(form, "BtnSelect"); });
    EXPECT_EQ(Program.State.SelectedDataFile, "a");
    EXPECT_THAT(openAnd([](LogSelect& form) { delete &form; }), IsEmpty());
}

TEST_F(LogSelectTest, OpensWithoutItsFolder) {
    Program.State.Paths.FieldDataPath = "/gone";
    LogSelect form(Program.Context, LogKind::Battelle);
    Open(form);
    EXPECT_EQ(Program.State.SelectedDataFolder, "/gone/");
    Program.Files.PutText("/start/Temp/x.txt", "$s\n");
    auto& tree = Find<FolderTree>(form, "treBatelleGPSPath");
    tree.expandAll();
    ChooseFolder(form, "Temp");
    WaitForLogs(form);
    EXPECT_THAT(Column(form, "vaBatelleGPSFile", 0), ElementsAre("x"));
}

}  // namespace
}  // namespace vantor
