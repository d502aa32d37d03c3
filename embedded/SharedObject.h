// A file of code that is loaded while the program runs.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace lomlisp::embedded {

class SharedObject {
 public:
  // Loads it with everything that it needs; what it defines is seen by no other. Gives nothing and says why
  // in `error`, which names the file.
  static std::optional<SharedObject> Open(const std::filesystem::path& path, std::string& error);
  // Closes it: its static objects are destroyed, and its code is gone.
  ~SharedObject();
  SharedObject(SharedObject&& other) noexcept;
  SharedObject& operator=(SharedObject&& other) noexcept;

  // The address of what it exports under a name, or null.
  void* Find(const char* name) const;

 private:
  explicit SharedObject(void* handle) : m_handle(handle) {}
  void* m_handle;
};

}  // namespace lomlisp::embedded
