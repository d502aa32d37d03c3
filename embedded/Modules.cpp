#include <embedded/Module.h>

#include <algorithm>
#include <map>
#include <utility>

namespace lomlisp::embedded {

namespace {

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : "; ") + text;
  return joined;
}

// The live blocks of a module, by their numbers. Where they come from can be told as long as its code is
// there.
std::map<uint64_t, Block> BlocksOf(const Modules::Module& module) {
  std::map<uint64_t, Block> blocks;
  for (Block& block : Host::Instance().ledger.LeaksSince(module.mark))
    if (module.bookNames.contains(block.function)) blocks.emplace(block.number, std::move(block));
  return blocks;
}

std::string LeakText(const std::string& module, const Block& block) {
  std::string text = block.function.starts_with(module + " ") ? "" : module + " ";
  text += block.function + ": not released: " + block.kind + ", " + std::to_string(block.bytes) + " bytes";
  return block.place.empty() ? text : text + ", by " + block.place;
}

}  // namespace

Modules::Modules() = default;
Modules::~Modules() = default;

Modules::Module* Modules::Find(std::string_view name) const {
  const auto found =
      std::find_if(m_modules.begin(), m_modules.end(), [name](const auto& one) { return one->name == name; });
  return found != m_modules.end() ? found->get() : nullptr;
}

std::vector<std::string> Modules::Names() const {
  std::vector<std::string> names;
  for (const auto& module : m_modules) names.push_back(module->name);
  return names;
}

std::vector<std::string> Modules::TakeReports() { return std::exchange(m_reports, {}); }

std::optional<std::string> Modules::Load(const std::filesystem::path& path) {
  const std::string name = path.filename().string();
  if (name.empty()) return "a module needs a name";
  if (Find(name) != nullptr) return name + ": a module of that name is loaded already";
  std::string error;
  auto object = SharedObject::Open(path, error);
  if (!object) return error;
  auto module = std::make_unique<Module>(name, std::move(*object));
  if (module->entry == nullptr) return path.string() + ": is no module: it has no acrxEntryPoint";
  for (const auto& other : m_modules)
    if (other->entry == module->entry) return name + ": is loaded already, as " + other->name;
  return Start(*m_modules.emplace_back(std::move(module)));
}

std::optional<std::string> Modules::Start(Module& module) {
  for (const auto message : {AcRx::kInitAppMsg, AcRx::kLoadDwgMsg}) {
    const CallResult result = module.Send(message);
    if (result.status == RTNORM) {
      Report(module.BookName(message), result.errors);
      continue;
    }
    const std::string error = module.name + ": refuses to be loaded";
    // What was told to begin is told to end.
    if (message == AcRx::kLoadDwgMsg) Tell(module, AcRx::kUnloadAppMsg);
    Close(module);
    return result.errors.empty() ? error : error + ": " + Joined(result.errors);
  }
  return std::nullopt;
}

// A module cannot refuse to go.
void Modules::Tell(Module& module, AcRx::AppMsgCode message) {
  CallResult result = module.Send(message);
  if (result.status != RTNORM && result.errors.empty()) result.errors.emplace_back("answered with an error");
  Report(module.BookName(message), result.errors);
}

void Modules::Report(const std::string& origin, const std::vector<std::string>& errors) {
  for (const std::string& error : errors) m_reports.push_back(origin + ": " + error);
}

std::optional<std::string> Modules::Unload(std::string_view name) {
  Module* module = Find(name);
  if (module == nullptr) return std::string(name) + ": no module of that name is loaded";
  if (module->running > 0) return module->name + ": is being called";
  if (!module->isUnlocked) return module->name + ": is locked: it has not called acrxUnlockApplication";
  Stop(*module);
  return std::nullopt;
}

void Modules::UnloadAll() {
  while (!m_modules.empty()) Stop(*m_modules.back());
}

void Modules::Stop(Module& module) {
  Tell(module, AcRx::kUnloadDwgMsg);
  Tell(module, AcRx::kUnloadAppMsg);
  Close(module);
}

std::unique_ptr<Modules::Module> Modules::Take(Module& module) {
  const auto found = std::find_if(m_modules.begin(), m_modules.end(),
                                  [&module](const auto& one) { return one.get() == &module; });
  std::unique_ptr<Module> taken = std::move(*found);
  m_modules.erase(found);
  return taken;
}

void Modules::Close(Module& module) {
  Host& host = Host::Instance();
  host.UndefineAll(&module);
  const size_t known = host.ledger.FaultCount();
  host.ledger.CheckGuards();
  const std::string name = module.name;
  const uint64_t mark = module.mark;
  const auto blocks = BlocksOf(module);
  // Closing destroys the module's static objects with what they hold: that is no leak.
  Take(module).reset();
  for (const Block& block : host.ledger.LeaksSince(mark))
    if (const auto found = blocks.find(block.number); found != blocks.end())
      m_reports.push_back(LeakText(name, found->second));
  Report(name, host.ledger.TakeFaults(known));
}

}  // namespace lomlisp::embedded
