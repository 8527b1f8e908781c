#include "platform/XlsWriter.h"

#include <gsf/gsf-outfile-msole.h>
#include <gsf/gsf-output-memory.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>

#include "core/RunTimeError.h"
#include "platform/BiffStream.h"
#include "platform/GObjectPointer.h"
#include "platform/SheetText.h"

namespace vantor {
namespace {

using U8 = std::uint8_t;
using U16 = std::uint16_t;
using U32 = std::uint32_t;

enum class Substream : U16 { Globals = 0x0005, Sheet = 0x0010 };

// Fonts: number 4 does not exist, so the fifth one written is number 5.
constexpr U16 PlainFont = 0;
constexpr U16 BoldFont = 5;
// Formats of the file's own begin here; 0 is "General".
constexpr U16 FirstOwnFormat = 164;
// The first 15 cell formats are those of styles, the next one is every plain cell's.
constexpr U16 StyleXfs = 15;
constexpr U16 PlainXf = StyleXfs;
constexpr U16 BoldXf = PlainXf + 1;
constexpr U16 FirstOwnXf = BoldXf + 1;

/// The texts of all cells, each once, and how often they were asked for.
class SharedTexts {
public:
    U32 IndexOf(std::string_view text) {
        ++uses_;
        const auto known = indexes_.find(text);
        if (known != indexes_.end()) return known->second;
        const auto index = static_cast<U32>(indexes_.size());
        texts_.push_back(&indexes_.emplace(text, index).first->first);
        return index;
    }

    void Write(BiffStream& out) const {
        out.Record(Biff::Sst, uses_, static_cast<U32>(texts_.size()));
        for (const std::string* text : texts_) WriteText(out, CellText16(*text));
    }

private:
    /// A text goes on in the next record where it must; its head and first character stay together, and so do the two
    /// units of a character.
    static void WriteText(BiffStream& out, std::u16string_view text) {
        const bool isWide = IsWideText(text);
        const std::size_t width = isWide ? 2 : 1;
        if (out.Room() < 3 + width * std::min<std::size_t>(text.size(), 2)) out.Record(Biff::Continue);
        out.Extend(static_cast<U16>(text.size()), U8{isWide});
        while (true) {
            std::size_t fitting = std::min(text.size(), out.Room() / width);
            if (fitting < text.size() && IsFirstOfTwo(text[fitting - 1])) --fitting;
            out.ExtendText(text.substr(0, fitting), isWide);
            text.remove_prefix(fitting);
            if (text.empty()) return;
            out.Record(Biff::Continue, U8{isWide});
        }
    }
    static bool IsFirstOfTwo(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }

