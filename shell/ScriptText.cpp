#include <shell/ScriptText.h>

#include <embedded/Text.h>

#include <fstream>
#include <iterator>

namespace lomlisp::shell {

namespace {

constexpr wchar_t kByteOrderMark = 0xFEFF;

std::wstring Decoded(const std::string& bytes) {
  std::wstring text = embedded::FromUtf8(bytes);
  const bool isUtf8 = embedded::Utf8(text) == bytes;
  if (isUtf8) return text;
  text.clear();
  for (const char byte : bytes) text += static_cast<wchar_t>(static_cast<unsigned char>(byte));
  return text;
}

}  // namespace

std::optional<std::wstring> ReadScript(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  std::error_code ignored;
  if (!in || in.bad() || std::filesystem::is_directory(path, ignored)) return std::nullopt;
  std::wstring text = Decoded(bytes);
  if (!text.empty() && text.front() == kByteOrderMark) text.erase(0, 1);
  return text;
}

}  // namespace lomlisp::shell
