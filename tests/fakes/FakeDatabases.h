#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/RunTimeError.h"
#include "core/ports/RecordSet.h"

namespace vantor {

/// A database engine that knows one table.
class FakeDatabases : public DatabaseEngine {
public:
    std::string Path;  ///< of the database
    std::string Table;
    std::vector<std::vector<std::string>> Records;

    std::unique_ptr<RecordSet> OpenTable(const std::string& path, const std::string& table) const override {
        if (path != Path || table != Table) throw NoSuchTable(path);
        return std::make_unique<Reader>(Records);
    }

private:
    class Reader : public RecordSet {
    public:
        explicit Reader(const std::vector<std::vector<std::string>>& records) : records_(records) {}
        int FieldCount() const override { return static_cast<int>(records_.front().size()); }
        bool Next() override { return ++read_ <= records_.size(); }
        std::string Text(int position) const override {
            return records_[read_ - 1][static_cast<std::size_t>(position)];
        }

    private:
        const std::vector<std::vector<std::string>>& records_;
        std::size_t read_ = 0;
    };
};

}  // namespace vantor
