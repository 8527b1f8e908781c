#include "core/forms/FolderTree.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QStyle>
#include <algorithm>

#include "core/Paths.h"
#include "core/Text.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/modMain.h"

namespace vantor {
namespace {

constexpr int PathRole = Qt::UserRole;
constexpr int FilledRole = Qt::UserRole + 1;

std::string PathOf(const QTreeWidgetItem* item) { return FromQt(item->data(0, PathRole).toString()); }

}  // namespace

FolderTree::FolderTree(QWidget* parent) : QTreeWidget(parent) {
    setHeaderHidden(true);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setStretchLastSection(false);
    setUniformRowHeights(true);
    connect(this, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem* item) { Fill(item); });
    connect(this, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        if (item != nullptr && !selecting_ && OnChosen) OnChosen(PathOf(item));
    });
}

void FolderTree::SetRoot(const FileSystem& files, const std::string& root) {
    files_ = &files;
    selecting_ = true;
    clear();
    if (FolderExists(files, root)) {
        const std::string folder = AsFolder(root);
        AddFolder(nullptr, folder, LastComponent(folder))->setExpanded(true);
    }
    selecting_ = false;
}

QTreeWidgetItem* FolderTree::AddFolder(QTreeWidgetItem* parent, const std::string& path, const std::string& name) {
    auto* item = parent == nullptr ? new QTreeWidgetItem(this) : new QTreeWidgetItem(parent);
    item->setText(0, ToQt(name.empty() ? path : name));
    item->setToolTip(0, ToQt(path));
    item->setIcon(0, LineIcon(QStringLiteral("study-group")));
    item->setData(0, PathRole, ToQt(path));
    item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    return item;
}

void FolderTree::Fill(QTreeWidgetItem* item) {
    if (item->data(0, FilledRole).toBool()) return;
    item->setData(0, FilledRole, true);
    const std::string folder = PathOf(item);
    // A folder that may not be read shows as an empty one.
    std::vector<FileInfo> entries;
    try {
        entries = files_->List(folder);
    } catch (const RunTimeError&) {
        item->setToolTip(0, QStringLiteral("This folder cannot be read."));
    }
    for (const FileInfo& info : entries)
        if (info.IsFolder && !info.IsHidden) AddFolder(item, AsFolder(folder + info.Name), info.Name);
    if (item->childCount() == 0) item->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicator);
}

bool FolderTree::SelectFolder(const std::string& folder) {
    const std::string wanted = FoldCase(AsFolder(folder));
    QTreeWidgetItem* item = topLevelItem(0);
    if (item == nullptr) return false;
    while (FoldCase(PathOf(item)) != wanted) {
        Fill(item);
        QTreeWidgetItem* next = nullptr;
        for (int i = 0; i < item->childCount() && next == nullptr; ++i)
            if (wanted.starts_with(FoldCase(PathOf(item->child(i))))) next = item->child(i);
        if (next == nullptr) return false;
        item->setExpanded(true);
        item = next;
    }
    selecting_ = true;
    setCurrentItem(item);
    selecting_ = false;
    return true;
}

void FolderTree::ShowCurrent() {
    if (currentItem() == nullptr) return;
    doItemsLayout();
    scrollToItem(currentItem(), PositionAtCenter);
    // The column is as wide as its longest name: its middle need not be where this name is.
    const int begin = visualItemRect(currentItem()).left() + horizontalOffset();
    const int end = begin + sizeHintForIndex(currentIndex()).width();
    horizontalScrollBar()->setValue(std::clamp(end - viewport()->width(), 0, begin));
}

std::string FolderTree::SelectedFolder() const {
    return currentItem() == nullptr ? std::string() : PathOf(currentItem());
}

}  // namespace vantor
