// Inherit and InheritanceStatus: association lists and the ones that they inherit from.

#include <lomlisp/lisp/Equality.h>
#include <lomlisp/lisp/NewNode.h>
#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/listops/Members.h>
#include <lomlisp/listops/messages.h>

#include <utility>

using namespace lomlisp;

namespace {

using Element = CLOMAdsLispVar::Element;

enum Status : short { OnlyInherited = 0, InBoth = 1, OnlyOwn = 2 };

// Goes through an association list from the last entry to the first.
class Entries {
 public:
  explicit Entries(const CLOMAdsLispVar& list) : m_list(list.New()) {
    if (m_list != nullptr) m_left = m_list->children.size();
  }

  bool AtEnd() const { return m_left == 0; }
  const Element& Current() const { return m_list->children[m_left - 1]; }
  // Taken once for each entry, because Car prints when the entry is no list.
  const Element& Key() {
    if (m_key == nullptr) m_key = &KeyOf(Current());
    return *m_key;
  }
  void Next() {
    --m_left;
    m_key = nullptr;
  }

 private:
  static const Element& KeyOf(const Element& entry) {
    if (!node::IsNull(entry.get()) && node::IsList(entry.get()) && !entry->children.empty())
      return entry->children.front();
    static const Element none;
    CLOMAdsLisp::Car(ValueOf(entry));
    return none;
  }

  Element m_list;
  size_t m_left = 0;
  const Element* m_key = nullptr;  // null when it has not been taken yet
};

// Merges the entries from the greatest key down. What `memberOf` makes of each, given its list and
// its status, is put in front of the result.
template <class MemberOf>
CLOMAdsLispVar Merge(Entries own, Entries inherited, MemberOf memberOf) {
  auto merged = NewNode();
  const auto take = [&](Entries& entries, Status status) {
    merged->children.push_front(memberOf(entries, status));
    entries.Next();
  };
  while (!own.AtEnd() && !inherited.AtEnd()) {
    const node::Node ownKey = own.Key().get();
    const node::Node inheritedKey = inherited.Key().get();
    if (node::AreEqual(ownKey, inheritedKey, 0.0)) {
      take(own, InBoth);
      inherited.Next();
    } else if (!node::IsLess(ownKey, inheritedKey)) {
      take(own, OnlyOwn);
    } else {
      take(inherited, OnlyInherited);
    }
  }
  while (!inherited.AtEnd()) take(inherited, OnlyInherited);
  while (!own.AtEnd()) take(own, OnlyOwn);
  return merged->children.empty() ? CLOMAdsLisp::Nil : ValueOf(std::move(merged));
}

bool HasEntries(const CLOMAdsLispVar& list) { return !Entries(list).AtEnd(); }

}  // namespace

CLOMAdsLispVar CLOMAdsLisp::Inherit(const CLOMAdsLispVar& own, const CLOMAdsLispVar& inherited) {
  if (!AssocListP(own) || !AssocListP(inherited)) {
    acutPrintf(messages::InheritOfOther);
    return Nil;
  }
  if (!HasEntries(own)) return inherited;
  if (!HasEntries(inherited)) return own;
  return Merge(Entries(own), Entries(inherited), [](Entries& entries, Status) { return entries.Current(); });
}

CLOMAdsLispVar CLOMAdsLisp::InheritanceStatus(const CLOMAdsLispVar& own, const CLOMAdsLispVar& inherited) {
  if (!AssocListP(own) || !AssocListP(inherited)) {
    acutPrintf(messages::InheritanceStatusOfOther);
    return Nil;
  }
  return Merge(Entries(own), Entries(inherited), [](Entries& entries, Status status) {
    return CLOMAdsLispVar(Cons(ValueOf(entries.Key()), static_cast<short>(status))).New();
  });
}
