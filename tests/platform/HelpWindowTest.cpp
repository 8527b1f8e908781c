#include "platform/HelpWindow.h"

#include <gmock/gmock.h>

#include <QDialog>
#include <QDir>
#include <QFile>
#include <QHelpContentWidget>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QToolBar>
#include <QWindow>

#include "core/HelpTopics.h"
#include "fakes/Clicks.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

const QString ManualFile = QStringLiteral(VANTOR_HELP_FILE);

/// What is wrong with the links, anchors and pictures of the manual, one line each.
QStringList BrokenLinks(const HelpBook& book) {
    static const QRegularExpression links(QStringLiteral("(?:href|src)=\"([^\"]*)\""));
    QStringList broken;
    for (const QUrl& page : book.Pages()) {
        const QString text = QString::fromUtf8(book.Data(page));
        for (const QRegularExpressionMatch& match : links.globalMatch(text)) {
            const QUrl target = page.resolved(QUrl(match.captured(1)));
            const QString there = QString::fromUtf8(book.Data(target.adjusted(QUrl::RemoveFragment)));
            const QString anchor = QLatin1Char('"') + target.fragment() + QLatin1Char('"');
            const bool hasAnchor = !target.hasFragment() || there.contains(QLatin1String("id=") + anchor) ||
                                   there.contains(QLatin1String("name=") + anchor);
            if (there.isEmpty() || !hasAnchor) broken += page.fileName() + QLatin1String(" -> ") + match.captured(1);
        }
    }
    return broken;
}

TEST(HelpBook, HoldsEveryPageEveryTopicAndNoBrokenLink) {
    const HelpBook book(ManualFile);
    QStringList pages;
    for (const QUrl& page : book.Pages()) pages += page.fileName();
    for (const QString& page : QDir(QStringLiteral(VANTOR_MANUAL)).entryList({QStringLiteral("*.html")}))
        EXPECT_TRUE(pages.contains(page)) << qPrintable(page);
    for (const HelpTopic topic : AllHelpTopics)
        EXPECT_FALSE(book.Data(book.PageOf(static_cast<int>(topic))).isEmpty()) << static_cast<int>(topic);
    EXPECT_EQ(book.PageOf(36).fileName(), "read-counter.html");
    EXPECT_EQ(book.PageOf(62).fileName(), "select-log.html");
    EXPECT_FALSE(book.PageOf(1).isValid());
    EXPECT_EQ(BrokenLinks(book).join('\n'), QString());
}

TEST(HelpBook, SearchPutsThePageAboutTheWordsFirst) {
    HelpBook book(ManualFile);
    const auto first = [&](const char* words) {
        return QUrl(ToQt(book.Search().Find(words).at(0).Address)).fileName();
    };
    EXPECT_EQ(first("SENSOR data"), "sensor-data.html");
    EXPECT_EQ(first("\"start sample\""), "method.html");
    EXPECT_EQ(first("speed profile"), "speed-profile.html");
}

TEST(PageSearch, FindsWholeWordsInAnyFormPhrasesAndTheBeginningOfTheLastWord) {
    const PageSearch search({{"a", "Bounds", "Set the boundaries of the runs. A report is de-spiked; start sample."},
                             {"b", "Ports", "The sample is at the start. Set a boundary."},
                             {"c", "Start", "A \u00E9tude."}});
    const auto find = [&](const char* words) {
        std::string pages;
        for (const auto& hit : search.Find(words)) pages += hit.Address;
        return pages;
    };
    EXPECT_EQ(find("boundary SETS"), "ba");                          // the shorter page first
    EXPECT_EQ(find("port"), "b");                                    // no part of "report"
    EXPECT_EQ(find("start"), "cba");                                 // the title before the text
    EXPECT_EQ(find("\"start sample\"") + find("\"sample st"), "a");  // side by side, in this order
    EXPECT_EQ(find("de-spike") + find("despike"), "a");
    EXPECT_EQ(find("set boun") + find("boun set") + find("boun "), "ab");
    EXPECT_EQ(find("etudes % \""), "c");
    EXPECT_EQ(find("boundary etude") + find("  ") + find("%") + find("\"\"") + find("* OR ^"), "");
    EXPECT_THAT(search.Find("boundary set").at(1).Words, testing::ElementsAre("Set", "boundaries"));
    EXPECT_THAT(search.Unknown("boundary \"of runs\" xyzzy"), testing::ElementsAre("of runs", "xyzzy"));
}

TEST(HelpBook, TellsOfAMissingAndOfADamagedFile) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("VANTOR.HLP");
    EXPECT_ERROR(FileNotFound, HelpBook(path));
    QFile whole(ManualFile);
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    for (const QByteArray& bytes : {QByteArray(), QByteArray("no help at all"), whole.readAll().left(5000)}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        EXPECT_ERROR(DeviceIoError, HelpBook(path)) << bytes.size();
    }
}

