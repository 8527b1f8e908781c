#pragma once

#include <QAction>
#include <QKeySequence>
#include <QMainWindow>
#include <functional>
#include <map>
#include <vector>

#include "core/AppContext.h"

namespace vantor {

/// One command of the main window: where it stands and what it does.
struct MenuEntry {
    const char* Menu;  ///< empty for a command of the toolbar alone
    const char* Name;  ///< object name of its menu entry
    const char* Caption;
    const char* Icon;
    QKeySequence Shortcut = {};
    int ToolbarIndex = 0;          ///< 0 for none
    const char* ToolbarText = "";  ///< the short caption of its toolbar button
    std::function<void()> Handler = {};
};

/// Builds the menu bar and the toolbar of a window from one table of commands and runs them.
class MainMenu : public QObject {
public:
    /// Entries stand in their menus in the order of the table; one without a caption is a separator. Toolbar indexes
    /// without an entry, up to the last one, are separators.
    MainMenu(QMainWindow& window, AppContext& context, std::vector<MenuEntry> entries);

    /// The one way in for the toolbar. An index that no command has beeps and says so.
    void ToolbarButtonClick(int index);
    void SetToolbarButtonEnabled(int index, bool enabled);
    /// The commands of a menu by its title, in order, without separators.
    QList<QAction*> CommandsOf(const char* menu) const;

private:
    void BuildMenus(QMainWindow& window);
    void BuildToolbar(QMainWindow& window);
    QAction* MakeAction(const MenuEntry& entry);

    AppContext& context_;
    std::vector<MenuEntry> entries_;
    std::map<int, QAction*> toolbarActions_;
};

}  // namespace vantor
