#include <embedded/Caller.h>
#include <embedded/Host.h>
#include <embedded/Nesting.h>
#include <embedded/PlatformCall.h>
#include <embedded/Reader.h>
#include <embedded/Shape.h>
#include <embedded/Text.h>

#include <algorithm>
#include <utility>

namespace lomlisp::embedded {

bool Symbols::IsLegal(std::wstring_view name) {
  if (name.empty() || ReadNumber(name)) return false;
  const std::wstring folded = Folded(name);
  if (folded == L"T" || folded == L"NIL") return false;
  if (name.find_first_not_of(L'.') == std::wstring_view::npos) return false;
  return std::none_of(name.begin(), name.end(), [](wchar_t character) {
    return character <= L' ' ||
           std::wstring_view(L"()\"';\x7F\xA0").find(character) != std::wstring_view::npos;
  });
}

bool Symbols::Set(std::wstring_view name, Chain value) {
  value = WithNilForEmpty(WithDotsBeforeLast(std::move(value)));
  if (!IsLegal(name) || !IsOneItem(value)) return false;
  const bool isNil = value.size() == 1 && (value.front().type == RTNIL || value.front().type == RTVOID);
  if (m_store.write)
    m_store.write(name, value);
  else if (isNil)
    m_values.erase(Folded(name));
  else
    m_values.insert_or_assign(Folded(name), std::move(value));
  return true;
}

void Symbols::KeepIn(SymbolStore store) {
  m_values.clear();
  m_store = std::move(store);
}

const Chain* Symbols::Find(std::wstring_view name) {
  if (m_store.read) {
    m_found = m_store.read(name);
    return m_found ? &*m_found : nullptr;
  }
  const auto found = m_values.find(Folded(name));
  return found != m_values.end() ? &found->second : nullptr;
}

}  // namespace lomlisp::embedded

using namespace lomlisp::embedded;

namespace {

bool IsSymbol(const ACHAR* name) { return name != nullptr && Symbols::IsLegal(name); }

int GetSymbol(PlatformCall& call, const ACHAR* name, resbuf** chain, const void* caller) {
  if (!IsSymbol(name) || chain == nullptr) return RTERROR;
  Host& host = Host::Instance();
  const Chain* value = host.symbols.Find(name);
  *chain = nullptr;
  if (value == nullptr && host.switches.unboundGivesNull) return RTNORM;
  const bool isBeyondChains = value != nullptr && value->empty();
  if (isBeyondChains) return RTERROR;
  const Chain shaped = value != nullptr ? Shaped(*value, host.switches) : Chain{Mark(RTNIL)};
  *chain = Materialise(shaped, host.ledger, Owner::Client, caller);
  if (*chain == nullptr) return RTERROR;
  call.Gives(*chain);
  return RTNORM;
}

int PutSymbol(const ACHAR* name, const resbuf* chain) {
  if (!IsSymbol(name)) return RTERROR;
  return Host::Instance().symbols.Set(name, Capture(chain)) ? RTNORM : RTERROR;
}

}  // namespace

int acedGetSym(const ACHAR* name, resbuf** chain) {
  const void* caller = LOMLISP_CALLER;
  PlatformCall call("acedGetSym", name);
  return call.Run([&] { return GetSymbol(call, name, chain, caller); });
}

int acedPutSym(const ACHAR* name, resbuf* chain) {
  return PlatformCall("acedPutSym", name).Takes(chain).Run([&] { return PutSymbol(name, chain); });
}
