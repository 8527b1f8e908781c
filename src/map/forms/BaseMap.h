#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/AppContext.h"
#include "map/BaseMapFile.h"

namespace vantor {

/// The base map that the user chose, its tiles read and decoded beside the window as they are needed.
class BaseMap : public QObject {
public:
    BaseMap(AppContext& context, QObject* parent);

    /// Takes the file over that the user has chosen by now.
    void FollowChoice();
    /// Nothing while there is no file, or it has not been opened yet.
    const MapTiles* Tiles() const { return tiles_ ? &*tiles_ : nullptr; }
    /// Why there is no base map where there should be one, on one line; else empty.
    const std::string& Problem() const { return problem_; }
    /// Begins to read what a window still lacks.
    void Need(const MapWindow& window, double detail);
    /// There is more to be drawn.
    std::function<void()> OnRead;

private:
    struct Reading {
        BaseMapFile File;
        std::vector<std::pair<TilePlace, std::optional<Pixels>>> Tiles;
    };
    void Begin(std::vector<TilePlace> places);
    void TakeWhenRead();

    AppContext& context_;
    std::unique_ptr<LongWork> work_;
    QTimer whenRead_;
    std::string path_;
    std::shared_ptr<const TileSource> source_;  ///< used by the work alone once there
    std::shared_ptr<Reading> reading_;          ///< that is under way; nothing when the file was left meanwhile
    std::optional<MapTiles> tiles_;
    std::string problem_;
    MapWindow window_;  ///< what was needed last
    double detail_ = 1;
};

}  // namespace vantor
