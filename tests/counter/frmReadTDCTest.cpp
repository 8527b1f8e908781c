#include "counter/forms/frmReadTDC.h"

#include <gmock/gmock.h>

#include <QAbstractItemView>

#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const std::string First = "/start/Field Data Files/!Kestrel-03-14-08-1.tdc";
const std::string EndMark(20, ':');
const std::string WaitingPrompt =
    "Begin dumping the Corvel counter by selecting DUMP then\n"
    "LOCAL then BEGIN from the counter menu.\n"
    "[Click SETUP to change baud rate and/or comm port settings.]";

std::string ClosedPrompt(const std::string& port, const std::string& rate) {
    return "Turn on the Corvel counter and plug the serial cable into COM" + port +
           ".\nMake sure the baud rate on the counter is set to " + rate + ",\nthen press the Begin pushbutton above.";
}

class frmReadTDCTest : public testing::Test {
protected:
    frmReadTDC& Open() {
        Form = std::make_unique<frmReadTDC>(Program.Context);
        Form->show();
        return *Form;
    }
    std::vector<std::string> Choices(const char* list) {
        std::vector<std::string> texts;
        const auto& box = Find<QComboBox>(*Form, list);
        for (int i = 0; i < box.count(); ++i) texts.push_back(FromQt(box.itemText(i)));
        return texts;
    }
    void Choose(const char* list, const char* text) {
        auto& box = Find<QComboBox>(*Form, list);
        box.setCurrentIndex(box.findText(QLatin1String(text)));
    }
    QColor ColourOf(const char* list) {
        return Find<QComboBox>(*Form, list).lineEdit()->palette().color(QPalette::Text);
    }
    std::string Shown(const char* list) { return FromQt(Find<QComboBox>(*Form, list).currentText()); }
    std::string Prompt() { return FromQt(Find<QLabel>(*Form, "lblInstructions").text()); }
    int Progress() { return Find<QProgressBar>(*Form, "prgProgress").value(); }

    /// The parts that follow the stage: "Begin, green, lists, view" tells caption and face of cmdBegin, whether the
    /// lists can be changed, the data viewed, and whether progress shows.
    std::string Look() {
        auto& begin = Find<QPushButton>(*Form, "cmdBegin");
        const QColor face = begin.palette().color(QPalette::Button);
        std::string look = FromQt(WithoutAccessKey(begin.text()));
        look += face == QColor(0xC0, 0xFF, 0xC0) ? ", green" : face == QColor(0xFF, 0xC0, 0xC0) ? ", red" : ", ?";
        const bool isBaudOpen = Find<QFrame>(*Form, "fraBaudRate").isEnabled();
        EXPECT_EQ(Find<QFrame>(*Form, "fraCommPort").isEnabled(), isBaudOpen);
        if (isBaudOpen) look += ", lists";
        if (Find<QPushButton>(*Form, "cmdViewData").isEnabled()) look += ", view";
        const bool isProgressShown = Find<QProgressBar>(*Form, "prgProgress").isVisible();
        EXPECT_EQ(Timer().isActive(), isProgressShown);
        if (isProgressShown) look += ", progress";
        return look;
    }
    QTimer& Timer() { return *Form->findChild<QTimer*>(QStringLiteral("tmrUpdate")); }

    TestProgram Program;
    std::unique_ptr<frmReadTDC> Form;
};

TEST_F(frmReadTDCTest, OpensWithThePreferredValuesAndThePortsThatOpen) {
    Program.State.Settings.CommPort = 3;
    Program.State.Settings.BaudRate = 38400;
    frmReadTDC& form = Open();
    EXPECT_EQ(form.windowTitle(), "Read Corvel Board");
    EXPECT_THAT(Program.Serial.Tried, ElementsAreArray({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}));
    EXPECT_FALSE(Program.Serial.Opened);
    EXPECT_THAT(Choices("cmbCommPort"), ElementsAre("1", "3"));
    EXPECT_EQ(Find<QComboBox>(form, "cmbCommPort").itemData(1, Qt::ToolTipRole).toString(), "/dev/fake3");
    EXPECT_EQ(Find<QComboBox>(form, "cmbCommPort").toolTip(), "/dev/fake3");
    EXPECT_THAT(Choices("cmbBaudRate"),
                ElementsAre("4800", "9600", "14400", "19200", "28800", "38400", "57600", "115200"));
    EXPECT_EQ(Shown("cmbCommPort") + " " + Shown("cmbBaudRate"), "3 38400");
    EXPECT_EQ(ColourOf("cmbCommPort"), form.palette().color(QPalette::Text));
    for (const auto& [label, text] : {std::pair{"lblBaudRate", "Baud Rate"},
                                      {"lblCommPort", "Comm Port"},
                                      {"lblBaudText", "Choose a connection speed (in bps)..."},
                                      {"lblCommText", "Choose a port # (only available ports listed)..."}})
        EXPECT_EQ(WithoutAccessKey(Find<QLabel>(form, label).text()), QLatin1String(text));
    EXPECT_EQ(Prompt(), ClosedPrompt("3", "38400"));
    EXPECT_EQ(Look(), "Begin, green, lists");
    EXPECT_EQ(Timer().interval(), 100);
    Click(form, "cmdHelp");
    EXPECT_THAT(Program.DesktopServices.Opened, ElementsAre("/program/VANTOR.HLP#36"));
}

TEST_F(frmReadTDCTest, ThePromptFollowsTheLists) {
    Open();
    Choose("cmbCommPort", "3");
    EXPECT_EQ(Prompt(), ClosedPrompt("3", "9600"));
    Choose("cmbBaudRate", "115200");
    EXPECT_EQ(Prompt(), ClosedPrompt("3", "115200"));
    Click(*Form, "cmdBegin");
    EXPECT_EQ(Program.Serial.Number, 3);
    EXPECT_EQ(Program.Serial.Settings, "115200,n,8,1");
}

