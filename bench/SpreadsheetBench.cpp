#include <benchmark/benchmark.h>

#include <vector>

#include "core/Date.h"
#include "platform/SpreadsheetWriter.h"

namespace vantor {
namespace {

/// A day's log of points, one a second: a name, a date, a remark that repeats itself and ten numbers.
std::vector<Sheet> LogOf30000Points() {
    Sheet sheet{"Log", {{"Point"}, {"At", "mm/dd/yy"}, {"Remark"}}, {}};
    for (int i = 0; i < 10; ++i) sheet.Columns.push_back({"Number " + std::to_string(i), "0.00"});
    const double day = DateOf(2026, 11, 21).Days;
    for (int row = 0; row < 30000; ++row) {
        std::vector<SheetCell> cells = {"Point " + std::to_string(row), Date{day + row / 86400.0},
                                        row % 3 == 0 ? "stopped" : "under way"};
        for (int i = 0; i < 10; ++i) cells.emplace_back(row * 1.37 + i);
        sheet.Rows.push_back(std::move(cells));
    }
    return {std::move(sheet)};
}

void EncodeWorkbook(benchmark::State& state) {
    const auto format = state.range(0) != 0 ? WorkbookFormat::Xlsx : WorkbookFormat::Xls;
    const std::vector<Sheet> sheets = LogOf30000Points();
    const SpreadsheetWriter writer;
    std::size_t size = 0;
    for (auto _ : state) size = writer.Encode(sheets, format).size();
    state.counters["bytes"] = static_cast<double>(size);
}
BENCHMARK(EncodeWorkbook)->ArgName("xlsx")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

/// What encoding is compared with: the bytes of the workbook, copied.
void CopyWorkbook(benchmark::State& state) {
    const auto format = state.range(0) != 0 ? WorkbookFormat::Xlsx : WorkbookFormat::Xls;
    const std::vector<std::byte> bytes = SpreadsheetWriter().Encode(LogOf30000Points(), format);
    for (auto _ : state) {
        std::vector<std::byte> copy = bytes;
        benchmark::DoNotOptimize(copy.data());
    }
}
BENCHMARK(CopyWorkbook)->ArgName("xlsx")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
