#include "platform/XlsxWriter.h"

#include <gsf/gsf-infile-zip.h>
#include <gsf/gsf-input-memory.h>
#include <xlsxwriter.h>
#ifdef __linux__
#include <sys/mman.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <clocale>
#include <filesystem>
#include <map>
#include <memory>
#include <string_view>

#include "core/RunTimeError.h"
#include "platform/GObjectPointer.h"
#include "platform/NativeFile.h"
#include "platform/SheetText.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

/// Where the finished workbook lies until it is read: in memory where the system has files there, else in a folder that
/// only this user can enter. Gone at the end, in memory also when the program is killed.
class WorkbookPlace {
public:
    WorkbookPlace() {
#ifdef __linux__
        memory_ = memfd_create("workbook.xlsx", MFD_CLOEXEC);
        if (memory_ >= 0) {
            path_ = "/proc/self/fd/" + std::to_string(memory_);
            return;
        }
#endif
        std::error_code failure;
        // A name may be left over from a process that was stopped.
        do folder_ = TemporaryParent() / TemporaryName();
        while (!fs::create_directory(folder_, failure) && !failure);
        if (failure) ThrowFileError(failure.value(), folder_);
        fs::permissions(folder_, fs::perms::owner_all, failure);
        path_ = folder_ / "workbook.xlsx";
    }
    ~WorkbookPlace() {
        std::error_code ignored;
        if (!folder_.empty()) fs::remove_all(folder_, ignored);
#ifdef __linux__
        if (memory_ >= 0) close(memory_);
#endif
    }
    WorkbookPlace(const WorkbookPlace&) = delete;
    WorkbookPlace& operator=(const WorkbookPlace&) = delete;

    const fs::path& Path() const { return path_; }

    /// Where the library keeps parts of the workbook, in files that have no name any more once they are open.
    static fs::path TemporaryParent() {
        std::error_code failure;
        fs::path parent = fs::temp_directory_path(failure);
        if (failure) throw RunTimeError(ErrorNumber::PathNotFound, "The system has no folder for temporary files.");
        return parent;
    }

private:
    fs::path path_;
    fs::path folder_;
#ifdef __linux__
    int memory_ = -1;
#endif
};

/// While it lives, the library writes numbers with a point whatever the user's language.
class PointInNumbers {
public:
#ifdef _WIN32
    PointInNumbers()
        : threads_(_configthreadlocale(_ENABLE_PER_THREAD_LOCALE)), old_(std::setlocale(LC_NUMERIC, nullptr)) {
        std::setlocale(LC_NUMERIC, "C");
    }
    ~PointInNumbers() {
        std::setlocale(LC_NUMERIC, old_.c_str());
        _configthreadlocale(threads_);
    }
#else
    PointInNumbers() : plain_(newlocale(LC_ALL_MASK, "C", nullptr)), old_(uselocale(plain_)) {}
    ~PointInNumbers() {
        uselocale(old_);
        freelocale(plain_);
    }
#endif
    PointInNumbers(const PointInNumbers&) = delete;
    PointInNumbers& operator=(const PointInNumbers&) = delete;

private:
#ifdef _WIN32
    int threads_;
    std::string old_;
#else
    locale_t plain_;
    locale_t old_;
#endif
};

struct FreeWorkbook {
    void operator()(lxw_workbook* workbook) const { lxw_workbook_free(workbook); }
};

/// Readers take "_x" and four digits of base 16 and "_" for one character; the first underscore is written that way.
std::string Escaped(std::string text) {
    constexpr std::string_view EscapedUnderscore = "_x005F_";
    const auto isEscape = [&](std::size_t at) {
        if (at + 6 >= text.size() || text[at + 1] != 'x' || text[at + 6] != '_') return false;
        for (std::size_t i = at + 2; i < at + 6; ++i)
            if (std::isxdigit(static_cast<unsigned char>(text[i])) == 0) return false;
        return true;
    };
    for (std::size_t at = text.find('_'); at != std::string::npos; at = text.find('_', at + 1)) {
        if (!isEscape(at)) continue;
        text.replace(at, 1, EscapedUnderscore);
        at += EscapedUnderscore.size() - 1;
    }
    return text;
}

/// A workbook that is written row by row into a folder.
class XlsxBook {
public:
    explicit XlsxBook(const fs::path& path) : path_(path), folder_(WorkbookPlace::TemporaryParent().string()) {
        lxw_workbook_options options{};
        options.constant_memory = LXW_TRUE;
        options.tmpdir = folder_.data();
        workbook_.reset(workbook_new_opt(path_.string().c_str(), &options));
        if (!workbook_) throw std::bad_alloc();
        headLook_ = workbook_add_format(workbook_.get());
        format_set_bold(headLook_);
    }

