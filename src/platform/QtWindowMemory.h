#pragma once

#include <QSettings>
#include <string>

#include "core/ports/WindowMemory.h"

namespace vantor {

/// Window layouts in an INI file beside the settings.
class QtWindowMemory : public WindowMemory {
public:
    explicit QtWindowMemory(const std::string& settingsFolder);
    std::string Recall(const std::string& key) const override;
    void Store(const std::string& key, const std::string& value) override;

private:
    QSettings settings_;
};

}  // namespace vantor
