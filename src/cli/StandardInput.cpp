#include "cli/StandardInput.h"

#include <algorithm>
#include <istream>
#include <iterator>

namespace vantor {
namespace {

bool IsInput(const std::string& path) { return path.starts_with(StandardInputPath(".")); }

class InputText : public InputFile {
public:
    explicit InputText(const std::string& text) : rest_(std::as_bytes(std::span(text))), size_(text.size()) {}
    std::size_t Read(std::span<std::byte> into) override {
        const auto part = rest_.first(std::min(into.size(), rest_.size()));
        std::ranges::copy(part, into.begin());
        rest_ = rest_.subspan(part.size());
        return part.size();
    }
    std::uint64_t Size() const override { return size_; }

private:
    std::span<const std::byte> rest_;
    std::uint64_t size_;
};

}  // namespace

const std::string& FilesAndInput::Input() const {
    if (!read_) read_ = in_ == nullptr ? std::string() : std::string(std::istreambuf_iterator<char>(*in_), {});
    return *read_;
}

std::optional<FileInfo> FilesAndInput::Find(const std::string& path) const {
    if (!IsInput(path)) return files_.Find(path);
    FileInfo info;
    info.Name = path;
    info.Size = Input().size();
    return info;
}

std::unique_ptr<InputFile> FilesAndInput::Open(const std::string& path) const {
    return IsInput(path) ? std::make_unique<InputText>(Input()) : files_.Open(path);
}

}  // namespace vantor
