#pragma once

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <string>
#include <vector>

#include "core/AppContext.h"
#include "core/Choices.h"
#include "core/forms/FolderTree.h"
#include "core/forms/Table.h"
#include "gpsobd/LogScreens.h"
#include "gpsobd/forms/LogListing.h"

namespace vantor {

/// The selection screen of a format of logs, under the name of that format's form. The logs are listed, and the screens
/// of the handhelds offer to copy one from the device, when the screen is first shown.
class LogSelect : public QDialog {
public:
    LogSelect(AppContext& context, const LogFormat& format);
    /// When it was accepted.
    const LogChoice& Choice() const { return choice_; }
    void done(int result) override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* BuildFolders();
    QWidget* BuildLogs();
    void SetColumnWidths();
    QLayout* BuildButtons();
    void ConnectControls();

    void Load();
    void OfferCopy();
    void DelayXMsec(std::int16_t milliseconds);
    void OpenFieldDataFolder();
    void ListFolder(const std::string& folder);
    void AddRow(const std::string& fileName);
    void ShowLog(const ListedLog& log);
    void SetSummary(int row, const LogSummary& summary);
    void SetNote(int row, const QString& note);
    void TellUnreadable();
    void ShowNote();
    LogColumn ColumnAt(int column) const;
    int ColumnOf(LogColumn shows) const;
    int SelectedRow() const;
    const LogFileType& FileTypeAt(int row) const;
    void Select();

    AppContext& context_;
    const LogFormat& format_;
    const LogScreen& screen_;
    LogListing listing_;
    FolderTree* tree_ = nullptr;
    Table* grid_ = nullptr;
    QLabel* lblNote_ = nullptr;
    QLabel* lblProgress_ = nullptr;
    QPushButton* BtnSelect_ = nullptr;
    QPushButton* BtnCancel_ = nullptr;
    LogChoice choice_;
    QString emptyText_;
    std::vector<NamedText> unreadable_;  ///< databases of the folder, in the order they were read
    bool isLoaded_ = false;
};

}  // namespace vantor
