#pragma once

#include <QDialog>
#include <QLabel>
#include <QTabWidget>

#include "core/AppContext.h"
#include "workspace/forms/PrefsDefaultsTab.h"
#include "workspace/forms/PrefsPathTab.h"
#include "workspace/forms/PrefsReportTab.h"

namespace vantor {

/// Edits the settings and saves them on OK, all or nothing. A new Study Group root takes effect at the next start, and
/// so do the unit labels; RestartWanted is set when the user wants that start now.
class frmPrefs : public QDialog {
public:
    explicit frmPrefs(AppContext& context);

private:
    QWidget* BuildNextStart();
    void ShowNextStart();
    Preferences Chosen() const;
    // False where the user stays.
    bool RemindOfRoot();
    bool OfferMissingFolders(const Preferences& preferences);
    bool MakesFolder(const std::string& folder);
    void Save(bool restarts);

    AppContext& context_;
    QTabWidget* tabPrefs_;
    PrefsPathTab* paths_;
    PrefsDefaultsTab* defaults_;
    PrefsReportTab* reports_;
    QWidget* fraNextStart_ = nullptr;
    QLabel* lblNextStart_ = nullptr;
};

}  // namespace vantor
