#include "counter/CounterFile.h"

#include <algorithm>
#include <future>
#include <limits>
#include <system_error>
#include <unordered_set>

#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunDecoding.h"
#include "core/RunFile.h"
#include "core/Text.h"
#include "counter/DelimitedReader.h"
#include "counter/Handover.h"

namespace vantor {
namespace {

constexpr std::size_t WordLength = 7;
constexpr std::size_t MostWords = std::numeric_limits<std::int16_t>::max();
/// The high part of a data word that flags a node; larger ones count as it.
constexpr int NodeMark = 128;
constexpr std::int32_t LargestCalibration = 10000;

/// The fields before a record's data words, as bytes of their fixed widths.
struct RecordHeader {
    bool BeginsStudy = false;  ///< a "T" record
    std::string Study;
    std::string RunNumber;
    std::string SiteCode;
    std::string Time;  ///< HHMM
    std::string Date;  ///< MMDDYY
    std::int32_t Calibration = 0;
};

std::string FixedWidth(const DelimitedField& field, std::size_t width) {
    std::string text(field.Text.substr(0, width));
    text.resize(width, ' ');
    return text;
}

std::string Utf8Of(std::string_view stored) { return Utf8FromWindows1252(std::as_bytes(std::span(stored))); }

bool IsEndMark(const DelimitedField& field) {
    return field.Length == CounterEndMark.size() && field.Text == CounterEndMark;
}

bool MayBegin(const DelimitedField& start) { return start.Text.starts_with('T') || start.Text.starts_with(':'); }

RecordHeader ReadHeader(DelimitedReader& fields, const DelimitedField& start) {
    RecordHeader header;
    header.BeginsStudy = start.Text.starts_with('T');
    header.Study = FixedWidth(fields.Next(), 3);
    header.RunNumber = FixedWidth(fields.Next(), 3);
    header.SiteCode = FixedWidth(fields.Next(), 8);
    header.Time = FixedWidth(fields.Next(), 4);
    header.Date = FixedWidth(fields.Next(), 6);
    header.Calibration = Round32(Val(fields.Next().Text));
    return header;
}

/// The value of a data word; it may be more than 16 bits hold.
int WordOf(int low, int high) {
    if (high >= NodeMark) return static_cast<std::int16_t>(static_cast<std::uint16_t>(low) | NodeFlag);
    return low + 256 * std::max(high, 0);
}

int PartOf(std::string_view field, std::size_t at) { return at < field.size() ? Round16(Val(field.substr(at, 3))) : 0; }

void AppendWord(std::vector<std::int16_t>& words, std::string_view field) {
    if (words.size() == MostWords)
        throw RunTimeError(ErrorNumber::Overflow, "The record has more than 32767 data words.");
    words.push_back(To16(WordOf(PartOf(field, 0), PartOf(field, 4))));
}

unsigned DigitAt(const char* text) { return static_cast<unsigned>(*text) - '0'; }

/// Takes words written as three digits, any character and three digits, one behind the other, as nearly all of a file
/// is; returns the number of characters taken. Stops at anything else and before `words` has more than MostWords.
std::size_t TakePlainWords(std::string_view text, std::vector<std::int16_t>& words) {
    const char* taken = text.data();
    const char* const last = taken + text.size();
    // A blank, a word, its field end, and a line feed that may follow a carriage return.
    while (last - taken >= 10 && words.size() < MostWords) {
        const char* const at = *taken == ' ' ? taken + 1 : taken;
        const unsigned a = DigitAt(at), b = DigitAt(at + 1), c = DigitAt(at + 2);
        const unsigned d = DigitAt(at + 4), e = DigitAt(at + 5), f = DigitAt(at + 6);
        const bool allDigits = a <= 9 && b <= 9 && c <= 9 && d <= 9 && e <= 9 && f <= 9;
        if (!allDigits || DelimitedReader::IsFieldEnd(at[3]) || !DelimitedReader::IsFieldEnd(at[7])) break;
        const int word = WordOf(static_cast<int>(a * 100 + b * 10 + c), static_cast<int>(d * 100 + e * 10 + f));
        if (word > std::numeric_limits<std::int16_t>::max()) break;
        words.push_back(static_cast<std::int16_t>(word));
        taken = at + (at[7] == '\r' && at[8] == '\n' ? 9 : 8);
    }
    return static_cast<std::size_t>(taken - text.data());
}

/// Fills `words` up to the record's trailer and returns that one's value.
std::int32_t ReadWords(DelimitedReader& fields, std::vector<std::int16_t>& words) {
    words.clear();
    for (;;) {
        fields.Skip(TakePlainWords(fields.Ahead(), words));
        const DelimitedField field = fields.Next();
        if (field.Length < WordLength) return Round32(Val(field.Text));
        AppendWord(words, field.Text);
    }
}

/// Passes over a record's words and its trailer; `scratch` is overwritten.
void SkipWords(DelimitedReader& fields, std::vector<std::int16_t>& scratch) {
    do {
        scratch.clear();
        fields.Skip(TakePlainWords(fields.Ahead(), scratch));
    } while (fields.Next().Length >= WordLength);
}

int TwoDigits(const std::string& text, std::size_t at) {
    if (!IsDigit(text[at]) || !IsDigit(text[at + 1])) throw RunTimeError(ErrorNumber::TypeMismatch);
    return (text[at] - '0') * 10 + (text[at + 1] - '0');
}

/// Calls `convert`; what it cannot make sense of is told with the text it was given.
template <class Convert>
Date DateFrom(const char* kind, const std::string& text, Convert convert) {
    try {
        return convert();
    } catch (const RunTimeError& error) {
        throw RunTimeError(error.Number(), std::string("The ") + kind + " \"" + Utf8Of(text) + "\" does not exist.");
    }
}

Date RunDateOf(const std::string& text) {
    return DateFrom("date", text,
                    [&] { return DateOf(FullYear(TwoDigits(text, 4)), TwoDigits(text, 0), TwoDigits(text, 2)); });
}

Date RunTimeOf(const std::string& text) {
    return DateFrom("time", text, [&] { return TimeOf(TwoDigits(text, 0), TwoDigits(text, 2)); });
}

/// Names of run files that are in the folder or come into it.
class RunNames {
public:
    RunNames(const FileSystem& files, const std::string& folder) {
        for (const FileInfo& info : FilesWithExtension(files, folder, RunExtension))
            taken_.insert(FoldCase(BaseName(info.Name)));
    }

