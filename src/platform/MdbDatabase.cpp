#include "platform/MdbDatabase.h"

#include <mdbtools.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "core/Date.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RecordCodec.h"
#include "core/RunTimeError.h"
#include "core/Text.h"

#ifdef _WIN32
#include <io.h>
#endif

namespace vantor {
namespace {

/// Keeps what libmdb says about damaged files off a standard stream, which it cannot be told itself.
class QuietStream {
public:
    explicit QuietStream(std::FILE* stream) : stream_(stream) {
        std::fflush(stream_);
        kept_ = dup(fileno(stream_));
        if (kept_ < 0) return;
#ifdef _WIN32
        const int nowhere = open("NUL", O_WRONLY);
#else
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
#endif
        if (nowhere < 0) return;
        dup2(nowhere, fileno(stream_));
        close(nowhere);
    }
    QuietStream(const QuietStream&) = delete;
    QuietStream& operator=(const QuietStream&) = delete;
    ~QuietStream() {
        if (kept_ < 0) return;
        std::fflush(stream_);
        dup2(kept_, fileno(stream_));
        close(kept_);
    }

private:
    std::FILE* stream_;
    int kept_ = -1;
};

/// To be held around every call of libmdb that reads.
struct QuietLibrary {
    QuietStream Errors{stderr};
    QuietStream Output{stdout};
};

struct CloseHandle {
    void operator()(MdbHandle* handle) const { mdb_close(handle); }
};
struct FreeTable {
    void operator()(MdbTableDef* table) const { mdb_free_tabledef(table); }
};
using Handle = std::unique_ptr<MdbHandle, CloseHandle>;
using TableDefinition = std::unique_ptr<MdbTableDef, FreeTable>;

[[noreturn]] void Refuse(const std::string& path, const std::string& reason) {
    throw RunTimeError(ErrorNumber::TypeMismatch, reason + "\n" + path);
}

// Positions in the first page of a database, the same in both formats.
constexpr std::string_view Signature{"\0\1\0\0Standard Jet DB\0", 20};
constexpr std::string_view LaterSignature{"\0\1\0\0Standard ACE DB\0", 20};
constexpr std::size_t VersionAt = 20;
constexpr std::array<std::uint64_t, 2> PageSizes{2048, 4096};  // of Jet 3 and Jet 4, by version
constexpr unsigned long CataloguePage = 2;
// A sign and 16 bytes.
constexpr std::size_t NumericSize = 17;
// libmdb keeps a row's fields in an array of 256.
constexpr int MostColumns = 255;
// The kind of the map of a table's pages and its first page.
constexpr std::size_t ShortestPageMap = 5;

/// What libmdb takes on trust when it opens a file.
void CheckContainer(const FileSystem& files, const std::string& path) {
    const std::uint64_t size = files.Open(path)->Size();
    const std::vector<std::byte> start = ReadFirstBytes(files, path, VersionAt + 1);
    const auto begins = [&](std::string_view signature) {
        return start.size() > VersionAt && std::memcmp(start.data(), signature.data(), signature.size()) == 0;
    };
    if (begins(LaterSignature))
        Refuse(
            path,
            "The file is a database of Access 2007 or later, whatever its name says. Save it in Access as a database "
            "of Access 2002-2003.");
    if (!begins(Signature)) Refuse(path, "The file is no database.");
    const auto version = std::to_integer<std::size_t>(start[VersionAt]);
    if (version >= PageSizes.size()) Refuse(path, "The database's format is neither Jet 3 nor Jet 4.");
    if (size % PageSizes[version] != 0 || size / PageSizes[version] <= CataloguePage)
        Refuse(path, "The database is cut short.");
}

/// The table of that entry, once what libmdb takes on trust in a definition is checked.
TableDefinition ReadDefinition(MdbCatalogEntry& entry, std::uint64_t pages, const std::string& path) {
    constexpr int TableDefinitionPage = 2;
    MdbHandle& handle = *entry.mdb;
    if (entry.table_pg >= pages || mdb_read_pg(&handle, entry.table_pg) != handle.fmt->pg_size ||
        handle.pg_buf[0] != TableDefinitionPage)
        Refuse(path, "The database is damaged: the definition of a table is missing.");
    const int columns = mdb_get_int16(handle.pg_buf, handle.fmt->tab_num_cols_offset);
    if (columns < 1 || columns > MostColumns)
        Refuse(path, "The database is damaged: a table has " + std::to_string(columns) + " columns.");
    TableDefinition table(mdb_read_table(&entry));
    if (!table || table->usage_map == nullptr || table->map_sz < ShortestPageMap)
        Refuse(path, "The database is damaged: the pages of a table cannot be found.");
    return table;
}

template <class Number>
std::string NumberText(Number value, int digits) {
    std::array<char, 40> text;
    const auto [end, error] =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, digits);
    return {text.data(), end};
}

/// A date outside the calendar stays a number, which no reader takes for a date.
std::string DateText(Date date) {
    if (!IsValidDate(date)) return NumberText(date.Days, 17);
    const CivilTime civil = CivilOf(date);
    return ZeroPadded(civil.Month, 2) + "/" + ZeroPadded(civil.Day, 2) + "/" + ZeroPadded(civil.Year, 4) + " " +
           ZeroPadded(civil.Hour, 2) + ":" + ZeroPadded(civil.Minute, 2) + ":" + ZeroPadded(civil.Second, 2);
}

/// The stored value of a fixed-width type; nothing where it is shorter than its type.
template <class Value, class Bits>
std::optional<Value> Stored(std::span<const std::byte> bytes) {
    if (bytes.size() < sizeof(Bits)) return std::nullopt;
    return codec::GetBits<Value, Bits>(bytes.data());
}

template <class Value, class Format>
std::optional<std::string> Formatted(std::optional<Value> value, Format format) {
    return value ? std::optional<std::string>(format(*value)) : std::nullopt;
}

/// A text of libmdb, which is freed.
std::optional<std::string> TakenOver(char* text) {
    const std::unique_ptr<char, decltype(&g_free)> owner(text, g_free);
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

/// A value as text, whatever the language of the computer; nothing for a value that does not fit its type.
std::optional<std::string> ValueText(MdbHandle& handle, const MdbColumn& column, std::span<const std::byte> bytes) {
    const auto whole = [](auto value) { return std::to_string(value); };
    switch (column.col_type) {
        case MDB_BYTE: return Formatted(Stored<std::uint8_t, std::uint8_t>(bytes), whole);
        case MDB_INT: return Formatted(Stored<std::int16_t, std::uint16_t>(bytes), whole);
        case MDB_LONGINT: return Formatted(Stored<std::int32_t, std::uint32_t>(bytes), whole);
        case MDB_MONEY:
            return Formatted(Stored<std::int64_t, std::uint64_t>(bytes),
                             [](std::int64_t value) { return NumberText(static_cast<double>(value) / 10000, 17); });
        case MDB_FLOAT:
            return Formatted(Stored<float, std::uint32_t>(bytes), [](float value) { return NumberText(value, 9); });
        case MDB_DOUBLE:
            return Formatted(Stored<double, std::uint64_t>(bytes), [](double value) { return NumberText(value, 17); });
        case MDB_DATETIME:
            return Formatted(Stored<double, std::uint64_t>(bytes), [](double value) { return DateText({value}); });
        case MDB_NUMERIC:
            if (bytes.size() < NumericSize) return std::nullopt;
            return TakenOver(mdb_numeric_to_string(&handle, column.cur_value_start, column.col_scale, column.col_prec));
        case MDB_TEXT:
            return TakenOver(
                mdb_col_to_string(&handle, handle.pg_buf, column.cur_value_start, MDB_TEXT, column.cur_value_len));
        default: return std::nullopt;
    }
}

class MdbRecords : public RecordSet {
public:
    MdbRecords(Handle handle, TableDefinition table, std::string path)
        : handle_(std::move(handle)), table_(std::move(table)), path_(std::move(path)) {}

    int FieldCount() const override { return static_cast<int>(table_->columns->len); }

    bool Next() override {
        if (at_ + 1 < batch_.size()) {
            ++at_;
            return true;
        }
        FetchBatch();
        at_ = 0;
        return !batch_.empty();
    }

    std::string Text(int position) const override {
        if (at_ >= batch_.size() || position < 0 || position >= FieldCount())
            throw RunTimeError(ErrorNumber::SubscriptOutOfRange, path_);
        const std::optional<std::string>& text = batch_[at_][static_cast<std::size_t>(position)];
        if (!text) Refuse(path_, "Field " + std::to_string(position + 1) + " is neither a number, a date nor a text.");
        return *text;
    }

private:
    using Record = std::vector<std::optional<std::string>>;

    /// Records are fetched in batches because silencing libmdb costs more than a record.
    void FetchBatch() {
        constexpr std::size_t BatchSize = 256;
        const QuietLibrary quiet;
        batch_.clear();
        while (!isAtEnd_ && batch_.size() < BatchSize) {
            isAtEnd_ = mdb_fetch_row(table_.get()) == 0;
            if (!isAtEnd_) batch_.push_back(CurrentRecord());
        }
        fetched_ += batch_.size();
        if (isAtEnd_ && fetched_ < table_->num_rows)
            Refuse(path_, "The table is damaged: " + std::to_string(fetched_) + " of its " +
                              std::to_string(table_->num_rows) + " records can be read.");
    }

    Record CurrentRecord() {
        Record record;
        record.reserve(table_->columns->len);
        for (guint i = 0; i < table_->columns->len; ++i)
            record.push_back(FieldText(*static_cast<const MdbColumn*>(g_ptr_array_index(table_->columns, i))));
        return record;
    }

    std::optional<std::string> FieldText(const MdbColumn& column) {
        if (column.col_type == MDB_BOOL) return column.cur_value_len != 0 ? "-1" : "0";
        if (column.cur_value_len == 0) return "";
        const int start = column.cur_value_start;
        const int length = column.cur_value_len;
        const auto pageSize = static_cast<int>(handle_->fmt->pg_size);
        if (start < 0 || length < 0 || start > pageSize || length > pageSize - start) return std::nullopt;
        return ValueText(*handle_, column,
                         std::as_bytes(std::span(handle_->pg_buf))
                             .subspan(static_cast<std::size_t>(start), static_cast<std::size_t>(length)));
    }

    Handle handle_;
    TableDefinition table_;
    std::string path_;
    std::vector<Record> batch_;
    std::size_t at_ = 0;
    std::size_t fetched_ = 0;
    bool isAtEnd_ = false;
};

MdbCatalogEntry* FindTable(MdbHandle& handle, const std::string& table, std::uint64_t pages, const std::string& path) {
    MdbCatalogEntry ofCatalogue{};
    ofCatalogue.mdb = &handle;
    ofCatalogue.object_type = MDB_TABLE;
    ofCatalogue.table_pg = CataloguePage;
    ReadDefinition(ofCatalogue, pages, path);
    const GPtrArray* catalogue = mdb_read_catalog(&handle, MDB_TABLE);
    for (guint i = 0; catalogue != nullptr && i < catalogue->len; ++i) {
        auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(catalogue, i));
        if (EqualIgnoringCase(entry->object_name, table)) return entry;
    }
    return nullptr;
}

}  // namespace

std::unique_ptr<RecordSet> MdbDatabase::OpenTable(const std::string& path, const std::string& table) const {
    const auto file = files_.Find(path);
    if (!file) throw RunTimeError(ErrorNumber::FileNotFound, path);
    CheckContainer(files_, path);

    const QuietLibrary quiet;
    Handle handle(mdb_open((FolderOf(path) + file->Name).c_str(), MDB_NOFLAGS));
    if (!handle) Refuse(path, "The file is no database that can be read.");
    const std::uint64_t pages = file->Size / static_cast<std::uint64_t>(handle->fmt->pg_size);
    MdbCatalogEntry* entry = FindTable(*handle, table, pages, path);
    if (entry == nullptr) throw NoSuchTable("The database has no table \"" + table + "\".\n" + path);
    TableDefinition definition = ReadDefinition(*entry, pages, path);
    if (mdb_read_columns(definition.get()) == nullptr || mdb_rewind_table(definition.get()) != 0)
        Refuse(path, "The database is damaged: the columns of \"" + table + "\" cannot be read.");
    return std::make_unique<MdbRecords>(std::move(handle), std::move(definition), path);
}

}  // namespace vantor
