#include "core/StudyCompanion.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <unordered_map>

#include "core/JsonFacts.h"
#include "core/StudyBytes.h"
#include "core/StudyFile.h"
#include "core/StudyOptionsJson.h"
#include "core/Text.h"

namespace vantor {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* VersionMember = "version";
constexpr int Version = 1;
constexpr const char* RunsMember = "runs";
constexpr const char* NameMember = "EntryRunName";
constexpr const char* ComputedMember = "computed";
constexpr const char* FailureMember = "failure";
constexpr const char* MovementMember = "movement";

struct NumberMember {
    const char* Name;
    std::int32_t Computation::*Number;
};
constexpr std::array Numbers = {NumberMember{"CDStartDist", &Computation::CDStartDist},
                                NumberMember{"CDEndDist", &Computation::CDEndDist},
                                NumberMember{"IdealSpeedUser", &Computation::IdealSpeedUser}};
constexpr const char* ThresholdMember = "StopSpeedThreshold";
constexpr const char* PeriodMember = "period";
constexpr const char* SetAsideMember = "set_aside";
constexpr const char* OptionsMember = "statistics";
constexpr const char* LinesMember = "lines";

struct LineMember {
    const char* Name;
    std::string StudyLines::*Line;
};
constexpr std::array Lines = {
    LineMember{"weather", &StudyLines::Weather}, LineMember{"observer", &StudyLines::Observer},
    LineMember{"prepared_by", &StudyLines::PreparedBy}, LineMember{"checked_by", &StudyLines::CheckedBy}};

Json AsJson(const Computation& computation) {
    Json json = {{MovementMember, HashText(computation.Movement)}};
    for (const NumberMember& member : Numbers) json[member.Name] = computation.*member.Number;
    if (!computation.Failure.empty()) json[FailureMember] = computation.Failure;
    return json;
}

/// Throws the library's errors for members that are missing or of another kind.
Computation ComputationFrom(const Json& json) {
    Computation computation;
    computation.Movement = std::stoull(json.at(MovementMember).get<std::string>(), nullptr, 16);
    for (const NumberMember& member : Numbers) computation.*member.Number = json.at(member.Name).get<std::int32_t>();
    computation.Failure = json.value(FailureMember, std::string());
    return computation;
}

Json AsJson(const StudyLines& lines) {
    Json json = Json::object();
    for (const LineMember& member : Lines)
        if (!(lines.*member.Line).empty()) json[member.Name] = lines.*member.Line;
    return json;
}

StudyLines LinesFrom(const Json& json) {
    StudyLines lines;
    for (const LineMember& member : Lines) lines.*member.Line = json.value(member.Name, std::string());
    return lines;
}

bool HasFacts(const StudyRunEntry& entry) {
    return entry.Computed || entry.StopDelayThreshold || !entry.Period.empty() || !entry.SetAside.empty() ||
           !entry.OtherFacts.empty();
}

/// Throws the library's errors for a member of another kind than it should be.
StudyRunEntry FactsFrom(const Json& run) {
    StudyRunEntry entry;
    entry.EntryRunName = run.at(NameMember).get<std::string>();
    if (const auto computed = run.find(ComputedMember); computed != run.end())
        entry.Computed = ComputationFrom(*computed);
    if (const auto threshold = run.find(ThresholdMember); threshold != run.end())
        entry.StopDelayThreshold = threshold->get<std::int16_t>();
    entry.Period = run.value(PeriodMember, std::string());
    entry.SetAside = run.value(SetAsideMember, std::string());
    entry.OtherFacts = TextOfRest(run, {NameMember, ComputedMember, ThresholdMember, PeriodMember, SetAsideMember});
    return entry;
}

std::string KeyOf(const StudyRunEntry& entry) { return FoldCase(RunFileName(entry)); }

Json CompanionJson(const Study& study) {
    Json file = {{VersionMember, Version}};
    if (study.Options != StatisticsOptions()) file[OptionsMember] = JsonOf(study.Options);
    if (study.Lines != StudyLines()) file[LinesMember] = AsJson(study.Lines);
    file[RunsMember] = Json::array();
    for (int i = 1; i <= study.Record.RunCount; ++i) {
        const StudyRunEntry& entry = study.Entries[i];
        if (!HasFacts(entry)) continue;
        Json run = {{NameMember, RunFileName(entry)}};
        if (entry.Computed) run[ComputedMember] = AsJson(*entry.Computed);
        if (entry.StopDelayThreshold) run[ThresholdMember] = *entry.StopDelayThreshold;
        if (!entry.Period.empty()) run[PeriodMember] = entry.Period;
        if (!entry.SetAside.empty()) run[SetAsideMember] = entry.SetAside;
        run.update(ObjectFromText(entry.OtherFacts));
        file[RunsMember].push_back(std::move(run));
    }
    file.update(ObjectFromText(study.OtherFacts));
    return file;
}

constexpr const char* StoredMember = "stored";
constexpr const char* CompanionMember = "companion";
constexpr const char* PathMember = "path";
constexpr const char* SizeMember = "size";
constexpr const char* HashMember = "hash";

Json AsJson(const FileStamp& stamp) { return {{SizeMember, stamp.Size}, {HashMember, HashText(stamp.Hash)}}; }

FileStamp StampFrom(const Json& json) {
    return {json.at(SizeMember).get<std::uint64_t>(), std::stoull(json.at(HashMember).get<std::string>(), nullptr, 16)};
}

StoredStudy StoredFrom(const Json& json) {
    StoredStudy stored{json.at(PathMember).get<std::string>(), StampFrom(json), std::nullopt};
    if (const auto companion = json.find(CompanionMember); companion != json.end())
        stored.Companion = StampFrom(*companion);
    return stored;
}

}  // namespace

