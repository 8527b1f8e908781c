#include "counter/forms/DeletionList.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "core/Text.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"

namespace vantor {
namespace {

constexpr int NameRole = Qt::UserRole;

}  // namespace

DeletionList::DeletionList(QWidget* parent, const char* tableName, const QString& counted, PendingDeletions pending)
    : QGroupBox(parent), table_(Named<Table>(this, tableName)), counted_(counted), pending_(std::move(pending)) {
    (new QVBoxLayout(this))->addWidget(table_);
    ShowCount();
}

int DeletionList::AddFile(const std::string& name) {
    const int row = table_->AddRow();
    table_->SetText(row, 0, ToQt(std::string(TrimRight(name)) + " "));
    table_->item(row, 0)->setData(NameRole, ToQt(name));
    return row;
}

void DeletionList::EndFilling() {
    table_->EndFilling();
    ShowCount();
}

std::string DeletionList::NameAt(int row) const { return FromQt(table_->item(row, 0)->data(NameRole).toString()); }

void DeletionList::TakeOff(const std::vector<int>& rows) {
    if (rows.empty()) return;
    for (const int row : rows) pending_.Take(NameAt(row));
    for (auto row = rows.rbegin(); row != rows.rend(); ++row) table_->removeRow(*row);
    table_->clearSelection();
    table_->SetEmptyText(QStringLiteral("All files are taken off the list. OK deletes them, Cancel keeps them."));
    ShowCount();
}

void DeletionList::DeleteTaken(LongWork& work, MessageBoxes& messages) {
    TakeOff(table_->SelectedRows());
    pending_.DeleteAll(work, messages);
}

void DeletionList::ShowCount() {
    const QString text = QString::number(table_->rowCount()) + counted_ + ToQt(Folder());
    setTitle(QString(text).replace('&', QStringLiteral("&&")));
    setAccessibleName(text);
    table_->setAccessibleName(text);
}

QLayout* DeletionButtons(QDialog& dialog, AppContext& context, HelpTopic topic, DeletionList& list) {
    auto* ok = Named<QPushButton>(&dialog, "btnOk", QStringLiteral("&OK"));
    auto* cancel = Named<QPushButton>(&dialog, "BtnCancel", QStringLiteral("Cancel"));
    Connect(ok, &QPushButton::clicked, &dialog, context.Messages, [&dialog, &context, &list] {
        list.DeleteTaken(context.Work, context.Messages);
        dialog.accept();
    });
    Connect(cancel, &QPushButton::clicked, &dialog, context.Messages, [&dialog] { dialog.reject(); });
    auto* row = new QHBoxLayout;
    row->addWidget(HelpButton(dialog, context, topic));
    row->addStretch();
    row->addWidget(ok);
    row->addWidget(cancel);
    return row;
}

}  // namespace vantor
