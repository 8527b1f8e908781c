#include "counter/forms/frmReadTDC.h"

#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QProgressBar>
#include <QTimer>

#include "CounterTexts.h"
#include "fakes/FormScene.h"

namespace vantor {
namespace {

using testing::ElementsAre;

const std::string First = FieldData + "!Kestrel-03-14-08-1.tdc";

std::string ClosedPrompt(const std::string& port, const std::string& rate) {
    return "Turn on the Corvel counter and plug the serial cable into COM" + port +
           ".\nMake sure the baud rate on the counter is set to " + rate + ",\nthen press the Begin pushbutton above.";
}

class frmReadTDCTest : public FormScene<frmReadTDC> {
protected:
    bool IsPortRed() {
        const QColor colour = Get<QComboBox>("cmbCommPort").lineEdit()->palette().color(QPalette::Text);
        EXPECT_TRUE(colour == QColor(255, 0, 0) || colour == Window->palette().color(QPalette::Text));
        return colour == QColor(255, 0, 0);
    }
    std::string Prompt() { return Text("lblInstructions"); }
    int Progress() { return Get<QProgressBar>("prgProgress").value(); }
    QTimer& Timer() { return *Window->findChild<QTimer*>(QStringLiteral("tmrUpdate")); }

    /// The parts that follow the stage: "Begin, green, lists, view" tells caption and face of cmdBegin, whether the
    /// lists can be changed, the data viewed, and whether progress shows.
    std::string Look() {
        const QColor face = Get<QPushButton>("cmdBegin").palette().color(QPalette::Button);
        EXPECT_EQ(IsEnabled("fraCommPort"), IsEnabled("fraBaudRate"));
        EXPECT_EQ(Timer().isActive(), IsShown("prgProgress"));
        return Text("cmdBegin") +
               (face == QColor(0xC0, 0xFF, 0xC0)   ? ", green"
                : face == QColor(0xFF, 0xC0, 0xC0) ? ", red"
                                                   : ", ?") +
               (IsEnabled("fraBaudRate") ? ", lists" : "") + (IsEnabled("cmdViewData") ? ", view" : "") +
               (IsShown("prgProgress") ? ", progress" : "");
    }
};

TEST_F(frmReadTDCTest, OpensWithThePreferredValuesAndThePortsThatOpen) {
    State.Settings.CommPort = 3;
    State.Settings.BaudRate = 38400;
    Open();
    EXPECT_THAT(Serial.Tried, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16));
    EXPECT_FALSE(Serial.Opened);
    EXPECT_EQ(Get<QComboBox>("cmbCommPort").itemData(1, Qt::ToolTipRole).toString(),
              "/dev/fake3, USB Serial Converter");
    EXPECT_EQ(Text("lblPort"), "/dev/fake3, USB Serial Converter");
    EXPECT_FALSE(IsPortRed());
    EXPECT_EQ(Text("cmbCommPort") + " " + Text("cmbBaudRate"), "3 38400");
    EXPECT_EQ(Look(), "Begin, green, lists");
    EXPECT_EQ(Timer().interval(), 100);

