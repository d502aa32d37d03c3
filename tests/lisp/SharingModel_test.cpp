// Random sequences of list operations on a few variables, compared with a plain model: what each
// variable says, and which nodes they share.
#include <tests/listops/Values.h>

#include <array>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <utility>

namespace lomlisp::test::sharing_model {

namespace {

constexpr size_t kVariables = 5;
constexpr int kNil = -1;
// Deep copies write shared parts out, so values are kept small.
constexpr size_t kGreatestTree = 120;

// --- The model ---
//
// Nodes are numbers; nothing is ever freed. Who owns a node is counted anew whenever it matters.

struct ModelNode {
  enum Shape { List, Dotted, Number, NilAtom };
  Shape shape = List;
  int number = 0;
  std::vector<int> children;
};

class Model {
 public:
  std::array<int, kVariables> variables;

  Model() { variables.fill(kNil); }

  const ModelNode& At(int node) const { return m_nodes[static_cast<size_t>(node)]; }
  ModelNode& At(int node) { return m_nodes[static_cast<size_t>(node)]; }

  int Add(ModelNode node) {
    m_nodes.push_back(std::move(node));
    return static_cast<int>(m_nodes.size()) - 1;
  }
  int AddList(std::vector<int> children) { return Add({ModelNode::List, 0, std::move(children)}); }

  bool IsNil(int node) const { return node == kNil || At(node).shape == ModelNode::NilAtom; }
  bool IsAtom(int node) const {
    return node != kNil && (At(node).shape == ModelNode::Number || At(node).shape == ModelNode::NilAtom);
  }
  bool IsShape(int node, ModelNode::Shape shape) const { return node != kNil && At(node).shape == shape; }
  bool IsProper(int node) const {
    if (IsNil(node) || IsShape(node, ModelNode::List)) return true;
    return IsShape(node, ModelNode::Dotted) && At(node).children.size() >= 2 &&
           IsShape(At(node).children[1], ModelNode::List);
  }

  size_t Owners(int node) const {
    size_t owners = 0;
    std::vector<bool> seen(m_nodes.size());
    std::vector<int> open;
    const auto visit = [&](int child) {
      if (child == node) ++owners;
      if (child == kNil || seen[static_cast<size_t>(child)]) return;
      seen[static_cast<size_t>(child)] = true;
      open.push_back(child);
    };
    for (const int variable : variables) visit(variable);
    while (!open.empty()) {
      const int next = open.back();
      open.pop_back();
      for (const int child : At(next).children) visit(child);
    }
    return owners;
  }

  bool Reaches(int from, int node) const {
    if (from == kNil) return false;
    if (from == node) return true;
    return std::ranges::any_of(At(from).children, [&](int child) { return Reaches(child, node); });
  }

  // The nodes of the tree with shared parts counted each time they are met.
  size_t TreeSize(int node) const {
    if (node == kNil) return 1;
    size_t size = 1;
    for (const int child : At(node).children) size += TreeSize(child);
    return size;
  }

  int Copy(int node, int n = -1) {
    if (node == kNil || n == 0) return kNil;
    ModelNode copy = At(node);
    if (n > 0 && static_cast<size_t>(n) + 1 < copy.children.size())
      copy.children.resize(static_cast<size_t>(n) + 1);
    for (int& child : copy.children) child = Copy(child);
    return Add(std::move(copy));
  }

  int Car(int node) const {
    if (IsNil(node) || IsAtom(node)) return node;
    return At(node).children.empty() ? kNil : At(node).children.front();
  }

  int Cdr(int node, bool inPlace) {
    if (IsNil(node) || IsAtom(node)) return node;
    std::vector<int> rest = At(node).children;
    if (At(node).shape == ModelNode::Dotted && rest.size() == 2) return rest[1];
    if (rest.size() < 2) return kNil;
    rest.erase(rest.begin());
    if (!inPlace || Owners(node) > 1) return AddList(std::move(rest));
    At(node).children = std::move(rest);
    return node;
  }

