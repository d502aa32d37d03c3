#include <shell/functions/Arguments.h>
#include <shell/functions/Functions.h>
#include <shell/functions/Groups.h>

#include <lomlisp/platform/modules.h>

#include <algorithm>

namespace lomlisp::shell {

namespace {

using embedded::Chain;

Chain NameOr(int status, const Name& name) { return status == RTNORM ? NameItem(name) : Nil(); }

Chain EntLast(const Arguments&) {
  Name last;
  return NameOr(acdbEntLast(last.words), last);
}

Chain EntGet(const Arguments& arguments) {
  const HeapChain applications(IsNil(arguments[1]) ? Chain() : arguments[1]);
  const HeapChain groups(acdbEntGetX(Name(arguments[0]).words, applications.Get()));
  return groups.Get() != nullptr ? ListOf(embedded::Capture(groups.Get())) : Nil();
}

Chain EntMod(const Arguments& arguments) {
  return TrueOr(acdbEntMod(HeapChain(GroupsOf(arguments[0])).Get()) == RTNORM);
}

Chain EntMake(const Arguments& arguments) {
  return TrueOr(acdbEntMake(HeapChain(GroupsOf(arguments[0])).Get()) == RTNORM);
}

// The text of the first group of that code; null when there is none.
const embedded::Record* TextGroup(const Chain& groups, short code) {
  const auto found = std::find_if(groups.begin(), groups.end(), [code](const embedded::Record& group) {
    return group.type == code && group.hasText;
  });
  return found != groups.end() ? &*found : nullptr;
}

// An entry of a table by its name, an entity as the last one.
Chain NameOfMade(const Chain& groups) {
  const embedded::Record* const type = TextGroup(groups, 0);
  const embedded::Record* const entry = TextGroup(groups, 2);
  Name made;
  if (type != nullptr && entry != nullptr &&
      acdbTblObjName(type->text.c_str(), entry->text.c_str(), made.words) == RTNORM)
    return NameItem(made);
  return NameOr(acdbEntLast(made.words), made);
}

// nil for a part of something that is not whole yet.
Chain EntMakeX(const Arguments& arguments) {
  const Chain groups = GroupsOf(arguments[0]);
  const Chain before = EntLast({});
  if (acdbEntMake(HeapChain(groups).Get()) != RTNORM) return Nil();
  const Chain made = NameOfMade(groups);
  const bool isThere = embedded::ToText(made) != embedded::ToText(before);
  return isThere ? made : Nil();
}

Chain EntDel(const Arguments& arguments) { return TrueOr(acdbEntDel(Name(arguments[0]).words) == RTNORM); }

Chain EntNext(const Arguments& arguments) {
  const Name name(arguments[0]);
  Name next;
  return NameOr(acdbEntNext(name.OrNull(), next.words), next);
}

Chain EntUpd(const Arguments& arguments) { return TrueOr(acdbEntUpd(Name(arguments[0]).words) == RTNORM); }

Chain HandEnt(const Arguments& arguments) {
  Name object;
  return NameOr(acdbHandEnt(TextIn(arguments[0]).c_str(), object.words), object);
}

Chain RegApp(const Arguments& arguments) {
  return TrueOr(acdbRegApp(TextIn(arguments[0]).c_str()) == RTNORM);
}

}  // namespace

void DefineEntityFunctions() {
  DefineHostFunction("entget", EntGet);
  DefineHostFunction("entmod", EntMod);
  DefineHostFunction("entmake", EntMake);
  DefineHostFunction("entmakex", EntMakeX);
  DefineHostFunction("entdel", EntDel);
  DefineHostFunction("entlast", EntLast);
  DefineHostFunction("entnext", EntNext);
  DefineHostFunction("entupd", EntUpd);
  DefineHostFunction("handent", HandEnt);
  DefineHostFunction("regapp", RegApp);
}

}  // namespace lomlisp::shell
