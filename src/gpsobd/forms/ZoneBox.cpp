#include "gpsobd/forms/ZoneBox.h"

#include <QCompleter>
#include <QLineEdit>
#include <algorithm>

#include "core/forms/Named.h"

namespace vantor {

ZoneBox::ZoneBox(QWidget* parent) : QComboBox(parent) {
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    completer()->setCompletionMode(QCompleter::PopupCompletion);
    completer()->setFilterMode(Qt::MatchContains);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    constexpr int ZoneLetters = 28;
    setMinimumContentsLength(ZoneLetters);
    // What is no zone gives way to the one that was chosen.
    connect(lineEdit(), &QLineEdit::editingFinished, this, [this] { setEditText(itemText(currentIndex())); });
}

void ZoneBox::SetZones(const Clock& clock, const QString& own) {
    if (!own.isEmpty()) addItem(own + ToQt(clock.OwnZone()), QString());
    for (const std::string& zone : clock.ZoneNames()) addItem(ToQt(zone), ToQt(zone));
    lineEdit()->setCursorPosition(0);
}

std::string ZoneBox::Zone() const { return FromQt(currentData().toString()); }

void ZoneBox::SetZone(const std::string& zone) {
    setCurrentIndex(std::max(0, findData(ToQt(zone))));
    lineEdit()->setCursorPosition(0);
}

}  // namespace vantor
