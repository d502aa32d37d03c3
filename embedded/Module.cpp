#include <embedded/Module.h>

#include <embedded/Text.h>

namespace lomlisp::embedded {

namespace {

const char* NameOf(AcRx::AppMsgCode message) {
  switch (message) {
    case AcRx::kInitAppMsg:
      return "kInitAppMsg";
    case AcRx::kUnloadAppMsg:
      return "kUnloadAppMsg";
    case AcRx::kLoadDwgMsg:
      return "kLoadDwgMsg";
    case AcRx::kUnloadDwgMsg:
      return "kUnloadDwgMsg";
    default:
      return "a message";
  }
}

}  // namespace

std::string Modules::Module::BookName(AcRx::AppMsgCode message) const { return name + " " + NameOf(message); }

CallResult Modules::Module::Send(AcRx::AppMsgCode message) {
  const std::string bookName = BookName(message);
  bookNames.insert(bookName);
  const auto send = [this, message] {
    const Running guard(*this);
    return entry(message, this) == AcRx::kRetOK ? RTNORM : RTERROR;
  };
  return Host::Instance().Run(bookName, send, {});
}

int Modules::Module::Call(int code) {
  const Running guard(*this);
  Host::Instance().CurrentFrame()->code = code;
  const auto handler = handlers.find(code);
  if (handler != handlers.end()) return handler->second();
  return entry(AcRx::kInvkSubrMsg, this) == AcRx::kRetOK ? RTNORM : RTERROR;
}

bool Modules::Module::Define(const ACHAR* function, short code) {
  if (function == nullptr || !Symbols::IsLegal(function) || code < 0) return false;
  Host::Instance().Define(
      function, [this, code] { return Call(code); }, this);
  const std::wstring folded = Folded(function);
  codes.insert_or_assign(folded, code);
  bookNames.insert(Utf8(folded));
  return true;
}

bool Modules::Module::Undefine(const ACHAR* function, short code) {
  if (function == nullptr) return false;
  const auto found = codes.find(Folded(function));
  if (found == codes.end() || found->second != code) return false;
  codes.erase(found);
  return Host::Instance().Undefine(function, this);
}

}  // namespace lomlisp::embedded
