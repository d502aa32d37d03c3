#include <embedded/SharedObject.h>

#include <system_error>
#include <utility>

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace lomlisp::embedded {

namespace {

#ifdef _WIN32

HMODULE ModuleOf(void* handle) { return static_cast<HMODULE>(handle); }

void* OpenObject(const std::filesystem::path& path, std::string& reason) {
  // Of a path with other slashes Windows does not promise that it is found.
  HMODULE const module = LoadLibraryW(std::filesystem::path(path).make_preferred().c_str());
  if (module == nullptr) reason = std::system_category().message(static_cast<int>(GetLastError()));
  return module;
}

void* FindSymbol(void* handle, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(ModuleOf(handle), name));
}

void CloseObject(void* handle) { FreeLibrary(ModuleOf(handle)); }

#else

// Without the file's name, which stands in front of most of them.
std::string LastReason(const std::string& file) {
  const char* message = dlerror();
  std::string reason = message != nullptr ? message : "cannot be loaded";
  return reason.starts_with(file + ": ") ? reason.substr(file.size() + 2) : reason;
}

// All symbols are looked up at once: a missing one is an error now, not the end of the program later.
void* OpenObject(const std::filesystem::path& path, std::string& reason) {
  void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) reason = LastReason(path.string());
  return handle;
}

void* FindSymbol(void* handle, const char* name) { return dlsym(handle, name); }

void CloseObject(void* handle) { dlclose(handle); }

#endif

}  // namespace

std::optional<SharedObject> SharedObject::Open(const std::filesystem::path& path, std::string& error) {
  // A name without a folder would be looked for in the system's folders.
  std::error_code ignored;
  std::string reason;
  void* const handle = OpenObject(std::filesystem::absolute(path, ignored), reason);
  if (handle != nullptr) return SharedObject(handle);
  error = path.string() + ": " + reason;
  return std::nullopt;
}

SharedObject::~SharedObject() {
  if (m_handle != nullptr) CloseObject(m_handle);
}

SharedObject::SharedObject(SharedObject&& other) noexcept
    : m_handle(std::exchange(other.m_handle, nullptr)) {}

SharedObject& SharedObject::operator=(SharedObject&& other) noexcept {
  std::swap(m_handle, other.m_handle);
  return *this;
}

void* SharedObject::Find(const char* name) const { return FindSymbol(m_handle, name); }

}  // namespace lomlisp::embedded
