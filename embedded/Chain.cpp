#include <embedded/Chain.h>

#include <lomlisp/platform/suite.h>

#include <embedded/Nesting.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <new>
#include <utility>

namespace lomlisp::embedded {

namespace {

constexpr uintptr_t kLowestAddress = 0x10000;
// Programs get the lower half of a 48-bit address space.
constexpr unsigned kAddressBits = sizeof(uintptr_t) > 4 ? 47 : 32;

bool CanPoint(const void* pointer, size_t alignment) {
  const auto address = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(pointer));
  return address >= kLowestAddress && address >> kAddressBits == 0 && address % alignment == 0;
}

// Texts outside the ledger's heap are taken as they are: literals and the client's own arrays.
const char* ObjectionTo(const wchar_t* text, const Ledger& ledger) {
  if (text == nullptr) return nullptr;
  if (!CanPoint(text, alignof(wchar_t))) return "a text pointer that cannot be one";
  if (ledger.IsFreed(text)) return "a text that was freed";
  const size_t room = ledger.BytesFrom(text) / sizeof(wchar_t);
  if (room > 0 && std::find(text, text + room, L'\0') == text + room)
    return "a text that does not end within its block";
  return nullptr;
}

// Records may be the client's own, so a link can lead anywhere; only what is known to be bad is refused.
const char* ObjectionTo(const resbuf* record, const Ledger& ledger) {
  if (!CanPoint(record, alignof(resbuf))) return "a link that cannot be one";
  return ledger.IsFreed(record) ? "a record that was freed" : nullptr;
}

std::string At(size_t index, const char* what) {
  return std::string(what) + " (record " + std::to_string(index + 1) + ")";
}

std::optional<std::string> CheckRecord(const resbuf* record, size_t index, const Ledger& ledger) {
  if (const char* objection = ObjectionTo(record, ledger)) return At(index, objection);
  if (!IsKnown(record->restype))
    return At(index, ("unknown type " + std::to_string(record->restype)).c_str());
  if (!HoldsText(record->restype)) return std::nullopt;
  const char* objection = ObjectionTo(record->resval.rstring, ledger);
  return objection != nullptr ? std::optional(At(index, objection)) : std::nullopt;
}

// Finds a ring after at most twice its length: the mark stands still for ever longer stretches.
class RingDetector {
 public:
  bool IsRing(const resbuf* record) {
    if (record == m_mark) return true;
    if (std::has_single_bit(++m_steps)) m_mark = record;
    return false;
  }

 private:
  const resbuf* m_mark = nullptr;
  size_t m_steps = 0;
};

bool HasSameValue(const resbuf& record, const Record& copy) {
  const ads_u_val& value = record.resval;
  const auto same = [&](const auto& left, const auto& right) {
    static_assert(sizeof left == sizeof right);
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): -0 is another value than 0, and NaN is the same.
    return std::memcmp(&left, &right, sizeof left) == 0;
  };
  switch (DxfType(record.restype)) {
    case RTREAL:
    case RTANG:
    case RTORINT:
      return same(value.rreal, copy.value.rreal);
    case RTPOINT:
      return same(value.rpoint[0], copy.value.rpoint[0]) && same(value.rpoint[1], copy.value.rpoint[1]);
    case RT3DPOINT:
      return same(value.rpoint, copy.value.rpoint);
    case RTSHORT:
      return value.rint == copy.value.rint;
    case RTLONG:
      return value.rlong == copy.value.rlong;
    case RTINT64:
      return value.mnInt64 == copy.value.mnInt64;
    case RTENAME:
    case RTPICKS:
      return same(value.rlname, copy.value.rlname);
    case RTSTR:
    case RTDXF0:
      // Reads no further than the copy's end: the terminator may have been written over.
      return (value.rstring != nullptr) == copy.hasText &&
             (!copy.hasText || std::wcsncmp(value.rstring, copy.text.c_str(), copy.text.size() + 1) == 0);
    default:
      return true;
  }
}

wchar_t* MaterialiseText(const std::wstring& text, Ledger& ledger, Owner owner, const void* caller) {
  const size_t bytes = (text.size() + 1) * sizeof(wchar_t);
  void* block = ledger.Allocate(bytes, owner, Ledger::kPlainMemory, caller);
  if (block != nullptr) std::memcpy(block, text.c_str(), bytes);
  return static_cast<wchar_t*>(block);
}