  // The members as LISP reads them.
  std::vector<int> Members(int node) const {
    if (IsNil(node)) return {};
    std::vector<int> members = At(node).children;
    if (At(node).shape == ModelNode::Dotted) {
      const std::vector<int>& rest = At(members[1]).children;
      members.resize(1);
      members.insert(members.end(), rest.begin(), rest.end());
    }
    return members;
  }

  int Nth(int node, size_t n) const {
    if (!IsProper(node)) return node;
    const std::vector<int> members = Members(node);
    if (n > members.size()) return node;
    if (n == members.size()) return kNil;
    return members[n];
  }

  int Last(int node) const {
    if (IsNil(node) || !IsProper(node) || At(node).children.size() < 2) return node;
    return At(node).children.back();
  }

  int Cons(int first, int second) {
    if (second == kNil) return AddList({first});
    if (IsAtom(second)) return Add({ModelNode::Dotted, 0, {first, second}});
    if (At(second).shape == ModelNode::Dotted) return AddList({first, second});
    std::vector<int> children = At(second).children;
    children.insert(children.begin(), first);
    return AddList(std::move(children));
  }

  int ConsTakingOver(int first, int second) {
    if (!IsShape(second, ModelNode::List)) return Cons(first, second);
    if (Reaches(first, second)) first = Copy(first);
    At(second).children.insert(At(second).children.begin(), first);
    return second;
  }

  int Append(int a, int b, bool sameVariable, bool inPlace) {
    if (!IsProper(a) || !IsProper(b) || IsNil(b)) return a;
    if (IsNil(a)) return b;
    std::vector<int> added = At(b).children;
    if (added.empty()) added = {sameVariable ? AddList({}) : b};
    const int target = inPlace && Owners(a) == 1 ? a : Copy(a);
    std::vector<int>& children = At(target).children;
    children.insert(children.end(), added.begin(), added.end());
    return target;
  }

  int Reverse(int node, bool inPlace) {
    if (IsNil(node) || !IsProper(node)) return node;
    const int target = inPlace ? node : Copy(node);
    std::ranges::reverse(At(target).children);
    return target;
  }

  void RplaCa(int node, int value) {
    if (IsNil(node) || IsAtom(node)) return;
    const std::vector<int> added = ChildrenOf(Copy(value));
    std::vector<int>& children = At(node).children;
    if (!children.empty()) children.erase(children.begin());
    children.insert(children.begin(), added.begin(), added.end());
  }

  void RplaCd(int node, int value) {
    if (IsNil(node) || IsAtom(node)) return;
    const int copy = Copy(value);
    const std::vector<int> added =
        At(node).shape == ModelNode::Dotted ? std::vector<int>{copy} : ChildrenOf(copy);
    std::vector<int>& children = At(node).children;
    if (!children.empty()) children.pop_back();
    children.insert(children.end(), added.begin(), added.end());
  }

 private:
  std::vector<int> ChildrenOf(int node) const {
    return node == kNil ? std::vector<int>() : At(node).children;
  }

