// A folder that is gone, with all that is in it, at the end of the block.
#pragma once

#include <cerrno>
#include <cstdlib>

#include <filesystem>
#include <string>
#include <system_error>

namespace lomlisp::shell {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "lomsh-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
      throw std::system_error(errno, std::generic_category(), "no temporary folder");
    m_path = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  const std::filesystem::path& Path() const { return m_path; }

 private:
  std::filesystem::path m_path;
};

}  // namespace lomlisp::shell
