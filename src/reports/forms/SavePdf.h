#pragma once

#include <functional>
#include <string>

#include "core/AppContext.h"
#include "core/ports/DocumentWriter.h"

namespace vantor {

/// Asks for a file, beginning at the path `start` without extension, and writes the document there beside the window.
void SavePdf(AppContext& context, const PagedDocument& document, const std::string& start, const std::string& title);

/// The same where more is written than a document.
using PdfWriting = std::function<void(FileSystem& files, const std::string& path, const Progress& progress)>;
void SavePdf(AppContext& context, const std::string& start, const std::string& title, const PdfWriting& write);

}  // namespace vantor