    std::string NewNameFor(const RecordHeader& header) {
        std::string name =
            WithSafeCharacters(Utf8Of("S" + header.Study + "R" + header.RunNumber + "-" + header.SiteCode + "-1"));
        // Two dots in a row would be taken for a way out of the folder.
        for (std::size_t at = name.find(".."); at != std::string::npos; at = name.find("..")) name.replace(at, 2, "__");
        while (!taken_.insert(FoldCase(name)).second) name = NextName(name);
        return name;
    }

private:
    std::unordered_set<std::string> taken_;
};

/// Fills all but the run's name. The event records of a counter run are all zero: `run.RunSamples` holds none that is
/// not when this is called.
void BuildRun(RunRecord& run, const RecordHeader& header, std::span<const std::int16_t> words, std::int32_t trailer) {
    run.Header = RunHeader{};
    run.Header.RunDate = RunDateOf(header.Date);
    run.Header.RunTime = RunTimeOf(header.Time);
    run.Header.CountNumber = Round16(Val(header.Study));
    run.Header.RunNumber = Round16(Val(header.RunNumber));
    run.Header.SiteCode = Utf8Of(header.SiteCode);
    run.Header.CalConstant = header.Calibration <= LargestCalibration ? To16(header.Calibration) : std::int16_t{0};
    run.Header.HeaderLong = trailer;
    run.Header.SampleCount = static_cast<std::int32_t>(words.size());
    run.SampleValues.ResizeTo(run.Header.SampleCount);
    std::copy(words.begin(), words.end(), run.SampleValues.begin());
    run.RunSamples.ResizeTo(run.Header.SampleCount);
    DecodeNewRun(run);
}

std::string RemedyOf(ErrorNumber number) {
    switch (number) {
        case ErrorNumber::InputPastEndOfFile:
            return "The file ends without its end mark (twenty colons). Dump the counter again to get all of it.";
        case ErrorNumber::Overflow:
            return "A number of this record is too large, or it has too many. Correct the file and read it again.";
        case ErrorNumber::TypeMismatch: return "Correct the file and read it again.";
        default: return "Check the file and the disk it lies on, and try again.";
    }
}

/// The fault as it is shown: with the file, the record, what is known of it and what to do.
RunTimeError FaultIn(const std::string& path, int record, const RunTimeError& fault, const std::string& kept) {
    std::string place = path + ", record " + std::to_string(record);
    if (!fault.Place().empty() && fault.Place() != path) place += "\n" + fault.Place();
    return RunTimeError(fault.Number(), place + "\n" + RemedyOf(fault.Number()) + kept);
}

/// A run on its way to its file.
struct DecodedRun {
    std::string Name;
    std::vector<std::byte> Bytes;
    std::uint64_t Position = 0;  ///< of the counter file, behind its record
};

/// Makes the runs of one counter file, record by record, on a thread of its own.
class RunMaker {
public:
    RunMaker(FileSystem& files, const std::string& path, const std::string& folder, RunRecord& run)
        : fields_(files.Open(path)), names_(files, folder), run_(run) {
        run_.RunSamples.Clear();
    }

