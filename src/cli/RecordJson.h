#pragma once

#include "cli/CommandContext.h"
#include "core/RecordCodec.h"
#include "core/Text.h"

namespace vantor {

namespace json {

inline Json Value(std::int16_t value) { return value; }
inline Json Value(std::int32_t value) { return value; }
inline Json Value(double value) { return std::isfinite(value) ? Json(value) : Json(nullptr); }
inline Json Value(float value) { return Value(static_cast<double>(value)); }
inline Json Value(const std::string& text) { return std::string(TrimRight(text)); }
inline Json Value(Date date) { return IsValidDate(date) ? Json(IsoDateTime(date)) : Json(nullptr); }

/// Bytes without a meaning, as two hexadecimal digits each.
template <std::size_t Count>
Json Value(const RawBytes<Count>& bytes) {
    std::string digits;
    for (const std::byte byte : bytes)
        for (const unsigned half : {std::to_integer<unsigned>(byte) >> 4, std::to_integer<unsigned>(byte) & 15U})
            digits += "0123456789abcdef"[half];
    return digits;
}

template <class Element, int First, int Last>
Json Value(const IndexedArray<Element, First, Last>& elements) {
    Json list = Json::array();
    for (const Element& element : elements) list.push_back(Value(element));
    return list;
}

template <class Record>
void AddField(Json&, const Record&, const Gap&) {}

template <class Record, class Member>
void AddField(Json& object, const Record& record, const Field<Record, Member>& field) {
    object[field.Name] = Value(record.*field.Pointer);
}

}  // namespace json

/// A record as an object with the names of its field table as keys; texts trimmed on the right, dates as ISO 8601.
template <class Record, class Table>
Json RecordAsJson(const Record& record, const Table& table) {
    Json object = Json::object();
    std::apply([&](const auto&... field) { (json::AddField(object, record, field), ...); }, table);
    return object;
}

}  // namespace vantor
