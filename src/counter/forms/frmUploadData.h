#pragma once

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
#include "counter/modUpload.h"

namespace vantor {

/// Gives the runs of the temporary runs folder their names and moves them into Study Groups. A counter file to convert
/// is converted into that folder first, once.
class frmUploadData : public QDialog {
public:
    explicit frmUploadData(AppContext& context, const Upload& upload = {});

private:
    QGroupBox* BuildDirections();
    QGroupBox* BuildTemplate();
    QGroupBox* BuildRunList();
    QGroupBox* BuildStudyGroups();
    QLayout* BuildButtons();
    void ConnectControls();

    void Convert(const CounterFileChoice& file);
    void ListRuns();
    void ShowNames();
    std::vector<UploadRun*> SelectedRuns();
    std::vector<std::string> SelectedNames();
    RunNameTemplate Template() const;
    void ShowNextName();

    bool OffersUndo() const;
    void OfferUndo(bool undo);
    void Rename();
    void Undo();
    void DeleteSelected();
    void MoveSelected();
    void MakeGroup();
    void ShowGroupDetails();

    std::string TempFolder() const;
    std::string GroupName() const;

    AppContext& context_;
    const UploadOf uploadOf_;
    std::vector<UploadRun> runs_;  ///< in the order of the listing; rows refer to them by index
    std::string currentGroup_;     ///< the Study Group chosen or made last

    QLineEdit* txtTemplateBaseName_ = nullptr;
    QLineEdit* txtTemplateDir_ = nullptr;
    QLineEdit* txtTemplateRunNumber_ = nullptr;
    QLabel* lblNextName_ = nullptr;
    QPushButton* BtnEditTemplate_ = nullptr;
    LongList* vaSelRuns_ = nullptr;
    std::optional<RunTable> shownRuns_;
    QPushButton* btnRename_ = nullptr;
    QPushButton* BtnDelete_ = nullptr;
    FolderTree* treSDFPath_ = nullptr;
    QLineEdit* TxtStudyGroup_ = nullptr;
    QPushButton* btnStudyGroupDetails_ = nullptr;
    QPushButton* btnMoveRuns_ = nullptr;
    QPushButton* btnUploadOk_ = nullptr;
    QPushButton* btnUploadCancel_ = nullptr;
};

}  // namespace vantor
