// The text of a script.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace lomlisp::shell {

// UTF-8, or where it is none the older coding in which each byte is a character; a byte order mark is left
// out. Nothing when it cannot be read.
std::optional<std::wstring> ReadScript(const std::filesystem::path& path);

}  // namespace lomlisp::shell
