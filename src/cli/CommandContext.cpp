#include "cli/CommandContext.h"

#include <algorithm>
#include <vector>

#include "cli/StandardInput.h"
#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/Text.h"

namespace vantor {
namespace {

std::string Shown(const Json& value) {
    if (value.is_string()) return Printable(value.get<std::string>());
    if (value.is_array()) {
        std::vector<std::string> texts;
        for (const Json& element : value) texts.push_back(Shown(element));
        return Joined(texts, "; ");
    }
    return value.is_null() ? "" : value.dump();
}

bool SaysNothing(const Json& value) {
    return value.is_null() || (value.is_string() && value.get<std::string>().empty()) ||
           (value.is_number() && value.get<double>() == 0);
}

bool IsTable(const Json& value) { return value.is_array() && !value.empty() && value.front().is_object(); }

void WriteTable(std::ostream& out, const Json& rows) {
    std::vector<std::vector<std::string>> lines(1);
    for (const auto& [key, value] : rows.front().items()) lines.front().push_back(key);
    for (const Json& row : rows) {
        lines.emplace_back();
        for (const auto& [key, value] : row.items()) lines.back().push_back(Shown(value));
    }
    std::vector<bool> isNumber;
    for (const auto& [key, value] : rows.front().items()) isNumber.push_back(value.is_number());
    std::vector<std::size_t> widths(lines.front().size());
    for (const auto& line : lines)
        for (std::size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], CharactersIn(line[i]));
    for (const auto& line : lines) {
        std::string text;
        for (std::size_t i = 0; i < line.size(); ++i) {
            const std::string fill(widths[i] - CharactersIn(line[i]), ' ');
            text += (isNumber[i] ? fill + line[i] : line[i] + fill) + "  ";
        }
        out << TrimRight(text) << '\n';
    }
}

/// The elements that say something, each with its index.
void WriteList(std::ostream& out, const std::string& key, const Json& list) {
    for (std::size_t i = 0; i < list.size(); ++i)
        if (!SaysNothing(list[i])) out << key << '[' << i << "]: " << Shown(list[i]) << '\n';
}

void WriteReadable(std::ostream& out, const Json& result) {
    if (IsTable(result)) return WriteTable(out, result);
    if (result.is_array()) {
        for (const Json& line : result) out << Shown(line) << '\n';
        return;
    }
    for (const auto& [key, value] : result.items()) {
        if (IsTable(value)) {
            out << '\n';
            WriteTable(out, value);
        } else if (value.is_array()) {
            WriteList(out, key, value);
        } else if (value.is_object()) {
            for (const auto& [part, text] : value.items()) out << key << '.' << part << ": " << Shown(text) << '\n';
        } else if (!Shown(value).empty()) {
            out << key << ": " << TrimLeft(Shown(value)) << '\n';
        }
    }
}

}  // namespace

ExitStatus CommandContext::TellOfRuns(const std::vector<RunListRow>& rows) const {
    ExitStatus status = Done;
    for (const RunListRow& row : rows) {
        if (!row.Warnings.empty()) Err << TrimRight(row.RunName) << ": " << Joined(row.Warnings, "; ") << '\n';
        if (IsThere(row.State)) continue;
        Err << row.Facts.Problem << '\n';
        if (row.State != RunState::Missing) status = Failed;
    }
    if (const std::string without = AverageWithoutWarned(rows); !without.empty())
        Err << "Average control delay: " << without << '\n';
    return status;
}

void CommandContext::Print(const Json& result) const {
    if (Collected != nullptr)
        *Collected = result;
    else if (AsJson)
        Out << result.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
    else
        WriteReadable(Out, result);
}

bool CommandContext::TakesOutput(const std::string& output, bool isOfKind, const std::string& kinds) const {
    const bool isStream = output == StandardStream;
    if (isStream && AsJson)
        Err << "--output - and --json both print to standard output. Leave one of them out.\n";
    else if (!isStream && !isOfKind)
        Err << output << '\n' << kinds << '\n';
    return isStream ? !AsJson : isOfKind;
}

void CommandContext::PutOutput(const std::string& output, std::span<const std::byte> bytes, const Json& result) const {
    if (output == StandardStream) {
        Out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return;
    }
    WriteFile(Files, output, bytes, AsItStands(Files, output));
    Print(result);
}

NamedFile TakeApart(const std::string& path) {
    const std::string file = LastComponent(path);
    const std::string name = BaseName(path);
    return {FolderOf(path), name, FoldCase(file.substr(name.size()))};
}

NamedFile TakeApart(const std::string& path, const std::string& extension, const std::string& kind) {
    NamedFile file = TakeApart(path);
    if (path == StandardStream)
        throw RunTimeError(ErrorNumber::TypeMismatch,
                           "Standard input is not read here. Name a " + kind + " that ends in " + extension + ".");
    if (file.Extension != extension)
        throw RunTimeError(ErrorNumber::TypeMismatch,
                           path + "\nThis is no " + kind + ". Name a file that ends in " + extension + ".");
    return file;
}

}  // namespace vantor
