#pragma once

#include <QComboBox>
#include <string>

#include "core/ports/Clock.h"

namespace vantor {

/// A time zone of those that the clock knows, hundreds: any part of a name that is typed lists those that have it.
class ZoneBox : public QComboBox {
public:
    explicit ZoneBox(QWidget* parent);

    /// `own`, where it is not empty, stands first and for no zone: "this computer's".
    void SetZones(const Clock& clock, const QString& own = {});
    std::string Zone() const;
    /// One that is not there leaves the first.
    void SetZone(const std::string& zone);
};

}  // namespace vantor
