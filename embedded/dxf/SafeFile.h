// A file that is replaced at once or not at all.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace lomlisp::embedded {

// A path as UTF-8, for messages.
std::string PathText(const std::filesystem::path& path);

// Writes beside the target and takes its place when everything is written; until then, and after a Fault,
// which each function may throw, the target is as it was and nothing is left beside it. A link to a file
// stays a link.
class SafeFile {
 public:
  explicit SafeFile(const std::filesystem::path& target);
  SafeFile(const SafeFile&) = delete;
  SafeFile& operator=(const SafeFile&) = delete;
  ~SafeFile();

  void Write(std::string_view bytes);
  void Commit();

 private:
  std::filesystem::path m_target;
  std::filesystem::path m_temporary;  // empty when there is none any more
  std::ofstream m_file;
};

}  // namespace lomlisp::embedded