    std::uint64_t FileSize() const { return fields_.Size(); }

    /// To the end of the file, the first fault, which is returned, or until no run is taken any more.
    std::optional<RunTimeError> MakeAll(Handover<DecodedRun>& made) {
        try {
            while (MakeNext(made)) {
            }
        } catch (const RunTimeError& fault) {
            return fault;
        }
        return std::nullopt;
    }

private:
    bool MakeNext(Handover<DecodedRun>& made) {
        const DelimitedField start = fields_.Next();
        if (IsEndMark(start)) return false;
        const RecordHeader header = ReadHeader(fields_, start);
        const std::int32_t trailer = ReadWords(fields_, words_);
        BuildRun(run_, header, words_, trailer);
        DecodedRun run;
        run.Name = names_.NewNameFor(header);
        run.Bytes = RunBytes(run_, run.Name);
        run.Position = fields_.Position();
        return made.Put(std::move(run));
    }

    DelimitedReader fields_;
    RunNames names_;
    RunRecord& run_;
    std::vector<std::int16_t> words_;
};

/// The conversion of one file: its runs are made beside the writing of those before.
class Conversion {
public:
    Conversion(FileSystem& files, const std::string& path, const std::string& toFolder, RunRecord& run)
        : path_(path),
          folder_(AsFolder(toFolder)),
          maker_(files, path, folder_, run),
          batch_(files.BeginWrites()),
          making_(Begin()) {}
    ~Conversion() { made_.Close(); }
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;

    std::vector<std::string> ConvertAll(const Progress& progress) {
        constexpr double Written = 0.7;
        const Progress writing = progress.Part(0, Written);
        if (!writing(0, 1)) return {};
        while (const auto run = made_.Take()) {
            AddRunBytes(*batch_, run->Bytes, folder_, run->Name, Expected::Nothing());
            runNames_.push_back(run->Name);
            if (!writing(run->Position, maker_.FileSize())) return {};
        }
        // Whatever is wrong in the file, the runs before it are stored first.
        const std::optional<RunTimeError> fault = making_.get();
        if (!batch_->Commit(progress.Part(Written, 1))) return {};
        if (fault)
            throw FaultIn(path_, static_cast<int>(runNames_.size()) + 1, *fault,
                          runNames_.empty() ? "" : " The runs before this record were kept.");
        return std::move(runNames_);
    }

private:
    std::future<std::optional<RunTimeError>> Begin() {
        try {
            return std::async(std::launch::async, [this] {
                const Closing closing{made_};
                return maker_.MakeAll(made_);
            });
        } catch (const std::system_error&) {
            throw OutOfMemoryError();
        }
    }

