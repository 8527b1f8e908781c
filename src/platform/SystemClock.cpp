#include "platform/SystemClock.h"

#include <ctime>

#include "platform/NativeFile.h"

namespace vantor {

Date SystemClock::Now() const { return LocalDate(std::time(nullptr)); }

}  // namespace vantor
