#include <lomlisp/resbuf/ADSList.h>

#include <lomlisp/resbuf/DxfTexts.h>

#include <utility>

using namespace lomlisp;

// --- ADSBaseList ---

void ADSBaseList::Init() {
  start = new ResBuf;
  current = start;
}

void ADSBaseList::Destroy() {
  delete start;
  start = nullptr;
  current = nullptr;
}

ResBuf& ADSBaseList::Curr() const {
  if (current != nullptr) return *current;
  static ResBuf withoutMemory;
  return withoutMemory;
}

int ADSBaseList::Go(ResBuf* target) {
  if (target == nullptr) return 0;
  current = target;
  return 1;
}

ResBuf* ADSBaseList::Last() const {
  ResBuf* last = First();
  while (Next(last) != nullptr) last = Next(last);
  return last;
}

ResBuf* ADSBaseList::Previous(const ResBuf* record) const {
  if (record == nullptr || record == start) return nullptr;
  ResBuf* previous = start;
  while (previous != nullptr && previous->Next() != record) previous = previous->Next();
  return previous;
}

ResBuf* ADSBaseList::NextElement(const ResBuf* record) const {
  if (record == nullptr || record->Type() != RTLB) return Next(record);
  int depth = 1;
  for (ResBuf* behind = record->Next(); behind != nullptr; behind = behind->Next()) {
    if (depth < 1) return behind;
    if (behind->Type() == RTLB) ++depth;
    if (behind->Type() == RTLE) --depth;
  }
  return nullptr;
}

ResBuf* ADSBaseList::PreviousElement(const ResBuf* record) {
  ResBuf* const previous = Previous(record);
  if (previous == nullptr || previous->Type() != RTLE) return previous;
  Reverse();
  ResBuf* const inFront = NextElement(previous);
  Reverse();
  return Next(inFront);
}

void ADSBaseList::Reverse() {
  ResBuf* reversed = nullptr;
  for (ResBuf* record = First(); record != nullptr;) {
    ResBuf* const behind = record->Next();
    record->Reverse();
    record->Connect(reversed);
    reversed = record;
    record = behind;
  }
  if (start != nullptr) start->Connect(reversed);
}

void ADSBaseList::Print() const {
  acutPrintf(L"< ");
  for (const ResBuf* record = First(); record != nullptr; record = record->Next()) {
    record->Print(nullptr, 0);
    acutPrintf(L" ");
  }
  acutPrintf(L">\n");
}

// --- ADSList ---

namespace {

ResBuf* LastOf(ResBuf* chain) {
  while (chain->Next() != nullptr) chain = chain->Next();
  return chain;
}

// The texts of the text groups of a chain that goes by its types.
void OwnTexts(resbuf* chain) {
  for (; chain != nullptr; chain = chain->rbnext)
    if (dxftexts::IsTextCode(chain->restype)) dxftexts::Own(*chain, chain->restype);
}

void HandOverTexts(resbuf* chain) {
  for (; chain != nullptr; chain = chain->rbnext) dxftexts::HandOver(*chain);
}

void ReleaseRecords(ResBuf* chain) {
  while (chain != nullptr) delete std::exchange(chain, chain->Next());
}

}  // namespace

// Linking in a chain that holds the cursor, or what is right behind it, would close a ring.
bool ADSList::IsOwn(const ResBuf* chain) const {
  if (chain == Next(current)) return chain != nullptr;
  while (chain != nullptr && chain != current) chain = chain->Next();
  return chain != nullptr;
}

void ADSList::Add(ResBuf* chain, ADSCopyFlag flag) {
  if (flag == ADSCopyFlag::Copy)
    chain = Copy(chain);
  else if (IsOwn(chain))
    return;
  if (chain == nullptr) return;
  if (deleteMode == ADSDeleteFlag::Keep) HandOverTexts(chain);
  Link(chain, LastOf(chain));
}

void ADSList::Add(resbuf* chain, ADSCopyFlag flag) {
  auto* const records = static_cast<ResBuf*>(chain);
  if (flag == ADSCopyFlag::Copy) {
    Add(records, flag);
  } else if (chain != nullptr && !IsOwn(records)) {
    if (deleteMode != ADSDeleteFlag::Keep) OwnTexts(chain);
    Link(records, LastOf(records));
  }
}

void ADSList::Add(const ADSBaseList& source) { Add(source.First(), ADSCopyFlag::Copy); }

void ADSList::AddBracket(short type) { Add(new ResBuf(ADSResType(type)), ADSCopyFlag::Adopt); }

void ADSList::AddAsList(ResBuf* chain, ADSCopyFlag flag) {
  if (flag != ADSCopyFlag::Copy && chain != nullptr && IsOwn(chain)) return;
  AddBracket(RTLB);
  Add(chain, flag);
  AddBracket(RTLE);
}

void ADSList::AddAsList(resbuf* chain, ADSCopyFlag flag) {
  auto* const records = static_cast<ResBuf*>(chain);
  if (flag != ADSCopyFlag::Copy && chain != nullptr && IsOwn(records)) return;
  AddBracket(RTLB);
  Add(chain, flag);
  AddBracket(RTLE);
}

void ADSList::AddAsList(const ADSBaseList& source) { AddAsList(source.First(), ADSCopyFlag::Copy); }

void ADSList::Splice(ADSList& other) {
  ResBuf* const chain = other.First();
  if (&other == this || chain == nullptr) return;
  other.DeleteMode(deleteMode);
  ResBuf* const last = LastOf(other.current);
  other.start->Connect(nullptr);
  other.current = other.start;
  Link(chain, last);
}

// Links the chain in behind the cursor and moves the cursor to its end. Without a sentinel there
// is nothing to link it to, but it is the list's all the same.
void ADSList::Link(ResBuf* chain, ResBuf* last) {
  if (current == nullptr) {
    if (deleteMode != ADSDeleteFlag::Keep) ReleaseRecords(chain);
    return;
  }
  last->Connect(current->Next());
  current->Connect(chain);
  current = last;
}

int ADSList::Delete() {
  if (isNIL() || atStart()) return 0;
  ResBuf* const deleted = current;
  ResBuf* const previous = Previous(deleted);
  if (previous == nullptr) return 0;
  previous->Connect(deleted->Next());
  current = deleted->Next() != nullptr ? deleted->Next() : previous;
  deleted->Connect(nullptr);
  if (deleteMode == ADSDeleteFlag::Keep) OwnTexts(deleted);
  delete deleted;
  return 1;
}

ADSDeleteFlag ADSList::DeleteMode(ADSDeleteFlag flag) {
  const ADSDeleteFlag previous = deleteMode;
  if (flag == ADSDeleteFlag::Ask) return previous;
  deleteMode = flag;
  if (previous != ADSDeleteFlag::Keep && flag == ADSDeleteFlag::Keep) HandOverTexts(First());
  if (previous == ADSDeleteFlag::Keep && flag != ADSDeleteFlag::Keep) OwnTexts(First());
  return previous;
}

void ADSList::Clear() {
  Destroy();
  if (start != nullptr) start->Connect(nullptr);
  current = start;
  deleteMode = ADSDeleteFlag::Release;
}

ResBuf* ADSList::Copy(const ResBuf* chain) const {
  resbuf* first = nullptr;
  resbuf** link = &first;
  for (; chain != nullptr; chain = chain->Next()) {
    *link = new ResBuf(*chain);
    if (*link == nullptr) break;
    link = &(*link)->rbnext;
  }
  return static_cast<ResBuf*>(first);
}

void ADSList::Destroy() {
  if (deleteMode != ADSDeleteFlag::Keep) ReleaseRecords(First());
}
