#include "core/JsonFacts.h"

#include <nlohmann/json.hpp>
#include <span>
#include <stdexcept>
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

Json JsonFromBytes(std::span<const std::byte> file) {
    constexpr int MostLevels = 64;
    constexpr int MostMembers = 1000;
    std::vector<int> members;  // of the objects that are open
    const auto guard = [&members](int depth, Json::parse_event_t event, const Json&) {
        if (depth > MostLevels) throw std::invalid_argument("Its objects and lists are nested more than 64 deep.");
        if (event == Json::parse_event_t::object_start) members.push_back(0);
        if (event == Json::parse_event_t::object_end) members.pop_back();
        if (event == Json::parse_event_t::key && ++members.back() > MostMembers)
            throw std::invalid_argument("An object of it has more than 1,000 members.");
        return true;
    };
    const auto* text = reinterpret_cast<const char*>(file.data());
    return Json::parse(text, text + file.size(), guard);
}

Json ObjectFromText(const std::string& object) { return object.empty() ? Json::object() : Json::parse(object); }

std::string TextOfRest(Json object, std::initializer_list<const char*> known) {
    for (const char* member : known) object.erase(member);
    return object.empty() ? std::string() : object.dump();
}

std::vector<std::byte> JsonBytes(const Json& file) {
    const std::string text = file.dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

}  // namespace vantor
