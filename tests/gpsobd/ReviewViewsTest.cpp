#include "gpsobd/forms/ReviewViews.h"

#include <QAction>

#include "Logs.h"
#include "fakes/FormScene.h"
#include "gpsobd/forms/LogReview.h"

namespace vantor {
namespace {

using testing::ElementsAre;

const std::string Folder = "/start/Field Data Files/";

class ReviewViewsTest : public FormScene<LogReview> {
protected:
    /// Three points of a track on a straight road, a second apart.
    void OpenGpx() {
        std::string gpx = "<gpx version=\"1.1\" creator=\"t\"><trk><trkseg>";
        for (int second = 0; second < 3; ++second)
            gpx += "<trkpt lat=\"42.5\" lon=\"-83.500" + std::to_string(second) + "\"><time>2026-05-01T07:00:0" +
                   std::to_string(second) + "Z</time></trkpt>";
        Files.PutText(Folder + "way.gpx", gpx + "</trkseg></trk></gpx>");
        const LogChoice choice{Folder, "way", ".gpx"};
        OpenWithViews(*FormatToReview(Context, choice), choice);
    }
    void OpenWithViews(const LogFormat& format, const LogChoice& choice) {
        Open(format, choice);
        if (!IsChecked("btnViews")) Press("btnViews");
    }
    void Trigger(const char* action) { Window->findChild<QAction*>(QLatin1String(action))->trigger(); }
    PlotView& Trace() { return Get<PlotView>("RunTrace"); }
    ReviewTable& Grid() { return *Window->findChild<ReviewTable*>(); }
    void ChooseRow(int row) { ClickCell(Grid(), row, 0); }
    std::vector<std::string> Runs() { return Column(*Window, "vaOBDData", 0); }
    bool HasRun(const std::string& name) { return Files.Bytes("/start/Temp/" + name + ".rd2").has_value(); }
};

TEST_F(ReviewViewsTest, OpensATrackAndShowsTheRowOnTraceAndMap) {
    OpenGpx();
    auto& tabs = Get<QTabWidget>("tabViews");
    auto& map = Get<MapView>("RunMap");
    ChooseRow(2);
    EXPECT_EQ(Trace().ChosenItem(), 3);
    ASSERT_TRUE(map.Mark());
    EXPECT_NEAR(map.Mark()->Longitude, -83.5002, 1e-9);
    QTest::mouseClick(&Trace(), Qt::LeftButton, {}, QPoint(2, Trace().height() / 2));
    EXPECT_EQ(Grid().currentIndex().row(), 0) << "the leftmost in time";
    tabs.setCurrentWidget(&map);
    QTest::keyClick(&map, Qt::Key_Return);
    EXPECT_EQ(Grid().currentIndex().row(), 1) << "the one in the middle of the map";
    QTest::mouseClick(&map, Qt::LeftButton, {}, QPoint(2, 2));
    EXPECT_EQ(Grid().currentIndex().row(), 1) << "nothing is near";
    Press("BtnOk");
    EXPECT_TRUE(IsAccepted() && HasRun("way-R001"));

    OpenGpx();
    EXPECT_EQ(Get<QTabWidget>("tabViews").currentWidget(), &Get<MapView>("RunMap")) << "as it was left";
    Window->close();
    Messages.Expect("Run-time error '13':\nType mismatch\n\nThe name is none of a log. Logs end in " +
                    LogExtensions(" or ") + ".\n" + Folder + "way.doc");
    EXPECT_EQ(FormatToReview(Context, {Folder, "way", ".doc"}), nullptr);
}

TEST_F(ReviewViewsTest, TheViewsFollowRunsThatAreMarkedByHand) {
    FieldLog log = ObdLog({10, 20, 30, 40, 50, 60});
    log.Obd[5].RunNumber = 2;
    WriteFieldLog(Files, log);
    OpenWithViews(FormatOf(LogKind::ObdLaptop), {Folder, "drive", ".od2"});
    auto& tabs = Get<QTabWidget>("tabViews");
    EXPECT_FALSE(tabs.isTabEnabled(1));
    EXPECT_EQ(FromQt(tabs.tabToolTip(1)), "This log has no positions, as logs of OBD have none.");
    const auto shown = [&] { return Trace().Shown().Axes.Title + ": " + std::to_string(Trace().Shown().Items.size()); };
    EXPECT_EQ(shown(), "Run 1: 5");
    ChooseRow(5);
    EXPECT_EQ(shown(), "Run 2: 1");
    ChooseRow(1);
    Trigger("mnuStartRun");
    EXPECT_EQ(Text("lblStatus"), "Run 1 starts at row 1; 1 row deleted.");
    EXPECT_EQ(shown(), "Run 1: 4");
    ChooseRow(2);
    Trigger("mnuSplitRun");
    EXPECT_THAT(Runs(), ElementsAre("1", "1", "3", "3", "2"));
    EXPECT_EQ(shown(), "Run 3: 2");
    EXPECT_EQ(Trace().ChosenItem(), 1);
    Press("btnUndo");
    EXPECT_THAT(Runs(), ElementsAre("1", "1", "1", "1", "2"));
    EXPECT_EQ(shown(), "Run 1: 4");
}

}  // namespace
}  // namespace vantor
