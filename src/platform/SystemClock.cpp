#include "platform/SystemClock.h"

#include <QtCore/QDateTime>
#include <QtCore/QTimeZone>
#include <ctime>

#include "platform/NativeFile.h"

namespace vantor {

Date SystemClock::Now() const { return LocalDate(std::time(nullptr)); }

std::vector<std::string> SystemClock::ZoneNames() const {
    std::vector<std::string> names;
    for (const QByteArray& name : QTimeZone::availableTimeZoneIds()) names.push_back(name.toStdString());
    return names;
}

std::string SystemClock::OwnZone() const { return QTimeZone::systemTimeZoneId().toStdString(); }

std::optional<int> SystemClock::ZoneOffset(const std::string& zone, std::int64_t utc) const {
    const QTimeZone known(QByteArray::fromStdString(zone));
    if (!known.isValid()) return std::nullopt;
    return known.offsetFromUtc(QDateTime::fromSecsSinceEpoch(utc, Qt::UTC));
}

}  // namespace vantor