  std::vector<ModelNode> m_nodes;
};

// --- The operations, in both worlds ---

using Variables = std::array<CLOMAdsLispVar, kVariables>;

// Which variables an operation works on: it changes `x`.
struct Choice {
  size_t x;
  size_t y;
  size_t z;
  unsigned int n;
};

struct Operation {
  const char* name;
  void (*real)(Variables& v, const Choice& c);
  void (*model)(Model& m, const Choice& c);
};

const Operation kOperations[] = {
    {"x = number", [](Variables& v, const Choice& c) { v[c.x] = CLOMAdsLispVar(c.n); },
     [](Model& m, const Choice& c) {
       m.variables[c.x] = m.Add({ModelNode::Number, static_cast<int>(c.n), {}});
     }},
    {"x = nil atom", [](Variables& v, const Choice& c) { v[c.x] = NilAtom(); },
     [](Model& m, const Choice& c) {
       m.variables[c.x] = m.Add({ModelNode::NilAtom, 0, {}});
     }},
    {"x = ()", [](Variables& v, const Choice& c) { v[c.x] = MakeNode({}, false); },
     [](Model& m, const Choice& c) { m.variables[c.x] = m.AddList({}); }},
    {"x = (y . z)",
     [](Variables& v, const Choice& c) {
       v[c.x] = DottedOf({v[c.y], v[c.z]});
     },
     [](Model& m, const Choice& c) {
       m.variables[c.x] = m.Add({ModelNode::Dotted, 0, {m.variables[c.y], m.variables[c.z]}});
     }},
    {"SetQ(x, y)", [](Variables& v, const Choice& c) { CLOMAdsLisp::SetQ(v[c.x], v[c.y]); },
     [](Model& m, const Choice& c) { m.variables[c.x] = m.variables[c.y]; }},
    {"x.Car()", [](Variables& v, const Choice& c) { v[c.x].Car(); },
     [](Model& m, const Choice& c) { m.variables[c.x] = m.Car(m.variables[c.x]); }},
    {"SetQ(x, Car(y))",
     [](Variables& v, const Choice& c) { CLOMAdsLisp::SetQ(v[c.x], CLOMAdsLisp::Car(v[c.y])); },
     [](Model& m, const Choice& c) {
       const int y = m.variables[c.y];
       m.variables[c.x] = m.IsAtom(y) ? kNil : m.Car(y);
     }},
    {"x.Cdr(false)", [](Variables& v, const Choice& c) { v[c.x].Cdr(false); },
     [](Model& m, const Choice& c) { m.variables[c.x] = m.Cdr(m.variables[c.x], true); }},
    {"x.Cdr(true)", [](Variables& v, const Choice& c) { v[c.x].Cdr(true); },
     [](Model& m, const Choice& c) { m.variables[c.x] = m.Cdr(m.variables[c.x], false); }},
    {"SetQ(x, Cdr(y))",
     [](Variables& v, const Choice& c) { CLOMAdsLisp::SetQ(v[c.x], CLOMAdsLisp::Cdr(v[c.y])); },
     [](Model& m, const Choice& c) {
       const int y = m.variables[c.y];
       m.variables[c.x] = m.IsAtom(y) ? kNil : m.Cdr(y, c.x == c.y);
     }},
    {"x.Nth(n)", [](Variables& v, const Choice& c) { v[c.x].Nth(c.n); },
     [](Model& m, const Choice& c) { m.variables[c.x] = m.Nth(m.variables[c.x], c.n); }},
    {"SetQ(x, Nth(n, y))",
     [](Variables& v, const Choice& c) { CLOMAdsLisp::SetQ(v[c.x], CLOMAdsLisp::Nth(c.n, v[c.y])); },
     [](Model& m, const Choice& c) {
       const int y = m.variables[c.y];
       m.variables[c.x] = m.IsProper(y) && !m.IsNil(y) ? m.Nth(y, c.n) : kNil;
     }},
    {"x.Last()", [](Variables& v, const Choice& c) { v[c.x].Last(); },
     [](Model& m, const Choice& c) { m.variables[c.x] = m.Last(m.variables[c.x]); }},
    {"x.Head(n)", [](Variables& v, const Choice& c) { v[c.x].Head(static_cast<int>(c.n)); },
     [](Model& m, const Choice& c) { m.variables[c.x] = m.Copy(m.variables[c.x], static_cast<int>(c.n)); }},
    {"SetQ(x, Head(-1, y))",
     [](Variables& v, const Choice& c) { CLOMAdsLisp::SetQ(v[c.x], CLOMAdsLisp::Head(-1, v[c.y])); },
     [](Model& m, const Choice& c) { m.variables[c.x] = m.Copy(m.variables[c.y]); }},
    {"x.Cons(y)", [](Variables& v, const Choice& c) { v[c.x].Cons(v[c.y]); },
     [](Model& m, const Choice& c) { m.variables[c.x] = m.Cons(m.variables[c.x], m.variables[c.y]); }},
    {"SetQ(x, Cons(y, z))",
     [](Variables& v, const Choice& c) { CLOMAdsLisp::SetQ(v[c.x], CLOMAdsLisp::Cons(v[c.y], v[c.z])); },
     [](Model& m, const Choice& c) {
       const int first = m.variables[c.y];
       const int second = m.variables[c.z];
       m.variables[c.x] = c.x == c.z ? m.ConsTakingOver(first, second) : m.Cons(first, second);
     }},
    {"SetQ(x, Cons(y, x))",
     [](Variables& v, const Choice& c) { CLOMAdsLisp::SetQ(v[c.x], CLOMAdsLisp::Cons(v[c.y], v[c.x])); },
     [](Model& m, const Choice& c) {
       m.variables[c.x] = m.ConsTakingOver(m.variables[c.y], m.variables[c.x]);
     }},
    {"x.List()", [](Variables& v, const Choice& c) { v[c.x].List(); },
     [](Model& m, const Choice& c) { m.variables[c.x] = m.AddList({m.variables[c.x]}); }},
    {"SetQ(x, List(x, y, z))",
     [](Variables& v, const Choice& c) {
       CLOMAdsLisp::SetQ(v[c.x], CLOMAdsLisp::List(v[c.x], v[c.y], v[c.z]));
     },
     [](Model& m, const Choice& c) {
       m.variables[c.x] = m.AddList({m.variables[c.x], m.variables[c.y], m.variables[c.z]});
     }},
    {"SetQ(x, Append(y, z))",
     [](Variables& v, const Choice& c) { CLOMAdsLisp::SetQ(v[c.x], CLOMAdsLisp::Append(v[c.y], v[c.z])); },
     [](Model& m, const Choice& c) {
       const int y = m.variables[c.y];
       const int z = m.variables[c.z];
       m.variables[c.x] = m.IsProper(y) && m.IsProper(z) ? m.Append(y, z, false, false) : kNil;
     }},
    {"x.Append(y)", [](Variables& v, const Choice& c) { v[c.x].Append(v[c.y]); },
     [](Model& m, const Choice& c) {
       m.variables[c.x] = m.Append(m.variables[c.x], m.variables[c.y], c.x == c.y, true);
     }},
    {"NConc(x, y)", [](Variables& v, const Choice& c) { CLOMAdsLisp::NConc(v[c.x], v[c.y]); },
     [](Model& m, const Choice& c) {
       m.variables[c.x] = m.Append(m.variables[c.x], m.variables[c.y], c.x == c.y, true);
     }},
    {"x.Reverse(false)", [](Variables& v, const Choice& c) { v[c.x].Reverse(false); },
     [](Model& m, const Choice& c) { m.variables[c.x] = m.Reverse(m.variables[c.x], true); }},
    {"SetQ(x, Reverse(y))",
     [](Variables& v, const Choice& c) { CLOMAdsLisp::SetQ(v[c.x], CLOMAdsLisp::Reverse(v[c.y])); },
     [](Model& m, const Choice& c) {
       const int y = m.variables[c.y];
       m.variables[c.x] = m.IsNil(y) || !m.IsProper(y) ? kNil : m.Reverse(y, c.x == c.y);
     }},
    {"RplaCa(x, y)", [](Variables& v, const Choice& c) { CLOMAdsLisp::RplaCa(v[c.x], v[c.y]); },
     [](Model& m, const Choice& c) { m.RplaCa(m.variables[c.x], m.variables[c.y]); }},
    {"RplaCd(x, y)", [](Variables& v, const Choice& c) { CLOMAdsLisp::RplaCd(v[c.x], v[c.y]); },
     [](Model& m, const Choice& c) { m.RplaCd(m.variables[c.x], m.variables[c.y]); }},
};

// --- The comparison ---

// Walks both worlds side by side. They agree when every node has exactly one counterpart, of the
// same shape and with the same children.
class Comparison {
 public:
  Comparison(const Variables& variables, const Model& model) : m_model(model) {
    for (size_t n = 0; n < kVariables; ++n) m_agree = m_agree && Same(variables[n].New(), model.variables[n]);
  }
  bool Agree() const { return m_agree; }

