// What the functions of the session have in common: their arguments, which are items, as the platform takes
// them, and what the platform gives.
#pragma once

#include <shell/Interpreter.h>

#include <lomlisp/platform/ads.h>

#include <embedded/Chain.h>

#include <cstdint>
#include <string>
#include <vector>

namespace lomlisp::shell {

using Arguments = std::vector<embedded::Chain>;

// Defines a function that calls the platform: as the host would, within a call of its own, so that what
// the platform reports ends the evaluation with an error.
void DefineHostFunction(const std::string& name, embedded::Chain (*function)(const Arguments& arguments));

// A chain on the platform's heap, which is released with it.
class HeapChain {
 public:
  explicit HeapChain(resbuf* chain) : m_chain(chain) {}
  explicit HeapChain(const embedded::Chain& chain);
  ~HeapChain();
  HeapChain(const HeapChain&) = delete;
  HeapChain& operator=(const HeapChain&) = delete;
  resbuf* Get() const { return m_chain; }

 private:
  resbuf* m_chain;
};

bool IsNil(const embedded::Chain& item);
embedded::Chain Nil();
embedded::Chain TrueOr(bool condition);  // T, or else nil
embedded::Chain TextItem(std::wstring_view text);
embedded::Chain IntegerItem(int number);
embedded::Chain RealItem(double number);

// The dialect has seen to the argument's type.
const std::wstring& TextIn(const embedded::Chain& item);
int IntegerIn(const embedded::Chain& item);

// A name as the platform takes and gives it.
struct Name {
  ads_name words = {0, 0};
  // Null for nil.
  explicit Name(const embedded::Chain& item);
  Name() = default;
  const __int64* OrNull() const { return isNull ? nullptr : words; }
  bool isNull = false;
};
embedded::Chain NameItem(const Name& name, short type = RTENAME);

// The handle of an entity. Throws LispError for one of another drawing.
uint64_t HandleIn(const embedded::Record& entity);
// Those of a selection set.
std::vector<uint64_t> HandlesIn(const Name& set);

}  // namespace lomlisp::shell