    struct Hash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    std::unordered_map<std::string, U32, Hash, std::equal_to<>> indexes_;
    std::vector<const std::string*> texts_;  ///< the keys, which stay where they are
    U32 uses_ = 0;
};

/// The formats of the columns, each once; General needs none.
class Formats {
public:
    U16 XfOf(const std::string& format) {
        if (format == "General" || format.empty()) return PlainXf;
        const auto known = std::find(formats_.begin(), formats_.end(), format);
        const auto index = known - formats_.begin();
        if (known == formats_.end()) formats_.push_back(format);
        return static_cast<U16>(FirstOwnXf + index);
    }
    const std::vector<std::string>& All() const { return formats_; }

private:
    std::vector<std::string> formats_;
};

void WriteBegin(BiffStream& out, Substream kind) {
    constexpr U16 Biff8 = 0x0600;
    out.Record(Biff::Bof, Biff8, static_cast<U16>(kind), U16{0x0DBB}, U16{1996}, U32{0x000100D1}, U32{0x00000406});
}

void WriteShortText(BiffStream& out, std::u16string_view text) {
    const bool isWide = IsWideText(text);
    out.Extend(U8{isWide});
    out.ExtendText(text, isWide);
}

void WriteFont(BiffStream& out, bool isBold) {
    constexpr U16 TenPoints = 200;
    constexpr U16 AutomaticColour = 0x7FFF;
    constexpr std::u16string_view Name = u"Arial";
    out.Record(Biff::Font, TenPoints, U16{isBold}, AutomaticColour, isBold ? U16{700} : U16{400}, U16{0}, U8{0}, U8{0},
               U8{0}, U8{0}, static_cast<U8>(Name.size()));
    WriteShortText(out, Name);
}

enum class XfKind : U16 { Style = 0xFFF5, Cell = 0x0001 };

/// `attributes`: which of the style's attributes do not hold, or which of the cell's differ from its style's.
void WriteXf(BiffStream& out, XfKind kind, U16 font, U16 format, U8 attributes) {
    constexpr U8 AtBottom = 0x20;
    constexpr U16 NoFill = 0x20C0;
    out.Record(Biff::Xf, font, format, static_cast<U16>(kind), AtBottom, U8{0}, U8{0}, attributes, U32{0}, U32{0},
               NoFill);
}

void WriteFormats(BiffStream& out, const std::vector<std::string>& formats) {
    constexpr U8 NumberDiffers = 0x04;
    constexpr U8 FontDiffers = 0x08;
    for (std::size_t i = 0; i < formats.size(); ++i) {
        const std::u16string code = CellText16(formats[i], 255);
        out.Record(Biff::Format, static_cast<U16>(FirstOwnFormat + i), static_cast<U16>(code.size()));
        WriteShortText(out, code);
    }
    for (U16 i = 0; i < StyleXfs; ++i) WriteXf(out, XfKind::Style, PlainFont, 0, i == 0 ? U8{0} : U8{0xF4});
    WriteXf(out, XfKind::Cell, PlainFont, 0, 0);
    WriteXf(out, XfKind::Cell, BoldFont, 0, FontDiffers);
    for (std::size_t i = 0; i < formats.size(); ++i)
        WriteXf(out, XfKind::Cell, PlainFont, static_cast<U16>(FirstOwnFormat + i), NumberDiffers);
    constexpr U16 BuiltIn = 0x8000;
    out.Record(Biff::Style, BuiltIn, U8{0}, U8{0xFF});
}

/// The head row of each sheet is printed on all its pages.
void WritePrintTitles(BiffStream& out, U16 sheets) {
    constexpr U16 OwnWorkbook = 0x0401;
    constexpr U16 BuiltIn = 0x0020;
    constexpr U8 PrintTitles = 0x07;
    constexpr U8 Area = 0x3B;
    constexpr U16 AreaSize = 11;
    out.Record(Biff::SupBook, sheets, OwnWorkbook);
    out.Record(Biff::ExternSheet, sheets);
    for (U16 sheet = 0; sheet < sheets; ++sheet) out.Extend(U16{0}, sheet, sheet);
    for (U16 sheet = 0; sheet < sheets; ++sheet) {
        out.Record(Biff::DefinedName, BuiltIn, U8{0}, U8{1}, AreaSize, U16{0}, static_cast<U16>(sheet + 1), U32{0},
                   U8{0}, PrintTitles);
        out.Extend(Area, sheet, U16{0}, U16{0}, U16{0}, U16{0x00FF});
    }
}

/// What stands before the sheets. `starts` are their places behind it.
BiffStream Globals(const std::vector<std::string>& names, const std::vector<std::size_t>& starts,
                   const SharedTexts& texts, const Formats& formats) {
    constexpr U16 Utf16 = 1200;
    BiffStream out;
    WriteBegin(out, Substream::Globals);
    out.Record(Biff::CodePage, Utf16);
    // A window of some size with tabs and scroll bars, the first sheet in front.
    out.Record(Biff::Window1, U16{0}, U16{0}, U16{0x25BC}, U16{0x1572}, U16{0x0038}, U16{0}, U16{0}, U16{1}, U16{600});
    out.Record(Biff::DateMode, U16{0});
    for (const bool isBold : {false, false, false, false, true}) WriteFont(out, isBold);
    WriteFormats(out, formats.All());
    std::vector<std::size_t> places;
    for (const std::string& name : names) {
        const std::u16string text = CellText16(name);
        places.push_back(out.Size() + 4);
        out.Record(Biff::BoundSheet, U32{0}, U8{0}, U8{0}, static_cast<U8>(text.size()));
        WriteShortText(out, text);
    }
    WritePrintTitles(out, static_cast<U16>(names.size()));
    texts.Write(out);
    out.Record(Biff::Eof);
    for (std::size_t i = 0; i < places.size(); ++i) out.Overwrite(places[i], static_cast<U32>(out.Size() + starts[i]));
    return out;
}

/// One sheet's records.
class SheetStream {
public:
    SheetStream(BiffStream& out, const Sheet& sheet, SharedTexts& texts, Formats& formats)
        : out_(out), sheet_(sheet), texts_(texts), formats_(formats) {
        for (const SheetColumn& column : sheet.Columns) xfs_.push_back(formats.XfOf(column.Format));
    }