resbuf* MaterialiseRecord(const Record& record, Ledger& ledger, Owner owner, const void* caller) {
  void* block = ledger.Allocate(sizeof(resbuf), owner, record.type, caller);
  if (block == nullptr) return nullptr;
  auto* made = new (block) resbuf{nullptr, record.type, record.value};
  if (!HoldsText(record.type)) return made;
  made->resval.rstring = record.hasText ? MaterialiseText(record.text, ledger, owner, caller) : nullptr;
  if (!record.hasText || made->resval.rstring != nullptr) return made;
  ledger.Free(block, owner);
  return nullptr;
}

void Release(resbuf* chain, Ledger& ledger, Owner by) {
  while (chain != nullptr) {
    if (!ledger.IsLive(chain)) return ledger.Free(chain, by);  // notes the fault
    resbuf* next = chain->rbnext;
    if (HoldsText(chain->restype)) ledger.Free(chain->resval.rstring, by);
    ledger.Free(chain, by);
    chain = next;
  }
}

}  // namespace

bool HoldsText(short type) { return DxfType(type) == RTSTR || type == RTDXF0; }

bool IsKnown(short type) {
  const bool isResultType = (type >= RTNONE && type <= RTLONG) || type == RTVOID ||
                            (type >= RTLB && type <= RTT) || type == RTINT64;
  return isResultType || DxfType(type) != type;
}

std::optional<std::string> Check(const resbuf* chain, const Ledger& ledger, Place place) {
  BracketCount count(place);
  RingDetector ring;
  size_t index = 0;
  for (const resbuf* record = chain; record != nullptr; record = record->rbnext, ++index) {
    if (auto objection = CheckRecord(record, index, ledger)) return objection;
    if (ring.IsRing(record)) return "the chain is a ring";
    count.Add(record->restype);
  }
  Nesting nesting(place, count.DotsClose(place));
  index = 0;
  for (const resbuf* record = chain; record != nullptr; record = record->rbnext, ++index)
    if (nesting.Take(record->restype, index) == Nesting::Role::Misplaced)
      return At(index, nesting.Objection());
  if (!nesting.End()) return nesting.Objection();
  return std::nullopt;
}

Chain Capture(const resbuf* chain) {
  Chain copy;
  for (; chain != nullptr; chain = chain->rbnext) {
    Record& record = copy.emplace_back();
    record.type = chain->restype;
    if (!HoldsText(chain->restype)) {
      record.value = chain->resval;
    } else if (chain->resval.rstring != nullptr) {
      record.hasText = true;
      record.text = chain->resval.rstring;
    }
  }
  return copy;
}

resbuf* Materialise(const Chain& chain, Ledger& ledger, Owner owner, const void* caller) {
  resbuf* first = nullptr;
  resbuf** link = &first;
  for (const Record& record : chain) {
    *link = MaterialiseRecord(record, ledger, owner, caller);
    if (*link == nullptr) {
      Release(first, ledger, owner);
      return nullptr;
    }
    link = &(*link)->rbnext;
  }
  return first;
}

bool Matches(const resbuf* chain, const Chain& copy) {
  for (const Record& record : copy) {
    if (chain == nullptr || chain->restype != record.type || !HasSameValue(*chain, record)) return false;
    chain = chain->rbnext;
  }
  return chain == nullptr;
}

void ReleaseChain(resbuf* chain, Ledger& ledger) { Release(chain, ledger, Owner::Client); }

// --- Brackets ---

Nesting::Role Nesting::Take(short type, size_t index) {
  switch (type) {
    case RTLB:
      BeginItem(index);
      m_levels.emplace_back();
      return Role::Open;
    case RTLE:
      return TakeClose();
    case RTDOTE:
      return TakeDot(index);
    default:
      BeginItem(index);
      return Role::Item;
  }
}

bool Nesting::End() {
  if (m_levels.size() > 1) {
    m_objection = "a list that does not end";
    return false;
  }
  const Level& level = m_levels.back();
  const bool isPairAtEnd = level.items == 2;
  if (level.dot == kNone || level.items > level.itemsBeforeDot || isPairAtEnd) return true;
  m_objection = "a dot with nothing behind it";
  return false;
}

void Nesting::BeginItem(size_t index) {
  ++m_levels.back().items;
  m_levels.back().lastItem = index;
  m_lastItem = index;
}

