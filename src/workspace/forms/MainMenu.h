#pragma once

#include <QAction>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <functional>
#include <vector>

#include "core/AppContext.h"

class QToolBar;

namespace vantor {

/// When a command can be done.
enum class CommandNeeds { Nothing, ARun, Undo, Redo };

/// One command of the main window: where it stands and what it does.
struct MenuEntry {
    const char* Menu;
    const char* Name;  ///< of its action
    const char* Caption;
    const char* Icon;
    QKeySequence Shortcut = {};
    int ToolbarIndex = 0;          ///< 0 for none
    const char* ToolbarText = "";  ///< the short caption of its toolbar button
    std::function<void()> Handler = {};
    CommandNeeds Needs = CommandNeeds::Nothing;
    bool IsKeyOfRunList = false;                 ///< the shortcut is one of the run list alone
    const char* Tip = "";                        ///< what it does, where the caption does not say it
    std::function<void(QMenu& menu)> Fill = {};  ///< of a submenu, each time before it opens
    std::function<void(bool isOn)> Switch = {};  ///< of a command that is on or off, in the place of its handler
};

/// Builds the menu bar and the toolbar of a window from one table of commands and runs them. Each command has one
/// action, which menu, toolbar, context menu and buttons share.
class MainMenu : public QObject {
public:
    /// Entries stand in their menus in the order of the table; one without a caption is a separator. Toolbar indexes
    /// without an entry, up to the last one, are separators. Keys of the run list go to `runList`.
    MainMenu(QMainWindow& window, AppContext& context, std::vector<MenuEntry> entries, QWidget& runList);

    /// The one way in for the toolbar. An index that no command has beeps and says so.
    void ToolbarButtonClick(int index);
    /// The action of that name.
    QAction& Command(const char* name) const;
    /// The actions of a menu by its title, in order, with its separators.
    QList<QAction*> CommandsOf(const char* menu) const;
    void Enable(CommandNeeds needs, bool enabled);
    /// The captions of the toolbar's buttons beside their icons, which needs less height, or below them.
    void SetToolBarLow(bool isLow);
    /// Makes a button do a command, under a caption of its own.
    void Attach(QPushButton& button, const char* command) const;

private:
    void BuildMenus(QMainWindow& window);
    void BuildToolbar(QMainWindow& window);
    QAction* MakeAction(const MenuEntry& entry);
    void AddSubmenu(QMenu& menu, const MenuEntry& entry);

    AppContext& context_;
    std::vector<MenuEntry> entries_;
    QWidget& runList_;
    QToolBar* toolbar_ = nullptr;
};

}  // namespace vantor
