#include <examples/plan/Entities.h>
#include <examples/plan/Plan.h>

#include <string>

namespace plan {

namespace {

void Fill(CStringArray& array, CLOMAdsLispVar texts) {
  for (; !texts.NilP(); CLOMAdsLisp::SetQ(texts, CLOMAdsLisp::Cdr(texts))) {
    CString text;
    CLOMAdsLisp::SetQ(text, CLOMAdsLisp::Car(texts));
    array.Add(text);
  }
}

class TextTables {
 public:
  TextTables(const CLOMAdsLispVar& old, const CLOMAdsLispVar& now) {
    Fill(m_old, old);
    Fill(m_now, now);
  }

  // Whether the entity's text was in the tables and is another one now.
  bool Replace(const CLOMAdsLispVar& entity) const {
    const std::wstring text = TextOf(1, entity);
    const CLOMAdsLispVar identity = CLOMAdsLisp::Cons(-1, GroupOf(-1, entity));
    CLOMAdsLispVar changed = CLOMAdsLisp::List(identity, CLOMAdsLispVar(CLOMAdsLisp::Cons(1, text)));
    changed.ReplaceTextW(m_old, m_now);
    return TextOf(1, changed) != text && !CLOMAdsLisp::EntMod(changed).NilP();
  }

 private:
  CStringArray m_old;
  CStringArray m_now;
};

// The attributes are entities of their own, and the insert shows them.
int ReplaceInInsert(const CLOMAdsLispVar& insert, const TextTables& tables) {
  int replaced = 0;
  ForEachAttribute(insert, [&](const CLOMAdsLispVar& attribute) {
    if (tables.Replace(attribute)) ++replaced;
  });
  if (replaced > 0) CLOMAdsLisp::EntUpd(GroupOf(-1, insert));
  return replaced;
}

}  // namespace

int ReplaceTexts() {
  CLOMAdsLispVar old;
  CLOMAdsLispVar now;
  CLOMAdsLisp::Parameter(old, now);
  const TextTables tables(old, now);

  int replaced = 0;
  Selection(OfType(L"TEXT,MTEXT,INSERT")).ForEachList([&](const CLOMAdsLispVar& entity) {
    if (TextOf(0, entity) == L"INSERT")
      replaced += ReplaceInInsert(entity, tables);
    else if (tables.Replace(entity))
      ++replaced;
  });
  CLOMAdsLisp::Return(replaced);
  return RTNORM;
}

}  // namespace plan
