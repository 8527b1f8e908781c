#include "reports/forms/SavePdf.h"

#include "core/Paths.h"

namespace vantor {

void SavePdf(AppContext& context, const PagedDocument& document, const std::string& start, const std::string& title) {
    SavePdf(context, start, title, [&](FileSystem& files, const std::string& path, const Progress& progress) {
        const auto bytes = context.Documents.Pdf(document, progress);
        if (progress(1, 1)) WriteFile(files, path, bytes, AsItStands(files, path));
    });
}

void SavePdf(AppContext& context, const std::string& start, const std::string& title, const PdfWriting& write) {
    const std::string path =
        context.DesktopServices.ChooseFileToSave(start + ".pdf", title, {{"PDF documents", ".pdf"}});
    if (path.empty()) return;
    context.Work.Run("Writing " + LastComponent(path),
                     [&](FileSystem& files, const Progress& progress) { write(files, path, progress); });
}

}  // namespace vantor
