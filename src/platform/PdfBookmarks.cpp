#include "platform/PdfBookmarks.h"

// The shared pointers are the standard ones.
#define POINTERHOLDER_TRANSITION 4
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

namespace vantor {
namespace {

using Object = QPDFObjectHandle;

/// An entry of the outline that leads to the top of a page.
Object MakeItem(QPDF& pdf, const std::string& title, Object page, Object parent) {
    Object item = pdf.makeIndirectObject(Object::newDictionary());
    item.replaceKey("/Title", Object::newUnicodeString(title));
    item.replaceKey("/Parent", parent);
    item.replaceKey("/Dest", Object::newArray({page, Object::newName("/Fit")}));
    return item;
}

}  // namespace

std::vector<std::byte> WithBookmarks(const std::vector<std::byte>& bytes, const std::vector<Bookmark>& bookmarks) {
    QPDF pdf;
    pdf.processMemoryFile("report", reinterpret_cast<const char*>(bytes.data()), bytes.size());
    auto pages = QPDFPageDocumentHelper(pdf).getAllPages();
    Object outline = pdf.makeIndirectObject(Object::newDictionary());
    std::vector<Object> items;
    for (const Bookmark& bookmark : bookmarks)
        if (bookmark.Page < pages.size())
            items.push_back(MakeItem(pdf, bookmark.Title, pages[bookmark.Page].getObjectHandle(), outline));
    if (items.empty()) return bytes;
    for (std::size_t i = 0; i + 1 < items.size(); ++i) {
        items[i].replaceKey("/Next", items[i + 1]);
        items[i + 1].replaceKey("/Prev", items[i]);
    }
    outline.replaceKey("/First", items.front());
    outline.replaceKey("/Last", items.back());
    outline.replaceKey("/Count", Object::newInteger(static_cast<long long>(items.size())));
    pdf.getRoot().replaceKey("/Outlines", outline);
    pdf.getRoot().replaceKey("/PageMode", Object::newName("/UseOutlines"));

    QPDFWriter writer(pdf);
    writer.setOutputMemory();
    writer.write();
    const auto buffer = writer.getBufferSharedPointer();
    const auto* first = reinterpret_cast<const std::byte*>(buffer->getBuffer());
    return {first, first + buffer->getSize()};
}

}  // namespace vantor
