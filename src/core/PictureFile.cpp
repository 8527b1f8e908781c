#include "core/PictureFile.h"

#include "core/Paths.h"

namespace vantor {

std::optional<PictureFormat> PictureFormatOf(const std::string& path) {
    if (HasExtension(path, ".png")) return PictureFormat::Png;
    if (HasExtension(path, ".svg")) return PictureFormat::Svg;
    if (HasExtension(path, ".pdf")) return PictureFormat::Pdf;
    return std::nullopt;
}

void SavePicture(AppContext& context, const std::string& start, const std::string& title,
                 const std::function<std::vector<std::byte>(PictureFormat)>& picture) {
    const std::string path = context.DesktopServices.ChooseFileToSave(
        start + ".png", title, {{"PNG picture", ".png"}, {"SVG drawing", ".svg"}, {"PDF document", ".pdf"}});
    if (path.empty()) return;
    const auto format = PictureFormatOf(path);
    if (!format)
        return context.Messages.Tell(path + "\nName a file that ends in .png, .svg or .pdf.", MessageIcon::Warning);
    WriteFile(context.Files, path, picture(*format), AsItStands(context.Files, path));
}

}  // namespace vantor
