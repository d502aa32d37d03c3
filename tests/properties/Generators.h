// Random values for the properties, the fixture in which properties run, and what they check with.
#pragma once

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <tests/properties/Model.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace lomlisp::test {

// Around every case of a property: a new host, and at the end nothing may be left on the platform's
// heap. Looked at before the host's own check, so that a case that leaks is found and made smaller.
class PropertyTest : public HostTest {
 protected:
  PropertyTest() : m_live(host.ledger.Live().blocks) {}

  void TearDown() override {
    host.ledger.CheckGuards();
    RC_ASSERT(host.ledger.TakeFaults() == std::vector<std::string>());
    RC_ASSERT(host.ledger.Live().blocks == m_live);
    Printed();
    HostTest::TearDown();
  }

 private:
  size_t m_live;
};

// --- Checks that show what they compare ---

inline void ExpectSame(const model::Value& actual, const model::Value& expected) {
  if (!model::Same(actual.node, expected.node))
    RC_FAIL("gave " + rc::toString(actual) + ", expected " + rc::toString(expected));
}
inline void ExpectSame(const CLOMAdsLispVar& actual, const model::Value& expected) {
  ExpectSame(model::FromLibrary(actual), expected);
}

inline std::string NodesText(const std::vector<Element>& nodes) {
  std::string text;
  for (const Element& node : nodes) text += " " + model::NodeText(model::FromLibrary(node));
  return text;
}
// The very same nodes in the same order.
inline void ExpectSameNodes(const std::vector<Element>& actual, const std::vector<Element>& expected) {
  if (actual != expected) RC_FAIL("gave the nodes" + NodesText(actual) + ", expected" + NodesText(expected));
}

template <class T>
using Gen = rc::Gen<T>;
using ValueGen = Gen<model::Value>;

// --- Plain data, of the full range whatever the size of the case ---

template <class T>
Gen<T> AnyNumber() {
  return rc::gen::resize(rc::kNominalSize, rc::gen::arbitrary<T>());
}

template <class T>
Gen<T> InRange(T first, T last) {
  return rc::gen::resize(rc::kNominalSize, rc::gen::inRange(first, static_cast<T>(last + 1)));
}

// Neither the characters of a double quote nor of a surrogate pair.
Gen<std::wstring> AnyText(int maxLength);

// Reals that six decimals give exactly.
Gen<double> SixDecimals();

Gen<double> AnyReal();

// --- Atoms ---

template <class T>
ValueGen Atoms(Gen<T> data) {
  return rc::gen::map(std::move(data), [](const T& value) { return model::AtomValue(value); });
}

ValueGen EntityNames();

// What the reader can read.
ValueGen ReadableAtoms();

// What extended data can hold.
ValueGen ExtendedDataAtoms();

// What a chain can hold.
ValueGen ChainAtoms();

ValueGen NilOr(ValueGen values);

// Few different atoms, so that equal ones meet, also ones that are equal only in spite of their type
// or within the tolerance.
ValueGen SimilarAtoms();

// --- Lists ---

// Which dotted lists there are among the values: none, pairs with an atom or with anything as cdr,
// or lists with any number of members in front of the cdr.
enum class DottedLists { None, AtomCdr, Pairs, AnyLength };

Gen<std::vector<model::Value>> Members(ValueGen member, int maxCount);

ValueGen Lists(ValueGen member, int maxCount);

ValueGen Pairs(ValueGen first, ValueGen second);

ValueGen Dotted(DottedLists dotted, const ValueGen& atoms, const ValueGen& member);

// Atoms, and lists nested at most `depth` deep, with at most four members each.
ValueGen Values(const ValueGen& atoms, DottedLists dotted, int depth);

ValueGen SimilarValues(int depth);

// --- Association lists ---

// With distinct keys in ascending order, and as entries pairs (key . atom) or lists (key ...).
template <class Key>
ValueGen SortedAssociations(Gen<Key> keys) {
  const ValueGen value = Values(Atoms(AnyNumber<short>()), DottedLists::None, 1);
  using Entries = std::map<Key, model::Value>;
  return rc::gen::map(
      rc::gen::resize(10, rc::gen::container<Entries>(rc::gen::resize(rc::kNominalSize, std::move(keys)),
                                                      rc::gen::resize(rc::kNominalSize, value))),
      [](const Entries& entries) {
        std::vector<model::Value> list;
        for (const auto& [key, rest] : entries)
          list.push_back(model::Lisp::Cons(model::AtomValue(key), rest));
        return model::ListValue(list);
      });
}

// Few enough that two lists have keys in common, yet enough to find ten different ones.
Gen<short> ShortKeys();
Gen<std::wstring> TextKeys();

}  // namespace lomlisp::test
