#include "tracks/GpsBabel.h"

#include <algorithm>
#include <array>

#include "core/Paths.h"
#include "core/Text.h"

namespace vantor {
namespace {

constexpr const char* Program = "gpsbabel";
/// Forms that the program reads by itself, and one that is a name for any text.
constexpr std::array OwnWords = {"gpx", "nmea", "unicsv", "csv"};

std::string AllOf(InputFile& file) {
    constexpr std::size_t Piece = 64 * 1024;
    std::string text;
    for (std::size_t got = Piece; got == Piece;) {
        const std::size_t before = text.size();
        text.resize(before + Piece);
        got = file.Read(std::as_writable_bytes(std::span(text).subspan(before)));
        text.resize(before + got);
    }
    return text;
}

std::vector<std::string> Parts(const std::string& text, char separator) {
    std::vector<std::string> parts(1);
    for (const char character : text) {
        if (character == separator)
            parts.emplace_back();
        else
            parts.back() += character;
    }
    return parts;
}

}  // namespace

std::vector<BabelForm> BabelFormsOf(const std::string& list) {
    // "file", what it reads and writes of waypoints, tracks and routes ("r-rw--"), its word, its extensions, its name.
    enum { Kind, Abilities, Word, Extensions, Name, Columns };
    constexpr std::size_t ReadsTracks = 2;
    std::vector<BabelForm> forms;
    for (const std::string& line : Parts(list, '\n')) {
        const std::vector<std::string> fields = Parts(line, '\t');
        if (fields.size() < Columns || fields[Kind] != "file" || fields[Abilities].size() <= ReadsTracks) continue;
        if (fields[Abilities][ReadsTracks] != 'r' || std::ranges::count(OwnWords, fields[Word]) > 0) continue;
        BabelForm form{fields[Word], {}, std::string(Trim(fields[Name]))};
        for (const std::string& extension : Parts(fields[Extensions], '/'))
            if (!extension.empty()) form.Extensions.push_back("." + FoldCase(extension));
        // Of some it tells no extension, which is then mostly their word: "igc".
        if (form.Extensions.empty()) form.Extensions = {"." + form.Word};
        forms.push_back(std::move(form));
    }
    return forms;
}

std::vector<BabelForm> BabelForms(const Programs& programs) {
    const ProgramLimits limits{.Time = std::chrono::seconds(10), .OutputBytes = 1 << 20};
    const auto program = programs.Start(Program, {"-^3"}, limits);
    return program == nullptr ? std::vector<BabelForm>() : BabelFormsOf(AllOf(*program));
}

std::vector<BabelForm> FormsOf(const std::vector<BabelForm>& forms, const std::string& path) {
    std::vector<BabelForm> fitting;
    for (const BabelForm& form : forms)
        if (std::ranges::any_of(form.Extensions,
                                [&](const std::string& extension) { return HasExtension(path, extension); }))
            fitting.push_back(form);
    return fitting;
}

std::string MissingBabelText(const std::string& path) {
    return "This form of track is read with the help of the program gpsbabel, which is not installed.\n"
           "Install the package gpsbabel, or save the track as GPX, NMEA or CSV.\n" +
           path;
}

std::string SaidBy(const ProgramEnd& end) {
    constexpr std::size_t MostLines = 10;
    std::string said = Printable(FirstOf(Parts(end.Messages, '\n'), MostLines, "\n"));
    if (end.WasStopped)
        said = "it took too long or wrote too much, and was stopped" + (said.empty() ? "" : "\n" + said);
    else if (said.empty() && end.Status != 0)
        said = "it ended with the status " + std::to_string(end.Status);
    return said;
}

std::unique_ptr<RunningProgram> ReadAsGpx(const Programs& programs, const BabelForm& form, const std::string& path,
                                          const ProgramLimits& limits) {
    // A name with a dash in front would be taken for an option, and a dash alone for its input.
    const std::string file = path.starts_with('-') ? "./" + path : path;
    return programs.Start(Program, {"-t", "-i", form.Word, "-f", file, "-o", "gpx,gpxver=1.0", "-F", "-"}, limits);
}

}  // namespace vantor
