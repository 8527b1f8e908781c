#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "core/Position.h"

namespace vantor {

/// A value of a JSON file with the place where it stands. A missing value and one that is null are the same. What is of
/// another kind than it is asked for is a std::invalid_argument that says so.
class JsonPlace {
public:
    using Json = nlohmann::ordered_json;
    JsonPlace(const Json* value, std::string place) : value_(value), place_(std::move(place)) {}

    bool IsThere() const { return value_ != nullptr && !value_->is_null(); }
    const Json& Value() const { return *value_; }

    /// A member of an object.
    JsonPlace operator[](const char* member) const;
    /// The entries of a list; none where it is missing.
    std::size_t Size() const;
    JsonPlace At(std::size_t index) const;

    std::string Text() const;  ///< empty where it is missing
    double Number() const;
    double Number(double usual) const { return IsThere() ? Number() : usual; }
    std::int32_t Whole() const;
    std::int32_t Whole(std::int32_t usual) const { return IsThere() ? Whole() : usual; }
    bool Flag(bool usual) const;
    /// One of these words; `usual` where it is missing.
    template <class Words>
    std::size_t Word(const Words& words, std::size_t usual) const {
        if (!IsThere()) return usual;
        const std::string text = Text();
        std::string known;
        for (std::size_t i = 0; i < words.size(); ++i) {
            if (text == words[i]) return i;
            known += (i == 0 ? "\"" : ", \"") + std::string(words[i]) + "\"";
        }
        Refuse("is \"" + text + "\" and must be one of " + known);
    }
    std::uint64_t Hash() const;  ///< 0 where it is missing
    /// Longitude before latitude; of a third number, the height, nothing is kept.
    Position Place() const;

    [[noreturn]] void Refuse(const std::string& reason) const;

private:
    const Json* value_;
    std::string place_;
};

/// What of an object that was read is not in the one that would be written of it: members of a later version. Those of
/// the entries of a list are kept with what would be written of the entry.
nlohmann::ordered_json RestOf(const nlohmann::ordered_json& read, const nlohmann::ordered_json& written);
/// Puts it back where nothing is written.
void PutRest(nlohmann::ordered_json& written, const nlohmann::ordered_json& rest);

/// Whole numbers without a decimal point.
nlohmann::ordered_json NumberJson(double number);

}  // namespace vantor
