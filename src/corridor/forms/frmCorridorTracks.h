#pragma once

#include <QComboBox>
#include <QDialog>
#include <QPushButton>
#include <optional>
#include <string>
#include <vector>

#include "core/AppContext.h"
#include "core/forms/TickList.h"
#include "corridor/forms/CorridorDocument.h"
#include "gpsobd/CorridorTracks.h"

namespace vantor {

/// "Passes of Tracks": the passes along a corridor that track files give, each a row with what is to be looked at, and
/// where the ticked ones are to go. Writes nothing.
class frmCorridorTracks : public QDialog {
public:
    /// `groups` are the Study Groups that there are, `group` the one proposed.
    frmCorridorTracks(AppContext& context, const CorridorTracks& tracks, const std::vector<std::string>& groups,
                      const std::string& group, QWidget* parent = nullptr);

    std::vector<CorridorTrack> Taken() const;
    std::string Group() const;
    bool AreBefore() const { return cmbCondition_->currentIndex() == 0; }

    void done(int result) override;

private:
    void FillList();
    QLayout* BuildTarget(const std::vector<std::string>& groups, const std::string& group);

    AppContext& context_;
    const CorridorTracks& tracks_;
    TickList* vaPasses_ = nullptr;
    QComboBox* cmbGroup_ = nullptr;
    QComboBox* cmbCondition_ = nullptr;
};

/// Asks for track files, and takes their passes into a copy of the corridor, which must have a name: nothing where the
/// user takes none. The runs are written.
std::optional<Corridor> ImportPasses(const CorridorDocument& document, QWidget* parent);

}  // namespace vantor
