#pragma once

#include <QLabel>
#include <QPushButton>
#include <optional>
#include <string>

#include "workspace/forms/PathBox.h"

class QGridLayout;

namespace vantor {

/// A folder of the preferences: its box, a button to browse, and under them what the folder is for or what is wrong
/// with it. A folder that is no good choice is taken over only when it was there before or the user insists on it.
class PathField : public QObject {
public:
    /// Adds the rows to a grid of three columns. `number` goes into the names of the controls.
    PathField(QWidget* parent, QGridLayout& grid, int number, const QString& caption, const QString& purpose);

    void Fill(const std::string& folder);
    void Put(const std::string& folder);
    /// The user wants the folder that the box holds, whatever is wrong with it.
    void Insist();
    bool IsTouched() const { return Box->Folder() != filled_; }
    /// True when the folder may be taken over.
    bool IsAccepted() const;

    PathBox* const Box;
    QPushButton* const Browse;

private:
    void ShowHint();

    QLabel* hint_;
    QPushButton* useAnyway_;
    QString purpose_;
    std::string filled_;
    std::optional<std::string> insisted_;
};

}  // namespace vantor
