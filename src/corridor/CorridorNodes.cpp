#include "corridor/CorridorNodes.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "core/CsvCells.h"
#include "core/JsonFacts.h"
#include "core/Numeric.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "corridor/CorridorLine.h"
#include "corridor/CorridorRules.h"
#include "corridor/JsonPlace.h"
#include "corridor/NodeOrder.h"

namespace vantor {
namespace {

using Json = nlohmann::ordered_json;

[[noreturn]] void Refuse(const std::string& reason, const std::string& path) {
    throw RunTimeError(ErrorNumber::TypeMismatch, reason + "\n" + path);
}

// What lines of CSV and features have in common.

void Add(FoundNodes& found, CorridorNode node, std::string_view control) {
    const std::string title = "node " + std::to_string(found.Nodes.size() + 1);
    if (found.Nodes.size() == MostNodes)
        throw std::invalid_argument("The file has more than 188 nodes, and a run names no more. Divide it into two.");
    if (Trim(node.Name).empty()) node.Name = "N" + title.substr(1);
    if (CharactersIn(node.Name) > CorridorNameWidth) {
        node.Name = FirstCharacters(node.Name, CorridorNameWidth);
        found.Remarks.push_back("The name of " + title + " was cut at 64 characters.");
    }
    const auto known = ControlOfText(control);
    if (!known && !Trim(control).empty())
        found.Remarks.push_back("The control \"" + Printable(control) + "\" of " + title +
                                " is not known; it was taken for a signal.");
    node.Control = known.value_or(NodeControl::Signal);
    found.Nodes.push_back(std::move(node));
}

void Finish(FoundNodes& found, const std::string& path) {
    if (found.Nodes.empty()) Refuse("The file has no node: neither a line with a position, nor a point.", path);
    if (std::string remark = OrderRemark(found.Nodes); !remark.empty()) found.Remarks.push_back(std::move(remark));
}

// CSV

enum class Column { Name, Latitude, Longitude, Distance, Control, SpeedLimit };
using Columns = std::vector<std::optional<Column>>;

std::optional<Column> ColumnOf(std::string_view head) {
    static constexpr std::array<std::string_view, 7> Names = {"name",   "node",  "nodename",   "intersection",
                                                              "street", "label", "crossstreet"};
    static constexpr std::array<std::string_view, 3> Latitudes = {"lat", "latitude", "y"};
    static constexpr std::array<std::string_view, 5> Longitudes = {"lon", "lng", "long", "longitude", "x"};
    static constexpr std::array<std::string_view, 4> Distances = {"distance", "distanceft", "dist", "feet"};
    static constexpr std::array<std::string_view, 2> Controls = {"control", "controltype"};
    static constexpr std::array<std::string_view, 4> Limits = {"speedlimit", "speedlimitmph", "limit", "postedspeed"};
    std::string word;
    for (const char character : FoldCase(head))
        if ((character >= 'a' && character <= 'z') || IsDigit(character)) word += character;
    const auto isOneOf = [&word](const auto& heads) { return std::ranges::find(heads, word) != heads.end(); };
    if (isOneOf(Names)) return Column::Name;
    if (isOneOf(Latitudes)) return Column::Latitude;
    if (isOneOf(Longitudes)) return Column::Longitude;
    if (isOneOf(Distances)) return Column::Distance;
    if (isOneOf(Controls)) return Column::Control;
    if (isOneOf(Limits)) return Column::SpeedLimit;
    return std::nullopt;
}

/// The lines of a file that are not blank, from the first on, with their delimiter.
class NodeLines {
public:
    explicit NodeLines(std::span<const std::byte> file)
        : rest_(WithoutMark({reinterpret_cast<const char*>(file.data()), file.size()})) {
        std::ptrdiff_t most = 0;
        const std::string_view first = rest_.substr(0, rest_.find('\n'));
        for (const char delimiter : {',', ';', '\t', '|'})
            if (const auto count = std::ranges::count(first, delimiter); count > most) {
                most = count;
                delimiter_ = delimiter;
            }
    }
    bool Next() {
        while (!rest_.empty()) {
            const std::size_t end = std::min(rest_.find('\n'), rest_.size());
            std::string_view line = rest_.substr(0, end);
            if (line.ends_with('\r')) line.remove_suffix(1);
            line = Trim(line);
            rest_.remove_prefix(std::min(end + 1, rest_.size()));
            ++number_;
            if (line.empty() || line.starts_with('#')) continue;
            SplitCells(line, delimiter_, cells_, unquoted_);
            return true;
        }
        return false;
    }
    const std::vector<std::string_view>& Cells() const { return cells_; }
    int Number() const { return number_; }
    std::optional<double> NumberIn(std::string_view cell) const {
        std::string text(cell.substr(0, 40));
        if (delimiter_ != ',') std::ranges::replace(text, ',', '.');
        return NumberOfText(text);
    }

private:
    std::string_view rest_;
    char delimiter_ = ',';
    int number_ = 0;
    std::vector<std::string_view> cells_;
    std::string unquoted_;
};

bool Has(const Columns& columns, Column column) { return std::ranges::find(columns, column) != columns.end(); }
bool HasPlaces(const Columns& columns) {
    return (Has(columns, Column::Latitude) && Has(columns, Column::Longitude)) || Has(columns, Column::Distance);
}

/// By the first line: of a head the words; else texts and numbers as they follow each other.
Columns ColumnsOf(const NodeLines& lines, bool& isHead) {
    Columns columns;
    for (const std::string_view cell : lines.Cells()) columns.push_back(ColumnOf(cell));
    isHead = HasPlaces(columns);
    if (isHead) return columns;
    columns.assign(columns.size(), std::nullopt);
    const auto numbers = std::ranges::count_if(
        lines.Cells(), [&lines](std::string_view cell) { return lines.NumberIn(cell).has_value(); });
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const bool isNumber = lines.NumberIn(lines.Cells()[i]).has_value();
        if (!isNumber && !Has(columns, Column::Name))
            columns[i] = Column::Name;
        else if (isNumber && numbers == 1)
            columns[i] = Column::Distance;
        else if (isNumber && !Has(columns, Column::Longitude))
            columns[i] = Has(columns, Column::Latitude) ? Column::Longitude : Column::Latitude;
    }
    return columns;
}

void AddLine(FoundNodes& found, const NodeLines& lines, const Columns& columns) {
    const std::string line = "Line " + std::to_string(lines.Number());
    const auto cell = [&](Column column) {
        const auto at = static_cast<std::size_t>(std::ranges::find(columns, column) - columns.begin());
        return at < lines.Cells().size() ? lines.Cells()[at] : std::string_view();
    };
    CorridorNode node;
    node.Name = Printable(TextOfCell(cell(Column::Name)));
    if (Has(columns, Column::Latitude) && Has(columns, Column::Longitude)) {
        const auto latitude = lines.NumberIn(cell(Column::Latitude));
        const auto longitude = lines.NumberIn(cell(Column::Longitude));
        if (latitude && longitude) node.At = PositionFrom(*latitude, *longitude);
        if (!node.At)
            throw std::invalid_argument(line + " has no position: \"" + Printable(cell(Column::Latitude)) + "\", \"" +
                                        Printable(cell(Column::Longitude)) +
                                        "\" are no latitude and longitude in degrees, such as 42.3314, -83.0458.");
    } else {
        const auto distance = lines.NumberIn(cell(Column::Distance));
        if (!distance) throw std::invalid_argument(line + " has no distance in feet.");
        node.DistanceFt = *distance;
    }
    if (const std::string_view limit = cell(Column::SpeedLimit); !limit.empty()) {
        const auto mph = CountOfText(limit, 200);
        if (!mph || *mph == 0) throw std::invalid_argument(line + " has no speed limit between 1 and 200 MPH.");
        node.SpeedLimitMph = *mph;
    }
    Add(found, std::move(node), TextOfCell(cell(Column::Control)));
}

// GeoJSON

constexpr std::array<const char*, 6> NameMembers = {"name", "Name", "NAME", "title", "label", "intersection"};

CorridorNode NodeOfPoint(const JsonPlace& position, const JsonPlace& facts) {
    CorridorNode node;
    const Position at = position.Place();
    node.At = PositionFrom(at.Latitude, at.Longitude);
    if (!node.At) position.Refuse("is no place on the earth: it must be [longitude, latitude] in degrees");
    for (const char* member : NameMembers)
        if (node.Name.empty() && facts[member].IsThere() && facts[member].Value().is_string())
            node.Name = Printable(facts[member].Text());
    if (const JsonPlace limit = facts["speedLimitMph"]; limit.IsThere()) node.SpeedLimitMph = limit.Whole();
    return node;
}

void AddFeature(FoundNodes& found, const JsonPlace& feature, std::size_t& left) {
    const JsonPlace geometry = feature["geometry"];
    const JsonPlace places = geometry["coordinates"];
    const JsonPlace facts = feature["properties"];
    const std::string type = geometry["type"].Text();
    const JsonPlace control = facts["control"];
    const std::string word = control.IsThere() && control.Value().is_string() ? control.Text() : std::string();
    if (type == "Point") {
        Add(found, NodeOfPoint(places, facts), word);
    } else if (type == "MultiPoint") {
        for (std::size_t i = 0; i < places.Size(); ++i) Add(found, NodeOfPoint(places.At(i), facts), word);
    } else if (type == "LineString" && found.Alignment.empty() && places.Size() <= MostLinePoints) {
        for (std::size_t i = 0; i < places.Size(); ++i) found.Alignment.push_back(places.At(i).Place());
    } else {
        ++left;
    }
}

}  // namespace

