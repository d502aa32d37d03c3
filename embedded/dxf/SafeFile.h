// A file that is replaced at once or not at all.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace lomlisp::embedded {

// A path as UTF-8, for messages.
std::string PathText(const std::filesystem::path& path);

// Writes beside the target and takes its place when everything is written and on the disk; until then, and
// after a Fault, which each function may throw, the target is as it was and nothing is left beside it. Who
// kills the process leaves the target as it was or as it shall be, and perhaps a file TARGET.newN. A link to
// a file stays a link, and what may read the target may read what is written, and nobody else.
class SafeFile {
 public:
  explicit SafeFile(const std::filesystem::path& target);
  SafeFile(const SafeFile&) = delete;
  SafeFile& operator=(const SafeFile&) = delete;
  ~SafeFile();

  void Write(std::string_view bytes);
  void Commit();

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  std::filesystem::path m_target;
  std::filesystem::path m_temporary;  // empty when there is none any more
  std::unique_ptr<std::FILE, Closer> m_file;
};

}  // namespace lomlisp::embedded
