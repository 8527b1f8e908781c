#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <nlohmann/json_fwd.hpp>
#include <span>
#include <string>
#include <vector>

namespace vantor {

// What files of JSON have in common. Their members keep their order, so that a file stays as it was where nothing
// changed.

/// 16 hexadecimal digits: a JSON number holds no 64 bits everywhere.
std::string HashText(std::uint64_t hash);

/// The JSON of a file. Throws the library's errors, and std::invalid_argument for one that is nested more than 64 deep
/// or has more than 1,000 members in an object: no file that is meant well has, and it would exhaust the stack, or
/// hours.
nlohmann::ordered_json JsonFromBytes(std::span<const std::byte> file);

/// Members of a later version are kept as the text of their object, and carried through.
nlohmann::ordered_json ObjectFromText(const std::string& object);
std::string TextOfRest(nlohmann::ordered_json object, std::initializer_list<const char*> known);

std::vector<std::byte> JsonBytes(const nlohmann::ordered_json& file);

}  // namespace vantor
