#include <gmock/gmock.h>

#include <QEventLoop>
#include <QLineEdit>
#include <QProcess>
#include <filesystem>
#include <fstream>
#include <thread>

#include "PseudoTerminal.h"
#include "core/Paths.h"
#include "core/forms/Named.h"
#include "counter/CounterFile.h"
#include "counter/forms/frmReadTDC.h"
#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"
#include "platform/DiskFileSystem.h"
#include "platform/QtSerialPort.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string EndMark(20, ':');

std::string ContentsOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The download window over a real line and a real folder.
class Download : public testing::Test {
protected:
    Download() {
        char pattern[] = "/tmp/vantor-test-XXXXXX";
        Folder = AsFolder(mkdtemp(pattern));
        Program.State.Paths.FieldDataPath = Folder;
        Program.State.Settings.CommPort = 2;
    }
    ~Download() override {
        Form.reset();
        std::filesystem::remove_all(Folder);
    }

    void Open() {
        Form.reset();
        Form = std::make_unique<frmReadTDC>(Context);
        Form->show();
    }
    void Begin() {
        Click(*Form, "cmdBegin");
        ASSERT_TRUE(Serial.IsOpen());
    }
    std::string Prompt() { return FromQt(Find<QLabel>(*Form, "lblInstructions").text()).substr(0, 7); }
    bool Waits(const std::function<bool()>& until, int seconds = 5) { return QTest::qWaitFor(until, seconds * 1000); }
    /// Leaves the events to Qt, at full speed, until the window has closed.
    bool Closes(int seconds = 5) {
        QEventLoop loop;
        QObject::connect(Form.get(), &QDialog::finished, &loop, &QEventLoop::quit);
        QTimer::singleShot(seconds * 1000, &loop, &QEventLoop::quit);
        if (Form->isVisible()) loop.exec();
        return !Form->isVisible();
    }
    std::vector<std::string> Names() {
        std::vector<std::string> names;
        for (const FileInfo& info : Files.List(Folder)) names.push_back(info.Name);
        return names;
    }
    std::string File(int number) { return Folder + "!Kestrel-03-14-08-" + std::to_string(number) + ".tdc"; }

    std::string Folder;
    TestProgram Program;
    DiskFileSystem Files{"/"};
    QtSerialPort Serial;
    AppContext Context{Program.State,
                       Files,
                       Program.Messages,
                       Program.OtherScreens,
                       Program.DesktopServices,
                       Program.Time,
                       Program.End,
                       Program.Memory,
                       Serial,
                       Program.Device,
                       Program.Databases,
                       Program.Sheets,
                       Program.Documents,
                       Program.Work};
    PseudoTerminal Line{2};
    std::unique_ptr<frmReadTDC> Form;
};

TEST_F(Download, KeepsEveryByteOfALongDumpAtFullSpeed) {
    std::string dump;
    for (int record = 1; dump.size() < 4'000'000; ++record) {
        dump += "T,001," + std::to_string(record) + ",MAINSTNB,0653,031108,01246\r\n";
        for (int i = 0; i < 200; ++i) dump += std::to_string(100 + (record * 7 + i * 13) % 900) + " 000,";
        dump += "\r\n00200\r\n";
    }
    dump += EndMark + "\r\n";
    Open();
    Begin();
    std::thread counter([&] {
        constexpr std::size_t sizes[] = {1, 65536, 2, 4095, 1, 4096, 3, 4097, 17, 1000, 32768};
        std::size_t sent = 0;
        for (std::size_t i = 0; sent < dump.size(); ++i) {
            const std::string_view chunk = std::string_view(dump).substr(sent, sizes[i % std::size(sizes)]);
            Line.Send(chunk);
            sent += chunk.size();
        }
    });
    EXPECT_TRUE(Closes(120));
    counter.join();
    EXPECT_TRUE(ContentsOf(File(1)) == dump);
    EXPECT_EQ(Program.State.ChosenCounterFileName, "!Kestrel-03-14-08-1");
}

