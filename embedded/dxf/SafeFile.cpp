#include <embedded/dxf/SafeFile.h>

#include <embedded/dxf/Fault.h>

#include <cerrno>
#include <ios>
#include <system_error>

namespace lomlisp::embedded {

namespace {

Fault Failure(std::string_view what, const std::error_code& error) {
  return Fault(std::string(what) + ": " + error.message());
}

// What the standard streams tell no more of.
std::error_code LastError() { return {errno != 0 ? errno : EIO, std::generic_category()}; }

std::filesystem::path FreeNameBeside(const std::filesystem::path& target) {
  for (int number = 1;; ++number) {
    std::filesystem::path name = target;
    name += ".new" + std::to_string(number);
    std::error_code error;
    if (!std::filesystem::exists(name, error)) return name;
  }
}

}  // namespace

std::string PathText(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

SafeFile::SafeFile(const std::filesystem::path& target) : m_target(target) {
  std::error_code error;
  if (!target.has_filename() || std::filesystem::is_directory(target, error))
    throw Fault("cannot be written: it is a folder or no name at all");
  if (std::filesystem::is_symlink(target, error)) {
    m_target = std::filesystem::weakly_canonical(target, error);
    if (error) throw Failure("cannot be written", error);
  }
  const auto old = std::filesystem::status(m_target, error);
  if (std::filesystem::exists(old) && !std::filesystem::is_regular_file(old))
    throw Fault("cannot be written: it is no file");
  const std::filesystem::path temporary = FreeNameBeside(m_target);
  errno = 0;
  m_file.open(temporary, std::ios::binary);
  if (!m_file) throw Failure("cannot be written", LastError());
  m_temporary = temporary;
}

SafeFile::~SafeFile() {
  if (m_temporary.empty()) return;
  m_file.close();
  std::error_code ignored;
  std::filesystem::remove(m_temporary, ignored);
}

void SafeFile::Write(std::string_view bytes) {
  errno = 0;
  if (!m_file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())))
    throw Failure("cannot be written to its end", LastError());
}

void SafeFile::Commit() {
  errno = 0;
  m_file.close();
  if (!m_file) throw Failure("cannot be written to its end", LastError());
  std::error_code error;
  const auto old = std::filesystem::status(m_target, error);
  if (std::filesystem::exists(old)) std::filesystem::permissions(m_temporary, old.permissions(), error);
  std::filesystem::rename(m_temporary, m_target, error);
  if (error) throw Failure("cannot be replaced", error);
  m_temporary.clear();
}

}  // namespace lomlisp::embedded
