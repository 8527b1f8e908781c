#include "statistics/forms/SheetOut.h"

#include <span>

namespace vantor {

void CopySheet(AppContext& context, const std::vector<SheetRow>& rows) {
    context.DesktopServices.CopyText(TabSeparatedText(rows));
}

void SaveSheetAsCsv(AppContext& context, const std::vector<SheetRow>& rows, const std::string& start,
                    const std::string& title) {
    const std::string path =
        context.DesktopServices.ChooseFileToSave(start + ".csv", title, {{"Comma-separated values", ".csv"}});
    if (path.empty()) return;
    const std::string text = CsvText(rows);
    WriteFile(context.Files, path, std::as_bytes(std::span(text)), AsItStands(context.Files, path));
}

}  // namespace vantor
