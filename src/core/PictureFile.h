#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/AppContext.h"

namespace vantor {

/// The format that a file's extension stands for: .png, .svg or .pdf.
std::optional<PictureFormat> PictureFormatOf(const std::string& path);

/// Lets the user name a file in one of the formats, beginning at the path `start` without an extension, and writes the
/// picture to it.
void SavePicture(AppContext& context, const std::string& start, const std::string& title,
                 const std::function<std::vector<std::byte>(PictureFormat)>& picture);

}  // namespace vantor
