#include <benchmark/benchmark.h>

#include <QScrollBar>

#include "bench/NeedApplication.h"
#include "gpsobd/forms/ReviewTable.h"
#include "platform/DiskFileSystem.h"

namespace vantor {
namespace {

constexpr int SpeedColumn = 5;

/// 100,000 points, one a second, each tenth without a speed.
FieldLog LongLog() {
    FieldLog log = NewFieldLog(FormatOf(LogKind::GpsLaptop), "bench.gd2");
    log.Gps.resize(100000);
    for (std::size_t i = 0; i < log.PointCount(); ++i) {
        GpsPoint& point = log.Gps[i];
        point.RunNumber = static_cast<std::int16_t>(1 + i / 3600);
        point.DateTime = {37755 + static_cast<double>(i + 1) / 86400};
        point.Speed = i % 10 == 0 ? -1.F : static_cast<float>(i * 7919 % 4500) / 100;
    }
    return log;
}

/// Carries work out on the thread that is measured.
struct WorkAtOnce : LongWork {
    DiskFileSystem Files{"."};
    bool Run(const std::string&, const Action& work) override {
        work(Files, Progress());
        return true;
    }
    void Begin(Action work) override { work(Files, Progress()); }
    bool IsBusy() const override { return false; }
    bool Finish() override { return true; }
    std::unique_ptr<LongWork> Another() const override { return std::make_unique<WorkAtOnce>(); }
};

/// A review screen's table of 100,000 rows.
struct LongReview {
    WorkAtOnce Work;
    ReviewModel Model{LongLog(), Work};
    ReviewTable Table{nullptr};

    LongReview() {
        Table.resize(1200, 700);
        Table.Show(Model);
        Table.show();
        QApplication::processEvents();
    }
};

void ReviewOpens(benchmark::State& state) {
    NeedApplication();
    for (auto _ : state) {
        LongReview review;
        benchmark::DoNotOptimize(review.Model.rowCount());
    }
}
BENCHMARK(ReviewOpens)->Unit(benchmark::kMillisecond);

void ReviewScrollsAPage(benchmark::State& state) {
    NeedApplication();
    LongReview review;
    QScrollBar* bar = review.Table.verticalScrollBar();
    for (auto _ : state) {
        bar->setValue(bar->value() + 997 > bar->maximum() ? 0 : bar->value() + 997);
        review.Table.repaint();
    }
}
BENCHMARK(ReviewScrollsAPage)->Unit(benchmark::kMillisecond);

void ReviewSorts(benchmark::State& state) {
    NeedApplication();
    LongReview review;
    bool ascends = true;
    for (auto _ : state) {
        review.Model.sort(SpeedColumn, ascends ? Qt::AscendingOrder : Qt::DescendingOrder);
        review.Table.repaint();
        ascends = !ascends;
    }
}
BENCHMARK(ReviewSorts)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
