#include "platform/QtSerialPort.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <QEventLoop>
#include <QProcess>
#include <QTest>
#include <thread>

#include "counter/CounterFile.h"
#include "counter/KeptDumps.h"
#include "counter/forms/frmReadTDC.h"
#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"
#include "platform/DiskFolder.h"

namespace vantor {
namespace {

using testing::ElementsAre;

/// A serial line made of a pseudo-terminal pair: the counter's end, and a device for the program to open. While it
/// lives, the device is port COMn.
class PseudoTerminal {
public:
    explicit PseudoTerminal(int number) : variable_("VANTOR_COM" + std::to_string(number)) {
        counterEnd_ = posix_openpt(O_RDWR | O_NOCTTY);
        if (grantpt(counterEnd_) == 0 && unlockpt(counterEnd_) == 0) Device = ptsname(counterEnd_);
        setenv(variable_.c_str(), Device.c_str(), 1);
    }
    ~PseudoTerminal() {
        Unplug();
        unsetenv(variable_.c_str());
    }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    /// Waits while the line is full.
    void Send(std::string_view bytes) const {
        while (!bytes.empty()) {
            const ssize_t count = write(counterEnd_, bytes.data(), bytes.size());
            if (count < 0) throw std::runtime_error("the line is dead");
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
    }
    /// The device vanishes, and with it what waits in the line.
    void Unplug() {
        if (counterEnd_ >= 0) close(counterEnd_);
        counterEnd_ = -1;
    }

    std::string Device;  ///< empty where the system has no pseudo-terminals

private:
    std::string variable_;
    int counterEnd_ = -1;
};

/// A test with a line on COM2.
class LineTest : public testing::Test {
protected:
    void SetUp() override {
        if (Line.Device.empty()) GTEST_SKIP() << "There are no pseudo-terminals here.";
    }
    PseudoTerminal Line{2};
};

/// A port on the line COM2 that keeps what it is told.
struct Listener {
    explicit Listener(const QtSerialPort::CountersOf& countersOf = ReadLineCounters) : Port(countersOf) {
        Port.SetNumber(2);
        Port.OnEvent = [this](SerialEvent event) {
            Events.push_back(event);
            Bytes += Port.ReadAll();
        };
    }
    bool Receives(const std::string& bytes) {
        return QTest::qWaitFor([&] { return Bytes == bytes; }, 2000);
    }

