// AddNth, DeleteNth, SubstNth, Insert, Subst, Delete: edited copies of lists.

#include <lomlisp/lisp/Equality.h>
#include <lomlisp/lisp/NewNode.h>
#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/listops/DeepCopy.h>
#include <lomlisp/listops/Members.h>
#include <lomlisp/listops/messages.h>

#include <algorithm>
#include <utility>

using namespace lomlisp;

namespace {

using Element = CLOMAdsLispVar::Element;

// nil when there are no members.
CLOMAdsLispVar ListOf(ChildSeq members) {
  if (members.empty()) return CLOMAdsLisp::Nil;
  auto list = NewNode();
  list->children.swap(members);
  return ValueOf(std::move(list));
}

void AppendCopies(ChildSeq& target, const Members& members, size_t begin, size_t end) {
  for (size_t i = begin; i < end; ++i) target.push_back(DeepCopy(members[i]));
}

void AppendShared(ChildSeq& target, const Members& members, size_t begin, size_t end) {
  for (size_t i = begin; i < end; ++i) target.push_back(members[i]);
}

// What is done at a position.
struct Edit {
  size_t removed;        // members that are taken out: 0 or 1
  const Element* added;  // null when nothing is put in
  const wchar_t* messageNoList;
  const wchar_t* messageBehindEnd;
};

CLOMAdsLispVar EditedCopy(int n, const CLOMAdsLispVar& list, const Edit& edit) {
  if (!list.RealListP()) {
    acutPrintf(edit.messageNoList);
    return CLOMAdsLisp::Nil;
  }
  const Element node = list.New();
  const Members members(node.get());
  if (static_cast<__int64>(members.size()) - static_cast<__int64>(edit.removed) < n) {
    acutPrintf(edit.messageBehindEnd);
    return CLOMAdsLisp::Nil;
  }
  // A negative position lies in front of all members, where there is nothing to take out.
  const size_t front = n < 0 ? 0 : static_cast<size_t>(n);
  const size_t back = n < 0 ? 0 : front + edit.removed;
  ChildSeq edited;
  edited.reserve(members.size() + 1);
  AppendCopies(edited, members, 0, front);
  if (edit.added != nullptr) edited.push_back(*edit.added);
  AppendCopies(edited, members, back, members.size());
  return ListOf(std::move(edited));
}

}  // namespace

CLOMAdsLispVar CLOMAdsLisp::AddNth(int n, const CLOMAdsLispVar& value, const CLOMAdsLispVar& list) {
  const Element added = value.New();
  return EditedCopy(n, list, {0, &added, messages::AddNthOfOther, messages::AddNthBehindEnd});
}

CLOMAdsLispVar CLOMAdsLisp::DeleteNth(int n, const CLOMAdsLispVar& list) {
  return EditedCopy(n, list, {1, nullptr, messages::DeleteNthOfOther, messages::DeleteNthBehindEnd});
}

CLOMAdsLispVar CLOMAdsLisp::SubstNth(int n, const CLOMAdsLispVar& value, const CLOMAdsLispVar& list) {
  const Element added = value.New();
  return EditedCopy(n, list, {1, &added, messages::SubstNthOfOther, messages::SubstNthBehindEnd});
}

CLOMAdsLispVar CLOMAdsLisp::Insert(CLOMAdsLispVar list, const CLOMAdsLispVar& children, int n) {
  if (!RealListP(list) || !RealListP(children)) return Nil;
  const Element nodeOfList = list.New();
  const Element nodeOfChildren = children.New();
  const Members members(nodeOfList.get());
  const Members inserted(nodeOfChildren.get());
  const size_t front = n < 0 ? 0 : (std::min)(static_cast<size_t>(n), members.size());
  ChildSeq edited;
  edited.reserve(members.size() + inserted.size());
  AppendShared(edited, members, 0, front);
  AppendShared(edited, inserted, 0, inserted.size());
  AppendShared(edited, members, front, members.size());
  return ListOf(std::move(edited));
}

CLOMAdsLispVar CLOMAdsLisp::Subst(const CLOMAdsLispVar& newValue, const CLOMAdsLispVar& oldValue,
                                  const CLOMAdsLispVar& list) {
  if (!RealListP(list)) {
    acutPrintf(messages::SubstOfOther);
    return Nil;
  }
  const Element added = newValue.New();
  const Element removed = oldValue.New();
  const Element node = list.New();
  const Members members(node.get());
  ChildSeq edited;
  // From the end, which shows when a comparison prints.
  for (size_t i = members.size(); i-- > 0;) {
    const bool equal = node::AreEqual(members[i].get(), removed.get(), 0.0);
    edited.push_front(equal ? added : DeepCopy(members[i]));
  }
  return ListOf(std::move(edited));
}

CLOMAdsLispVar CLOMAdsLisp::Delete(const CLOMAdsLispVar& value, const CLOMAdsLispVar& list) {
  if (!RealListP(list)) {
    acutPrintf(messages::SubstOfOther);
    return Nil;
  }
  const Element removed = value.New();
  const Element node = list.New();
  const Members members(node.get());
  if (members.size() == 0) return Nil;
  auto edited = NewNode();
  for (size_t i = 0; i < members.size(); ++i)
    if (!node::AreEqual(members[i].get(), removed.get(), 0.0)) edited->children.push_back(members[i]);
  return ValueOf(std::move(edited));
}
