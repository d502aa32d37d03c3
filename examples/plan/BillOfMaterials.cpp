#include <examples/plan/Entities.h>
#include <examples/plan/Plan.h>

#include <map>
#include <string>
#include <utility>

namespace plan {

namespace {

std::wstring AttributeOf(const CLOMAdsLispVar& insert, const std::wstring& tag) {
  std::wstring text;
  ForEachAttribute(insert, [&](const CLOMAdsLispVar& attribute) {
    if (TextOf(2, attribute) == tag) text = TextOf(1, attribute);
  });
  return text;
}

}  // namespace

int BillOfMaterials() {
  CLOMAdsLispVar wanted;
  CLOMAdsLisp::Parameter(wanted);
  std::wstring tag;
  if (wanted.StringP()) CLOMAdsLisp::SetQ(tag, wanted);

  std::map<std::pair<std::wstring, std::wstring>, int> counts;
  Selection(OfType(L"INSERT")).ForEachList([&](const CLOMAdsLispVar& insert) {
    ++counts[{TextOf(2, insert), AttributeOf(insert, tag)}];
  });

  CLOMAdsLispVar result;
  for (const auto& [part, count] : counts) {
    const CLOMAdsLispVar key = CLOMAdsLisp::Cons(part.first, part.second);
    const CLOMAdsLispVar entry = CLOMAdsLisp::Cons(key, count);
    CLOMAdsLisp::SetQ(result, CLOMAdsLisp::Cons(entry, result));
  }
  CLOMAdsLisp::SetQ(result, CLOMAdsLisp::Reverse(result));
  CLOMAdsLisp::Return(result);
  return RTNORM;
}

}  // namespace plan
