#pragma once

#include <string>

#include "core/AppContext.h"
#include "core/ports/DocumentWriter.h"

namespace vantor {

/// Asks for a file, beginning at the path `start` without extension, and writes the document there beside the window.
void SavePdf(AppContext& context, const PagedDocument& document, const std::string& start, const std::string& title);

}  // namespace vantor
