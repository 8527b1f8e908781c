#include "gpsobd/forms/LogSelect.h"

#include <QPointer>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <thread>

#include "Logs.h"
#include "core/forms/Job.h"
#include "fakes/FormScene.h"

namespace vantor {
namespace {

using testing::ElementsAre, testing::HasSubstr, testing::IsEmpty, testing::Lt;
using enum LogKind;

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
        struct Reader : RecordSet {
            explicit Reader(std::atomic<int>& all) : All(all) {}
            int FieldCount() const override { return 9; }
            bool Next() override {
                if (++All > Records + 200) std::this_thread::sleep_for(std::chrono::milliseconds(1));
                return ++Own <= Records;
            }
            std::string Text(int position) const override { return position == 0 ? "37755.5" : "1"; }
            std::atomic<int>& All;
            int Own = 0;
        };
        return std::make_unique<Reader>(RecordsRead);
    }
};

class LogSelectTest : public FormScene<LogSelect> {
protected:
    void OpenList(LogKind kind) {
        Open(FormatOf(kind));
        WaitForLogs(*Window);
    }
    static void WaitForLogs(LogSelect& form) {
        // A table can be sorted when it is filled.
        EXPECT_TRUE(QTest::qWaitFor([&] { return form.findChild<Table*>()->isSortingEnabled(); }));
    }
    void Put(const std::string& name, const std::string& bytes) { Files.PutText(FieldData + name, bytes); }
    void ExpectOffer(const std::string& program, MessageAnswer answer = MessageAnswer::No) {
        Messages.Expect("If you wish to have Vantor copy \n" + program +
                            " database files into your \nselected field data folder, place \nyour Pocket-PC "
                            "device in its cradle now \n& click Yes. Otherwise, click No.\n",
                        answer);
    }

    Table& Grid() { return *Window->findChild<Table*>(); }
    void ClickLog(int row) { ClickCell(Grid(), row, 0); }
    std::vector<std::string> Logs() { return Rows(*Window, Grid().objectName().toLatin1()); }
    std::string Chosen() const {
        const LogChoice& log = Window->Choice();
        return log.Folder + log.File + log.Extension;
    }
};

TEST_F(LogSelectTest, EachKindHasItsScreen) {
    const std::string laptop = "File Name|Date|Start Time|End Time|# Runs|Format|Extension";
    const std::string handheld = "File Name|Start Time|End Time|# Runs|Type";
    const std::tuple<LogKind, std::string, const char*> screens[] = {
        {GpsLaptop, "frmGPSLaptopSelect|Select GPS Data|treGPSPath|vaSelGPSFile|" + laptop, ".gd2"},
        {ObdLaptop, "frmOBDLaptopSelect|Select OBD Data|treOBDPath|vaSelOBDFile|" + laptop, ".od2"},
        {GpsHandheld, "frmGPSPDASelect|Select GPS Database to Process|treGPSPath|vaSelGPSFile|" + handheld, ".mdb"},
        {ObdHandheld, "frmOBDPDASelect|Select OBD Database to Process|treOBDPath|vaSelOBDFile|" + handheld, ".mdb"},
        {GpsObd,
         "frmGPSOBDSelect|Select GPS-Revlap Study|treGPSOBDPath|vaSelGPSOBDFile|File Name|Start Time|End Time|# Runs",
         ".ddf"},
        {Battelle,
         "frmBatelleGPSSelect|Select Batelle GPS File|treBatelleGPSPath|vaBatelleGPSFile|File Name|Date|Start|# Runs",
         ".txt"}};
    for (const auto& [kind, screen, extension] : screens) {
        SCOPED_TRACE(screen);
        if (kind == GpsHandheld || kind == ObdHandheld) ExpectOffer(kind == GpsHandheld ? "Roampad" : "Revpad");
        OpenList(kind);
        const auto& tree = *Window->findChild<FolderTree*>();
        QStringList texts{Window->objectName(), Window->windowTitle(), tree.objectName(), Grid().objectName()};
        for (int i = 0; i < Grid().columnCount(); ++i) texts += Grid().horizontalHeaderItem(i)->text();
        EXPECT_EQ(FromQt(texts.join(QLatin1Char('|'))), screen);
        EXPECT_EQ(tree.SelectedFolder(), FieldData);
        EXPECT_EQ(Grid().isColumnHidden(5), kind == GpsLaptop || kind == ObdLaptop);
        Press("cmdHelp");
        EXPECT_EQ(std::exchange(DesktopServices.Opened, {}).back(), "/program/VANTOR.HLP#62");
        Press("BtnSelect");  // of no log at all
        EXPECT_TRUE(IsAccepted());
        EXPECT_EQ(Chosen(), FieldData + extension);
    }
}

