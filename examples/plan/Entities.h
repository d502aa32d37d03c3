// What the functions of the module share: selection sets that end with their scope, and the groups of
// entity lists.
#pragma once

#include <lomlisp/lomlisp.h>
#include <lomlisp/platform/modules.h>

#include <string>

namespace plan {

// The entities of the drawing that match a filter.
class Selection {
 public:
  explicit Selection(const CLOMAdsLispVar& filter)
      : m_set(CLOMAdsLisp::SSGet(L"X", filter, CLOMAdsLisp::Nil, CLOMAdsLisp::Nil)) {
    if (m_set.NilP()) return;
    CLOMAdsLisp::SetQ(m_name, m_set);
    if (acedSSLength(m_name, &m_length) != RTNORM) m_length = 0;
  }
  ~Selection() {
    if (!m_set.NilP()) acedSSFree(m_name);
  }
  Selection(const Selection&) = delete;
  Selection& operator=(const Selection&) = delete;

  // Calls `visit` with the name of each entity.
  template <typename Visit>
  void ForEach(Visit visit) const {
    for (int32_t position = 0; position < m_length; ++position) {
      ads_name entity;
      if (acedSSName(m_name, position, entity) == RTNORM)
        visit(CLOMAdsLispVar(static_cast<const __int64*>(entity)));
    }
  }
  // The same with the list of each entity that can be read, and with its data of the applications, nil for none.
  template <typename Visit>
  void ForEachList(Visit visit, const CLOMAdsLispVar& applications = CLOMAdsLisp::Nil) const {
    ForEach([&](const CLOMAdsLispVar& name) {
      const CLOMAdsLispVar entity = CLOMAdsLisp::EntGet(name, applications);
      if (!entity.NilP()) visit(entity);
    });
  }

 private:
  CLOMAdsLispVar m_set;
  ads_name m_name = {};
  int32_t m_length = 0;
};

// The value of the first group of that code, nil when there is none.
inline CLOMAdsLispVar GroupOf(int code, const CLOMAdsLispVar& entity) {
  const CLOMAdsLispVar group = CLOMAdsLisp::Assoc(code, entity);
  return group.NilP() ? group : CLOMAdsLispVar(CLOMAdsLisp::Cdr(group));
}

inline std::wstring TextOf(int code, const CLOMAdsLispVar& entity) {
  std::wstring text;
  const CLOMAdsLispVar value = GroupOf(code, entity);
  if (value.StringP()) CLOMAdsLisp::SetQ(text, value);
  return text;
}

inline double RealOf(int code, const CLOMAdsLispVar& entity) {
  double real = 0.0;
  const CLOMAdsLispVar value = GroupOf(code, entity);
  if (value.RealP()) CLOMAdsLisp::SetQ(real, value);
  return real;
}

inline int IntegerOf(int code, const CLOMAdsLispVar& entity) {
  int integer = 0;
  const CLOMAdsLispVar value = GroupOf(code, entity);
  if (value.IntP()) CLOMAdsLisp::SetQ(integer, value);
  return integer;
}

// A filter for one type of entity, or several: "TEXT,MTEXT".
inline CLOMAdsLispVar OfType(const wchar_t* type) {
  return CLOMAdsLisp::List(CLOMAdsLispVar(CLOMAdsLisp::Cons(0, type)));
}

// Calls `visit` with the list of each attribute of an INSERT.
template <typename Visit>
void ForEachAttribute(const CLOMAdsLispVar& insert, Visit visit) {
  if (IntegerOf(66, insert) != 1) return;
  CLOMAdsLispVar name = CLOMAdsLisp::EntNext(GroupOf(-1, insert));
  while (!name.NilP()) {
    const CLOMAdsLispVar attribute = CLOMAdsLisp::EntGet(name);
    if (TextOf(0, attribute) != L"ATTRIB") return;
    visit(attribute);
    name = CLOMAdsLisp::EntNext(name);
  }
}

}  // namespace plan
