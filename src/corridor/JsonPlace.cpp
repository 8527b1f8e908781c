#include "corridor/JsonPlace.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "core/Text.h"

namespace vantor {

using Json = nlohmann::ordered_json;

namespace {

constexpr const char* EntryMember = "of";
constexpr const char* RestMember = "rest";

}  // namespace

void JsonPlace::Refuse(const std::string& reason) const {
    throw std::invalid_argument("\"" + Printable(place_) + "\" " + Printable(reason) + ".");
}

JsonPlace JsonPlace::operator[](const char* member) const {
    if (!IsThere()) return {nullptr, place_ + "." + member};
    if (!value_->is_object()) Refuse("is no object");
    const auto found = value_->find(member);
    return {found == value_->end() ? nullptr : &*found, place_.empty() ? member : place_ + "." + member};
}

std::size_t JsonPlace::Size() const {
    if (!IsThere()) return 0;
    if (!value_->is_array()) Refuse("is no list");
    return value_->size();
}

JsonPlace JsonPlace::At(std::size_t index) const {
    if (index >= Size()) Refuse("has no entry " + std::to_string(index + 1));
    return {&(*value_)[index], place_ + " " + std::to_string(index + 1)};
}

std::string JsonPlace::Text() const {
    if (!IsThere()) return {};
    if (!value_->is_string()) Refuse("is no text");
    return value_->get<std::string>();
}

double JsonPlace::Number() const {
    if (!IsThere()) Refuse("is missing");
    if (!value_->is_number()) Refuse("is no number");
    return value_->get<double>();
}

std::int32_t JsonPlace::Whole() const {
    using Limits = std::numeric_limits<std::int32_t>;
    const double number = Number();
    if (number != std::floor(number) || number < Limits::min() || number > Limits::max())
        Refuse("is no whole number, or too large");
    return static_cast<std::int32_t>(number);
}

bool JsonPlace::Flag(bool usual) const {
    if (!IsThere()) return usual;
    if (!value_->is_boolean()) Refuse("is neither true nor false");
    return value_->get<bool>();
}

std::uint64_t JsonPlace::Hash() const {
    if (!IsThere()) return 0;
    const std::string text = Text();
    std::uint64_t hash = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), hash, 16);
    if (text.size() != 16 || error != std::errc() || end != text.data() + text.size())
        Refuse("is not of 16 hexadecimal digits");
    return hash;
}

Position JsonPlace::Place() const {
    if (Size() < 2 || Size() > 3) Refuse("is no position, [longitude, latitude]");
    return {At(1).Number(), At(0).Number()};
}

Json RestOf(const Json& read, const Json& written) {
    Json rest;
    if (read.is_object() && written.is_object()) {
        // Those that are written first: so what is written is read with its rest in the same order.
        for (const auto& [name, member] : written.items())
            if (const auto found = read.find(name); found != read.end())
                if (Json other = RestOf(*found, member); !other.is_null()) rest[name] = std::move(other);
        for (const auto& [name, member] : read.items())
            if (!written.contains(name)) rest[name] = member;
    } else if (read.is_array() && written.is_array()) {
        for (std::size_t i = 0; i < std::min(read.size(), written.size()); ++i)
            if (Json other = RestOf(read[i], written[i]); !other.is_null())
                rest.push_back(Json{{EntryMember, written[i]}, {RestMember, std::move(other)}});
    }
    return rest;
}

void PutRest(Json& written, const Json& rest) {
    if (written.is_object() && rest.is_object()) {
        for (const auto& [name, member] : rest.items()) {
            const auto known = written.find(name);
            if (known == written.end())
                written[name] = member;
            else
                PutRest(*known, member);
        }
    } else if (written.is_array() && rest.is_array()) {
        for (const Json& kept : rest) {
            if (!kept.is_object() || !kept.contains(EntryMember) || !kept.contains(RestMember)) continue;
            const auto entry = std::ranges::find(written, kept[EntryMember]);
            if (entry != written.end()) PutRest(*entry, kept[RestMember]);
        }
    }
}

Json NumberJson(double number) {
    constexpr double Largest = 9007199254740992;
    if (number == std::floor(number) && std::fabs(number) <= Largest) return static_cast<std::int64_t>(number);
    return number;
}

}  // namespace vantor