 private:
  bool Same(const Element& real, int node) {
    if (real == nullptr || node == kNil) return real == nullptr && node == kNil;
    const auto [realToModel, isNewReal] = m_models.emplace(real.get(), node);
    const auto [modelToReal, isNewModel] = m_reals.emplace(node, real.get());
    if (realToModel->second != node || modelToReal->second != real.get()) return false;
    if (!isNewReal) return true;
    const ModelNode& model = m_model.At(node);
    if (!SameShape(*real, model) || real->children.size() != model.children.size()) return false;
    for (size_t n = 0; n < model.children.size(); ++n)
      if (!Same(real->children[n], model.children[n])) return false;
    return true;
  }

  static bool SameShape(const CLOMLispElement& real, const ModelNode& model) {
    switch (model.shape) {
      case ModelNode::List:
        return real.Kind() == CLOMLispElement::List;
      case ModelNode::Dotted:
        return real.Kind() == CLOMLispElement::DottedList;
      case ModelNode::Number:
        return real.atom.Type() == RTSHORT && real.atom.resval.rint == model.number;
      case ModelNode::NilAtom:
        return real.atom.Type() == RTNIL;
    }
    return false;
  }

  const Model& m_model;
  std::map<const CLOMLispElement*, int> m_models;
  std::map<int, const CLOMLispElement*> m_reals;
  bool m_agree = true;
};

}  // namespace

class SharingModelTest : public HostTest {
 protected:
  // Runs one sequence; false at the first difference, which is reported.
  bool RunSequence(unsigned int seed, int length) {
    std::mt19937 random(seed);
    NodeWatch watch;
    const bool agreed = RunSequence(random, length, watch);
    EXPECT_TRUE(agreed) << "seed " << seed << m_history.str();
    EXPECT_EQ(watch.Alive(), 0U) << "nodes outlive their handles, seed " << seed;
    return agreed;
  }