struct HelpWindowTest : testing::Test {
    HelpWindow Window{ManualFile};
    QTextBrowser& Page = Find<QTextBrowser>(Window, "txtPage");
    /// Keys reach the window once it is active.
    void Open(HelpTopic topic) {
        Window.ShowTopic(static_cast<int>(topic));
        ASSERT_TRUE(QTest::qWaitForWindowActive(&Window));
    }
    QString PageName() const { return Page.source().fileName(); }
    QString PageAfter(Qt::Key key, Qt::KeyboardModifiers with = Qt::AltModifier) {
        QTest::keyClick(&Page, key, with);
        return PageName();
    }
};

TEST_F(HelpWindowTest, OpensTopicsAndGoesBackAndForwardByKeys) {
    Open(HelpTopic::SpeedProfile);
    EXPECT_EQ(PageName(), "speed-profile.html");
    EXPECT_TRUE(Page.toPlainText().contains("Drag the left blue line"));
    Open(HelpTopic::Preferences);
    EXPECT_EQ(PageAfter(Qt::Key_Left), "speed-profile.html");
    EXPECT_EQ(PageAfter(Qt::Key_Right), "preferences.html");
    EXPECT_EQ(PageAfter(Qt::Key_Home), "index.html");
    const qreal size = Page.font().pointSizeF();
    PageAfter(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_GT(Page.font().pointSizeF(), size);
    PageAfter(Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(Page.font().pointSizeF(), size);
    PageAfter(Qt::Key_Escape, Qt::NoModifier);
    EXPECT_FALSE(Window.isVisible());
}

TEST_F(HelpWindowTest, PicturesFitThePageHoweverWideItIs) {
    Open(HelpTopic::SpeedProfile);
    const auto width = [this] {
        const auto picture = Page.document()->resource(QTextDocument::ImageResource, QUrl("images/speed-profile.png"));
        return picture.value<QImage>().deviceIndependentSize().width();
    };
    Window.resize(1300, 700);
    const qreal wide = width();
    EXPECT_GT(wide, 800);
    Window.resize(800, 600);
    EXPECT_LT(width(), wide - 200);
    EXPECT_EQ(Page.horizontalScrollBar()->maximum(), 0);
}

TEST_F(HelpWindowTest, FollowsLinksAndShowsThePlaceInTheContents) {
    Open(HelpTopic::Contents);
    auto& contents = Find<QHelpContentWidget>(Window, "treContents");
    ASSERT_TRUE(QTest::qWaitFor([&] { return contents.model()->rowCount() > 0; }));
    emit Page.anchorClicked(Page.source().resolved(QUrl("run-details.html")));
    EXPECT_EQ(PageName(), "run-details.html");
    EXPECT_EQ(contents.currentIndex().data().toString(), "Run Details");
    const QRect above = contents.visualRect(contents.indexAbove(contents.currentIndex()));
    QTest::mouseClick(contents.viewport(), Qt::LeftButton, {}, above.center());
    EXPECT_EQ(PageName(), "speed-profile.html");
}

TEST_F(HelpWindowTest, FindsWordsByKeys) {
    Open(HelpTopic::Contents);
    PageAfter(Qt::Key_F, Qt::ControlModifier);
    auto& words = Find<QLineEdit>(Window, "txtSearch");
    EXPECT_EQ(Window.focusWidget(), &words);
    QTest::keyClicks(&words, "de-spike threshold xyzzy");
    EXPECT_EQ(TextOf(Window, "lblFound"), "No page has \u201Cxyzzy\u201D. Try fewer or other words, or the index.");
    words.setText("De-Spike neighbour");
    QTest::keyClick(&words, Qt::Key_Return);
    EXPECT_EQ(PageName(), "sensor-data.html");
    EXPECT_FALSE(Page.extraSelections().isEmpty());
}

/// Clicks as the system reports it, so that a modal window can block it.
void ClickThrough(HelpWindow& window, const QString& caption) {
    auto& toolbar = Find<QToolBar>(window, "tbrHelp");
    for (QAction* action : toolbar.actions()) {
        if (action->text() != caption) continue;
        const QWidget* button = toolbar.widgetForAction(action);
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, button->mapTo(&window, button->rect().center()));
    }
}

TEST_F(HelpWindowTest, StaysUsableWhileModalWindowsComeAndGo) {
    const auto showsStartPage = [this] {
        Page.setSource(Page.source().resolved(QUrl("keys.html")));
        ClickThrough(Window, "Start");
        return PageName() == "index.html";
    };
    QDialog first;
    first.setModal(true);
    first.show();
    Window.ShowTopic(0);
    EXPECT_TRUE(showsStartPage());
    {
        QDialog second;
        second.setModal(true);
        second.show();
        EXPECT_TRUE(showsStartPage());
    }
    QCoreApplication::processEvents();
    EXPECT_TRUE(showsStartPage());
    first.close();
    QCoreApplication::processEvents();
    EXPECT_TRUE(Window.isVisible());
    EXPECT_TRUE(showsStartPage());
    EXPECT_EQ(Window.windowHandle()->transientParent(), nullptr);
}

}  // namespace
}  // namespace vantor
