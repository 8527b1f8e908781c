#pragma once

#include <string>
#include <string_view>

namespace vantor {

/// "EB": the direction that the notes of a run made from a log begin with (DirectionNote); empty for any other notes.
std::string DirectionFromLog(std::string_view notes);

}  // namespace vantor
