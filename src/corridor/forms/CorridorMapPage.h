#pragma once

#include <QWidget>
#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "corridor/forms/CorridorDocument.h"
#include "map/forms/MapView.h"

class QMenu;

namespace vantor {

/// The ways of the runs that are looked at, coloured by speed, and the nodes, which are set and moved here, too.
class CorridorMapPage : public QWidget {
public:
    CorridorMapPage(CorridorDocument& document, QWidget* parent);

protected:
    void showEvent(QShowEvent* event) override;

private:
    /// Where it is in view; else when it comes into view.
    void ShowMap();
    void ShowSelected();
    void FillMenu(QMenu& menu);
    void AddNode();
    void MoveNode();

    CorridorDocument& document_;
    MapView* map_;
    std::shared_ptr<const DetailedCorridor> drawn_;
    std::vector<std::size_t> items_;  ///< runs by item, the first is item 1
    std::optional<Position> place_;
};

}  // namespace vantor