 private:
  bool RunSequence(std::mt19937& random, int length, NodeWatch& watch) {
    Variables variables;
    Model model;
    m_history.str("");
    for (int step = 0; step < length; ++step) {
      const Operation& operation = kOperations[random() % std::size(kOperations)];
      const Choice choice{random() % kVariables, random() % kVariables, random() % kVariables,
                          static_cast<unsigned int>(random() % 4)};
      m_history << "\n"
                << operation.name << " x=" << choice.x << " y=" << choice.y << " z=" << choice.z
                << " n=" << choice.n;
      operation.real(variables, choice);
      operation.model(model, choice);
      if (!Comparison(variables, model).Agree()) return false;
      for (size_t n = 0; n < kVariables; ++n) {
        if (model.variables[n] == kNil || model.TreeSize(model.variables[n]) <= kGreatestTree) continue;
        m_history << "\nclear " << n;
        watch.Note(variables[n]);
        variables[n].Clean();
        model.variables[n] = kNil;
      }
      host.console.Take();
    }
    for (const CLOMAdsLispVar& variable : variables) watch.Note(variable);
    return true;
  }

  std::ostringstream m_history;
};

TEST_F(SharingModelTest, RandomSequencesAgreeWithTheModel) {
  for (unsigned int seed = 1; seed <= Rounds(1500); ++seed)
    if (!RunSequence(seed, 60)) return;
}

TEST_F(SharingModelTest, LongRandomSequencesAgreeWithTheModel) {
  for (unsigned int seed = 1001; seed <= 1000 + Rounds(10); ++seed)
    if (!RunSequence(seed, 1000)) return;
}

}  // namespace lomlisp::test::sharing_model
