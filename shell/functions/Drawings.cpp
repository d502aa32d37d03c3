// The drawing that is open, its file and its picture.
#include <shell/functions/Program.h>

#include <shell/DrawingChanges.h>
#include <shell/Interpreter.h>
#include <shell/Picture.h>
#include <shell/Progress.h>
#include <shell/Values.h>
#include <shell/functions/Arguments.h>

#include <embedded/Host.h>
#include <embedded/Text.h>

#include <memory>
#include <set>

namespace lomlisp::shell {

namespace {

using embedded::Chain;
using embedded::Host;

void ThrowIf(const std::optional<std::string>& error) {
  if (error) throw LispError(embedded::FromUtf8(*error));
}

std::filesystem::path PathIn(const Chain& item) { return embedded::Utf8(TextIn(item)); }

std::wstring VariableText(const wchar_t* name) {
  const embedded::SystemVariable* variable = Host::Instance().variables.Find(name);
  return variable != nullptr ? variable->value.text : std::wstring();
}

// Where the drawing was opened or saved; empty for a new one.
std::filesystem::path DrawingPath() {
  const std::wstring folder = VariableText(L"DWGPREFIX");
  if (folder.empty()) return {};
  return embedded::Utf8(folder + VariableText(L"DWGNAME"));
}

Chain Open(const Arguments& arguments) {
  ThrowIf(OpenDrawing(PathIn(arguments[0])));
  return arguments[0];
}

Chain Save(const Arguments& arguments) {
  const std::filesystem::path path = IsNil(arguments[0]) ? DrawingPath() : PathIn(arguments[0]);
  if (path.empty()) throw LispError(L"a new drawing needs a name");
  ThrowIf(SaveDrawing(path));
  return TextItem(embedded::FromUtf8(path.string()));
}

Chain New(const Arguments&) {
  Host& host = Host::Instance();
  host.CloseDrawing();
  host.variables.Reset();
  return Nil();
}

// The drawing as its file has it; a new one where it has none.
std::unique_ptr<embedded::Drawing> SavedDrawing() {
  const std::filesystem::path path = DrawingPath();
  if (path.empty()) return std::make_unique<embedded::Drawing>();
  embedded::DxfOpened opened = embedded::OpenDxf(path);
  if (opened.error) throw LispError(embedded::FromUtf8(opened.error->message));
  return std::move(opened.drawing);
}

// (changes) gives their number.
Chain Changes(const Arguments&) {
  Host& host = Host::Instance();
  const auto saved = SavedDrawing();
  const std::vector<std::wstring> lines = DrawingChanges(*saved, host.CurrentDrawing());
  for (const std::wstring& line : lines) host.console.Write(line + L"\n");
  return IntegerItem(static_cast<int>(lines.size()));
}

// (draw [set] [name]): beside nothing else a picture in the current folder, of the drawing's name.
Chain Draw(const Arguments& arguments) {
  std::optional<std::set<uint64_t>> handles;
  if (!IsNil(arguments[0])) {
    const std::vector<uint64_t> members = HandlesIn(Name(arguments[0]));
    handles.emplace(members.begin(), members.end());
  }
  std::filesystem::path picture = std::filesystem::path(embedded::Utf8(VariableText(L"DWGNAME"))).stem();
  picture.replace_extension(".svg");
  if (!IsNil(arguments[1])) picture = PathIn(arguments[1]);
  ThrowIf(DrawPicture(Host::Instance().CurrentDrawing(), handles, picture));
  return TextItem(embedded::FromUtf8(picture.string()));
}

}  // namespace

std::optional<std::string> OpenDrawing(const std::filesystem::path& path) {
  const auto error = Host::Instance().Open(path, Progress(path));
  return error ? std::optional(error->message) : std::nullopt;
}

std::optional<std::string> SaveDrawing(const std::filesystem::path& path) {
  const auto error = Host::Instance().Save(path);
  return error ? std::optional(error->message) : std::nullopt;
}

void DefineDrawingFunctions() {
  DefineHostFunction("open-drawing", Open);
  DefineHostFunction("save-drawing", Save);
  DefineHostFunction("new-drawing", New);
  DefineHostFunction("changes", Changes);
  DefineHostFunction("draw", Draw);
}

}  // namespace lomlisp::shell
