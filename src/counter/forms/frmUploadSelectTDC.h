#pragma once

#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <string>
#include <vector>

#include "core/AppContext.h"
#include "core/forms/FolderTree.h"
#include "core/forms/Table.h"
#include "counter/CounterFile.h"

namespace vantor {

/// Chooses the counter file to convert. The choice stands in the state: CounterFileChosen with the file's folder and
/// name. Any way out but Select clears CounterFileChosen.
class frmUploadSelectTDC : public QDialog {
public:
    explicit frmUploadSelectTDC(AppContext& context);
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct ListedFile {
        std::string Name;  ///< without extension
        std::vector<CounterStudy> Studies;
        std::string Problem;  ///< why the file could not be counted; empty when it was
    };

    QWidget* BuildFolders();
    QWidget* BuildFiles();
    QGroupBox* BuildDetails();
    QLayout* BuildButtons();
    void ConnectControls();

    void OpenFieldDataFolder();
    void ListFolder(const std::string& folder);
    ListedFile Counted(const std::string& folder, const std::string& name) const;
    void ShowFile(const ListedFile& file, int index);
    const ListedFile* SelectedFile() const;
    void ShowStudies();
    void Select();

    AppContext& context_;
    FolderTree* treTDCPath_ = nullptr;
    Table* vaSelTDCFile_ = nullptr;
    Table* vaStudyInfo_ = nullptr;
    QLabel* lblProblem_ = nullptr;
    QPushButton* BtnSelect_ = nullptr;
    QPushButton* BtnCancel_ = nullptr;
    QPushButton* cmdHelp_ = nullptr;
    std::string folder_;
    std::vector<ListedFile> listed_;
};

}  // namespace vantor
