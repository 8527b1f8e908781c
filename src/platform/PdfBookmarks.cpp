#include "platform/PdfBookmarks.h"

#include <qpdf/qpdf-c.h>

#include <memory>
#include <type_traits>

namespace vantor {
namespace {

struct Cleanup {
    void operator()(qpdf_data pdf) const { qpdf_cleanup(&pdf); }
};
using Pdf = std::unique_ptr<std::remove_pointer_t<qpdf_data>, Cleanup>;

bool IsDone(QPDF_ERROR_CODE result) { return (result & QPDF_ERRORS) == 0; }

qpdf_oh NewObject(qpdf_data pdf) { return qpdf_make_indirect_object(pdf, qpdf_oh_new_dictionary(pdf)); }

/// An entry of the outline that leads to the top of a page.
qpdf_oh MakeItem(qpdf_data pdf, const Bookmark& bookmark, qpdf_oh outline) {
    const qpdf_oh item = NewObject(pdf);
    const qpdf_oh place = qpdf_oh_new_array(pdf);
    qpdf_oh_append_item(pdf, place, qpdf_get_page_n(pdf, bookmark.Page));
    qpdf_oh_append_item(pdf, place, qpdf_oh_new_name(pdf, "/Fit"));
    qpdf_oh_replace_key(pdf, item, "/Title", qpdf_oh_new_unicode_string(pdf, bookmark.Title.c_str()));
    qpdf_oh_replace_key(pdf, item, "/Parent", outline);
    qpdf_oh_replace_key(pdf, item, "/Dest", place);
    return item;
}

void AddOutline(qpdf_data pdf, const std::vector<Bookmark>& bookmarks) {
    const auto pages = static_cast<std::size_t>(qpdf_get_num_pages(pdf));
    const qpdf_oh outline = NewObject(pdf);
    std::vector<qpdf_oh> items;
    for (const Bookmark& bookmark : bookmarks)
        if (bookmark.Page < pages) items.push_back(MakeItem(pdf, bookmark, outline));
    if (items.empty()) return;
    for (std::size_t i = 0; i + 1 < items.size(); ++i) {
        qpdf_oh_replace_key(pdf, items[i], "/Next", items[i + 1]);
        qpdf_oh_replace_key(pdf, items[i + 1], "/Prev", items[i]);
    }
    qpdf_oh_replace_key(pdf, outline, "/First", items.front());
    qpdf_oh_replace_key(pdf, outline, "/Last", items.back());
    qpdf_oh_replace_key(pdf, outline, "/Count", qpdf_oh_new_integer(pdf, static_cast<long long>(items.size())));
    const qpdf_oh root = qpdf_get_root(pdf);
    qpdf_oh_replace_key(pdf, root, "/Outlines", outline);
    qpdf_oh_replace_key(pdf, root, "/PageMode", qpdf_oh_new_name(pdf, "/UseOutlines"));
}

}  // namespace

std::vector<std::byte> WithBookmarks(const std::vector<std::byte>& bytes, const std::vector<Bookmark>& bookmarks) {
    const Pdf pdf(qpdf_init());
    qpdf_set_suppress_warnings(pdf.get(), QPDF_TRUE);
    const auto* first = reinterpret_cast<const char*>(bytes.data());
    if (!IsDone(qpdf_read_memory(pdf.get(), "report", first, bytes.size(), nullptr))) return bytes;
    AddOutline(pdf.get(), bookmarks);
    if (!IsDone(qpdf_init_write_memory(pdf.get())) || !IsDone(qpdf_write(pdf.get()))) return bytes;
    const auto* written = reinterpret_cast<const std::byte*>(qpdf_get_buffer(pdf.get()));
    return {written, written + qpdf_get_buffer_length(pdf.get())};
}

}  // namespace vantor
