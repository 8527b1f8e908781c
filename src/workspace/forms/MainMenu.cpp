#include "workspace/forms/MainMenu.h"

#include <QMenuBar>
#include <QMouseEvent>
#include <QToolBar>
#include <algorithm>
#include <map>

#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

/// Tells of clicks on its separators too.
class MainToolBar : public QToolBar {
public:
    using QToolBar::QToolBar;
    std::function<void(QAction*)> OnSeparatorClick;

protected:
    void mouseReleaseEvent(QMouseEvent* event) override {
        QToolBar::mouseReleaseEvent(event);
        QAction* action = actionAt(event->position().toPoint());
        if (event->button() == Qt::LeftButton && action != nullptr && action->isSeparator()) OnSeparatorClick(action);
    }
};

QString ToolTipOf(const MenuEntry& entry) {
    QString tip = WithoutAccessKey(QString::fromLatin1(*entry.Tip != '\0' ? entry.Tip : entry.Caption));
    if (!entry.Shortcut.isEmpty())
        tip += QStringLiteral(" (%1)").arg(entry.Shortcut.toString(QKeySequence::NativeText));
    return tip;
}

QMenu* MenuNamed(QMainWindow& window, const QString& title) {
    for (QAction* action : window.menuBar()->actions())
        if (action->text() == title) return action->menu();
    QMenu* menu = window.menuBar()->addMenu(title);
    menu->setObjectName(QLatin1String("mnu") + WithoutAccessKey(title));
    menu->setAccessibleName(WithoutAccessKey(title));
    menu->setToolTipsVisible(true);
    return menu;
}

}  // namespace

MainMenu::MainMenu(QMainWindow& window, AppContext& context, std::vector<MenuEntry> entries, QWidget& runList)
    : QObject(&window), context_(context), entries_(std::move(entries)), runList_(runList) {
    BuildMenus(window);
    BuildToolbar(window);
}

void MainMenu::BuildMenus(QMainWindow& window) {
    for (const MenuEntry& entry : entries_) {
        QMenu* menu = MenuNamed(window, QString::fromLatin1(entry.Menu));
        if (*entry.Caption == '\0')
            menu->addSeparator();
        else if (entry.Fill)
            AddSubmenu(*menu, entry);
        else
            menu->addAction(MakeAction(entry));
    }
}

QAction* MainMenu::MakeAction(const MenuEntry& entry) {
    auto* action = new QAction(QString::fromLatin1(entry.Caption), this);
    if (*entry.Icon != '\0') action->setIcon(LineIcon(QLatin1String(entry.Icon)));
    action->setObjectName(QLatin1String(entry.Name));
    action->setShortcut(entry.Shortcut);
    if (entry.IsKeyOfRunList) action->setShortcutContext(Qt::WidgetShortcut);
    if (*entry.ToolbarText != '\0') action->setIconText(QString::fromLatin1(entry.ToolbarText));
    action->setToolTip(ToolTipOf(entry));
    action->setCheckable(static_cast<bool>(entry.Switch));
    Connect(action, &QAction::triggered, this, context_.Messages,
            [&entry](bool isOn) { entry.Switch ? entry.Switch(isOn) : entry.Handler(); });
    if (entry.IsKeyOfRunList) runList_.addAction(action);
    return action;
}

void MainMenu::AddSubmenu(QMenu& menu, const MenuEntry& entry) {
    QMenu* submenu = menu.addMenu(QString::fromLatin1(entry.Caption));
    if (*entry.Icon != '\0') submenu->setIcon(LineIcon(QLatin1String(entry.Icon)));
    submenu->setObjectName(QLatin1String(entry.Name));
    submenu->setAccessibleName(WithoutAccessKey(submenu->title()));
    submenu->setToolTipsVisible(true);
    Connect(submenu, &QMenu::aboutToShow, this, context_.Messages, [&entry, submenu] {
        submenu->clear();
        entry.Fill(*submenu);
    });
}

void MainMenu::BuildToolbar(QMainWindow& window) {
    auto* toolbar = new MainToolBar(QStringLiteral("Toolbar"), &window);
    toolbar->setObjectName(QStringLiteral("tbrMain"));
    toolbar->setAccessibleName(QStringLiteral("Toolbar"));
    toolbar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    toolbar->setMovable(false);
    toolbar->setContextMenuPolicy(Qt::PreventContextMenu);
    window.addToolBar(toolbar);
    toolbar_ = toolbar;

    std::map<int, const MenuEntry*> byIndex;
    for (const MenuEntry& entry : entries_)
        if (entry.ToolbarIndex != 0) byIndex[entry.ToolbarIndex] = &entry;
    const int last = byIndex.empty() ? 0 : byIndex.rbegin()->first;
    for (int index = 1; index <= last; ++index) {
        const auto found = byIndex.find(index);
        if (found == byIndex.end()) {
            toolbar->addSeparator();
            continue;
        }
        QAction& action = Command(found->second->Name);
        toolbar->addAction(&action);
        QWidget* button = toolbar->widgetForAction(&action);
        button->setObjectName(QStringLiteral("tbrMain(%1)").arg(index));
        button->setAccessibleName(WithoutAccessKey(action.text()));
    }
    toolbar->OnSeparatorClick = [this, toolbar](QAction* separator) {
        const int index = static_cast<int>(toolbar->actions().indexOf(separator)) + 1;
        Guarded(context_.Messages, [&] { ToolbarButtonClick(index); });
    };
}

void MainMenu::SetToolBarLow(bool isLow) {
    toolbar_->setToolButtonStyle(isLow ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonTextUnderIcon);
}

void MainMenu::ToolbarButtonClick(int index) {
    const auto entry = std::find_if(entries_.begin(), entries_.end(), [index](const MenuEntry& candidate) {
        return index > 0 && candidate.ToolbarIndex == index;
    });
    if (entry != entries_.end()) return entry->Handler();
    context_.DesktopServices.Beep();
    context_.Messages.Tell("This feature is not working yet.");
}

QAction& MainMenu::Command(const char* name) const { return *findChild<QAction*>(QLatin1String(name)); }

QList<QAction*> MainMenu::CommandsOf(const char* menu) const {
    return MenuNamed(*static_cast<QMainWindow*>(parent()), QString::fromLatin1(menu))->actions();
}

void MainMenu::Enable(CommandNeeds needs, bool enabled) {
    for (const MenuEntry& entry : entries_)
        if (entry.Needs == needs && !entry.Fill) Command(entry.Name).setEnabled(enabled);
}

void MainMenu::Attach(QPushButton& button, const char* command) const {
    QAction& action = Command(command);
    button.setToolTip(action.toolTip());
    QObject::connect(&button, &QPushButton::clicked, &action, &QAction::trigger);
    const auto follow = [&button, &action] { button.setEnabled(action.isEnabled()); };
    QObject::connect(&action, &QAction::enabledChanged, &button, follow);
    follow();
}

}  // namespace vantor