TEST_F(LogSelectTest, ListsLaptopLogs) {
    const std::string gd2 = Prefix(2) + GpsHeader() + GpsRecord(0, LogDay + 0.5);
    Put("b.gd2", gd2 + GpsRecord(3, LogDay + 0.75) + GpsRecord(2, LogDay + 0.625));
    Put("A.GDF", Prefix(1, 0) + GpsHeader() + Ver1GpsRecord(1, LogDay + 0.25, 4230, 8330));
    Put("c.gd2", gd2 + GpsRecord(1, LogDay + 1.25) + "cut off");
    Put("d.gd2", "This is no log, but a letter.");
    Put("a.txt", "$s\n");
    OpenList(GpsLaptop);
    EXPECT_THAT(Logs(), ElementsAre("A|03/14/08|06:00:00|06:00:00|1|1|.GDF",  // it has no date: today
                                    "b|05/14/03|12:00:00|18:00:00|3|2|.gd2",
                                    "c|05/14/03|05/14/03 12:00:00|05/15/03 06:00:00|1|2|.gd2", "d|||||2|.gd2"));
    EXPECT_FALSE(IsShown("lblNote"));
    ClickLog(2);
    EXPECT_THAT(Text("lblNote"), HasSubstr("7 bytes"));
    ClickLog(3);
    EXPECT_TRUE(IsShown("lblNote"));
    EXPECT_THAT(Text("lblNote"), HasSubstr(FieldData + "d.gd2"));
    EXPECT_EQ(FromQt(Grid().item(3, 0)->toolTip()), Text("lblNote"));
}

TEST_F(LogSelectTest, ChoosesByButtonEnterAndDoubleClick) {
    Put(" a.odf", Prefix(2) + ObdHeader());
    Put("b.od2", Prefix(2) + ObdHeader());
    const auto chosenBy = [&](int row, const std::function<void()>& act) {
        OpenList(ObdLaptop);
        Grid().sortByColumn(0, Qt::DescendingOrder);
        ClickLog(row);
        act();
        EXPECT_TRUE(IsAccepted());
        return Chosen();
    };
    EXPECT_EQ(chosenBy(1, [&] { Press("BtnSelect"); }), FieldData + "a.odf");
    EXPECT_EQ(chosenBy(0, [&] { QTest::keyClick(&Grid(), Qt::Key_Return); }), FieldData + "b.od2");
    EXPECT_EQ(chosenBy(0, [&] { ClickCell(Grid(), 0, 0, {}, true); }), FieldData + "b.od2");
}

TEST_F(LogSelectTest, ListsHandheldDatabases) {
    for (const char* name : {"GPSData.mdb", "broken.mdb"}) Put(name, "");
    Put("GPSData.pdb", EmptyPalm("GPSData"));
    Put("other.pdb", EmptyPalm("Contacts"));
    Databases.Path = FieldData + "GPSData.mdb";
    Databases.Table = "GPSData";
    Databases.Records = {{"05/14/2003 22:00:17", "", "", "", "", "", "", "", "0"},
                         {"05/15/2003 00:01:02", "", "", "", "", "", "", "", "2"},
                         {"05/14/2003 22:00:19", "", "", "", "", "", "", "", "1"}};
    ExpectOffer("Roampad");
    Messages.Expect("unable to open broken.mdb");
    Messages.Expect("unable to open other.pdb");
    OpenList(GpsHandheld);
    EXPECT_THAT(Logs(), ElementsAre("broken||||MDB", "GPSData|05/14/03 22:00:17|05/15/03 00:01:02|2|MDB",
                                    "GPSData|||0|PDB", "other||||PDB"));
    ClickLog(2);
    Press("BtnSelect");
    EXPECT_EQ(Chosen(), FieldData + "GPSData.pdb");

    Databases.Table = "OBDData";
    ExpectOffer("Revpad");
    Messages.Expect("unable to open broken.mdb", MessageAnswer::OkForAll);  // and not for the other one
    OpenList(ObdHandheld);
    EXPECT_EQ(Logs()[1], "GPSData|22:00:17|00:01:02|2|MDB");
    EXPECT_EQ(Grid().item(1, 1)->toolTip(), "05/14/03 22:00:17");
    EXPECT_EQ(Grid().item(2, 0)->toolTip(), "This is a GPS database. Open it with File > Process Roampad Data.");
}

