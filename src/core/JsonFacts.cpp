#include "core/JsonFacts.h"

#include <nlohmann/json.hpp>
#include <span>
#include <string_view>
#include <utility>

namespace vantor {

using Json = nlohmann::ordered_json;

std::string HashText(std::uint64_t hash) {
    constexpr std::string_view Digits = "0123456789abcdef";
    std::string text(16, '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, hash >>= 4) *digit = Digits[hash & 0xF];
    return text;
}

Json ObjectFromText(const std::string& object) { return object.empty() ? Json::object() : Json::parse(object); }

std::string TextOfRest(Json object, std::initializer_list<const char*> known) {
    for (const char* member : known) object.erase(member);
    return object.empty() ? std::string() : object.dump();
}

std::vector<std::byte> BytesOf(const Json& file) {
    const std::string text = file.dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

}  // namespace vantor