    QtSerialPort Port;
    std::vector<SerialEvent> Events;
    std::string Bytes;
};

using QtSerialPortTest = LineTest;

TEST_F(QtSerialPortTest, NamesTheDevices) {
    const QtSerialPort port;
    EXPECT_EQ(port.DeviceName(2), Line.Device);
    unsetenv("VANTOR_COM2");
    EXPECT_EQ(port.DeviceName(2) + " " + port.DeviceName(8) + " " + port.DeviceName(16),
              "/dev/ttyS1 /dev/ttyS7 /dev/ttyUSB7");
}

TEST_F(QtSerialPortTest, ReceivesEveryByteAtEverySpeed) {
    std::string all;
    for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
    for (const std::int32_t rate : SerialPort::BaudRates) {
        Listener listener;
        listener.Port.SetSettings(std::to_string(rate) + ",n,8,1");
        listener.Port.Open();
        Line.Send(all);
        EXPECT_TRUE(listener.Receives(all)) << rate;
        listener.Port.Close();
        EXPECT_FALSE(listener.Port.IsOpen());
    }
    QtSerialPort port;
    for (const char* wrong : {"9600,e,7,2", "9600", "fast,n,8,1", ""})
        EXPECT_ERROR(TypeMismatch, port.SetSettings(wrong));
}

TEST_F(QtSerialPortTest, TellsWhyAPortDoesNotOpen) {
    setenv("VANTOR_COM3", "/dev/none", 1);
    setenv("VANTOR_COM4", "/dev/null", 1);
    Listener first;
    first.Port.Open();
    EXPECT_ERROR(PortAlreadyOpen, first.Port.Open());
    QtSerialPort other;
    using enum ErrorNumber;
    const std::pair<std::int16_t, ErrorNumber> cases[] = {{2, PortAlreadyOpen},
                                                          {3, InvalidPortNumber},
                                                          {4, DeviceIoError},
                                                          {0, InvalidPortNumber},
                                                          {17, InvalidPortNumber}};
    for (const auto& [number, error] : cases) {
        other.SetNumber(number);
        EXPECT_EQ(ErrorOf([&other] { other.Open(); }), error) << number;
        EXPECT_FALSE(other.IsAvailable(number)) << number;
    }
    first.Port.Close();
    EXPECT_TRUE(other.IsAvailable(2));
    EXPECT_FALSE(other.IsOpen());
}

TEST_F(QtSerialPortTest, RaisesWhatTheDriverCountsAsLost) {
    std::optional<LineCounters> counters = LineCounters{7, 9};  // lost before the port was opened
    Listener listener([&counters](SerialHandle) { return counters; });
    listener.Port.Open();
    const auto eventsOf = [&](const std::string& sent) {
        listener.Events.clear();
        listener.Bytes.clear();
        Line.Send(sent);
        EXPECT_TRUE(listener.Receives(sent));
        return listener.Events;
    };
    EXPECT_THAT(eventsOf("a"), ElementsAre(SerialEvent::Received));
    ++counters->Overruns;
    EXPECT_THAT(eventsOf("b"), ElementsAre(SerialEvent::Overrun, SerialEvent::Received));
    ++counters->BufferOverflows;
    EXPECT_THAT(eventsOf("c"), ElementsAre(SerialEvent::ReceiveBufferOverflow, SerialEvent::Received));
    EXPECT_THAT(eventsOf("d"), ElementsAre(SerialEvent::Received)) << "each loss is told once";
    counters.reset();
    EXPECT_THAT(eventsOf("e"), ElementsAre(SerialEvent::Received));

    std::optional<LineCounters> real = LineCounters{};
    Listener unwatched([&real](SerialHandle handle) { return real = ReadLineCounters(handle); });
    listener.Port.Close();
    unwatched.Port.Open();
    EXPECT_FALSE(real) << "a pseudo-terminal counts nothing";
}

const std::string EndMark(20, ':');

/// The download window over a real line and a real folder.
class Download : public LineTest, protected TestProgram, protected DiskFolder {
protected:
    /// The counter files; cancelled dumps lie in a folder of their own.
    Texts Dumps() const {
        Texts texts = Found();
        texts.erase("Cancelled dumps");
        return texts;
    }
    Download() {
        State.Paths.FieldDataPath = Folder;
        State.Settings.CommPort = 2;
    }
    ~Download() override { Window.reset(); }

    void Open() {
        Window.reset();
        Window = std::make_unique<frmReadTDC>(Real);
        Window->show();
    }
    void Begin() {
        Click(*Window, "cmdBegin");
        ASSERT_TRUE(Port.IsOpen());
    }
    std::string Prompt() { return TextOf(*Window, "lblInstructions").substr(0, 7); }
    bool Waits(const std::function<bool()>& until) { return QTest::qWaitFor(until, 5000); }
    /// Leaves the events to Qt, at full speed, until the window has closed.
    bool Closes(int seconds = 5) {
        QEventLoop loop;
        QObject::connect(Window.get(), &QDialog::finished, &loop, &QEventLoop::quit);
        QTimer::singleShot(seconds * 1000, &loop, &QEventLoop::quit);
        if (Window->isVisible()) loop.exec();
        return !Window->isVisible();
    }

