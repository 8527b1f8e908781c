#include "editing/forms/NodeTable.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyledItemDelegate>

#include "core/Numeric.h"
#include "core/forms/Named.h"
#include "core/forms/TableColumns.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

constexpr int ColourlessRole = Qt::UserRole;  ///< true for a cell that keeps its own colours when it is active

/// The editor of a cell: no more characters than are kept.
class NodeDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const override {
        auto* editor = new QLineEdit(parent);
        editor->setFrame(false);
        editor->setMaxLength(static_cast<int>(NodeNameWidth));
        const bool isName = index.column() == NodeTable::Name;
        if (!isName) editor->setAlignment(Qt::AlignRight);
        editor->setAccessibleName(isName ? QStringLiteral("Node name") : QStringLiteral("Distance"));
        return editor;
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.data(ColourlessRole).toBool()) option->state &= ~QStyle::State_Selected;
    }
};

}  // namespace

class NodeModel : public QAbstractTableModel {
public:
    explicit NodeModel(QWidget* view) : QAbstractTableModel(view), view_(view) {}

    void SetDetails(RunDetails& details) { details_ = &details; }
    void Refresh() {
        beginResetModel();
        endResetModel();
    }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() || details_ == nullptr ? 0 : static_cast<int>(details_->Rows().size());
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : NodeTable::ColumnCount;
    }

    Qt::ItemFlags flags(const QModelIndex& index) const override {
        const bool isNamed = index.column() == NodeTable::Name && index.row() < MostNamedNodes;
        const bool isOpen = isNamed || IsUnlocked(index);
        return QAbstractTableModel::flags(index) | (isOpen ? Qt::ItemIsEditable : Qt::NoItemFlags);
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal) return {};
        if (role == Qt::TextAlignmentRole) return AlignmentOf(section);
        if (role != Qt::DisplayRole) return {};
        switch (section) {
            case NodeTable::Number: return QStringLiteral("#");
            case NodeTable::Name: return QStringLiteral("Node Name");
            case NodeTable::Second: return QStringLiteral("Time (s)");
            default: return QStringLiteral("Distance ") + ToQt(ShownUnits().LengthTitle());
        }
    }

    QVariant data(const QModelIndex& index, int role) const override {
        switch (role) {
            case Qt::DisplayRole: return Shown(index);
            case Qt::EditRole: return IsUnlocked(index) ? ToQt(RowAt(index).TypedDistance) : Shown(index);
            case Qt::TextAlignmentRole: return AlignmentOf(index.column());
            case Qt::BackgroundRole: return Background(index);
            case Qt::ForegroundRole:
                return IsUnlocked(index) ? QVariant(Ink(ColoursOf(view_->palette()).Unlocked.Text)) : QVariant();
            case Qt::ToolTipRole:
                return IsUnlocked(index) ? QStringLiteral("Type the distance from the start of the run in ") +
                                               QLatin1String(ShownUnits().LengthLabel())
                                         : QVariant();
            case ColourlessRole: return IsUnlocked(index);
            default: return {};
        }
    }

    bool setData(const QModelIndex& index, const QVariant& value, int role) override {
        if (role != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable)) return false;
        const std::string text = FromQt(value.toString());
        if (index.column() == NodeTable::Name)
            details_->SetNodeName(index.row(), text);
        else
            details_->SetTypedDistance(index.row(), text);
        emit dataChanged(index, index);
        return true;
    }

private:
    static int AlignmentOf(int column) {
        return static_cast<int>((column == NodeTable::Name ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    }
    const NodeRow& RowAt(const QModelIndex& index) const {
        return details_->Rows().at(static_cast<std::size_t>(index.row()));
    }
    bool IsUnlocked(const QModelIndex& index) const {
        return index.column() == NodeTable::Distance && RowAt(index).IsInserted;
    }
    Units ShownUnits() const { return details_ != nullptr ? details_->Units() : Units(); }

    QVariant Background(const QModelIndex& index) const {
        if (IsUnlocked(index)) return Ink(ColoursOf(view_->palette()).Unlocked.Background);
        return index.column() == NodeTable::Name ? QVariant() : QVariant(view_->palette().color(QPalette::Window));
    }

    QString Shown(const QModelIndex& index) const {
        const NodeRow& row = RowAt(index);
        switch (index.column()) {
            case NodeTable::Number: return QString::number(index.row() + 1);
            case NodeTable::Name: return ToQt(row.Name);
            case NodeTable::Second: return row.IsInserted ? QString() : QString::number(row.Sample);
            default: break;
        }
        if (!row.IsInserted) return ToQt(details_->Units().LengthCell(row.Feet));
        return row.TypedDistance.empty() ? QStringLiteral("type it") : ToQt(row.TypedDistance);
    }

    QWidget* view_;
    RunDetails* details_ = nullptr;
};

NodeTable::NodeTable(QWidget* parent) : QTableView(parent), model_(new NodeModel(this)) {
    setModel(model_);
    setItemDelegate(new NodeDelegate(this));
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                    QAbstractItemView::AnyKeyPressed);
    setTabKeyNavigation(false);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    horizontalHeader()->setHighlightSections(false);
    const int digit = fontMetrics().horizontalAdvance(QLatin1Char('0'));
    setColumnWidth(Number, 6 * digit);
    setColumnWidth(Second, 11 * digit);
    setColumnWidth(Distance, 16 * digit);
    horizontalHeader()->setSectionResizeMode(Name, QHeaderView::Stretch);
    new TableColumns(*this);
}

void NodeTable::SetDetails(RunDetails& details) {
    model_->SetDetails(details);
    Refresh();
}

void NodeTable::Refresh() {
    const QModelIndex active = currentIndex();
    model_->Refresh();
    const int row = std::clamp(active.row(), 0, std::max(model_->rowCount() - 1, 0));
    setCurrentIndex(model_->index(row, active.isValid() ? active.column() : Name));
}

int NodeTable::ActiveRow() const { return currentIndex().row(); }

void NodeTable::Activate(int row, Column column) {
    setCurrentIndex(model_->index(row, column));
    setFocus();
}

void NodeTable::Edit(int row, Column column) {
    Activate(row, column);
    edit(currentIndex());
}

void NodeTable::CommitEditor() {
    for (auto* editor : viewport()->findChildren<QLineEdit*>()) {
        // One that was closed lives hidden until the event loop deletes it.
        if (editor->isHidden()) continue;
        commitData(editor);
        closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
}

void NodeTable::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) return QTableView::keyPressEvent(event);
    if (state() != EditingState && currentIndex().flags().testFlag(Qt::ItemIsEditable)) edit(currentIndex());
    event->accept();
}

}  // namespace vantor
