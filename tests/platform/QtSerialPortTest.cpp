#include "platform/QtSerialPort.h"

#include <gmock/gmock.h>

#include <QTest>

#include "PseudoTerminal.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::ElementsAre;

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

TEST(QtSerialPort, NamesTheDevices) {
    unsetenv("VANTOR_COM2");
    const QtSerialPort port;
    EXPECT_EQ(port.DeviceName(2), "/dev/ttyS1");
    EXPECT_EQ(port.DeviceName(8), "/dev/ttyS7");
    EXPECT_EQ(port.DeviceName(16), "/dev/ttyUSB7");
    const PseudoTerminal line(2);
    EXPECT_EQ(port.DeviceName(2), line.Device);
}

TEST(QtSerialPort, ReceivesEveryByteAtEverySpeed) {
    const PseudoTerminal line(2);
    std::string all;
    for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
    for (const std::int32_t rate : SerialPort::BaudRates) {
        Listener listener;
        listener.Port.SetSettings(std::to_string(rate) + ",n,8,1");
        listener.Port.Open();
        line.Send(all);
        EXPECT_TRUE(listener.Receives(all)) << rate;
        listener.Port.Close();
        EXPECT_FALSE(listener.Port.IsOpen());
    }
    QtSerialPort port;
    for (const char* wrong : {"9600,e,7,2", "9600", "fast,n,8,1", ""})
        EXPECT_ERROR(TypeMismatch, port.SetSettings(wrong));
}

TEST(QtSerialPort, TellsWhyAPortDoesNotOpen) {
    const PseudoTerminal line(2);
    setenv("VANTOR_COM3", "/dev/none", 1);
    setenv("VANTOR_COM4", "/dev/null", 1);
    Listener first;
    first.Port.Open();
    EXPECT_ERROR(PortAlreadyOpen, first.Port.Open());
    QtSerialPort other;
    for (const auto& [number, error] : {std::pair<std::int16_t, ErrorNumber>{2, ErrorNumber::PortAlreadyOpen},
                                        {3, ErrorNumber::InvalidPortNumber},
                                        {4, ErrorNumber::DeviceIoError},
                                        {0, ErrorNumber::InvalidPortNumber},
                                        {17, ErrorNumber::InvalidPortNumber}}) {
        other.SetNumber(number);
        EXPECT_EQ(ErrorOf([&other] { other.Open(); }), error) << number;
        EXPECT_FALSE(other.IsAvailable(number)) << number;
    }
    first.Port.Close();
    EXPECT_TRUE(other.IsAvailable(2));
    EXPECT_FALSE(other.IsOpen());
}

TEST(QtSerialPort, ADeviceThatIsGoneFailsTheNextRead) {
    PseudoTerminal line(2);
    Listener listener;
    listener.Port.Open();
    std::optional<ErrorNumber> error;
    listener.Port.OnEvent = [&](SerialEvent event) {
        EXPECT_EQ(event, SerialEvent::Received);
        error = ErrorOf([&] { listener.Bytes += listener.Port.ReadAll(); });
        if (error) listener.Port.Close();
    };
    line.Send("T");
    EXPECT_TRUE(listener.Receives("T"));
    EXPECT_EQ(error, std::nullopt);
    line.Unplug();
    EXPECT_TRUE(QTest::qWaitFor([&] { return error.has_value(); }, 2000));
    EXPECT_EQ(error, ErrorNumber::DeviceIoError);
    EXPECT_FALSE(listener.Port.IsOpen());
}

TEST(QtSerialPort, RaisesWhatTheDriverCountsAsLost) {
    const PseudoTerminal line(2);
    std::optional<LineCounters> counters = LineCounters{7, 9};  // lost before the port was opened
    Listener listener([&counters](SerialHandle) { return counters; });
    listener.Port.Open();
    const auto eventsOf = [&](const std::string& sent) {
        listener.Events.clear();
        listener.Bytes.clear();
        line.Send(sent);
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

}  // namespace
}  // namespace vantor
