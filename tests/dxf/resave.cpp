// resave IN OUT: opens and saves each file IN/*.dxf, as OUT/*.dxf and in binary as OUT/*.binary.dxf, and says
// how long that took.
#include <embedded/dxf/Dxf.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace lomlisp::embedded;

std::vector<fs::path> DrawingsIn(const fs::path& folder) {
  std::vector<fs::path> paths;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder))
    if (entry.path().extension() == ".dxf") paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  return paths;
}

// Megabytes a second of the processor's time, so that other work beside it does not count.
class Stopwatch {
 public:
  double Rate(const fs::path& file) const {
    const double seconds = static_cast<double>(std::clock() - m_begin) / CLOCKS_PER_SEC;
    return static_cast<double>(fs::file_size(file)) / 1e6 / seconds;
  }

 private:
  std::clock_t m_begin = std::clock();
};

std::optional<DxfError> Resave(const fs::path& from, const fs::path& folder) {
  const Stopwatch opening;
  const DxfOpened opened = OpenDxf(from);
  if (opened.error) return opened.error;
  const double openRate = opening.Rate(from);

  const fs::path to = folder / from.filename();
  const Stopwatch saving;
  if (auto error = SaveDxf(*opened.drawing, to)) return error;
  std::printf("%s: %zu entities, opened with %.0f MB/s, saved with %.0f MB/s\n",
              from.filename().string().c_str(), opened.drawing->Entities().members.size(), openRate,
              saving.Rate(to));
  return SaveDxf(*opened.drawing, fs::path(to).replace_extension(".binary.dxf"), DxfForm::Binary);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) {
    std::fprintf(stderr, "resave IN OUT\n");
    return 2;
  }
  const std::vector<fs::path> drawings = DrawingsIn(arguments[1]);
  fs::create_directories(arguments[2]);
  for (const fs::path& drawing : drawings) {
    if (const auto error = Resave(drawing, arguments[2])) {
      std::fprintf(stderr, "%s\n", error->message.c_str());
      return 1;
    }
  }
  if (drawings.empty()) std::fprintf(stderr, "no drawings in %s\n", arguments[1]);
  return drawings.empty() ? 1 : 0;
}
