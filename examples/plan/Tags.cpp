#include <examples/plan/Entities.h>
#include <examples/plan/Plan.h>

namespace plan {

namespace {

// The group of extended data for a value: 1000 a text, 1070 an integer, 1040 a real; nil for others.
CLOMAdsLispVar TagOf(const CLOMAdsLispVar& value) {
  if (value.StringP()) return CLOMAdsLisp::Cons(1000, value);
  if (value.IntP()) return CLOMAdsLisp::Cons(1070, value);
  if (value.RealP()) return CLOMAdsLisp::Cons(1040, value);
  return CLOMAdsLisp::Nil;
}

// (-3 (application ((1000 . text) (1070 . number) ...)))
CLOMAdsLispVar ExtendedData(const CLOMAdsLispVar& application, CLOMAdsLispVar values) {
  CLOMAdsLispVar groups;
  for (; !values.NilP(); CLOMAdsLisp::SetQ(values, CLOMAdsLisp::Cdr(values))) {
    const CLOMAdsLispVar tag = TagOf(CLOMAdsLisp::Car(values));
    if (!tag.NilP()) CLOMAdsLisp::SetQ(groups, CLOMAdsLisp::Cons(tag, groups));
  }
  CLOMAdsLisp::SetQ(groups, CLOMAdsLisp::Reverse(groups));
  return CLOMAdsLisp::List(-3, CLOMAdsLisp::List(application, groups));
}

// The values of the application's groups, which stand behind its name: -3 (application) (1000 . text) ...
CLOMAdsLispVar TagsIn(CLOMAdsLispVar entity) {
  CLOMAdsLispVar values;
  bool isBehindName = false;
  for (; !entity.NilP(); CLOMAdsLisp::SetQ(entity, CLOMAdsLisp::Cdr(entity))) {
    const CLOMAdsLispVar group = CLOMAdsLisp::Car(entity);
    if (isBehindName && !CLOMAdsLisp::Car(group).StringP())
      CLOMAdsLisp::SetQ(values, CLOMAdsLisp::Cons(CLOMAdsLispVar(CLOMAdsLisp::Cdr(group)), values));
    isBehindName = isBehindName || group.AtomP();
  }
  CLOMAdsLisp::SetQ(values, CLOMAdsLisp::Reverse(values));
  return values;
}

}  // namespace

int TagEntities() {
  CLOMAdsLispVar filter;
  CLOMAdsLispVar application;
  CLOMAdsLispVar values;
  CLOMAdsLisp::Parameter(filter, application, values);

  int tagged = 0;
  if (application.StringP()) {
    const wchar_t* name = nullptr;
    CLOMAdsLisp::SetQ(name, application);
    acdbRegApp(name);  // fails where it is registered already, which is as good
    const CLOMAdsLispVar data = ExtendedData(application, values);
    Selection(filter).ForEach([&](const CLOMAdsLispVar& entity) {
      const CLOMAdsLispVar identity = CLOMAdsLisp::Cons(-1, entity);
      if (!CLOMAdsLisp::EntMod(CLOMAdsLisp::List(identity, data)).NilP()) ++tagged;
    });
  }
  CLOMAdsLisp::Return(tagged);
  return RTNORM;
}

int ReadTags() {
  CLOMAdsLispVar application;
  CLOMAdsLisp::Parameter(application);

  CLOMAdsLispVar result;
  const CLOMAdsLispVar applications = CLOMAdsLisp::List(application);
  const CLOMAdsLispVar filter = CLOMAdsLisp::List(CLOMAdsLisp::List(-3, CLOMAdsLisp::List(application)));
  const auto add = [&](const CLOMAdsLispVar& entity) {
    const CLOMAdsLispVar entry = CLOMAdsLisp::Cons(GroupOf(8, entity), TagsIn(entity));
    CLOMAdsLisp::SetQ(result, CLOMAdsLisp::Cons(entry, result));
  };
  Selection(filter).ForEachList(add, applications);
  CLOMAdsLisp::SetQ(result, CLOMAdsLisp::Reverse(result));
  CLOMAdsLisp::Return(result);
  return RTNORM;
}

}  // namespace plan
