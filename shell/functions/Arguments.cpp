#include <shell/functions/Arguments.h>

#include <shell/Values.h>

#include <lomlisp/platform/modules.h>

#include <embedded/Host.h>
#include <embedded/Nesting.h>
#include <embedded/Text.h>

#include <optional>
#include <utility>

namespace lomlisp::shell {

using embedded::Chain;
using embedded::Host;
using embedded::Mark;
using embedded::Record;

void DefineHostFunction(const std::string& name, Chain (*function)(const Arguments& arguments)) {
  Interpreter::Instance().Define(name, [name, function](const Arguments& arguments) {
    Chain value;
    std::optional<LispError> error;
    const auto call = [&] {
      try {
        value = function(arguments);
      } catch (const LispError& raised) {
        error = raised;
      }
      return RTNORM;
    };
    const auto result = Host::Instance().Run(name, call, {});
    if (error) throw *error;
    if (!result.errors.empty()) throw LispError(embedded::FromUtf8(result.errors.front()));
    return value;
  });
}

HeapChain::HeapChain(const Chain& chain)
    : m_chain(embedded::Materialise(chain, Host::Instance().ledger, embedded::Owner::Client)) {
  if (m_chain == nullptr && !chain.empty()) throw LispError(L"insufficient memory");
}

HeapChain::~HeapChain() { acutRelRb(m_chain); }

bool IsNil(const Chain& item) { return item.size() == 1 && item.front().type == RTNIL; }

Chain Nil() { return {Mark(RTNIL)}; }

Chain TrueOr(bool condition) { return {Mark(condition ? RTT : RTNIL)}; }

Chain TextItem(std::wstring_view text) {
  Record record = Mark(RTSTR);
  record.text = text;
  record.hasText = true;
  return {record};
}

Chain IntegerItem(int number) {
  Record record = Mark(RTLONG);
  record.value.rlong = number;
  return {record};
}

Chain RealItem(double number) {
  Record record = Mark(RTREAL);
  record.value.rreal = number;
  return {record};
}

const std::wstring& TextIn(const Chain& item) { return item.front().text; }

int IntegerIn(const Chain& item) {
  const Record& record = item.front();
  return record.type == RTSHORT ? record.value.rint : record.value.rlong;
}

Name::Name(const Chain& item) : isNull(IsNil(item)) {
  if (isNull) return;
  words[0] = item.front().value.rlname[0];
  words[1] = item.front().value.rlname[1];
}

Chain NameItem(const Name& name, short type) {
  Record record = Mark(type);
  record.value.rlname[0] = name.words[0];
  record.value.rlname[1] = name.words[1];
  return {record};
}

uint64_t HandleIn(const Record& entity) {
  const auto handle = Host::Instance().CurrentDrawing().HandleOf(entity.value.rlname);
  if (!handle || *handle == 0) throw LispError(L"bad argument value: an entity of another drawing");
  return *handle;
}

std::vector<uint64_t> HandlesIn(const Name& set) {
  std::vector<uint64_t> handles;
  Name entity;
  for (int position = 0; acedSSName(set.words, position, entity.words) == RTNORM; ++position)
    handles.push_back(HandleIn(NameItem(entity).front()));
  return handles;
}

}  // namespace lomlisp::shell