    auto& rates = Get<QComboBox>("cmbBaudRate");
    // As the system sends them: a release goes to a list that is open by then.
    const QPoint value = rates.mapTo(Window.get(), rates.lineEdit()->geometry().center());
    QTest::mousePress(Window->windowHandle(), Qt::LeftButton, {}, value);
    QTest::mouseRelease(Window->windowHandle(), Qt::LeftButton, {}, value);
    EXPECT_TRUE(rates.view()->isVisible()) << "a click on the shown value opens the list";
    rates.hidePopup();
    Pick("cmbCommPort", "1");
    Pick("cmbBaudRate", "115200");
    EXPECT_EQ(Prompt(), ClosedPrompt("1", "115200"));
    Press("cmdBegin");
    EXPECT_EQ(Serial.Number, 1);
    EXPECT_EQ(Serial.Settings, "115200,n,8,1");
}

TEST_F(frmReadTDCTest, APreferredPortThatIsMissingIsShownRed) {
    State.Settings.CommPort = 5;
    Open();
    EXPECT_THAT(ItemsOf(*Window, "cmbCommPort"), ElementsAre("1", "3"));
    EXPECT_EQ(Text("cmbCommPort"), "5");
    EXPECT_TRUE(IsPortRed());
    EXPECT_EQ(Get<QComboBox>("cmbCommPort").toolTip(), "/dev/fake5\nThis port cannot be opened.");
    Messages.Expect("Run-time error '8002':\nInvalid port number\n\n/dev/fake5");
    Press("cmdBegin");
    EXPECT_EQ(Look(), "Begin, green, lists");
    EXPECT_EQ(Prompt(), ClosedPrompt("5", "9600"));
    EXPECT_EQ(Files.AllFiles().size(), 0u);
    Serial.Available.clear();
    Press("cmdLookAgain");
    EXPECT_EQ(Text("lblPort"), "There is no port that can be opened.\nPlug the cable in, then look again.");
    Serial.Available = {5};
    Press("cmdLookAgain");
    EXPECT_FALSE(IsPortRed());
    EXPECT_EQ(Text("lblPort"), "/dev/fake5");
    EXPECT_EQ(Prompt(), ClosedPrompt("5", "9600"));
}

TEST_F(frmReadTDCTest, ReceivesADumpAndCloses) {
    Open();
    Press("cmdBegin");
    EXPECT_EQ(Look(), "Setup, red, view");
    EXPECT_EQ(Prompt(),
              "Begin dumping the Corvel counter by selecting DUMP then\nLOCAL then BEGIN from the counter menu.\n"
              "[Click SETUP to change baud rate and/or comm port settings.]");
    Serial.Send("T,001,");
    EXPECT_EQ(Look(), "Setup, green, view, progress");
    EXPECT_EQ(Prompt(), "Reading data from the counter, please wait...");
    EXPECT_EQ(Progress(), 0);
    Time.Moment.Days += 65.0 / 86400;
    emit Timer().timeout({});
    EXPECT_EQ(Text("lblReceived"), "6 bytes received in 1:05, written to !Kestrel-03-14-08-1.tdc.");
    Press("cmdViewData");
    EXPECT_THAT(DesktopServices.Opened, ElementsAre(First));

    Serial.Send("001\r\n");
    EXPECT_EQ(Progress(), 1);
    for (int i = 0; i < Get<QProgressBar>("prgProgress").maximum(); ++i) emit Timer().timeout({});
    EXPECT_EQ(Progress(), 1) << "fills, then begins anew";
    Serial.Send(DumpEnd + "\r\n");
    EXPECT_TRUE(Closes());
    EXPECT_TRUE(IsAccepted());
    EXPECT_FALSE(Timer().isActive());
}

TEST_F(frmReadTDCTest, AFaultIsToldOverAWindowThatCanBeginAgain) {
    Open();
    Press("cmdBegin");
    Serial.Send("T,001,");
    Messages.Expect("Run-time error '57':\nDevice I/O error\n\n/dev/fake1");
    Serial.Unplug();
    EXPECT_EQ(Look(), "Begin, green, lists");
    EXPECT_EQ(Prompt(), ClosedPrompt("1", "9600"));
    EXPECT_TRUE(Window->isVisible());
}

TEST_F(frmReadTDCTest, EscAsksAndADumpThatWasCancelledCanBeBroughtBack) {
    const std::string question =
        "The dump is not complete. Do you want to stop?\n\n"
        "6 bytes received in 0:00, written to !Kestrel-03-14-08-1.tdc.\nThis will be kept for a week.";
    Open();
    EXPECT_FALSE(IsEnabled("cmdBringBack"));
    Press("cmdBegin");
    Serial.Send("T,001,");
    Messages.Expect(question, MessageAnswer::No);
    PressKey(Qt::Key_Escape);
    EXPECT_EQ(Look(), "Setup, green, view, progress");
    Messages.Expect(question, MessageAnswer::Yes);
    PressKey(Qt::Key_Escape);
    EXPECT_FALSE(Window->isVisible() || IsAccepted());

    const std::string kept = FieldData + "Cancelled dumps/!Kestrel-03-14-08-1.cancelled";
    Files.Modified[kept] = Date{Time.Moment.Days - 2};
    Open();
    EXPECT_EQ(Text("lblKept"), "03/12/08 12:00, 6 bytes; kept for a week.");
    Press("cmdBegin");
    EXPECT_FALSE(IsEnabled("cmdBringBack"));
    Press("cmdBegin");
    Press("cmdBringBack");
    EXPECT_TRUE(IsAccepted());
    EXPECT_EQ(Window->Choice(), (CounterFileChoice{FieldData, "!Kestrel-03-14-08-1"}));
    EXPECT_EQ(Files.Bytes(First), BytesOf("T,001,"));

    Files.Rename(First, kept);
    Files.Modified[kept] = Date{Time.Moment.Days - 8};
    Open();
    EXPECT_FALSE(IsEnabled("cmdBringBack"));
}

TEST_F(frmReadTDCTest, TheKeyboardAloneBeginsCancelsAndLeaves) {
    Open();
    PressKey(Qt::Key_Return);
    EXPECT_EQ(Look(), "Setup, red, view");
    Serial.Send("T");
    PressKey(Qt::Key_Return);
    EXPECT_EQ(Look(), "Setup, green, view, progress") << "Enter throws no data away";
    PressKey(Qt::Key_S, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Look() == "Begin, green, lists"; })) << Look();
    PressKey(Qt::Key_C, Qt::AltModifier);
    PressKey(Qt::Key_Down);
    EXPECT_EQ(Prompt(), ClosedPrompt("3", "9600"));
    PressKey(Qt::Key_Escape);
    EXPECT_FALSE(Window->isVisible() || IsAccepted());
}

}  // namespace
}  // namespace vantor