TEST_F(Download, KeepsEveryByteOfSingleCharacters) {
    std::string dump(50'000, 'x');
    for (std::size_t i = 0; i < dump.size(); i += 3) dump[i] = static_cast<char>(' ' + i % 26);
    dump += EndMark + "\r\n";
    Open();
    Begin();
    std::thread counter([&] {
        for (const char& character : dump) Line.Send({&character, 1});
    });
    EXPECT_TRUE(Closes(60));
    counter.join();
    EXPECT_TRUE(ContentsOf(File(1)) == dump);
}

TEST_F(Download, FindsTheEndMarkSplitAnywhere) {
    for (std::size_t at = 1; at < EndMark.size(); ++at) {
        const std::string first = "T,001\r\n" + EndMark.substr(0, at);
        Open();
        Begin();
        Line.Send(first);
        ASSERT_TRUE(Waits([&] { return ContentsOf(File(1)) == first; }));
        EXPECT_TRUE(Form->isVisible());
        Line.Send(EndMark.substr(at) + "\r\n");
        EXPECT_TRUE(Closes()) << at;
        EXPECT_EQ(ContentsOf(File(1)), "T,001\r\n" + EndMark + "\r\n");
        std::filesystem::remove(File(1));
    }
}

TEST_F(Download, DropsControlCharactersOnTheWay) {
    Open();
    Begin();
    Line.Send(std::string("\0\x11\x03\x1A\x04\x1C\x7F", 6));
    QTest::qWait(150);
    EXPECT_EQ(Prompt(), "Begin d") << "control characters are no data";
    Line.Send(std::string("\x11T,\0001\t\x1B\r\n\x7F\x80\xFF", 12) + EndMark + "\x13\r\n");
    EXPECT_TRUE(Closes());
    EXPECT_EQ(ContentsOf(File(1)), "T,1\r\n\x7F\x80\xFF" + EndMark + "\r\n");
}

TEST_F(Download, EveryWayOutOfEveryStageDeletesTheUnfinishedFile) {
    for (const std::string stage : {"Turn on", "Begin d", "Reading"})
        for (const std::string wayOut : {"Setup", "Quit", "Close", "Destroy"}) {
            SCOPED_TRACE(stage + ", " + wayOut);
            Program.State.CounterFileChosen = wayOut != "Destroy";
            Open();
            if (stage != "Turn on") Begin();
            if (stage == "Reading") {
                Line.Send("T,001");
                EXPECT_TRUE(Waits([&] { return ContentsOf(File(1)) == "T,001"; }));
            }
            EXPECT_EQ(Prompt(), stage);
            if (wayOut == "Setup" && stage != "Turn on") {
                Click(*Form, "cmdBegin");
                EXPECT_EQ(Prompt(), "Turn on");
                EXPECT_THAT(Names(), IsEmpty());
            }
            if (wayOut == "Close") Form->close();
            if (wayOut == "Destroy")
                Form.reset();
            else if (wayOut != "Close")
                Click(*Form, "cmdQuit");
            EXPECT_THAT(Names(), IsEmpty());
            EXPECT_FALSE(Serial.IsOpen());
            EXPECT_FALSE(Program.State.CounterFileChosen);
        }
}

TEST_F(Download, ASecondDumpOfTheDayGetsTheNextName) {
    for (const std::string text : {"first", "second"}) {
        Open();
        Begin();
        Line.Send(text + EndMark);
        EXPECT_TRUE(Closes());
    }
    EXPECT_THAT(Names(), ElementsAre("!Kestrel-03-14-08-1.tdc", "!Kestrel-03-14-08-2.tdc"));
    EXPECT_EQ(ContentsOf(File(2)), "second" + EndMark);
    EXPECT_EQ(Program.State.ChosenCounterFileName, "!Kestrel-03-14-08-2");
}

TEST_F(Download, APortThatVanishesIsToldAndTheNextOneServes) {
    Open();
    Begin();
    Line.Send("T,001");
    EXPECT_TRUE(Waits([&] { return Prompt() == "Reading"; }));
    Program.Messages.Expect("Run-time error '57':\nDevice I/O error\n\nCOM2, " + Line.Device +
                            "\nThe device does not answer any more. Check the cable, then begin again.");
    Line.Unplug();
    EXPECT_TRUE(Waits([&] { return Program.Messages.IsDone(); }));
    EXPECT_EQ(Prompt(), "Turn on");
    EXPECT_THAT(Names(), IsEmpty());

    const PseudoTerminal again(2);
    Begin();
    again.Send("T,001" + EndMark);
    EXPECT_TRUE(Closes());
    EXPECT_THAT(Names(), ElementsAre("!Kestrel-03-14-08-1.tdc"));
}

TEST_F(Download, OffersOnlyPortsThatOpen) {
    setenv("VANTOR_COM5", "/dev/none", 1);
    Program.State.Settings.CommPort = 5;
    Open();
    auto& list = Find<QComboBox>(*Form, "cmbCommPort");
    EXPECT_GE(list.findText(QStringLiteral("2")), 0);
    EXPECT_EQ(list.findText(QStringLiteral("5")), -1);
    EXPECT_EQ(list.currentText(), "5");
    EXPECT_EQ(list.lineEdit()->palette().color(QPalette::Text), QColor(255, 0, 0));
    unsetenv("VANTOR_COM5");
}

TEST_F(Download, TheCounterSimulatorDumpsTheSample) {
    QProcess simulator;
    simulator.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    simulator.start(QStringLiteral("python3"),
                    {QStringLiteral(VANTOR_SAMPLES "counter_simulator.py"), QStringLiteral("--once"),
                     QStringLiteral("--baud"), QStringLiteral("0")});
    ASSERT_TRUE(Waits([&] { return simulator.canReadLine(); }));
    setenv("VANTOR_COM3", simulator.readLine().trimmed().constData(), 1);
    Program.State.Settings.CommPort = 3;
    Open();
    Begin();
    EXPECT_TRUE(Closes(30));
    EXPECT_EQ(ContentsOf(File(1)), ContentsOf(VANTOR_SAMPLES "Corridor.tdc"));
    EXPECT_EQ(CounterStudies(Files, File(1), Program.End).size(), 2u);
    EXPECT_TRUE(Waits([&] { return simulator.state() == QProcess::NotRunning; }));
    EXPECT_EQ(simulator.exitCode(), 0);
    unsetenv("VANTOR_COM3");
}

}  // namespace
}  // namespace vantor