TEST_F(frmReadTDCTest, APreferredPortThatIsMissingIsShownRed) {
    Program.State.Settings.CommPort = 5;
    Open();
    EXPECT_THAT(Choices("cmbCommPort"), ElementsAre("1", "3"));
    EXPECT_EQ(Shown("cmbCommPort"), "5");
    EXPECT_EQ(ColourOf("cmbCommPort"), QColor(255, 0, 0));
    EXPECT_EQ(Find<QComboBox>(*Form, "cmbCommPort").toolTip(), "/dev/fake5\nThis port cannot be opened.");
    Program.Messages.Expect("Run-time error '8002':\nInvalid port number\n\n/dev/fake5");
    Click(*Form, "cmdBegin");
    EXPECT_EQ(Look(), "Begin, green, lists");
    EXPECT_EQ(Prompt(), ClosedPrompt("5", "9600"));
    EXPECT_THAT(Program.Files.AllFiles(), IsEmpty());
    Choose("cmbCommPort", "3");
    EXPECT_EQ(ColourOf("cmbCommPort"), Form->palette().color(QPalette::Text));
}

TEST_F(frmReadTDCTest, ReceivesADumpAndCloses) {
    Open();
    Click(*Form, "cmdBegin");
    EXPECT_EQ(Look(), "Setup, red, view");
    EXPECT_EQ(Prompt(), WaitingPrompt);
    Program.Serial.Send("\x13");
    EXPECT_EQ(Look(), "Setup, red, view");
    Program.Serial.Send("T,001,");
    EXPECT_EQ(Look(), "Setup, green, view, progress");
    EXPECT_EQ(Prompt(), "Reading data from the counter, please wait...");
    EXPECT_EQ(Progress(), 0);
    Click(*Form, "cmdViewData");
    EXPECT_THAT(Program.DesktopServices.Opened, ElementsAre(First));

    emit Timer().timeout({});
    Program.Serial.Send("001\r\n");
    EXPECT_EQ(Progress(), 1);
    for (int i = 0; i < Find<QProgressBar>(*Form, "prgProgress").maximum(); ++i) emit Timer().timeout({});
    EXPECT_EQ(Progress(), 1) << "fills, then begins anew";
    Program.Serial.Send(EndMark + "\r\n");
    EXPECT_TRUE(QTest::qWaitFor([this] { return !Form->isVisible(); }, 2000));
    EXPECT_EQ(Form->result(), QDialog::Accepted);
    EXPECT_FALSE(Timer().isActive());
    EXPECT_TRUE(Program.State.CounterFileChosen);
    EXPECT_EQ(Program.State.ChosenCounterFileName, "!Kestrel-03-14-08-1");
    EXPECT_EQ(Program.Files.Bytes(First), BytesOf("T,001,001\r\n" + EndMark + "\r\n"));
}

TEST_F(frmReadTDCTest, AFaultIsToldOverAWindowThatCanBeginAgain) {
    Open();
    Click(*Form, "cmdBegin");
    Program.Serial.Send("T,001,");
    Program.Messages.Expect("Run-time error '57':\nDevice I/O error\n\n/dev/fake1");
    Program.Serial.Unplug();
    EXPECT_EQ(Look(), "Begin, green, lists");
    EXPECT_EQ(Prompt(), ClosedPrompt("1", "9600"));
    EXPECT_THAT(Program.Files.AllFiles(), IsEmpty());

    Click(*Form, "cmdBegin");
    Program.Serial.Send(EndMark);
    Program.Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    Program.Messages.Expect("Run-time error '61':\nDisk full\n\n" + First);
    emit Timer().timeout({});
    EXPECT_EQ(Look(), "Begin, green, lists");
    EXPECT_TRUE(Form->isVisible());
}

TEST_F(frmReadTDCTest, TheKeyboardAloneBeginsCancelsAndLeaves) {
    Program.State.CounterFileChosen = true;
    ASSERT_TRUE(QTest::qWaitForWindowActive(&Open()));
    QTest::keyClick(Form.get(), Qt::Key_Return);
    EXPECT_EQ(Look(), "Setup, red, view");
    Program.Serial.Send("T");
    QTest::keyClick(Form.get(), Qt::Key_Return);
    EXPECT_EQ(Look(), "Setup, green, view, progress") << "Enter throws no data away";
    QTest::keyClick(Form.get(), Qt::Key_S, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Look() == "Begin, green, lists"; }, 2000)) << Look();
    QTest::keyClick(Form.get(), Qt::Key_C, Qt::AltModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_EQ(Prompt(), ClosedPrompt("3", "9600"));
    QTest::keyClick(Form.get(), Qt::Key_Escape);
    EXPECT_FALSE(Form->isVisible());
    EXPECT_FALSE(Program.State.CounterFileChosen);
}

TEST_F(frmReadTDCTest, AClickOnTheShownValueOpensTheList) {
    Open();
    auto& list = Find<QComboBox>(*Form, "cmbBaudRate");
    QTest::mouseClick(list.lineEdit(), Qt::LeftButton);
    EXPECT_TRUE(list.view()->isVisible());
}

TEST_F(frmReadTDCTest, LostDataEndsTheApplication) {
    Open();
    Click(*Form, "cmdBegin");
    Program.Serial.Send("T");
    EXPECT_THROW(Program.Serial.Raise(SerialEvent::Overrun), ApplicationEnded);
    EXPECT_THAT(Program.Files.AllFiles(), IsEmpty());
}

}  // namespace
}  // namespace vantor