    /// Returns how many cells it has written; stopped, they are not all.
    std::size_t Add(const Sheet& sheet, const std::string& name, const Progress& progress) {
        errno = 0;
        lxw_worksheet* worksheet = workbook_add_worksheet(workbook_.get(), name.c_str());
        if (worksheet == nullptr) ThrowFileError(errno, folder_);
        cells_ = 0;
        std::vector<lxw_format*> looks;
        for (const SheetColumn& column : sheet.Columns) {
            const auto at = static_cast<lxw_col_t>(looks.size());
            looks.push_back(LookOf(column.Format));
            Check(worksheet_set_column(worksheet, at, at, column.Width, looks.back()));
            if (!column.Head.empty()) PutText(worksheet, 0, at, column.Head, headLook_);
        }
        worksheet_freeze_panes(worksheet, 1, 0);
        // On paper one page wide, with the heads on each.
        worksheet_set_landscape(worksheet);
        worksheet_fit_to_pages(worksheet, 1, 0);
        Check(worksheet_repeat_rows(worksheet, 0, 0));
        for (std::size_t row = 0; row < sheet.Rows.size() && progress(row, sheet.Rows.size()); ++row) {
            const auto line = static_cast<lxw_row_t>(row + 1);
            for (std::size_t i = 0; i < sheet.Rows[row].size(); ++i) {
                const auto column = static_cast<lxw_col_t>(i);
                const SheetCell& cell = sheet.Rows[row][i];
                lxw_format* look = looks[i];
                if (look == nullptr && std::holds_alternative<Date>(cell)) look = LookOf(PlainDayFormat);
                VisitCell(
                    cell, [&](const std::string& text) { PutText(worksheet, line, column, text, look); },
                    [&](double number) {
                        Check(worksheet_write_number(worksheet, line, column, number, look));
                        ++cells_;
                    });
            }
        }
        return cells_;
    }

