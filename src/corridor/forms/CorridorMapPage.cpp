#include "corridor/forms/CorridorMapPage.h"

#include <QMenu>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "corridor/CorridorEdits.h"
#include "map/MapFromRun.h"
#include "map/MapScene.h"

namespace vantor {
namespace {

MapContents ContentsOf(const DetailedCorridor& shown, const std::vector<std::size_t>& items, const Units& units) {
    MapContents contents;
    contents.Title = shown.Of.Name.empty() ? "Corridor" : shown.Of.Name;
    contents.Shown = units;
    contents.EmptyText =
        "No position is known: neither of a node nor of a run. Nodes of a file, or runs made from "
        "tracks, have them.";
    for (const std::size_t index : items) {
        MapTrack track = TrackOf(shown.Runs[index].Read->Run, shown.Of.Runs[index].Name);
        track.IsSetAside = !shown.Of.Runs[index].SetAside.empty();
        contents.Tracks.push_back(std::move(track));
    }
    for (const CorridorNode& node : shown.Of.Nodes)
        if (node.At) contents.Nodes.push_back({node.Name, *node.At});
    return contents;
}

}  // namespace

CorridorMapPage::CorridorMapPage(CorridorDocument& document, QWidget* parent)
    : QWidget(parent), document_(document), map_(new MapView(document.Context(), this)) {
    map_->setObjectName(QStringLiteral("map"));
    map_->OnChosen = [this] {
        const int item = map_->ChosenItem();
        document_.SelectRun(item == 0 ? std::nullopt : std::optional(items_[static_cast<std::size_t>(item) - 1]));
    };
    map_->OnPlace = [this](const Position& place) { place_ = place; };
    map_->ExtendMenu = [this](QMenu& menu) { FillMenu(menu); };
    map_->PictureStart = [this] { return document_.Root() + document_.Of().Name + " map"; };
    auto* column = new QVBoxLayout(this);
    column->addWidget(map_);
    document.WhenShown([this] { ShowMap(); });
    document.WhenSelected([this] { ShowSelected(); });
}

void CorridorMapPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    Guarded(document_.Context().Messages, [this] { ShowMap(); });
}

void CorridorMapPage::ShowMap() {
    if (!isVisible() || drawn_ == document_.Share()) return;
    drawn_ = document_.Share();
    items_.clear();
    for (std::size_t i = 0; i < drawn_->Runs.size(); ++i)
        if (drawn_->Filter.Takes(drawn_->Runs[i]) && HasPositions(drawn_->Runs[i].Read->Run)) items_.push_back(i);
    const auto scene = std::make_shared<std::shared_ptr<const MapScene>>();
    document_.Context().Work.Run("Drawing the map", [scene, shown = drawn_, items = items_, units = document_.Shows()](
                                                        FileSystem&, const Progress&) {
        *scene = std::make_shared<MapScene>(ContentsOf(*shown, items, units));
    });
    map_->Show(*scene);
    ShowSelected();
}

void CorridorMapPage::ShowSelected() {
    const auto item = document_.Run() ? std::ranges::find(items_, *document_.Run()) : items_.end();
    map_->SetChosenItem(item == items_.end() ? 0 : static_cast<int>(item - items_.begin()) + 1);
    const auto node = document_.Node();
    const CorridorNode* selected = node ? &document_.Of().Nodes[*node] : nullptr;
    map_->SetMark(selected != nullptr && selected->At ? selected->At : std::nullopt);
}

void CorridorMapPage::FillMenu(QMenu& menu) {
    if (!place_) return;
    MessageBoxes& messages = document_.Context().Messages;
    menu.addSeparator();
    QAction* add = menu.addAction(QStringLiteral("&Add a Node Here"));
    Connect(add, &QAction::triggered, this, messages, [this] { AddNode(); });
    if (!document_.Node()) return;
    const QString name = ToQt(document_.Of().Nodes[*document_.Node()].Name);
    QAction* move = menu.addAction(QStringLiteral("&Move %1 Here").arg(name));
    Connect(move, &QAction::triggered, this, messages, [this] { MoveNode(); });
}

void CorridorMapPage::AddNode() {
    Corridor changed = document_.Of();
    const std::size_t at = InsertNodeAt(changed, *place_);
    if (document_.Change(QStringLiteral("Add node"), changed)) document_.SelectNode(at);
}

void CorridorMapPage::MoveNode() {
    Corridor changed = document_.Of();
    CorridorNode& node = changed.Nodes[*document_.Node()];
    node.At = *place_;
    const QString text = QStringLiteral("Move node ") + ToQt(node.Name);
    Remeasure(changed);
    document_.Change(text, changed);
}

}  // namespace vantor
