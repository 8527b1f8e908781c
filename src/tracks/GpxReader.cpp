#include "tracks/GpxReader.h"

#include <expat.h>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <memory>
#include <span>
#include <vector>

#include "core/RunTimeError.h"
#include "core/Text.h"
#include "core/Windows1252.h"
#include "tracks/GpxPoint.h"
#include "tracks/TrackOrder.h"
#include "tracks/TrackTexts.h"

namespace vantor {
namespace {

constexpr std::size_t PieceSize = 256 * 1024;
constexpr std::size_t LongestMarkup = 1024 * 1024;
constexpr std::size_t DeepestMarkup = 64;
constexpr std::string_view PointEnd = "</trkpt>";
constexpr const char* WrongPosition = "The position of the point is missing or impossible.";

enum class Element { Other, Track, TrackPoint, RoutePoint, Waypoint };

Element ElementOf(std::string_view localName) {
    if (localName == "trk") return Element::Track;
    if (localName == "trkpt") return Element::TrackPoint;
    if (localName == "rtept") return Element::RoutePoint;
    return localName == "wpt" ? Element::Waypoint : Element::Other;
}

/// Takes what the XML parser finds, and passes it by where points are plain.
class GpxParser {
public:
    GpxParser(const std::string& path, const TrackSink& sink, TrackSummary& summary)
        : parser_(XML_ParserCreate(nullptr), XML_ParserFree), path_(path), summary_(summary), order_(sink, summary) {
        if (!parser_) throw OutOfMemoryError();
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(parser_.get(), OnStart, OnEnd);
        XML_SetCharacterDataHandler(parser_.get(), OnText);
        XML_SetEntityDeclHandler(parser_.get(), OnEntity);
        XML_SetUnknownEncodingHandler(parser_.get(), OnEncoding, nullptr);
    }

    /// False when nothing more is wanted or can be read.
    bool Feed(std::string_view piece, bool isLast);

private:
    // What the C library calls: nothing is thrown through it. Of an empty element it tells the end, too, when it was
    // stopped at its start.
    template <class Action>
    static void Call(void* self, Action action) {
        auto& parser = *static_cast<GpxParser*>(self);
        if (parser.fault_ || parser.summary_.IsStopped) return;
        try {
            action(parser);
        } catch (...) {
            parser.fault_ = std::current_exception();
            XML_StopParser(parser.parser_.get(), XML_FALSE);
        }
    }
    static void XMLCALL OnStart(void* self, const XML_Char* name, const XML_Char** attributes) {
        Call(self, [&](GpxParser& parser) { parser.Start(LocalName(name), attributes); });
    }
    static void XMLCALL OnEnd(void* self, const XML_Char* name) {
        Call(self, [&](GpxParser& parser) { parser.End(name); });
    }
    static void XMLCALL OnText(void* self, const XML_Char* text, int length) {
        Call(self, [&](GpxParser& parser) {
            const std::string_view part(text, static_cast<std::size_t>(length));
            parser.text_.append(part.substr(0, LongestText - parser.text_.size()));
        });
    }
    static void XMLCALL OnEntity(void* self, const XML_Char*, int, const XML_Char*, int, const XML_Char*,
                                 const XML_Char*, const XML_Char*, const XML_Char*) {
        Call(self, [&](GpxParser& parser) {
            parser.Refuse(
                "The file declares entities of its own, which tracks have no need of and which can make a "
                "small file endless. Export it again without them, or choose another file.");
        });
    }
    static int XMLCALL OnEncoding(void*, const XML_Char* name, XML_Encoding* encoding);

    std::uint64_t Line() const { return XML_GetCurrentLineNumber(parser_.get()) + plainLines_; }
    [[noreturn]] void Refuse(const std::string& reason) const {
        throw RunTimeError(ErrorNumber::TypeMismatch, reason + "\n" + path_ + ", line " + std::to_string(Line()));
    }

    void Start(std::string_view name, const XML_Char** attributes);
    void End(std::string_view fullName);
    void EndOfPoint();
    void EndOfTrackName();
    void EndOfWaypoint();
    bool Parse(std::string_view part, bool isLast);
    std::size_t PassPlainPoints(std::string_view piece);

