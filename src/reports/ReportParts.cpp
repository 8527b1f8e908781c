#include "reports/ReportParts.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "core/Text.h"
#include "map/MapDrawing.h"
#include "reports/ReportText.h"

namespace vantor {
namespace {

std::string NoteOf(const MapContents& map, const BaseMapFile& under, const MapScene& scene, std::size_t runs) {
    std::string note = std::to_string(map.Tracks.size()) + " of " + std::to_string(runs) +
                       " runs have positions and are drawn, coloured by speed; slow ones are broader.";
    if (std::ranges::any_of(map.Tracks, &MapTrack::IsSetAside))
        note += " Those that are set aside are grey and dashed.";
    if (const std::size_t out = scene.LeftOut(); out > 0)
        note += " " + std::to_string(out) + " of their samples have no position.";
    return under.Problem.empty() ? note : note + "\n" + under.Problem;
}

}  // namespace

ReportTable OnPaper(const StatisticsTable& table, std::string_view without) {
    ReportTable printed;
    printed.HasTotal = table.HasTotal;
    for (std::size_t column = 0; column < table.Heads.size(); ++column) {
        const bool isText = column == 0 || (table.LastIsText && column + 1 == table.Heads.size());
        printed.Columns.push_back({table.Heads[column], isText ? TextSide::Left : TextSide::Right, isText});
    }
    for (const auto& cells : table.Rows) {
        auto& row = printed.Rows.emplace_back();
        for (const StatisticsCell& cell : cells) {
            const std::string text(Trim(cell.Text));
            row.push_back(cell.IsWeak ? "(" + text + ")" : text);
        }
    }
    std::vector<std::size_t> columns;
    for (std::size_t column = 0; column < table.Heads.size(); ++column)
        if (table.Heads[column] != without) columns.push_back(column);
    return WithColumns(printed, columns);
}

ReportTable WithTexts(ReportTable table, const std::vector<std::string_view>& heads) {
    for (std::size_t i = 0; i < table.Columns.size(); ++i) {
        ReportColumn& column = table.Columns[i];
        if (std::ranges::find(heads, column.Head) == heads.end()) continue;
        column.Side = TextSide::Left;
        column.Wraps = std::ranges::any_of(
            table.Rows, [i](const std::vector<std::string>& row) { return row[i].find(' ') != std::string::npos; });
    }
    return table;
}

ReportTable WithoutEmpty(const ReportTable& table) {
    std::vector<std::size_t> columns;
    for (std::size_t column = 0; column < table.Columns.size(); ++column)
        if (column == 0 || std::ranges::any_of(table.Rows, [column](const std::vector<std::string>& row) {
                return !row[column].empty() && row[column] != NoFigure;
            }))
            columns.push_back(column);
    return WithColumns(table, columns);
}

void AddLines(ReportPages& pages, const std::string& heading, const std::vector<std::string>& lines) {
    if (lines.empty()) return;
    pages.AddHeading(heading, 2 * pages.Measure().LineHeight(BodyStyle));
    for (const std::string& line : lines) pages.AddText(line, BodyStyle);
    pages.Skip(SectionGap / 2);
}

void AddPlot(ReportPages& pages, Plot plot, double height) {
    const CanvasBox box{pages.Left(), pages.Take(height), pages.Width(), height};
    pages.Draw([plot = std::move(plot), box](Canvas& canvas) { DrawPlot(canvas, box, plot, {}, plot.Whole()); });
}

void AddMapPicture(ReportPages& pages, const MapContents& map, const BaseMapFile& baseMap, std::size_t runs) {
    const auto scene = std::make_shared<const MapScene>(map);
    const std::string note = NoteOf(map, baseMap, *scene, runs);
    const std::size_t lines = WrappedLines(note, pages.Width(), CaptionStyle, pages.Measure()).size();
    const double text = static_cast<double>(lines + 1) * pages.Measure().LineHeight(CaptionStyle);
    const double height = pages.Room() - text;
    const CanvasBox box{pages.Left(), pages.Take(height), pages.Width(), height};
    const MapWindow window = FittedWindow(scene->Bounds(), box);
    std::shared_ptr<const MapTiles> under;
    constexpr double TilePixelsToPoint = 2;  // with more, the names on a base map could not be read
    if (baseMap.Source) under = TilesOf(*baseMap.Source, window, TilePixelsToPoint);
    pages.Draw([scene, window, under](Canvas& canvas) {
        constexpr double PixelsToPoint = 4;  // finer than is seen on paper
        MapLook look;
        look.Detail = PixelsToPoint;
        look.Under = under.get();
        DrawMap(canvas, *scene, window, look);
        canvas.DrawFrame(window.Area, {0.75, PaperColours.Rule});
    });
    pages.AddText(note, CaptionStyle);
}

}  // namespace vantor