    const std::string First = "!Kestrel-03-14-08-1.tdc";
    QtSerialPort Port;
    AppContext Real{State, Disk,   Messages,  OtherScreens, DesktopServices, Time,          End,  Memory,
                    Port,  Device, Databases, Sheets,       Documents,       OtherPrograms, Work, Tiles};
    std::unique_ptr<frmReadTDC> Window;
};

TEST_F(Download, KeepsEveryByteAtFullSpeed) {
    std::string records;
    for (int record = 1; records.size() < 4'000'000; ++record) {
        records += "T,001," + std::to_string(record) + ",MAINSTNB,0653,031108,01246\r\n";
        for (int i = 0; i < 200; ++i) records += std::to_string(100 + (record * 7 + i * 13) % 900) + " 000,";
        records += "\r\n00200\r\n";
    }
    std::string characters(50'000, 'x');
    for (std::size_t i = 0; i < characters.size(); i += 3) characters[i] = static_cast<char>(' ' + i % 26);
    const std::pair<std::string, std::vector<std::size_t>> cases[] = {
        {records, {1, 65536, 2, 4095, 1, 4096, 3, 4097, 17, 1000, 32768}}, {characters, {1}}};
    for (const auto& [data, sizes] : cases) {
        const std::string dump = data + EndMark + "\r\n";
        Open();
        Begin();
        std::thread counter([&, &sizes = sizes] {
            std::size_t sent = 0;
            for (std::size_t i = 0; sent < dump.size(); ++i) {
                const std::string_view chunk = std::string_view(dump).substr(sent, sizes[i % sizes.size()]);
                Line.Send(chunk);
                sent += chunk.size();
            }
        });
        EXPECT_TRUE(Closes(120));
        counter.join();
        EXPECT_TRUE(ContentsOf(At(Window->Choice().Name + ".tdc")) == dump);
    }
}

TEST_F(Download, EveryWayOutOfEveryStageDeletesTheUnfinishedFile) {
    for (const std::string stage : {"Turn on", "Begin d", "Reading"})
        for (const std::string wayOut : {"Setup", "Quit", "Close", "Destroy"}) {
            SCOPED_TRACE(stage + ", " + wayOut);
            Open();
            if (stage != "Turn on") Begin();
            if (stage == "Reading") {
                Line.Send("T,001");
                EXPECT_TRUE(Waits([&] { return Dumps() == Texts{{First, "T,001"}}; }));
            }
            EXPECT_EQ(Prompt(), stage);
            if (wayOut == "Setup" && stage != "Turn on") {
                Click(*Window, "cmdBegin");
                EXPECT_EQ(Prompt(), "Turn on");
                EXPECT_EQ(Dumps(), Texts());
            }
            if (wayOut == "Close") Window->close();
            if (wayOut == "Setup" || wayOut == "Quit") Click(*Window, "cmdQuit");
            if (wayOut == "Destroy") Window.reset();
            EXPECT_EQ(Dumps(), Texts());
            const auto kept = LastKeptDump(Disk, Folder);
            ASSERT_EQ(kept.has_value(), stage == "Reading");
            if (kept) {
                EXPECT_EQ(ContentsOf(kept->Path), "T,001");
                Disk.Delete(kept->Path);
            }
            EXPECT_FALSE(Port.IsOpen());
            EXPECT_FALSE(Window && Window->result() == QDialog::Accepted);
        }
}

TEST_F(Download, APortThatVanishesIsToldAndTheNextOneServes) {
    Open();
    Begin();
    Line.Send("T,001");
    EXPECT_TRUE(Waits([&] { return Prompt() == "Reading"; }));
    Messages.Expect("Run-time error '57':\nDevice I/O error\n\nCOM2, " + Line.Device +
                    "\nThe device does not answer any more. Check the cable, then begin again.");
    Line.Unplug();
    EXPECT_TRUE(Waits([&] { return Messages.IsDone(); }));
    EXPECT_EQ(Prompt(), "Turn on");
    EXPECT_EQ(Dumps(), Texts());

    const PseudoTerminal again(2);
    Begin();
    again.Send("T,001" + EndMark);
    EXPECT_TRUE(Closes());
    EXPECT_EQ(Dumps(), (Texts{{First, "T,001" + EndMark}}));
}

TEST_F(Download, TheCounterSimulatorDumpsTheSample) {
    QProcess simulator;
    simulator.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    simulator.start("python3", {VANTOR_SAMPLES "counter_simulator.py", "--once", "--baud", "0"});
    ASSERT_TRUE(Waits([&] { return simulator.canReadLine(); }));
    setenv("VANTOR_COM2", simulator.readLine().trimmed().constData(), 1);
    Open();
    Begin();
    EXPECT_TRUE(Closes(30));
    EXPECT_EQ(ContentsOf(At(First)), ContentsOf(VANTOR_SAMPLES "Corridor.tdc"));
    EXPECT_EQ(CounterStudies(Disk, At(First), End).size(), 2u);
    EXPECT_TRUE(Waits([&] { return simulator.state() == QProcess::NotRunning; }));
    EXPECT_EQ(simulator.exitCode(), 0);
}

}  // namespace
}  // namespace vantor
