#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

#include "core/AppSettings.h"
#include "core/RunRecords.h"
#include "core/StudyRecords.h"
#include "gpsobd/LogRecords.h"

namespace vantor {
namespace {

std::string KindOf(const std::int16_t&, std::size_t) { return "int16"; }
std::string KindOf(const std::int32_t&, std::size_t) { return "int32"; }
std::string KindOf(const float&, std::size_t) { return "single"; }
std::string KindOf(const double&, std::size_t) { return "double"; }
std::string KindOf(const Date&, std::size_t) { return "date"; }
std::string KindOf(const std::string&, std::size_t width) { return "text " + std::to_string(width); }
template <std::size_t Count>
std::string KindOf(const RawBytes<Count>&, std::size_t) {
    return std::to_string(Count) + " bytes";
}
template <class Element, int First, int Last>
std::string KindOf(const IndexedArray<Element, First, Last>& list, std::size_t width) {
    return std::to_string(list.Count) + " × " + KindOf(list[First], width) + ", index " + std::to_string(First) +
           " to " + std::to_string(Last);
}

template <class Record, class Member>
std::string RowOf(const Field<Record, Member>& field) {
    return "| " + std::to_string(field.Offset) + " | `" + field.Name + "` | " +
           KindOf(Record{}.*field.Pointer, field.Width) + " |";
}
template <class Record, class Member>
std::string RowOf(const ArrayPart<Record, Member>& part) {
    return "| " + std::to_string(part.Offset) + " | `" + part.Name + "` | " +
           std::to_string(part.Last - part.First + 1) + " × " +
           KindOf((Record{}.*part.Pointer)[part.First], part.Width) + ", index " + std::to_string(part.First) + " to " +
           std::to_string(part.Last) + " |";
}
std::string RowOf(const Gap& gap) {
    return "| " + std::to_string(gap.Offset) + " | | text " + std::to_string(gap.Width) + " |";
}

/// The part of the page under a heading.
std::string SectionOf(const std::string& page, const std::string& heading) {
    const std::size_t start = page.find("## " + heading + "\n");
    if (start == std::string::npos) return {};
    return page.substr(start, page.find("\n## ", start + 3) - start);
}

/// Every row of the table stands on the page as the codec has it, in the codec's order, and no row more.
template <class Table>
void ExpectDocumented(const std::string& page, const std::string& heading, const Table& table) {
    std::istringstream section(SectionOf(page, heading));
    std::vector<std::string> documented;
    for (std::string line; std::getline(section, line);)
        if (line.starts_with("| ") && std::isdigit(static_cast<unsigned char>(line[2])) != 0)
            documented.push_back(line);
    std::vector<std::string> rows;
    std::apply([&](const auto&... field) { (rows.push_back(RowOf(field)), ...); }, table);
    ASSERT_EQ(documented.size(), rows.size()) << heading;
    for (std::size_t i = 0; i < rows.size(); ++i)
        EXPECT_TRUE(documented[i].starts_with(rows[i]))
            << heading << ": expected " << rows[i] << ", found " << documented[i];
}

TEST(FormatsPage, HasEveryFieldAsTheCodecHasIt) {
    std::ifstream file(VANTOR_TEST_DATA "../../docs/formats.md");
    const std::string page(std::istreambuf_iterator<char>(file), {});
    ExpectDocumented(page, "Settings file (`VANTOR.bin`)", AppSettingsFields);
    ExpectDocumented(page, "Run file header (`.rd2`)", RunHeaderFields);
    ExpectDocumented(page, "Event record of a sample", RunSampleFields);
    ExpectDocumented(page, "Version 1 run file header (`.rdf`)", Ver1RunHeaderFields);
    ExpectDocumented(page, "Study file header (`.ld2`)", StudyRecordFields);
    ExpectDocumented(page, "Run entry of a study", StudyRunEntryFields);
    ExpectDocumented(page, "Logs of the laptop (`.gdf`, `.gd2`, `.odf`, `.od2`, `.ddf`)", LogPrefixFields);
    ExpectDocumented(page, "Header of a GPS log", GpsLogHeaderFields);
    ExpectDocumented(page, "Point of a GPS log (second format)", GpsPointFields);
    ExpectDocumented(page, "Point of a GPS log (first format)", Ver1GpsPointFields);
    ExpectDocumented(page, "Header of an OBD log", ObdLogHeaderFields);
    ExpectDocumented(page, "Point of an OBD log", ObdPointFields);
}

}  // namespace
}  // namespace vantor