    std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser_;
    const std::string& path_;
    TrackSummary& summary_;
    TrackOrder order_;
    std::exception_ptr fault_;
    std::vector<Element> open_;
    std::string text_;
    std::string trackName_;
    std::string waypointName_;
    GpxPoint point_;
    GpxPoint waypoint_;
    std::uint64_t fed_ = 0;
    std::uint64_t plainLines_ = 0;
    /// Bytes that the parser had when it met the end of a track point.
    std::uint64_t endOfPoint_ = 0;
    bool hasRoot_ = false;
    bool isPointOpen_ = false;
};

int XMLCALL GpxParser::OnEncoding(void*, const XML_Char* name, XML_Encoding* encoding) {
    if (!EqualIgnoringCase(name, "windows-1252") && !EqualIgnoringCase(name, "cp1252")) return XML_STATUS_ERROR;
    for (int i = 0; i < 256; ++i) {
        const std::byte byte{static_cast<unsigned char>(i)};
        const std::string text = Utf8FromWindows1252(std::span(&byte, 1));
        std::size_t at = 0;
        encoding->map[i] = static_cast<int>(NextCharacter(text, at));
    }
    encoding->data = nullptr;
    encoding->convert = nullptr;
    encoding->release = nullptr;
    return XML_STATUS_OK;
}

void GpxParser::Start(std::string_view name, const XML_Char** attributes) {
    if (!hasRoot_ && name != "gpx")
        Refuse("The file is no GPX file: its first element is \"" + Printable(name.substr(0, 40)) +
               "\". Choose another file, or export the track as GPX.");
    hasRoot_ = true;
    if (open_.size() == DeepestMarkup)
        Refuse("The file nests its elements more than " + std::to_string(DeepestMarkup) +
               " deep, as no track does. Export it again, or choose another file.");
    const Element element = ElementOf(name);
    open_.push_back(element);
    text_.clear();
    const auto begin = [&](GpxPoint& point) {
        point.Clear();
        for (const XML_Char** next = attributes; *next != nullptr; next += 2)
            point.SetAttribute(LocalName(next[0]), next[1]);
    };
    if (element == Element::TrackPoint) begin(point_);
    if (element == Element::TrackPoint) isPointOpen_ = true;
    if (element == Element::Waypoint) begin(waypoint_);
    if (element == Element::Waypoint) waypointName_.clear();
    if (element == Element::RoutePoint) ++summary_.RoutePoints;
    if (element == Element::Track) {
        trackName_.clear();
        NoteTrack(summary_, {});
    }
    if (element == Element::Track || name == "trkseg") order_.BeginSegment();
}

void GpxParser::End(std::string_view fullName) {
    const Element element = open_.back();
    open_.pop_back();
    const Element parent = open_.empty() ? Element::Other : open_.back();
    const std::string_view name = LocalName(fullName);
    if (element == Element::TrackPoint) {
        EndOfPoint();
        isPointOpen_ = false;
        endOfPoint_ = fullName == "trkpt" && parent == Element::Other
                          ? static_cast<std::uint64_t>(XML_GetCurrentByteIndex(parser_.get()) +
                                                       XML_GetCurrentByteCount(parser_.get()))
                          : 0;
    } else if (element == Element::Waypoint) {
        EndOfWaypoint();
    } else if (isPointOpen_) {
        point_.SetElement(name, text_);
    } else if (name == "name" && parent == Element::Track) {
        EndOfTrackName();
    } else if (name == "name" && parent == Element::Waypoint) {
        waypointName_ = Trim(text_);
    }
    text_.clear();
}

void GpxParser::EndOfPoint() {
    TrackPoint& point = point_.Point();
    point.Name = trackName_;
    if (point.Node != 0) point.Node = order_.NodeOf(point_.NodeName());
    if (!point.Position)
        order_.AddBroken(Line(), WrongPosition);
    else if (point_.IsVoid())
        ++summary_.Void;
    else if (!order_.Add(point))
        XML_StopParser(parser_.get(), XML_FALSE);
}

void GpxParser::EndOfTrackName() {
    trackName_ = Trim(text_);
    if (summary_.TrackCount <= summary_.Names.size()) summary_.Names.back() = trackName_;
}

void GpxParser::EndOfWaypoint() {
    ++summary_.WaypointCount;
    const auto position = waypoint_.Point().Position;
    if (position && summary_.Waypoints.size() < MostTrackNames)
        summary_.Waypoints.push_back({waypointName_, *position});
}

bool GpxParser::Parse(std::string_view part, bool isLast) {
    const XML_Status status = XML_Parse(parser_.get(), part.data(), static_cast<int>(part.size()), isLast ? 1 : 0);
    fed_ += part.size();
    if (fault_) std::rethrow_exception(fault_);
    if (summary_.IsStopped) return false;
    if (status == XML_STATUS_OK) {
        const auto at = static_cast<std::uint64_t>(std::max<XML_Index>(XML_GetCurrentByteIndex(parser_.get()), 0));
        if (fed_ > at + LongestMarkup)
            Refuse(
                "A piece of the file's markup is longer than 1 MB, as in no track. Export it again, or choose "
                "another file.");
        return true;
    }
    const XML_Error error = XML_GetErrorCode(parser_.get());
    const std::string reason =
        error == XML_ERROR_NO_ELEMENTS && hasRoot_ ? "it ends within an element" : XML_ErrorString(error);
    if (!hasRoot_) Refuse("The file is no GPX file: " + reason + ". Choose another file, or export the track as GPX.");
    summary_.Damage = "The file is damaged: " + reason +
                      ". What stands before was read; export the track again to have " + "the rest.\n" + path_ +
                      ", line " + std::to_string(Line());
    return false;
}

/// The length of the plain points at the start of a piece, which follows the end of a track point.
std::size_t GpxParser::PassPlainPoints(std::string_view piece) {
    std::size_t passed = 0;
    while (!summary_.IsStopped) {
        point_.Clear();
        const PlainPoint plain = ReadPlainPoint(piece.substr(passed), point_);
        if (plain.Length == 0) break;
        passed += plain.Length;
        plainLines_ += plain.LineEnds;
        EndOfPoint();
    }
    return passed;
}

bool GpxParser::Feed(std::string_view piece, bool isLast) {
    while (!piece.empty()) {
        // Right behind the end of a track point, and nowhere else, a plain one is known to be what it seems.
        if (endOfPoint_ != 0 && endOfPoint_ == fed_ && open_.size() < DeepestMarkup / 2) {
            piece.remove_prefix(PassPlainPoints(piece));
            if (summary_.IsStopped) return false;
        }
        const std::size_t end = piece.find(PointEnd);
        const std::size_t length = end == std::string_view::npos ? piece.size() : end + PointEnd.size();
        if (!Parse(piece.substr(0, length), false)) return false;
        piece.remove_prefix(length);
    }
    return !isLast || Parse({}, true);
}

}  // namespace

bool LooksLikeGpx(std::string_view head, std::string_view) {
    std::string text(head.substr(0, 4096));
    std::erase(text, '\0');  // of UTF-16
    for (std::size_t at = text.find('<'); at != std::string::npos; at = text.find('<', at + 1)) {
        const std::size_t end = text.find_first_of(" \t\r\n>/", at);
        if (end != std::string::npos && LocalName(std::string_view(text).substr(at + 1, end - at - 1)) == "gpx")
            return true;
    }
    return false;
}

TrackSummary ReadGpx(const FileSystem& files, const std::string& path, const TrackSink& sink,
                     const Progress& progress) {
    return ReadGpx(*files.Open(path), path, sink, progress);
}

TrackSummary ReadGpx(InputFile& file, const std::string& path, const TrackSink& sink, const Progress& progress) {
    TrackSummary summary;
    GpxParser parser(path, sink, summary);
    // What another program writes has no size before its end.
    const std::uint64_t size = file.Size();
    std::vector<char> piece((size == 0 ? PieceSize : std::min<std::uint64_t>(PieceSize, size)) + 1);
    std::uint64_t done = 0;
    for (bool isLast = false; !isLast;) {
        const std::size_t count = file.Read(std::as_writable_bytes(std::span(piece)));
        isLast = count < piece.size();
        done += count;
        if (!parser.Feed({piece.data(), count}, isLast)) break;
        if (!progress(std::min(done, size), size + 1)) {
            summary.IsStopped = true;
            break;
        }
    }
    return summary;
}

}  // namespace vantor