    struct Closing {
        Handover<DecodedRun>& Made;
        ~Closing() { Made.Close(); }
    };

    /// Enough for both threads to have something to do.
    static constexpr std::size_t RunsUnderWay = 8;

    std::string path_;
    std::string folder_;
    RunMaker maker_;
    std::unique_ptr<WriteBatch> batch_;
    Handover<DecodedRun> made_{RunsUnderWay};
    std::vector<std::string> runNames_;
    std::future<std::optional<RunTimeError>> making_;  ///< last: it waits for the thread before the rest goes
};

CounterStudy StudyOf(const RecordHeader& header) {
    const std::string date = header.Date.substr(0, 2) + "/" + header.Date.substr(2, 2) + "/" + header.Date.substr(4, 2);
    CounterStudy study;
    study.Study = Trim(Utf8Of(header.Study));
    study.SiteCode = TrimRight(Utf8Of(header.SiteCode));
    study.Date = Utf8Of(date);
    study.Time = Utf8Of(header.Time.substr(0, 2) + ":" + header.Time.substr(2, 2));
    return study;
}

}  // namespace

std::vector<CounterStudy> CounterStudies(const FileSystem& files, const std::string& path, ApplicationEnd& end) {
    DelimitedReader fields(files.Open(path));
    std::vector<CounterStudy> studies;
    std::vector<std::int16_t> scratch;
    std::int16_t previousNumber = 0;
    for (int record = 1;; ++record) {
        try {
            const DelimitedField start = fields.Next();
            if (IsEndMark(start)) return studies;
            if (!MayBegin(start)) end.EndAtOnce({path, record, "a record that begins with \"T\" or \":\""});
            const RecordHeader header = ReadHeader(fields, start);
            const std::int16_t number = Round16(Val(header.Study));
            if (header.BeginsStudy && number != previousNumber) studies.push_back(StudyOf(header));
            if (!studies.empty()) ++studies.back().Runs;
            previousNumber = number;
            SkipWords(fields, scratch);
        } catch (const RunTimeError& fault) {
            throw FaultIn(path, record, fault, "");
        }
    }
}

CounterRecord ReadCounterRecord(DelimitedReader& fields, RunRecord& scratch, std::string& start) {
    const DelimitedField first = fields.Next();
    if (IsEndMark(first)) return CounterRecord::EndMark;
    if (!MayBegin(first)) {
        start = Utf8Of(first.Text);
        return CounterRecord::NoRecord;
    }
    const RecordHeader header = ReadHeader(fields, first);
    std::vector<std::int16_t> words;
    const std::int32_t trailer = ReadWords(fields, words);
    BuildRun(scratch, header, words, trailer);
    return CounterRecord::Whole;
}

std::vector<std::string> ConvertCounterFile(FileSystem& files, const std::string& path, const std::string& toFolder,
                                            RunRecord& currentRun, const Progress& progress) {
    for (int attempt = 1;; ++attempt) {
        try {
            return Conversion(files, path, toFolder, currentRun).ConvertAll(progress);
        } catch (const RunTimeError& error) {
            // Another program has taken a name since the folder was listed: the names move on.
            constexpr int MostAttempts = 20;
            if (error.Number() != ErrorNumber::FileAlreadyExists || attempt == MostAttempts) throw;
        }
    }
}

}  // namespace vantor
