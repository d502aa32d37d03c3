#include <shell/Progress.h>

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <string>

namespace lomlisp::shell {

embedded::DxfProgress Progress(const std::filesystem::path& path) {
  if (isatty(STDERR_FILENO) == 0) return {};
  using Clock = std::chrono::steady_clock;
  return [name = path.filename().string(), begin = Clock::now()](uint64_t done, uint64_t all) {
    constexpr size_t kWidth = 40;
    if (all == 0 || Clock::now() - begin < std::chrono::milliseconds(500)) return;
    const size_t filled = kWidth * done / all;
    const std::string bar = std::string(filled, '#') + std::string(kWidth - filled, '.');
    const bool isDone = done == all;
    std::fprintf(stderr, "\r%s [%s] %3u%%%s", name.c_str(), bar.c_str(),
                 static_cast<unsigned>(100 * done / all), isDone ? "\r\033[K" : "");
    std::fflush(stderr);
  };
}

}  // namespace lomlisp::shell
