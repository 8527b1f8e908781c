#pragma once

#include <QDialog>
#include <QUndoGroup>
#include <functional>
#include <map>
#include <optional>

#include "core/AppContext.h"
#include "editing/ProfileVisits.h"
#include "editing/forms/SpeedProfileControls.h"
#include "plots/SpeedProfile.h"
#include "statistics/BoundsProposal.h"

namespace vantor {

/// "Speed Profile": draws the current run, lets the user set its two control delay boundaries and an ideal speed, and
/// computes its figures; then it may go on to the other runs of the study. The study is changed by whoever opened the
/// screen.
class frmPlotRunSpeedProfileHoriz : public QDialog {
public:
    /// Lets the user choose among the runs that would get the boundaries of the one in view; the chosen ones.
    using ChooseRuns = std::function<std::vector<BoundsPreview>(const std::vector<BoundsPreview>&)>;

    /// Lets the user choose among the boundaries that are proposed for the runs of a study; the chosen ones.
    using AskProposals = std::function<std::vector<BoundsPreview>(const Study&)>;

    /// The run of the visit is the current one; one that the study does not have is error 9. `onChanged` gets a run and
    /// its entry after each change.
    frmPlotRunSpeedProfileHoriz(AppContext& context, const ProfileVisit& visit, ProfileVisits::Sink onChanged = {});

    /// What was changed; a run that was only looked at and left is not in it.
    ProfileChanges Changes() const { return visits_.Changes(); }
    /// Stands for the dialog in which the runs are chosen.
    ChooseRuns OnChooseRuns;
    AskProposals OnProposals;

    /// Every way out: asks when the boundaries have not been dragged, takes over the run's name.
    void done(int result) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    /// What Undo brings back.
    struct Document {
        StudyRunEntry Entry;
        PlotState Plot;
        bool IsComputed = false;

        bool operator==(const Document&) const = default;
    };

    void ConnectControls();
    void ConnectPlot();
    void ConnectBox(NumberBox& box, ProfileLine line);
    void AddActions();
    QAction* AddAction(const char* name, const QString& text, const QKeySequence& keys,
                       void (frmPlotRunSpeedProfileHoriz::*act)());

    /// Begins with the current run, whose profile is drawn already.
    void ShowRun();
    /// Takes leave of the run in view, with what was typed.
    void LeaveRun(bool isDone);
    void GoOn(int direction);
    void GoToNext() { GoOn(1); }
    void GoToPrevious() { GoOn(-1); }
    void UseFor(const std::vector<int>& runs);
    void UseForAll();
    void UseForSelected();
    std::vector<BoundsPreview> ChooseRunsFor(const std::vector<BoundsPreview>& previews);
    void TakeChosen(const std::vector<BoundsPreview>& runs);

    void ConnectProposal();
    /// Proposes boundaries for the run in view, and then for each run without them that the user goes on to.
    void Propose();
    void ProposeForAll();
    void SetNodesForAll();
    int UserNode() const;
    std::pair<int, QString> NodeOfProposal(const RunToPropose& run);
    void ShowProposal();
    QString PlacesOf(const DelayEvent& event) const;
    QString ProposalInWords(const RunToPropose& run, int node, const QString& reason) const;
    void UseProposal();
    void TakeProposalAway();
    /// Takes it away and proposes for no other run.
    void HideProposal();
    void GoOnProposing();

    void Toggle();
    void CutToBoundaries();
    void ChooseScale(int item, double anchor);
    void Zoom(int steps, double anchor);
    void Scroll(double axisValues);
    void CopyPicture();
    void SavePicture();

    NumberBox& BoxOf(ProfileLine line);
    /// What stands in a line's box, in its unit: 0 for none; nothing when it cannot be one.
    std::optional<std::int32_t> Typed(ProfileLine line);
    void TakeTyped(ProfileLine line);
    /// Takes over what was typed without Enter, or puts the old value back.
    void LeaveBox(ProfileLine line);
    void Place(ProfileLine line, std::int32_t typed);
    /// Lets the line go that a box has moved, and computes.
    void EndMove(bool quietly);
    bool ComputesOnInput() const { return profile_.Drag().IsReady() || profile_.HasBothBoundaries(); }
    bool MayClose();

    /// Keeps what was done to a line as one step that can be taken back.
    void Record(ProfileLine line);
    void Record(const QString& text);
    void Show(const Document& document);
    Document Now() { return {visits_.Entry(), profile_.Plot(), isComputed_}; }

    /// Shows the profile along its axis as it is now and, where both boundaries are set, computes the run.
    void Draw();
    void ShowAxis();
    void ShowScrollBar();
    void ShowFigures();
    void ShowBoxes();
    /// Tells of boundaries with which the figures mean nothing, and of the error of a computation.
    void ShowWarning();
    void ShowIdealSpeed();
    void ShowReadiness();
    void ShowReadOut(std::optional<double> x);

    /// Computes the run; errors pass through after the figures are shown.
    void Compute();
    /// Computes the run; an error is shown as a warning only, so that no message box opens under the mouse.
    void ComputeQuietly();

    AppContext& context_;
    RunRecord& run_;
    ProfileVisits visits_;
    SpeedProfile profile_;
    SpeedProfileControls controls_;
    /// While boundaries are proposed.
    struct Proposing {
        int UserNode = 0;  ///< that the user chose, from 1; 0 for none
        /// The node that the runs of the study speak for and why, once they were asked.
        std::optional<std::pair<int, QString>> Study;
    };
    std::optional<Proposing> proposing_;
    std::optional<ProposedBoundaries> proposal_;
    QUndoGroup undo_;
    std::map<int, QUndoStack*> stacks_;  ///< by run
    Document settled_;                   ///< after the last step
    bool anyIsReady_ = false;            ///< both releases were made on a run of this visit
    bool isComputed_ = false;
    QString problem_;  ///< the error of the last computation
    QAction* mnuCopyPicture_ = nullptr;
    QAction* mnuSavePicture_ = nullptr;
    QAction* mnuUseForAll_ = nullptr;
    QAction* mnuUseForSelected_ = nullptr;
    QAction* mnuNextRun_ = nullptr;
    QAction* mnuPreviousRun_ = nullptr;
};

}  // namespace vantor
