// What the entity functions do with a platform that answers oddly: outputs beside a refusal, and chains
// that are no value. Every chain of the platform must be released whole.

#include <lomlisp/lomlisp.h>
#include <tests/own_platform/Memory.h>

#include <cwchar>
#include <initializer_list>
#include <iostream>

namespace {

int status = RTNORM;
resbuf* entityChain = nullptr;
const void* applications = nullptr;
const void* filter = nullptr;
const ACHAR* prompt = L"";
int failures = 0;

void Expect(bool isTrue, const char* what) {
  if (isTrue) return;
  ++failures;
  std::cerr << "failed: " << what << "\n";
}

// A text group, with a text from the platform's heap.
resbuf* TextRecord(short type, const wchar_t* text, resbuf* next = nullptr) {
  resbuf* const record = acutNewRb(type);
  const size_t size = std::wcslen(text) + 1;
  record->resval.rstring = static_cast<ACHAR*>(acad_malloc(size * sizeof(ACHAR)));
  std::wmemcpy(record->resval.rstring, text, size);
  record->rbnext = next;
  return record;
}

resbuf* Plain(short type, resbuf* next = nullptr) {
  resbuf* const record = acutNewRb(type);
  record->rbnext = next;
  return record;
}

int Give(ads_name name) {
  name[0] = 31;
  name[1] = 7;
  return status;
}

}  // namespace

int acdbEntDel(const ads_name) { return status; }
resbuf* acdbEntGetX(const ads_name, const resbuf* names) {
  applications = names;
  return entityChain;
}
int acdbEntLast(ads_name name) { return Give(name); }
int acdbEntMake(const resbuf*) { return status; }
int acdbEntMod(const resbuf*) { return status; }
int acdbEntNext(const ads_name, ads_name next) { return Give(next); }
int acdbEntUpd(const ads_name) { return status; }
int acedEntSel(const ACHAR* text, ads_name name, ads_point picked) {
  prompt = text;
  picked[0] = 1.0;
  picked[1] = picked[2] = 0.0;
  return Give(name);
}
int acedSSGet(const ACHAR*, const void*, const void*, const resbuf* groups, ads_name set) {
  filter = groups;
  return Give(set);
}

namespace {

const __int64 kName[2] = {31, 7};

void OutputsCountBesideSuccessAlone() {
  const CLOMAdsLispVar name(kName);
  for (const int refusal : {RTERROR, RTCAN, RTREJ, RTFAIL, RTKWORD, 0, RTNORM + 1}) {
    status = refusal;
    Expect(CLOMAdsLisp::EntLast().NilP(), "EntLast ignores the name beside a refusal");
    Expect(CLOMAdsLisp::EntNext(name).NilP(), "EntNext ignores the name beside a refusal");
    Expect(CLOMAdsLisp::EntSel(CLOMAdsLisp::Nil).NilP(), "EntSel ignores name and point beside a refusal");
    Expect(CLOMAdsLisp::SSGet(L"X", CLOMAdsLisp::Nil, CLOMAdsLisp::Nil, CLOMAdsLisp::Nil).NilP(),
           "SSGet ignores the set beside a refusal");
  }
  status = RTNORM;
  Expect(CLOMAdsLisp::EntLast().ENameP(), "EntLast gives the name");
  Expect(CLOMAdsLisp::EntNext(name).ENameP(), "EntNext gives the name");
  Expect(CLOMAdsLisp::EntSel(CLOMAdsLisp::Nil).Length() == 2, "EntSel gives name and point");
  Expect(prompt == nullptr, "EntSel of nil hands over no prompt");
  Expect(CLOMAdsLisp::SSGet(L"X", CLOMAdsLisp::Nil, CLOMAdsLisp::Nil, CLOMAdsLisp::Nil).PickSetP(),
         "SSGet gives the set");
  Expect(filter == nullptr, "SSGet without a filter hands over none");
}

void ChainsAreReleasedWhole() {
  const CLOMAdsLispVar name(kName);
  const int live = LiveBlocks();
  entityChain = TextRecord(0, L"LINE", TextRecord(8, L"Walls", TextRecord(1, L"text")));
  Expect(CLOMAdsLisp::EntGet(name).Length() == 3, "EntGet gives all groups");
  Expect(applications == nullptr, "EntGet without applications hands over none");
  // Application data without the -3 in front of it, an atom behind the groups, a list that does not end.
  for (resbuf* chain : {TextRecord(0, L"LINE", TextRecord(1001, L"APP")),
                        TextRecord(0, L"LINE", Plain(RTNIL)), Plain(RTLB, TextRecord(8, L"0"))}) {
    entityChain = chain;
    Expect(CLOMAdsLisp::EntGet(name).NilP(), "EntGet of what is no value is nil");
  }
  const int printed = PrintedTexts();
  entityChain = nullptr;
  Expect(CLOMAdsLisp::EntGet(name).NilP(), "EntGet of nothing is nil");
  Expect(PrintedTexts() == printed, "and says nothing");
  Expect(LiveBlocks() == live, "the chains with their texts are released");
}

}  // namespace

int main() {
  OutputsCountBesideSuccessAlone();
  ChainsAreReleasedWhole();
  Expect(LiveBlocks() == 0, "nothing is left");
  return failures == 0 ? 0 : 1;
}