std::optional<NodeControl> ControlOfText(std::string_view text) {
    for (std::size_t i = 0; i < NodeControlWords.size(); ++i)
        if (EqualIgnoringCase(Trim(text), NodeControlWords[i])) return static_cast<NodeControl>(i);
    return std::nullopt;
}

FoundNodes NodesFromCsv(std::span<const std::byte> file, const std::string& path) {
    FoundNodes found;
    try {
        NodeLines lines(file);
        if (!lines.Next()) Refuse("The file is empty.", path);
        bool isHead = false;
        const Columns columns = ColumnsOf(lines, isHead);
        if (!HasPlaces(columns))
            throw std::invalid_argument(
                "Line 1 has neither the head of a table of nodes nor a name with latitude and longitude: its columns "
                "must be called name, latitude, longitude, or name, distance.");
        if (!isHead) AddLine(found, lines, columns);
        while (lines.Next()) AddLine(found, lines, columns);
    } catch (const std::invalid_argument& error) {
        Refuse(error.what(), path);
    }
    Finish(found, path);
    return found;
}

FoundNodes NodesFromGeoJson(std::span<const std::byte> file, const std::string& path) {
    FoundNodes found;
    try {
        const Json json = JsonFromBytes(file);
        const JsonPlace whole(&json, "");
        const JsonPlace features = whole["features"];
        std::size_t left = 0;
        if (whole["type"].Text() == "Feature") AddFeature(found, whole, left);
        for (std::size_t i = 0; i < features.Size(); ++i) AddFeature(found, features.At(i), left);
        if (left != 0)
            found.Remarks.push_back(std::to_string(left) +
                                    " features that are neither a point nor the first line were passed over.");
    } catch (const Json::exception&) {
        Refuse("The file is no JSON. Export it as GeoJSON again.", path);
    } catch (const std::invalid_argument& error) {
        Refuse(error.what(), path);
    }
    Finish(found, path);
    return found;
}

FoundNodes ReadNodes(const FileSystem& files, const std::string& path) {
    const std::vector<std::byte> file = ReadWholeFile(files, path);
    const std::string_view text = WithoutMark({reinterpret_cast<const char*>(file.data()), file.size()});
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && text[first] == '{' ? NodesFromGeoJson(file, path)
                                                                 : NodesFromCsv(file, path);
}

void PutNodes(Corridor& corridor, FoundNodes nodes) {
    corridor.Nodes = std::move(nodes.Nodes);
    corridor.Alignment = std::move(nodes.Alignment);
    const auto line = CorridorLine::Of(corridor);
    if (!line) return;
    const auto isKnown = [](const std::optional<double>& along) { return along.has_value(); };
    const auto last = std::ranges::find_if(line->Nodes().rbegin(), line->Nodes().rend(), isKnown);
    if (last != line->Nodes().rend() && **last < 0) std::ranges::reverse(corridor.Alignment);
    MeasureNodes(corridor);
}

}  // namespace vantor
