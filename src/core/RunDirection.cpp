#include "core/RunDirection.h"

#include "core/RunRecords.h"
#include "core/Text.h"

namespace vantor {

std::string DirectionFromLog(std::string_view notes) {
    if (!notes.starts_with(DirectionNote)) return {};
    const std::string_view direction = Trim(notes.substr(DirectionNote.size(), notes.find(';') - DirectionNote.size()));
    return direction.size() == 2 ? std::string(direction) : std::string();
}

}  // namespace vantor
