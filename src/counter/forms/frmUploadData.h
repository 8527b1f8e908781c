#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <optional>
#include <string>
#include <vector>

#include "core/AppContext.h"
#include "core/Choices.h"
#include "core/forms/FolderTree.h"
#include "core/forms/LongList.h"
#include "counter/forms/RunTable.h"
#include "counter/forms/RunTemplateBox.h"
#include "counter/modUpload.h"

namespace vantor {

/// Gives the runs of the temporary runs folder their names and moves them into Study Groups. A counter file to convert
/// is converted into that folder first, once.
class frmUploadData : public QDialog {
public:
    explicit frmUploadData(AppContext& context, const Upload& upload = {});

    /// What was moved last, where the user wants it in the study.
    RunsForStudy ForStudy() const;

protected:
    void showEvent(QShowEvent* event) override;

private:
    QGroupBox* BuildDirections();
    QGroupBox* BuildTemplate();
    QGroupBox* BuildRunList();
    QGroupBox* BuildStudyGroups();
    QLayout* BuildButtons();
    void ConnectControls();

    void Convert(const CounterFileChoice& file);
    void ShowLastGroup();
    void NoteMoved(const std::vector<std::string>& names);
    void ListRuns();
    /// Shows what follows from the runs that are listed, under the names that they have now.
    void ShowRuns();
    std::vector<std::string> SelectedNames();
    std::size_t CountToRename() const;
    /// Shows what is offered for the template's fields.
    void ShowOffers();
    /// The direction of the runs that are selected, of all where none is; empty where their logs tell none or several.
    std::string DirectionOfRuns() const;
    /// The names of the current Study Group's runs, listed anew where `groupListed_` is another one.
    const std::vector<std::string>& RunsOfGroup();
    /// The lowest number from which so many names of the template are taken neither in the Study Group nor in the
    /// temporary runs folder; empty where there is none.
    std::string FreeNumber(std::size_t count);

    bool OffersUndo() const;
    void OfferUndo(bool undo);
    void Rename(RunNameTemplate parts);
    void RenameThese();
    void Undo();
    void DeleteSelected();
    void MoveSelected();
    void MakeGroup();
    void ShowGroupDetails();

    std::string TempFolder() const;
    std::string GroupName() const;

    AppContext& context_;
    const UploadOf uploadOf_;
    std::string currentGroup_;         ///< the Study Group chosen or made last
    std::vector<std::string> stayed_;  ///< of the last move, for the Study Group had runs of their names
    std::optional<std::string> groupListed_;
    std::vector<std::string> runsOfGroup_;  ///< of that one

    RunTemplateBox* fraTemplate_ = nullptr;
    LongList* vaSelRuns_ = nullptr;
    std::optional<RunTable> shownRuns_;
    QPushButton* btnRename_ = nullptr;
    QPushButton* BtnDelete_ = nullptr;
    QLabel* lblStayed_ = nullptr;
    QPushButton* btnRenameThese_ = nullptr;
    FolderTree* treSDFPath_ = nullptr;
    QLineEdit* TxtStudyGroup_ = nullptr;
    QPushButton* btnStudyGroupDetails_ = nullptr;
    QPushButton* btnMoveRuns_ = nullptr;
    QCheckBox* chkForStudy_ = nullptr;
    RunsForStudy moved_;
    QPushButton* btnUploadOk_ = nullptr;
    QPushButton* btnUploadCancel_ = nullptr;
};

}  // namespace vantor
