#include <tests/failures/Platform.h>

#include <lomlisp/platform/modules.h>
#include <lomlisp/resbuf/AtomText.h>
#include <tests/failures/Heaps.h>

#include <cstring>
#include <cwchar>
#include <iterator>

namespace lomlisp::test {

Platform& ThePlatform() {
  static Platform platform = {};
  return platform;
}

void Forget() {
  // Assigned to, it would keep its memory.
  std::string().swap(ThePlatform().taken);
  ThePlatform().openSets = 0;
}

Arguments::Arguments(const CLOMAdsLispVar& list) {
  const Unwatched unwatched;
  list.LispToADS(m_chain);
  m_chain.GoFirst();
  m_chain.Delete();
  m_chain.GoLast();
  m_chain.Delete();
  ThePlatform().arguments = m_chain;
}

Arguments::~Arguments() {
  ThePlatform().arguments = nullptr;
  const Unwatched unwatched;
  m_chain.Clear();
}

CLOMAdsLispVar EntityName(int number) {
  const __int64 words[2] = {number, 7};
  return words;
}

std::string Described(const resbuf* chain) {
  std::string text;
  for (; chain != nullptr; chain = chain->rbnext) {
    wchar_t value[100];
    const AtomText atom(*chain, NameForm::Short);
    const size_t length = atom.CopyTo(value, std::size(value));
    text += " " + std::to_string(chain->restype) + ":" + std::string(value, value + length);
  }
  return text;
}

namespace {

constexpr const wchar_t* kEntities[] = {
    L"((0 . \"LINE\") (8 . \"Walls\") (10 (0.0 0.0 0.0)) (11 (3.0 4.0 0.0)) (-3 (\"TAGS\" ((1000 . \"x\") "
    L"(1070 . 7)))))",
    L"((0 . \"LWPOLYLINE\") (8 . \"Rooms\") (70 . 1) (10 (0.0 0.0)) (42 . 0.5) (10 (2.0 0.0)) (10 (2.0 "
    L"2.0)))",
    L"((0 . \"TEXT\") (8 . \"Texts\") (1 . \"Kitchen with a door\"))",
    L"((0 . \"INSERT\") (8 . \"Doors\") (66 . 1) (2 . \"DOOR\"))",
    L"((0 . \"ATTRIB\") (8 . \"Doors\") (1 . \"T30\") (2 . \"TYPE\"))",
    L"((0 . \"SEQEND\") (8 . \"Doors\"))",
};
constexpr int kEntityCount = static_cast<int>(std::size(kEntities));

bool IsEntity(const ads_name name) { return name[0] >= 1 && name[0] <= kEntityCount; }

// A chain for the caller, which takes one allocation.
template <class Write>
resbuf* Give(Write write) {
  if (MustFail(Heap::Platform)) return nullptr;
  const Unwatched unwatched;
  ADSList chain;
  write(chain);
  chain.DeleteMode(ADSDeleteFlag::Keep);
  return chain;
}

CLOMAdsLispVar FromText(const wchar_t* text) {
  CLOMAdsLispVar value;
  value.Read(text);
  return value;
}

CLOMAdsLispVar Groups(const ads_name name) {
  const CLOMAdsLispVar identity = CLOMAdsLisp::Cons(-1, EntityName(static_cast<int>(name[0])));
  return CLOMAdsLisp::Cons(identity, FromText(kEntities[name[0] - 1]));
}

int Take(const char* function, const resbuf* chain) {
  const Unwatched unwatched;
  ThePlatform().taken += function + Described(chain) + "\n";
  return chain != nullptr ? RTNORM : RTERROR;
}

int GiveName(__int64 number, ads_name name) {
  name[0] = number;
  name[1] = 7;
  return RTNORM;
}

}  // namespace

}  // namespace lomlisp::test

using namespace lomlisp::test;

// --- Calls, symbols, variables ---

resbuf* acedGetArgs() { return ThePlatform().arguments; }
int acedRetVal(const resbuf* record) { return Take("value", record); }
int acedRetList(const resbuf* chain) {
  Take("list", chain);
  return RTNORM;
}

int acedGetSym(const ACHAR* name, resbuf** chain) {
  if (name == nullptr || std::wcscmp(name, L"LOM_RETURNFLAG") == 0) return RTERROR;
  *chain = Give([](ADSList& value) { FromText(L"(1 \"two\" (3.5 . 4))").LispToADS(value); });
  return *chain != nullptr ? RTNORM : RTERROR;
}
int acedPutSym(const ACHAR*, resbuf* chain) { return Take("symbol", chain); }

int acedGetVar(const ACHAR*, resbuf* record) {
  constexpr wchar_t kText[] = L"the text of a variable";
  void* const text = acad_malloc(sizeof kText);
  if (text == nullptr) return RTERROR;
  std::memcpy(text, kText, sizeof kText);
  record->restype = RTSTR;
  record->resval.rstring = static_cast<ACHAR*>(text);
  return RTNORM;
}
int acedSetVar(const ACHAR*, const resbuf* record) {
  if (record == nullptr) return RTERROR;
  resbuf single = *record;
  single.rbnext = nullptr;
  return Take("variable", &single);
}

// --- Entities ---

int acdbEntDel(const ads_name name) { return IsEntity(name) ? RTNORM : RTERROR; }
resbuf* acdbEntGetX(const ads_name name, const resbuf*) {
  if (!IsEntity(name)) return nullptr;
  return Give([&](ADSList& chain) { Groups(name).LispToDXF(chain); });
}
int acdbEntLast(ads_name name) { return GiveName(kEntityCount, name); }
int acdbEntMake(const resbuf* groups) { return Take("made", groups); }
int acdbEntMod(const resbuf* groups) { return Take("changed", groups); }
int acdbEntNext(const ads_name name, ads_name next) {
  return name[0] < kEntityCount ? GiveName(name[0] + 1, next) : RTERROR;
}
int acdbEntUpd(const ads_name name) { return IsEntity(name) ? RTNORM : RTERROR; }
int acedEntSel(const ACHAR*, ads_name name, ads_point picked) {
  picked[0] = picked[1] = picked[2] = 1.0;
  return GiveName(1, name);
}
int acdbRegApp(const ACHAR*) { return RTNORM; }

// --- Selection sets: of all entities but the parts of the insert ---

int acedSSGet(const ACHAR*, const void*, const void*, const resbuf* filter, ads_name set) {
  Take("filter", filter);
  ++ThePlatform().openSets;
  return GiveName(100, set);
}
int acedSSLength(const ads_name, int32_t* length) {
  *length = 4;
  return RTNORM;
}
int acedSSName(const ads_name, int32_t position, ads_name entity) { return GiveName(position + 1, entity); }
int acedSSFree(const ads_name) {
  --ThePlatform().openSets;
  return RTNORM;
}
