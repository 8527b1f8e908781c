#pragma once

#include <gmock/gmock.h>

#include <QHeaderView>
#include <optional>

#include "LogBytes.h"
#include "core/forms/Named.h"
#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"
#include "gpsobd/forms/LogReview.h"

namespace vantor {

inline const std::string Folder = "/start/Field Data Files/";
inline const std::string Temp = "/start/Temp/";
inline const std::string Discard =
    "The rows of log: " + Folder + "drive.od2\nhave changed. Do you want to discard the changes?";
constexpr int RunColumn = 1;
constexpr int SpeedColumn = 6;
inline const std::vector<float> WithGap = {30, -1, -1, -1, 50};

/// A review screen over a disk in memory.
class ReviewScreen : public testing::Test {
protected:
    ReviewScreen() {
        Program.State.SelectedDataFolder = Folder;
        Program.State.SelectedDataFile = "drive";
        Program.State.DataFileSelected = true;
    }
    ~ReviewScreen() override {
        if (Form) Form->hide();
    }

    /// One point a second of run 1 from 06:00:00 on, in an OBD log of the laptop.
    static FieldLog ObdLog(const std::vector<float>& speeds) {
        FieldLog log = NewFieldLog(LogKind::ObdLaptop, Folder + "drive.od2");
        log.ObdHeader.StudyName = "Main St";
        log.Prefix.LogDate = {LogDay};
        for (const float speed : speeds) {
            ObdPoint& point = log.Points.emplace_back().Obd;
            point.RunNumber = 1;
            point.Speed = speed;
            point.DateTime = {LogDay + 0.25 + static_cast<double>(log.Points.size() - 1) / 86400};
        }
        return log;
    }
    LogReview& OpenObd(const std::vector<float>& speeds) { return OpenObd(ObdLog(speeds)); }
    LogReview& OpenObd(const FieldLog& log) {
        WriteFieldLog(Program.Files, log);
        Before = *Program.Files.Bytes(Folder + "drive.od2");
        return Open(LogKind::ObdLaptop, ".od2");
    }
    LogReview& Open(LogKind kind, const std::string& extension) {
        Program.State.SelectedDataExt = extension;
        Form.emplace(Program.Context, kind);
        Form->show();
        Form->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&*Form));
        return *Form;
    }

    ReviewTable& Grid() { return *Form->findChild<ReviewTable*>(); }
    QString Status() { return Find<QLabel>(*Form, "lblStatus").text(); }
    /// The texts of a column as shown from top to bottom.
    std::vector<std::string> Texts(int column) {
        std::vector<std::string> texts;
        for (int row = 0; row < Grid().model()->rowCount(); ++row)
            texts.push_back(FromQt(Grid().model()->index(row, column - 1).data().toString()));
        return texts;
    }
    void ClickHead(int column) {
        QHeaderView* head = Grid().horizontalHeader();
        QTest::mouseClick(head->viewport(), Qt::LeftButton, {},
                          {head->sectionViewportPosition(column - 1) + 10, head->height() / 2});
    }
    /// Makes the cell of a row, as shown from 1, the current one.
    void ChooseRow(int row, int column = RunColumn) {
        QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {},
                          Grid().visualRect(Grid().model()->index(row - 1, column - 1)).center());
    }
    FieldLog Written() {
        return ReadFieldLog({Program.Files, Program.Databases, Devices, Program.Time}, LogKind::ObdLaptop,
                            Folder + "drive.od2");
    }
    bool IsLogAsBefore() { return Program.Files.Bytes(Folder + "drive.od2") == Before; }

    struct NoDevices : DeviceDatabase {
        std::unique_ptr<RecordSet> Open(const std::string&, const std::string&) const override { return nullptr; }
    };
    TestProgram Program;
    NoDevices Devices;
    std::optional<LogReview> Form;
    std::vector<std::byte> Before;
};

}  // namespace vantor
