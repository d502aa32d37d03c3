// Pictures of drawings, by the program `ezdxf`.
#pragma once

#include <embedded/drawing/Drawing.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

namespace lomlisp::shell {

// Draws the drawing, or of its entities only those with these handles, into a file whose ending tells the
// form: .svg, .png, .pdf. Takes seconds. Says why it could not be done.
std::optional<std::string> DrawPicture(embedded::Drawing& drawing,
                                       const std::optional<std::set<uint64_t>>& handles,
                                       const std::filesystem::path& picture);

}  // namespace lomlisp::shell
