#include <examples/parts/Parts.h>

#include <lomlisp/lomlisp.h>

#include <algorithm>
#include <cwchar>
#include <limits>
#include <map>
#include <string>

namespace parts {

namespace {

int CountKinds() {
  CLOMAdsLispVar names;
  CLOMAdsLisp::Parameter(names);

  std::map<std::wstring, int> counts;
  while (!names.NilP()) {
    std::wstring name;
    CLOMAdsLisp::SetQ(name, CLOMAdsLisp::Car(names));
    ++counts[name];
    CLOMAdsLisp::SetQ(names, CLOMAdsLisp::Cdr(names));
  }

  CLOMAdsLispVar result;
  for (const auto& [name, count] : counts) {
    // A long, since of an int a list keeps 16 bits.
    const CLOMAdsLispVar pair = CLOMAdsLisp::Cons(name, long{count});
    CLOMAdsLisp::SetQ(result, CLOMAdsLisp::Cons(pair, result));
  }
  CLOMAdsLisp::SetQ(result, CLOMAdsLisp::Reverse(result));
  CLOMAdsLisp::Return(result);
  return RTNORM;
}

int BoundingBox() {
  CLOMAdsLispVar points;
  CLOMAdsLisp::Parameter(points);
  if (points.NilP()) {
    CLOMAdsLisp::Return(CLOMAdsLisp::Nil);
    return RTNORM;
  }

  ads_point lower;
  ads_point upper;
  CLOMAdsLisp::SetQ(lower, CLOMAdsLisp::Car(points));
  CLOMAdsLisp::SetQ(upper, CLOMAdsLisp::Car(points));
  for (; !points.NilP(); CLOMAdsLisp::SetQ(points, CLOMAdsLisp::Cdr(points))) {
    ads_point point;
    CLOMAdsLisp::SetQ(point, CLOMAdsLisp::Car(points));
    // In brackets: <windows.h> has macros of these names.
    for (int i = 0; i < 2; ++i) {
      lower[i] = (std::min)(lower[i], point[i]);
      upper[i] = (std::max)(upper[i], point[i]);
    }
  }
  CLOMAdsLisp::Return(
      CLOMAdsLisp::List(CLOMAdsLisp::List(lower[0], lower[1]), CLOMAdsLisp::List(upper[0], upper[1])));
  return RTNORM;
}

// Of a text that was cut, some C libraries give a negative count and others the length of the whole.
template <size_t kSize>
bool Fits(int printed, const wchar_t (&)[kSize]) {
  return printed >= 0 && static_cast<size_t>(printed) < kSize;
}

int Label() {
  CLOMAdsLispVar prefix;
  CLOMAdsLispVar size;
  CLOMAdsLispVar pitch;
  CLOMAdsLisp::Parameter(prefix, size, pitch);

  std::wstring text;
  int number = 0;
  double step = 0.0;
  CLOMAdsLisp::SetQ(text, prefix);
  CLOMAdsLisp::SetQ(number, size);
  CLOMAdsLisp::SetQ(step, pitch);
  wchar_t label[80];
  // A real may have three hundred digits.
  if (!Fits(std::swprintf(label, std::size(label), L"%.40ls%dx%.2f", text.c_str(), number, step), label))
    return RTERROR;
  CLOMAdsLisp::Return(label);
  return RTNORM;
}

int Group() {
  CLOMAdsLispVar wanted;
  CLOMAdsLispVar entity;
  CLOMAdsLisp::Parameter(wanted, entity);

  int code = 0;
  CLOMAdsLisp::SetQ(code, wanted);
  for (; !entity.NilP(); CLOMAdsLisp::SetQ(entity, CLOMAdsLisp::Cdr(entity))) {
    const CLOMAdsLispVar group = CLOMAdsLisp::Car(entity);
    int present = 0;
    CLOMAdsLisp::SetQ(present, CLOMAdsLisp::Car(group));
    if (present == code) {
      CLOMAdsLisp::Return(group);
      return RTNORM;
    }
  }
  CLOMAdsLisp::Return(CLOMAdsLisp::Nil);
  return RTNORM;
}

int Nest() {
  CLOMAdsLispVar rows;
  CLOMAdsLisp::Parameter(rows);
  CLOMAdsLisp::Return(CLOMAdsLisp::List(rows));
  return RTNORM;
}

int NextNumber() {
  CLOMAdsLispVar prefix;
  CLOMAdsLisp::Parameter(prefix);

  const CLOMAdsLispVar last = CLOMAdsLisp::GetSym(L"LAST-NUMBER");
  int number = 0;
  if (last.NumberP()) CLOMAdsLisp::SetQ(number, last);
  if (number == (std::numeric_limits<int>::max)()) return RTERROR;  // no number is left
  ++number;
  if (CLOMAdsLisp::PutSym(L"LAST-NUMBER", long{number}).NilP()) {
    CLOMAdsLisp::Return(CLOMAdsLisp::Nil);  // the number would be given again
    return RTNORM;
  }

  std::wstring text;
  CLOMAdsLisp::SetQ(text, prefix);
  wchar_t name[80];
  if (!Fits(std::swprintf(name, std::size(name), L"%.40ls-%04d", text.c_str(), number), name)) return RTERROR;
  CLOMAdsLisp::Return(name);
  return RTNORM;
}

int Remember() {
  CLOMAdsLispVar name;
  CLOMAdsLispVar value;
  CLOMAdsLisp::Parameter(name, value);
  CLOMAdsLisp::Return(CLOMAdsLisp::PutSym(name, value));
  return RTNORM;
}

constexpr LispFunction kFunctions[] = {
    {L"COUNT-KINDS", CountKinds},
    {L"BOUNDING-BOX", BoundingBox},
    {L"LABEL", Label},
    {L"GROUP", Group},
    {L"NEST", Nest},
    {L"NEXT-NUMBER", NextNumber},
    {L"REMEMBER", Remember},
};

}  // namespace

std::span<const LispFunction> Functions() { return kFunctions; }

}  // namespace parts