TEST_F(LogSelectTest, ListsCombinedAndBattelleLogs) {
    Put("x.ddf", Prefix(2) + ObdHeader() + GpsRecord(1, LogDay + 0.5) + ObdRecord(1, LogDay));
    Put("y.txt", "$G,05/14/03,21:07:40\r\n$s\r\n$G,05/14/03,22:00:00\n$s");
    Put("z.txt", "Minutes of the meeting");
    OpenList(GpsObd);
    EXPECT_THAT(Logs(), ElementsAre("x|05/14/03 12:00:00|05/14/03 12:00:00|1"));
    OpenList(Battelle);
    EXPECT_THAT(Logs(), ElementsAre("y|05/14/03|21:07|2", "z|||0"));
    EXPECT_TRUE(Grid().item(0, 0)->icon().isNull());
    EXPECT_FALSE(Grid().item(1, 0)->icon().isNull());
}

TEST_F(LogSelectTest, CopiesTheDatabaseOfTheHandheldFirstAndWaitsASecond) {
    Device.Files["\\Program Files\\Revpad\\OBDData.pdb"] = BytesOf(EmptyPalm("OBDData"));
    const Date begin = Time.Moment;
    QTimer passing;
    QObject::connect(&passing, &QTimer::timeout, [&] { Time.Moment.Days += 0.25 / 86400; });
    passing.start(5);
    ExpectOffer("Revpad", MessageAnswer::Yes);
    OpenList(ObdHandheld);
    EXPECT_THAT(Logs(), ElementsAre("OBDData|||0|PDB"));
    EXPECT_GT((Time.Moment.Days - begin.Days) * 86400, 1);
    EXPECT_EQ(Text("lblProgress"), "");
}

TEST_F(LogSelectTest, TheWaitAfterTheCopyEndsWithTheScreen) {
    Device.Files["\\Program Files\\Roampad\\GPSData.pdb"] = BytesOf(EmptyPalm("GPSData"));
    ExpectOffer("Roampad", MessageAnswer::Yes);
    LogSelect form(Context, FormatOf(GpsHandheld));
    QTimer::singleShot(50, &form, [&] { QTest::keyClick(&form, Qt::Key_Escape); });
    form.exec();  // the clock stands still
    EXPECT_EQ(form.result(), QDialog::Rejected);
    EXPECT_FALSE(State.Handheld.ConnectionOpen);
    EXPECT_EQ(form.findChild<Table*>()->rowCount(), 0);
}

TEST_F(LogSelectTest, StaysAliveWhileALongLogIsRead) {
    for (const char* name : {"a.mdb", "b.mdb", "c.mdb"}) Put(name, "");
    Files.PutText("/start/Temp/old.pdb", EmptyPalm("GPSData"));
    const auto openAnd = [&](const std::function<void(LogSelect&)>& act) {
        const LongDatabases databases;
        Job work(Messages, [&] { return std::make_unique<MemoryFileSystem>(Files); });
        AppContext context{State,  Files,  Messages,  OtherScreens, DesktopServices, Time,          End,  Memory,
                           Serial, Device, databases, Sheets,       Documents,       OtherPrograms, work, Tiles};
        ExpectOffer("Roampad");
        auto* form = new LogSelect(context, FormatOf(GpsHandheld));
        const QPointer<LogSelect> alive(form);
        form->show();
        EXPECT_TRUE(QTest::qWaitFor([&] { return TextOf(*form, "lblProgress") == "Reading 2 of 3..."; }));
        EXPECT_THAT(Rows(*form, "vaSelGPSFile"), ElementsAre("a|05/14/03 12:00:00|05/14/03 12:00:00|1|MDB"));
        act(*form);
        if (alive && form->isVisible()) WaitForLogs(*form);
        EXPECT_THAT(databases.RecordsRead.load(), Lt(LongDatabases::Records + 5000));
        const auto names = alive ? Column(*form, "vaSelGPSFile", 0) : std::vector<std::string>();
        delete alive;
        return names;
    };
    EXPECT_THAT(openAnd([](LogSelect& form) { ClickFolder(form, "treGPSPath", "Temp"); }), ElementsAre("old"));
    EXPECT_THAT(openAnd([](LogSelect& form) { QTest::keyClick(&form, Qt::Key_Escape); }), ElementsAre("a"));
    openAnd([](LogSelect& form) {
        Click(form, "BtnSelect");
        EXPECT_EQ(form.Choice().File, "a");
    });
    EXPECT_THAT(openAnd([](LogSelect& form) { delete &form; }), IsEmpty());
}

TEST_F(LogSelectTest, OpensWithoutItsFolder) {
    State.Paths.FieldDataPath = "/gone";
    OpenList(Battelle);
    EXPECT_EQ(Window->Choice().Folder, "/gone/");
    Files.PutText("/start/Temp/x.txt", "$s\n");
    Window->findChild<FolderTree*>()->expandAll();
    ClickFolder(*Window, "treBatelleGPSPath", "Temp");
    WaitForLogs(*Window);
    EXPECT_THAT(Logs(), ElementsAre("x|||1"));
}

}  // namespace
}  // namespace vantor
