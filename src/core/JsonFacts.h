#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace vantor {

// What files of JSON have in common. Their members keep their order, so that a file stays as it was where nothing
// changed.

/// 16 hexadecimal digits: a JSON number holds no 64 bits everywhere.
std::string HashText(std::uint64_t hash);

/// Members of a later version are kept as the text of their object, and carried through.
nlohmann::ordered_json ObjectFromText(const std::string& object);
std::string TextOfRest(nlohmann::ordered_json object, std::initializer_list<const char*> known);

std::vector<std::byte> BytesOf(const nlohmann::ordered_json& file);

}  // namespace vantor
