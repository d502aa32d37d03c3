#include <shell/Picture.h>

#include <shell/TemporaryFolder.h>

#include <embedded/dxf/Dxf.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <system_error>
#include <vector>

extern char** environ;

namespace lomlisp::shell {

namespace {

using embedded::Drawing;
using embedded::Object;

// The live entities of the main list, in drawing order.
std::vector<Object*> LiveEntities(Drawing& drawing) {
  std::vector<Object*> live;
  for (Object* entity : drawing.Entities().members)
    if (!entity->isErased) live.push_back(entity);
  return live;
}

// A file with the entities of these handles alone. The copy has them in the same order; in old files it has
// other handles.
std::string WriteSelected(Drawing& drawing, const std::string& file, const std::set<uint64_t>& handles) {
  embedded::DxfOpened copy = embedded::ReadDxf(file);
  if (!copy.drawing) return {};
  const std::vector<Object*> originals = LiveEntities(drawing);
  const std::vector<Object*> copies = LiveEntities(*copy.drawing);
  for (size_t index = 0; index < std::min(originals.size(), copies.size()); ++index)
    if (!handles.contains(originals[index]->handle)) copy.drawing->SetErased(*copies[index], true);
  return embedded::WriteDxf(*copy.drawing);
}

// Runs a program, with what it writes in a file. Gives whether it succeeded.
bool RunProgram(std::vector<std::string> words, const std::filesystem::path& output) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                   0600);
  posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
  pid_t child = 0;
  const int error = posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) return false;
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string LastLine(const std::filesystem::path& file) {
  std::ifstream in(file);
  std::string last;
  for (std::string line; std::getline(in, line);)
    if (!line.empty()) last = line;
  return last;
}

// The system's own comes first: one from elsewhere may lack what it draws with.
std::string Ezdxf() { return access("/usr/bin/ezdxf", X_OK) == 0 ? "/usr/bin/ezdxf" : "ezdxf"; }

}  // namespace

std::optional<std::string> DrawPicture(Drawing& drawing, const std::optional<std::set<uint64_t>>& handles,
                                       const std::filesystem::path& picture) {
  std::string file = embedded::WriteDxf(drawing);
  if (handles) file = WriteSelected(drawing, file, *handles);
  if (file.empty()) return "the drawing cannot be written";
  const TemporaryFolder folder;
  const std::filesystem::path copy = folder.Path() / "drawing.dxf";
  if (!(std::ofstream(copy, std::ios::binary) << file).flush()) return copy.string() + ": cannot be written";

  std::error_code ignored;
  std::filesystem::remove(picture, ignored);
  const std::filesystem::path output = folder.Path() / "output";
  const bool isDrawn = RunProgram({Ezdxf(), "draw", "-o", picture.string(), copy.string()}, output) &&
                       std::filesystem::exists(picture, ignored);
  if (isDrawn) return std::nullopt;
  const std::string reason = LastLine(output);
  return "no picture: ezdxf draw failed" + (reason.empty() ? std::string() : ": " + reason);
}

}  // namespace lomlisp::shell
