#pragma once

#include <QHeaderView>
#include <QTableView>
#include <string>
#include <vector>

#include "core/forms/Named.h"
#include "core/forms/Table.h"
#include "fakes/Clicks.h"

namespace vantor {

inline std::vector<std::string> Heads(QWidget& window, const char* name) {
    const QAbstractItemModel& model = *Find<QTableView>(window, name).model();
    std::vector<std::string> texts;
    for (int column = 0; column < model.columnCount(); ++column)
        texts.push_back(FromQt(model.headerData(column, Qt::Horizontal).toString()));
    return texts;
}

}  // namespace vantor