Nesting::Role Nesting::TakeDot(size_t index) {
  Level& level = m_levels.back();
  const bool isOutside = m_levels.size() == 1 && !m_isOuterList;
  if (isOutside) return Object("a dot outside a list");
  if (level.items == 0) return Object("a dot with nothing before it");
  if (level.dot != kNone) return Object("a second dot in a list");
  if (m_dotsClose && level.items == 2 && m_levels.size() > 1) {
    m_lastItem = level.lastItem;
    m_pairDot = kNone;
    m_levels.pop_back();
    return Role::ClosingDot;
  }
  level.dot = index;
  level.itemsBeforeDot = level.items;
  return Role::Dot;
}

Nesting::Role Nesting::TakeClose() {
  const Level level = m_levels.back();
  if (m_levels.size() == 1) return Object("an end of a list without its beginning");
  if (level.dot != kNone && level.items == level.itemsBeforeDot)
    return Object("a dot with nothing behind it");
  m_lastItem = level.lastItem;
  m_pairDot = level.items == 2 && level.itemsBeforeDot == 1 ? level.dot : kNone;
  m_levels.pop_back();
  return Role::Close;
}

Nesting::Role Nesting::Object(const char* objection) {
  m_objection = objection;
  return Role::Misplaced;
}

Chain WithDotsBeforeLast(Chain chain) {
  BracketCount count(Place::Items);
  for (const Record& record : chain) count.Add(record.type);
  if (!count.DotsClose(Place::Items)) return chain;

  Nesting nesting(Place::Items, true);
  std::vector<bool> isDotBefore(chain.size());
  std::vector<bool> isClosingDot(chain.size());
  for (size_t index = 0; index < chain.size(); ++index) {
    const Nesting::Role role = nesting.Take(chain[index].type, index);
    if (role == Nesting::Role::Misplaced) return chain;
    if (role != Nesting::Role::ClosingDot) continue;
    isDotBefore[nesting.LastItem()] = true;
    isClosingDot[index] = true;
  }
  Chain moved;
  moved.reserve(chain.size() * 2);
  for (size_t index = 0; index < chain.size(); ++index) {
    if (isDotBefore[index]) moved.push_back(Mark(RTDOTE));
    moved.push_back(isClosingDot[index] ? Mark(RTLE) : std::move(chain[index]));
  }
  return moved;
}

Chain Bracketed(Chain inside) {
  BracketCount count(Place::InsideOfList);
  for (const Record& record : inside) count.Add(record.type);
  Nesting nesting(Place::InsideOfList, count.DotsClose(Place::InsideOfList));
  for (size_t index = 0; index < inside.size(); ++index) nesting.Take(inside[index].type, index);
  const bool dotCloses = !inside.empty() && nesting.EndsWithOuterDot(inside.size() - 1);
  inside.insert(inside.begin(), Mark(RTLB));
  if (!dotCloses) inside.push_back(Mark(RTLE));
  return WithDotsBeforeLast(std::move(inside));
}

Chain WithNilForEmpty(Chain chain) {
  size_t kept = 0;
  for (size_t index = 0; index < chain.size(); ++index, ++kept) {
    const bool isEmptyList =
        chain[index].type == RTLB && index + 1 < chain.size() && chain[index + 1].type == RTLE;
    if (isEmptyList) chain[++index] = Mark(RTNIL);
    if (kept != index) chain[kept] = std::move(chain[index]);
  }
  chain.resize(kept);
  return chain;
}

bool IsOneItem(const Chain& chain) {
  const auto isGroup = [](const Record& record) { return DxfType(record.type) != record.type; };
  if (!chain.empty() && std::all_of(chain.begin(), chain.end(), isGroup)) return true;
  BracketCount count(Place::Items);
  for (const Record& record : chain) count.Add(record.type);
  Nesting nesting(Place::Items, count.DotsClose(Place::Items));
  for (size_t index = 0; index < chain.size(); ++index)
    if (nesting.Take(chain[index].type, index) == Nesting::Role::Misplaced) return false;
  return nesting.End() && nesting.Items() == 1;
}

bool IsOneProperList(const Chain& chain) {
  if (chain.empty() || chain.front().type != RTLB || !IsOneItem(chain)) return false;
  size_t depth = 0;
  for (const Record& record : chain) {
    if (record.type == RTDOTE && depth == 1) return false;
    if (record.type == RTLB) ++depth;
    if (record.type == RTLE) --depth;
  }
  return true;
}

}  // namespace lomlisp::embedded
