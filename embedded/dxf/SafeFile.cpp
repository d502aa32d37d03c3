#include <embedded/dxf/SafeFile.h>

#include <embedded/dxf/Fault.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace lomlisp::embedded {

namespace {

Fault Failure(std::string_view what, const std::error_code& error) {
  return Fault(std::string(what) + ": " + error.message());
}

std::error_code LastError() { return {errno != 0 ? errno : EIO, std::generic_category()}; }

// What the standard library has no words for: a file that was not there before, for one who knows who is to
// read it, and a file that is on the disk.
#ifdef _WIN32
std::FILE* OpenNew(const std::filesystem::path& path, bool) {
  const int file =
      _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
  return file < 0 ? nullptr : _fdopen(file, "wb");
}

bool IsOnDisk(std::FILE* file) { return std::fflush(file) == 0 && _commit(_fileno(file)) == 0; }
#else
std::FILE* OpenNew(const std::filesystem::path& path, bool forOwnerAlone) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, forOwnerAlone ? 0600 : 0666);
  return file < 0 ? nullptr : fdopen(file, "wb");
}

bool IsOnDisk(std::FILE* file) { return std::fflush(file) == 0 && fsync(fileno(file)) == 0; }
#endif

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
  std::filesystem::path temporary;
  for (int number = 1; !m_file; ++number) {
    temporary = m_target;
    temporary += ".new" + std::to_string(number);
    errno = 0;
    m_file.reset(OpenNew(temporary, std::filesystem::exists(old)));
    if (!m_file && errno != EEXIST) throw Failure("cannot be written", LastError());
  }
  m_temporary = temporary;
  if (std::filesystem::exists(old)) std::filesystem::permissions(m_temporary, old.permissions(), error);
}

SafeFile::~SafeFile() {
  if (m_temporary.empty()) return;
  m_file.reset();
  std::error_code ignored;
  std::filesystem::remove(m_temporary, ignored);
}

void SafeFile::Write(std::string_view bytes) {
  if (bytes.empty()) return;
  errno = 0;
  if (std::fwrite(bytes.data(), 1, bytes.size(), m_file.get()) != bytes.size())
    throw Failure("cannot be written to its end", LastError());
}

void SafeFile::Commit() {
  errno = 0;
  // Without this some systems have the new name on the disk before the content, and after a power failure
  // neither of the two.
  if (!IsOnDisk(m_file.get())) throw Failure("cannot be written to its end", LastError());
  if (std::fclose(m_file.release()) != 0) throw Failure("cannot be written to its end", LastError());
  std::error_code error;
  std::filesystem::rename(m_temporary, m_target, error);
  if (error) throw Failure("cannot be replaced", error);
  m_temporary.clear();
}

}  // namespace lomlisp::embedded
