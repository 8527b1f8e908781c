#pragma once

#include <QComboBox>
#include <QLabel>
#include <QToolButton>
#include <QWidget>
#include <memory>
#include <vector>

#include "core/Csv.h"
#include "core/forms/WrappedLabel.h"
#include "corridor/forms/CorridorDocument.h"
#include "corridor/forms/CorridorPlotViews.h"
#include "statistics/forms/StatisticsTableView.h"

namespace vantor {

/// A plot over the runs that are looked at, of the way that is chosen, which is made when it comes into view.
class CorridorPlotPage : public QWidget {
public:
    CorridorPlotPage(CorridorDocument& document, QWidget* parent) : QWidget(parent), document_(document) {}

protected:
    void Begin(CorridorPlotView& view, const char* name, const QString& heard, const char* file);
    void showEvent(QShowEvent* event) override;
    CorridorDocument& TheDocument() const { return document_; }
    /// The plot was made anew.
    virtual void Shown() {}

private:
    void ShowPlot();
    void ShowSelected();

    CorridorDocument& document_;
    CorridorPlotView* view_ = nullptr;
    std::shared_ptr<const DetailedCorridor> drawn_;  ///< the plot refers to it
    Way way_ = Way::Forward;
};

/// The speed profiles, with the bands: dragged, proposed and taken.
class CorridorProfilesPage : public CorridorPlotPage {
public:
    CorridorProfilesPage(CorridorDocument& document, QWidget* parent);

protected:
    void Shown() override;

private:
    QLayout* BuildHead();
    bool MovesOwn() const { return cmbBands_->currentIndex() == 1; }
    void TakeMoved(std::size_t node, const Band& band);
    void Propose();
    void TakeProposed();
    void Drop();

    CorridorProfilesView* profiles_;
    QComboBox* cmbBands_ = nullptr;
    QToolButton* btnTake_ = nullptr;
    QToolButton* btnDrop_ = nullptr;
    QLabel* lblBorder_ = nullptr;
    std::vector<BandProposal> proposals_;
};

/// The time-space diagram, with the arrivals on green.
class CorridorTimeSpacePage : public CorridorPlotPage {
public:
    CorridorTimeSpacePage(CorridorDocument& document, QWidget* parent);
    std::vector<SheetRow> Sheet() const;

private:
    void ShowArrivals();

    StatisticsTableView* vaArrivals_ = nullptr;
    WrappedLabel* lblArrivals_ = nullptr;
};

}  // namespace vantor
