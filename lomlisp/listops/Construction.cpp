// Cons, List, Append, Reverse: lists from values.

#include <lomlisp/lisp/NewNode.h>
#include <lomlisp/lisp/TreeWalk.h>
#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/listops/DeepCopy.h>
#include <lomlisp/listops/Echo.h>
#include <lomlisp/listops/Members.h>
#include <lomlisp/listops/messages.h>

#include <algorithm>
#include <initializer_list>
#include <unordered_set>
#include <utility>

using namespace lomlisp;

namespace {

using Element = CLOMAdsLispVar::Element;

// Looks for a node in a tree.
class Finder {
 public:
  explicit Finder(node::Node wanted) : m_wanted(wanted) {}

  bool Found() const { return m_found; }

  void Leaf(node::Node node) { m_found = m_found || node == m_wanted; }
  // A list that several others share is looked at once.
  bool Enter(const CLOMLispElement& list) {
    Leaf(&list);
    return !m_found && m_entered.insert(&list).second;
  }
  void BeforeChild(const CLOMLispElement&, size_t) {}
  void AfterChild(const CLOMLispElement&, size_t) {}
  void Leave(const CLOMLispElement&) {}

 private:
  node::Node m_wanted;
  bool m_found = false;
  std::unordered_set<node::Node> m_entered;
};

bool Contains(node::Node tree, node::Node wanted) {
  Finder finder(wanted);
  WalkTree(tree, finder);
  return finder.Found();
}

// A chain in brackets as long as the object lives; then it is as it was.
class Bracketed {
 public:
  explicit Bracketed(resbuf* chain) {
    if (m_begin == nullptr || m_end == nullptr) return;
    m_begin->rbnext = chain;
    m_last = m_begin;
    while (m_last->rbnext != nullptr) m_last = m_last->rbnext;
    m_last->rbnext = m_end;
  }
  ~Bracketed() {
    if (m_last != nullptr) m_last->rbnext = nullptr;
    if (m_begin != nullptr) {
      m_begin->rbnext = nullptr;
      acutRelRb(m_begin);
    }
    if (m_end != nullptr) acutRelRb(m_end);
  }
  Bracketed(const Bracketed&) = delete;
  Bracketed& operator=(const Bracketed&) = delete;

  // Null when there was no memory for the brackets.
  const resbuf* First() const { return m_last != nullptr ? m_begin : nullptr; }

 private:
  resbuf* m_begin = acutBuildList(RTLB, 0);
  resbuf* m_end = acutBuildList(RTLE, 0);
  resbuf* m_last = nullptr;
};

CLOMAdsLispVar ListOf(std::initializer_list<const CLOMAdsLispVar*> values) {
  Element list = NewNode();
  list->children.reserve(values.size());
  for (const CLOMAdsLispVar* value : values) list->children.push_back(value->New());
  return ValueOf(std::move(list));
}

}  // namespace

// --- Cons ---

CLOMAdsLispVar& CLOMAdsLispVar::Cons(const CLOMAdsLispVar& second) {
  auto pair = NewNode();
  if (second.AtomP()) {
    pair->dotted = 1;
    pair->children = {m_element, second.m_element};
  } else {
    pair->children.reserve(2);
    pair->children.push_back(m_element);
    if (node::IsDottedList(second.m_element.get())) {
      pair->children.push_back(second.m_element);
    } else if (second.m_element != nullptr) {
      const ChildSeq& rest = second.m_element->children;
      pair->children.reserve(rest.size() + 1);
      pair->children.insert(pair->children.end(), rest.begin(), rest.end());
    }
  }
  m_element = std::move(pair);
  return *this;
}

CLOMAdsLispVar& CLOMAdsLispVar::Cons(CLOMAdsLispVar&& second) {
  if (!node::IsProperList(second.m_element.get())) return Cons(std::as_const(second));
  Element list = second.m_element;
  // A node that contains itself would never die. Nobody else can reach a node that only `second`
  // (and `list`) owns.
  const bool reachable = this == &second || list.use_count() > 2;
  Element first = m_element;
  if (reachable && Contains(first.get(), list.get())) first = DeepCopy(first);
  list->children.push_front(std::move(first));
  m_element = std::move(list);
  return *this;
}

CLOMAdsLispVar::CLOMAdsLispVar(const CLOMConsProxy& pair) : CLOMAdsLispVar(pair.GetFirst()) {
  Cons(pair.GetSecond());
}

// --- List ---

CLOMAdsLispVar& CLOMAdsLispVar::List() {
  auto list = NewNode();
  list->children.push_back(m_element);
  m_element = std::move(list);
  return *this;
}

CLOMAdsLispVar CLOMAdsLisp::List(const CLOMAdsLispVar& v1) { return ListOf({&v1}); }

CLOMAdsLispVar CLOMAdsLisp::List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2) {
  return ListOf({&v1, &v2});
}

CLOMAdsLispVar CLOMAdsLisp::List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2,
                                 const CLOMAdsLispVar& v3) {
  return ListOf({&v1, &v2, &v3});
}

CLOMAdsLispVar CLOMAdsLisp::List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                                 const CLOMAdsLispVar& v4) {
  return ListOf({&v1, &v2, &v3, &v4});
}