bool NeedsCompanion(const Study& study) {
    return !study.OtherFacts.empty() || study.Options != StatisticsOptions() || study.Lines != StudyLines() ||
           std::any_of(study.Entries.begin(), study.Entries.end(), HasFacts);
}

std::vector<std::byte> EncodeCompanion(const Study& study) { return JsonBytes(CompanionJson(study)); }

std::vector<std::byte> EncodeWholeStudy(const Study& study) {
    std::vector<std::byte> bytes = EncodeStudy(study);
    Json companion = CompanionJson(study);
    if (study.Stored) {
        Json& stored = companion[StoredMember] = AsJson(study.Stored->Stamp);
        stored[PathMember] = study.Stored->Path;
        if (study.Stored->Companion) stored[CompanionMember] = AsJson(*study.Stored->Companion);
    }
    const std::vector<std::byte> beside = JsonBytes(companion);
    bytes.insert(bytes.end(), beside.begin(), beside.end());
    return bytes;
}

std::optional<Study> DecodeWholeStudy(std::span<const std::byte> file) {
    if (file.size() < StudyRecordSize) return std::nullopt;
    const int runs = DecodeRecord<StudyRecord>(StudyRecordFields, file).RunCount;
    const std::size_t size = StudyRecordSize + static_cast<std::size_t>(std::max(runs, 0)) * StudyRunEntrySize;
    if (runs < 0 || file.size() < size) return std::nullopt;
    Study study = DecodeStudy(file.first(size));
    const auto beside = file.subspan(size);
    if (beside.empty()) return study;
    if (!DecodeCompanion(beside, study)) return std::nullopt;
    try {
        Json rest = ObjectFromText(study.OtherFacts);
        if (const auto stored = rest.find(StoredMember); stored != rest.end()) study.Stored = StoredFrom(*stored);
        study.OtherFacts = TextOfRest(std::move(rest), {StoredMember});
        return study;
    } catch (const Json::exception&) {
        return std::nullopt;
    } catch (const std::logic_error&) {
        return std::nullopt;
    }
}

bool DecodeCompanion(std::span<const std::byte> file, Study& study) {
    try {
        const Json companion = JsonFromBytes(file);
        std::unordered_map<std::string, StudyRunEntry> facts;
        for (const Json& run : companion.at(RunsMember)) {
            StudyRunEntry entry = FactsFrom(run);
            facts[KeyOf(entry)] = std::move(entry);
        }
        std::string otherFacts = TextOfRest(companion, {VersionMember, RunsMember, OptionsMember, LinesMember});
        const StatisticsOptions options = OptionsFrom(companion.value(OptionsMember, Json::object()));
        StudyLines lines = LinesFrom(companion.value(LinesMember, Json::object()));
        for (int i = 1; i <= study.Record.RunCount; ++i) {
            const auto known = facts.find(KeyOf(study.Entries[i]));
            if (known == facts.end()) continue;
            study.Entries[i].Computed = known->second.Computed;
            study.Entries[i].StopDelayThreshold = known->second.StopDelayThreshold;
            study.Entries[i].OtherFacts = known->second.OtherFacts;
            study.Entries[i].Period = known->second.Period;
            study.Entries[i].SetAside = known->second.SetAside;
        }
        study.Options = options;
        study.Lines = std::move(lines);
        study.OtherFacts = std::move(otherFacts);
        return true;
    } catch (const Json::exception&) {
        return false;
    } catch (const std::logic_error&) {
        return false;  // a hash that is no number, options that cannot be
    }
}

}  // namespace vantor
