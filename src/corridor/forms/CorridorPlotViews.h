#pragma once

#include <QTimer>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "corridor/BandDrag.h"
#include "corridor/CorridorPlots.h"
#include "plots/forms/PlotView.h"

namespace vantor {

/// A plot over the runs of one way. What it shows must live as long as it is shown; after a change, Show it again.
/// Where it takes long to draw, it is drawn without its single runs while it moves.
class CorridorPlotView : public PlotView {
public:
    CorridorPlotView(AppContext& context, QWidget* parent);

    /// The chosen run stays so where it is shown, and the part in view where the axes stay.
    void Show(const Corridor& corridor, const std::vector<MatchedRun>& runs, const CorridorFilter& filter, Way way);

    /// An index into the matched runs; nothing for none. Does not call OnRunChosen.
    void SetChosenRun(std::optional<std::size_t> run);
    std::optional<std::size_t> ChosenRun() const { return chosen_; }
    /// The user chose a run.
    std::function<void(std::size_t run)> OnRunChosen;
    /// The user chose a node, as the corridor counts them.
    std::function<void(std::size_t node)> OnNodeChosen;

protected:
    virtual Plot Make(const CorridorLook& look) const = 0;
    /// Another run is chosen, or all is shown anew.
    virtual void ChosenRunChanged() {}
    /// Which node a place belongs to; nothing for none.
    virtual std::optional<std::size_t> NodeAt(CanvasPoint place) const = 0;
    void ClickAt(CanvasPoint place) override;
    QString Draw(Canvas& canvas) override;
    bool Drag(CanvasPoint from, CanvasPoint to) override;
    void ZoomAbout(CanvasPoint place, double factor) override;

    /// Makes the plot anew.
    void Refresh();
    bool HasCorridor() const { return corridor_ != nullptr; }
    /// There is a plot to point at.
    bool Shows() const { return HasCorridor() && Shown().EmptyText.empty(); }
    const Corridor& TheCorridor() const { return *corridor_; }
    const std::vector<MatchedRun>& Runs() const { return *runs_; }
    const CorridorFilter& Filter() const { return filter_; }
    Way Along() const { return way_; }
    Units ShownUnits() const;

private:
    void ChooseItemOfRun();
    void Moves();

    AppContext& context_;
    Plot light_;  ///< what is drawn while it moves
    QTimer rest_;
    bool isMoving_ = false;
    qint64 drawing_ = 0;  ///< milliseconds that the last whole drawing took
    const Corridor* corridor_ = nullptr;
    const std::vector<MatchedRun>* runs_ = nullptr;
    CorridorFilter filter_;
    Way way_ = Way::Forward;
    std::vector<std::size_t> items_;  ///< runs by item, the first is item 1
    std::optional<std::size_t> chosen_;
};

/// Speed profiles over each other, and the borders of the bands to be moved: by the mouse, or with Tab from border to
/// border and the arrows by 1 ft, with Shift by 10 ft; Esc puts a border back.
class CorridorProfilesView : public CorridorPlotView {
public:
    using CorridorPlotView::CorridorPlotView;

    /// The user has moved a border and let it go: the band of all runs or, with MovesOwn, of the chosen one.
    std::function<void(std::size_t node, const Band& band)> OnBandMoved;
    /// What the border that is moved, or would be moved by keys, is and where; empty when there is none.
    std::function<void(const std::string& text)> OnBorderTold;
    /// Borders are those of the chosen run alone; without one there are none.
    void SetMovesOwn(bool movesOwn);
    bool MovesOwn() const { return movesOwn_; }
    /// Single runs under the band of all.
    void SetShowsRuns(bool showsRuns);

    enum class Proposed { Common, Own };
    /// Draws proposed bands dashed until there are none: the common ones, or those of the chosen run.
    void SetProposals(std::vector<BandProposal> proposals, Proposed kind);

protected:
    Plot Make(const CorridorLook& look) const override;
    void ChosenRunChanged() override;
    std::optional<std::size_t> NodeAt(CanvasPoint place) const override;
    void PaintOver(QPainter& painter) override;
    std::string Description() const override;
    std::string TipAt(CanvasPoint place) const override;
    bool focusNextPrevChild(bool next) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    double FeetAt(const PlotMap& map, double pixel) const;
    double ReachFt(const PlotMap& map) const;
    std::optional<BandBorder> BorderAt(QPointF pixel) const;
    std::vector<PlotRange> ProposedRanges() const;
    std::string BorderText() const;
    void LetGo();
    void Tell();

    BandDrag drag_;
    bool isDragged_ = false;  ///< by the mouse
    bool movesOwn_ = false;
    bool showsRuns_ = true;
    std::vector<BandProposal> proposals_;
    Proposed kind_ = Proposed::Common;
};

/// Time-space diagram.
class CorridorTimeSpaceView : public CorridorPlotView {
public:
    using CorridorPlotView::CorridorPlotView;

    void SetClock(TimeSpaceClock clock);
    TimeSpaceClock Clock() const { return clock_; }

protected:
    Plot Make(const CorridorLook& look) const override;
    std::optional<std::size_t> NodeAt(CanvasPoint place) const override;

private:
    TimeSpaceClock clock_ = TimeSpaceClock::FromStart;
};

}  // namespace vantor