CLOMAdsLispVar CLOMAdsLisp::List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                                 const CLOMAdsLispVar& v4, const CLOMAdsLispVar& v5) {
  return ListOf({&v1, &v2, &v3, &v4, &v5});
}

CLOMAdsLispVar CLOMAdsLisp::List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                                 const CLOMAdsLispVar& v4, const CLOMAdsLispVar& v5,
                                 const CLOMAdsLispVar& v6) {
  return ListOf({&v1, &v2, &v3, &v4, &v5, &v6});
}

CLOMAdsLispVar CLOMAdsLisp::List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                                 const CLOMAdsLispVar& v4, const CLOMAdsLispVar& v5, const CLOMAdsLispVar& v6,
                                 const CLOMAdsLispVar& v7) {
  return ListOf({&v1, &v2, &v3, &v4, &v5, &v6, &v7});
}

CLOMAdsLispVar CLOMAdsLisp::List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                                 const CLOMAdsLispVar& v4, const CLOMAdsLispVar& v5, const CLOMAdsLispVar& v6,
                                 const CLOMAdsLispVar& v7, const CLOMAdsLispVar& v8) {
  return ListOf({&v1, &v2, &v3, &v4, &v5, &v6, &v7, &v8});
}

CLOMAdsLispVar CLOMAdsLisp::List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                                 const CLOMAdsLispVar& v4, const CLOMAdsLispVar& v5, const CLOMAdsLispVar& v6,
                                 const CLOMAdsLispVar& v7, const CLOMAdsLispVar& v8,
                                 const CLOMAdsLispVar& v9) {
  return ListOf({&v1, &v2, &v3, &v4, &v5, &v6, &v7, &v8, &v9});
}

CLOMAdsLispVar CLOMAdsLisp::List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                                 const CLOMAdsLispVar& v4, const CLOMAdsLispVar& v5, const CLOMAdsLispVar& v6,
                                 const CLOMAdsLispVar& v7, const CLOMAdsLispVar& v8, const CLOMAdsLispVar& v9,
                                 const CLOMAdsLispVar& v10) {
  return ListOf({&v1, &v2, &v3, &v4, &v5, &v6, &v7, &v8, &v9, &v10});
}

CLOMAdsLispVar CLOMAdsLisp::List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                                 const CLOMAdsLispVar& v4, const CLOMAdsLispVar& v5, const CLOMAdsLispVar& v6,
                                 const CLOMAdsLispVar& v7, const CLOMAdsLispVar& v8, const CLOMAdsLispVar& v9,
                                 const CLOMAdsLispVar& v10, const CLOMAdsLispVar& v11) {
  return ListOf({&v1, &v2, &v3, &v4, &v5, &v6, &v7, &v8, &v9, &v10, &v11});
}

CLOMAdsLispVar CLOMAdsLisp::List(resbuf* chain) {
  const Bracketed bracketed(chain);
  CLOMAdsLispVar list;
  list.ADSToLisp(bracketed.First());
  return list;
}

// --- Append ---

CLOMAdsLispVar& CLOMAdsLispVar::Append(const CLOMAdsLispVar& b) {
  if (!b.RealListP() || !RealListP()) {
    acutPrintf(messages::MemberAppendOfOther);
    return *this;
  }
  if (b.NilP()) return *this;
  if (NilP()) {
    m_element = b.m_element;
    return *this;
  }
  const bool inPlace = m_element.use_count() == 1;
  Element list = b.m_element;
  // An empty list that is appended to itself would contain itself.
  if (this == &b && list->children.empty()) list = NewNode();
  Element whole = inPlace ? m_element : DeepCopy(m_element);
  ChildSeq& children = whole->children;
  if (list->children.empty())
    children.push_back(std::move(list));
  else
    children.insert(children.end(), list->children.begin(), list->children.end());
  m_element = std::move(whole);
  return *this;
}

CLOMAdsLispVar CLOMAdsLisp::Append(const CLOMAdsLispVar& a, const CLOMAdsLispVar& b) {
  if (RealListP(a) && RealListP(b)) return CLOMAdsLispVar(a).Append(b);
  acutPrintf(messages::AppendOfOther);
  return Nil;
}

// --- Reverse ---

CLOMAdsLispVar& CLOMAdsLispVar::Reverse(bool forceCopy) {
  if (NilP()) return *this;
  if (!RealListP()) {
    acutPrintf(messages::MemberReverseOfOther);
    return *this;
  }
  if (forceCopy) m_element = DeepCopy(m_element);
  std::reverse(m_element->children.begin(), m_element->children.end());
  return *this;
}

CLOMReverseProxy CLOMAdsLisp::Reverse(const CLOMAdsLispVar& list) {
  if (!NilP(list) && RealListP(list)) return CLOMReverseProxy(list);
  if (!NilP(list)) acutPrintf(messages::ReverseOfOther);
  return CLOMReverseProxy(Nil);
}

CLOMAdsLispVar::CLOMAdsLispVar(const CLOMReverseProxy& reversed) : CLOMAdsLispVar(reversed.GetList()) {
  Reverse(true);
}
