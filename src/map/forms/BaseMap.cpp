#include "map/forms/BaseMap.h"

#include <chrono>

#include "core/UserChoices.h"
#include "core/forms/Guarded.h"

namespace vantor {
namespace {

/// So few that what is on the screen by now comes soon.
constexpr std::size_t TilesAtOnce = 12;

}  // namespace

BaseMap::BaseMap(AppContext& context, QObject* parent)
    : QObject(parent), context_(context), work_(context.Work.Another()) {
    whenRead_.setInterval(std::chrono::milliseconds(15));
    Connect(&whenRead_, &QTimer::timeout, this, context.Messages, [this] { TakeWhenRead(); });
}

void BaseMap::FollowChoice() {
    const std::string path = ChoiceOf(context_.State.Choices, BaseMapKey);
    if (path == path_) return;
    path_ = path;
    source_.reset();
    reading_.reset();
    tiles_.reset();
    problem_.clear();
}

void BaseMap::Need(const MapWindow& window, double detail) {
    window_ = window;
    detail_ = detail;
    if (path_.empty() || !problem_.empty() || whenRead_.isActive()) return;
    std::vector<TilePlace> places;
    if (tiles_) {
        places = tiles_->Missing(window, detail);
        if (places.empty()) return;
        if (places.size() > TilesAtOnce) places.resize(TilesAtOnce);
    }
    Begin(std::move(places));
}

void BaseMap::Begin(std::vector<TilePlace> places) {
    reading_ = std::make_shared<Reading>();
    reading_->File.Source = source_;
    work_->Begin([reading = reading_, path = path_, places = std::move(places), &files = context_.Tiles](
                     FileSystem&, const Progress&) {
        if (!reading->File.Source) reading->File = OpenBaseMap(files, path);
        for (const TilePlace& place : places) reading->Tiles.emplace_back(place, reading->File.Source->Tile(place));
    });
    whenRead_.start();
}

void BaseMap::TakeWhenRead() {
    if (work_->IsBusy()) return;
    whenRead_.stop();
    work_->Finish();
    const std::shared_ptr<Reading> read = std::exchange(reading_, nullptr);
    if (read) {
        problem_ = read->File.Problem;
        source_ = read->File.Source;
        if (source_ && !tiles_) tiles_.emplace(source_->Facts());
        if (tiles_)
            for (auto& [place, picture] : read->Tiles) tiles_->Put(place, std::move(picture));
        if (OnRead) OnRead();
    }
    Need(window_, detail_);
}

}  // namespace vantor