    /// Stopped, not all rows are there.
    void Write(bool isInFront, const Progress& progress) {
        WriteBegin(out_, Substream::Sheet);
        WritePrintSetUp();
        WriteColumns();
        const auto rows = static_cast<U32>(1 + sheet_.Rows.size());
        out_.Record(Biff::Dimensions, U32{0}, rows, U16{0}, ColumnCount(), U16{0});
        // Rows come in blocks: first their frames, then their cells.
        constexpr U32 Block = 32;
        for (U32 first = 0; first < rows && progress(first, rows); first += Block) {
            const U32 end = std::min(first + Block, rows);
            for (U32 row = first; row < end; ++row) WriteRowFrame(static_cast<U16>(row));
            for (U32 row = first; row < end; ++row) WriteCells(static_cast<U16>(row));
        }
        WriteView(isInFront);
        out_.Record(Biff::Eof);
    }

private:
    U16 ColumnCount() const { return static_cast<U16>(sheet_.Columns.size()); }

    /// On paper one page wide and as many high as it takes, landscape.
    void WritePrintSetUp() {
        constexpr U16 UsualAndFit = 0x04C1 | 0x0100;
        constexpr U16 Scale = 100;
        constexpr U16 Resolution = 600;
        constexpr double Margin = 0.5;
        out_.Record(Biff::WsBool, UsualAndFit);
        out_.Record(Biff::Setup, U16{0}, Scale, U16{1}, U16{1}, U16{0}, U16{0}, Resolution, Resolution, Margin, Margin,
                    U16{1});
    }

    void WriteColumns() {
        constexpr int UnitsOfACharacter = 256;
        constexpr int Padding = 182;
        for (U16 column = 0; column < ColumnCount(); ++column) {
            const int width = std::clamp(sheet_.Columns[column].Width, 1, 254) * UnitsOfACharacter + Padding;
            out_.Record(Biff::ColInfo, column, column, static_cast<U16>(width), xfs_[column], U16{0}, U16{0});
        }
    }

    void WriteRowFrame(U16 row) {
        constexpr U16 UsualHeight = 0x00FF;
        constexpr U32 UsualLook = 0x00000100 | (PlainXf << 16);
        out_.Record(Biff::Row, row, U16{0}, ColumnCount(), UsualHeight, U16{0}, U16{0}, UsualLook);
    }

