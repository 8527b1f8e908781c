#include "platform/QtWindowMemory.h"

#include "core/forms/Named.h"

namespace vantor {

QtWindowMemory::QtWindowMemory(const std::string& settingsFolder)
    : settings_(ToQt(settingsFolder + "vantor-windows.ini"), QSettings::IniFormat) {}

std::string QtWindowMemory::Recall(const std::string& key) const {
    return FromQt(settings_.value(ToQt(key)).toString());
}

void QtWindowMemory::Store(const std::string& key, const std::string& value) {
    settings_.setValue(ToQt(key), ToQt(value));
}

}  // namespace vantor
