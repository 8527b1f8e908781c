#pragma once

#include <QDialog>
#include <QGroupBox>
#include <functional>
#include <string>
#include <vector>

#include "core/AppContext.h"
#include "core/HelpTopics.h"
#include "core/forms/Table.h"
#include "counter/CleanUp.h"

namespace vantor {

/// A frame with a list of files, from which the user takes those to delete. Its title counts the files that are left.
class DeletionList : public QGroupBox {
public:
    /// `counted` stands between the number of files and their folder in the title.
    DeletionList(QWidget* parent, const char* tableName, const QString& counted, PendingDeletions pending);

    Table& Files() { return *table_; }
    const std::string& Folder() const { return pending_.Folder(); }

    /// Adds a row with the name of a file, without its extension, in the first column; returns its number. Between
    /// BeginFilling and EndFilling.
    int AddFile(const std::string& name);
    void EndFilling();
    /// The file of a row, without its extension.
    std::string NameAt(int row) const;

    /// Takes rows, from top to bottom, off the list. Their files wait for DeleteTaken.
    void TakeOff(const std::vector<int>& rows);
    /// Takes the rows that are still selected off, too, and deletes all files that were taken off.
    void DeleteTaken(LongWork& work, MessageBoxes& messages);

private:
    void ShowCount();

    Table* table_;
    QString counted_;
    PendingDeletions pending_;
};

/// The foot of a window that deletes files: Help on the left, OK and Cancel on the right. OK deletes and closes.
QLayout* DeletionButtons(QDialog& dialog, AppContext& context, HelpTopic topic, DeletionList& list);

}  // namespace vantor