    void WriteCells(U16 row) {
        if (row == 0) {
            for (U16 column = 0; column < ColumnCount(); ++column)
                if (const std::string& head = sheet_.Columns[column].Head; !head.empty())
                    out_.Record(Biff::LabelSst, row, column, BoldXf, texts_.IndexOf(head));
            return;
        }
        const std::vector<SheetCell>& cells = sheet_.Rows[row - 1U];
        const auto count = static_cast<U16>(cells.size());
        for (U16 column = 0; column < count; ++column) {
            const bool isPlainDate = xfs_[column] == PlainXf && std::holds_alternative<Date>(cells[column]);
            const U16 xf = isPlainDate ? formats_.XfOf(PlainDayFormat) : xfs_[column];
            VisitCell(
                cells[column],
                [&](const std::string& text) { out_.Record(Biff::LabelSst, row, column, xf, texts_.IndexOf(text)); },
                [&](double number) { out_.Record(Biff::Number, row, column, xf, number); });
        }
    }

    /// The head row stays in view.
    void WriteView(bool isInFront) {
        constexpr U16 UsualView = 0x00B6;
        constexpr U16 Frozen = 0x0108;
        constexpr U16 InFront = 0x0600;
        constexpr U16 GridColour = 0x0040;
        constexpr U8 LowerPane = 2;
        const auto view = static_cast<U16>(UsualView | Frozen | (isInFront ? InFront : 0));
        out_.Record(Biff::Window2, view, U16{0}, U16{0}, GridColour, U16{0}, U16{0}, U16{0}, U32{0});
        out_.Record(Biff::Pane, U16{0}, U16{1}, U16{1}, U16{0}, U16{LowerPane});
        out_.Record(Biff::Selection, LowerPane, U16{1}, U16{0}, U16{0}, U16{1}, U16{1}, U16{1}, U8{0}, U8{0});
    }

    BiffStream& out_;
    const Sheet& sheet_;
    SharedTexts& texts_;
    Formats& formats_;
    std::vector<U16> xfs_;  ///< of the columns
};

bool Append(GsfOutput* output, std::span<const std::byte> bytes) {
    return gsf_output_write(output, bytes.size(), reinterpret_cast<const guint8*>(bytes.data())) != FALSE;
}

std::vector<std::byte> InCompoundFile(const BiffStream& globals, const BiffStream& sheets) {
    // The class that spreadsheets know their workbooks by.
    constexpr std::array<guint8, 16> WorkbookClass = {0x20, 0x08, 0x02, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46};
    const GObjectPointer<GsfOutput> memory(gsf_output_memory_new());
    const GObjectPointer<GsfOutfile> file(gsf_outfile_msole_new(memory.get()));
    gsf_outfile_msole_set_class_id(GSF_OUTFILE_MSOLE(file.get()), WorkbookClass.data());
    const GObjectPointer<GsfOutput> stream(gsf_outfile_new_child(file.get(), "Workbook", FALSE));
    const bool isWritten = Append(stream.get(), globals.Bytes()) && Append(stream.get(), sheets.Bytes()) &&
                           gsf_output_close(stream.get()) && gsf_output_close(GSF_OUTPUT(file.get()));
    if (!isWritten)
        throw RunTimeError(ErrorNumber::PathFileAccessError, "The compound file of the workbook could not be made.");
    const auto* bytes =
        reinterpret_cast<const std::byte*>(gsf_output_memory_get_bytes(GSF_OUTPUT_MEMORY(memory.get())));
    return {bytes, bytes + gsf_output_size(memory.get())};
}

}  // namespace

std::vector<std::byte> EncodeXls(const std::vector<Sheet>& sheets, const std::vector<std::string>& names,
                                 const Progress& progress) {
    BiffStream out;
    SharedTexts texts;
    Formats formats;
    std::vector<std::size_t> starts;
    for (const Sheet& sheet : sheets) {
        starts.push_back(out.Size());
        SheetStream(out, sheet, texts, formats)
            .Write(starts.size() == 1, progress.PartOf(starts.size() - 1, sheets.size()));
    }
    if (!progress(1, 1)) return {};
    return InCompoundFile(Globals(names, starts, texts, formats), out);
}

}  // namespace vantor
