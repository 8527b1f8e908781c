#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QObject>
#include <QPushButton>
#include <string>

#include "core/AppContext.h"

class QGridLayout;

namespace vantor {

/// The file of the base map among the preferences: looked at when it is chosen, so that one that cannot be drawn is
/// not taken.
class BaseMapField : public QObject {
public:
    /// Adds the rows to a grid of three columns.
    BaseMapField(QWidget* parent, QGridLayout& grid, AppContext& context);

    /// Empty for none.
    std::string Path() const;

private:
    void Browse();
    void ShowHint();

    AppContext& context_;
    QLineEdit* txtBaseMap_;
    QPushButton* cmdBrowseBaseMap_;
    QPushButton* cmdClearBaseMap_;
    QLabel* lblBaseMap_;
    QString facts_;  ///< of a file that was just looked at
};

}  // namespace vantor
