// How far the opening of a large drawing is.
#pragma once

#include <embedded/dxf/Dxf.h>

#include <filesystem>

namespace lomlisp::shell {

// Shows a bar on standard error, when that is a terminal and it takes more than half a second. It is gone
// when all is done.
embedded::DxfProgress Progress(const std::filesystem::path& path);

}  // namespace lomlisp::shell