    std::vector<std::byte> Finish() {
        errno = 0;
        Check(workbook_close(workbook_.release()));
        const NativeFile file = OpenNative(path_, "rb");
        std::error_code failure;
        const auto size = fs::file_size(path_, failure);
        if (failure) ThrowFileError(failure, path_);
        std::vector<std::byte> bytes(size);
        if (std::fread(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) ThrowFileError(errno, folder_);
        return bytes;
    }

private:
    lxw_format* LookOf(const std::string& format) {
        if (format == "General" || format.empty()) return nullptr;
        lxw_format*& look = looks_[format];
        if (look == nullptr) {
            look = workbook_add_format(workbook_.get());
            format_set_num_format(look, format.c_str());
        }
        return look;
    }

    void PutText(lxw_worksheet* worksheet, lxw_row_t row, lxw_col_t column, const std::string& text, lxw_format* look) {
        Check(worksheet_write_string(worksheet, row, column, CellText(Escaped(text)).c_str(), look));
        ++cells_;
    }

    void Check(lxw_error error) const {
        if (error == LXW_NO_ERROR) return;
        if (errno != 0) ThrowFileError(errno, folder_);
        throw RunTimeError(ErrorNumber::PathFileAccessError, folder_ + "\n" + lxw_strerror(error));
    }

    fs::path path_;
    std::string folder_;
    std::unique_ptr<lxw_workbook, FreeWorkbook> workbook_;
    lxw_format* headLook_ = nullptr;
    std::map<std::string, lxw_format*> looks_;  ///< by the columns' formats
    std::size_t cells_ = 0;                     ///< written to the sheet under way
};

/// Whether the sheet's part of the file is there to its end, with that many cells.
bool HasCells(GsfInfile* file, std::size_t sheet, std::size_t cells) {
    constexpr gsf_off_t Step = 65536;
    constexpr std::string_view End = "</worksheet>";
    const std::string name = "sheet" + std::to_string(sheet + 1) + ".xml";
    const GObjectPointer<GsfInput> part(gsf_infile_child_by_vname(file, "xl", "worksheets", name.c_str(), nullptr));
    if (!part) return false;
    std::string text;
    std::size_t found = 0;
    while (const gsf_off_t left = gsf_input_remaining(part.get())) {
        const auto size = static_cast<std::size_t>(std::min(left, Step));
        const auto* bytes = reinterpret_cast<const char*>(gsf_input_read(part.get(), size, nullptr));
        if (bytes == nullptr) return false;
        // What an element's begin or the end may need of the step before goes in front.
        text.erase(0, text.size() - std::min(text.size(), End.size()));
        const std::size_t seen = text.size() < 2 ? 0 : text.size() - 2;
        text.append(bytes, size);
        for (std::size_t at = text.find("<c ", seen); at != std::string::npos; at = text.find("<c ", at + 3)) ++found;
    }
    return found == cells && text.ends_with(End);
}

/// Whether a part of text is there to the end of its outermost element.
bool IsWholePart(GsfInput* part) {
    constexpr gsf_off_t Begin = 4096;
    const auto first = static_cast<std::size_t>(std::min(gsf_input_size(part), Begin));
    const auto* bytes = reinterpret_cast<const char*>(gsf_input_read(part, first, nullptr));
    if (bytes == nullptr) return false;
    const std::string begin(bytes, first);
    // Behind the line that says it is XML comes the element.
    const std::size_t line = begin.find("?>");
    const std::size_t open = begin.find('<', line == std::string::npos ? 0 : line);
    if (open == std::string::npos) return false;
    const std::string name = begin.substr(open + 1, begin.find_first_of(" >/", open + 1) - open - 1);
    const std::string end = "</" + name + ">";
    // One part has a line end behind it.
    const auto last = static_cast<std::size_t>(std::min(gsf_input_size(part), static_cast<gsf_off_t>(end.size() + 1)));
    if (gsf_input_seek(part, -static_cast<gsf_off_t>(last), G_SEEK_END)) return false;
    bytes = reinterpret_cast<const char*>(gsf_input_read(part, last, nullptr));
    return bytes != nullptr && std::string_view(bytes, last).find(end) != std::string_view::npos;
}

/// All parts of a folder of the workbook and of those below it.
bool AreWholeParts(GsfInfile* folder) {
    for (int i = 0; i < gsf_infile_num_children(folder); ++i) {
        const GObjectPointer<GsfInput> child(gsf_infile_child_by_index(folder, i));
        if (!child) return false;
        const bool isFolder = GSF_IS_INFILE(child.get()) && gsf_infile_num_children(GSF_INFILE(child.get())) >= 0;
        if (isFolder ? !AreWholeParts(GSF_INFILE(child.get())) : !IsWholePart(child.get())) return false;
    }
    return true;
}

bool HasPart(GsfInfile* folder, const char* first, const char* second) {
    return GObjectPointer<GsfInput>(gsf_infile_child_by_vname(folder, first, second, nullptr)) != nullptr;
}

bool IsWholeWorkbook(GsfInfile* file, const std::vector<std::size_t>& cells) {
    for (std::size_t i = 0; i < cells.size(); ++i)
        if (!HasCells(file, i, cells[i])) return false;
    return HasPart(file, "[Content_Types].xml", nullptr) && HasPart(file, "_rels", ".rels") &&
           HasPart(file, "xl", "workbook.xml") && HasPart(file, "xl", "styles.xml") && AreWholeParts(file);
}

/// The library does not notice when its temporary files are cut short, so what it made is looked at, part by part.
void CheckWorkbook(const std::vector<std::byte>& bytes, const std::vector<std::size_t>& cells) {
    const GObjectPointer<GsfInput> input(gsf_input_memory_new(reinterpret_cast<const guint8*>(bytes.data()),
                                                              static_cast<gsf_off_t>(bytes.size()), FALSE));
    const GObjectPointer<GsfInfile> file(gsf_infile_zip_new(input.get(), nullptr));
    if (!file || !IsWholeWorkbook(file.get(), cells))
        throw RunTimeError(ErrorNumber::DiskFull, PortablePath(WorkbookPlace::TemporaryParent()) +
                                                      "\nMake room in this folder for temporary files, or choose "
                                                      "another format.");
}

}  // namespace

std::vector<std::byte> EncodeXlsx(const std::vector<Sheet>& sheets, const std::vector<std::string>& names,
                                  const Progress& progress) {
    const WorkbookPlace place;
    const PointInNumbers locale;
    XlsxBook book(place.Path());
    std::vector<std::size_t> cells;
    // The library packs the rows when all are there, and tells nothing of it.
    constexpr double Packed = 0.5;
    for (std::size_t i = 0; i < sheets.size(); ++i)
        cells.push_back(book.Add(sheets[i], names[i], progress.Part(0, Packed).PartOf(i, sheets.size())));
    if (!progress.Part(0, Packed)(1, 1)) return {};
    std::vector<std::byte> bytes = book.Finish();
    CheckWorkbook(bytes, cells);
    return bytes;
}

}  // namespace vantor
