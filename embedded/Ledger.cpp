#include <embedded/Ledger.h>

#include <embedded/Poison.h>

#include <algorithm>
#include <array>
#include <bitset>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <iterator>
#include <unordered_map>
#include <utility>

#if defined(__has_include) && !defined(_WIN32)
#if __has_include(<dlfcn.h>) && __has_include(<cxxabi.h>)
#define LOMLISP_EMBEDDED_DLADDR 1
#include <cxxabi.h>
#include <dlfcn.h>
#endif
#endif

namespace lomlisp::embedded {

namespace {

constexpr size_t kGuardBytes = 16;
constexpr unsigned char kGuardByte = 0xFB;
constexpr unsigned char kFreshByte = 0xCD;
constexpr unsigned char kFreedByte = 0xDD;
constexpr size_t kMostHeldBack = size_t{4} << 20;
// More than any machine has; a sanitizer's allocator would end the program instead of giving null.
constexpr size_t kLargestBlock = size_t{1} << (sizeof(size_t) > 4 ? 39 : 30);

constexpr size_t kPageBytes = 4096;
constexpr size_t kGranule = alignof(std::max_align_t);
constexpr size_t kGranules = kPageBytes / kGranule;

// What stands in front of each block, before the guard.
struct alignas(std::max_align_t) Header {
  uint64_t number;
  size_t bytes;
  const void* caller;
  int recordType;
  uint32_t function;
  Owner owner;
  uint64_t seal;  // over the rest: tells whether the header itself was written over
};

constexpr size_t kInFront = sizeof(Header) + kGuardBytes;

std::byte* MemoryOf(Header* header) { return reinterpret_cast<std::byte*>(header) + kInFront; }
Header* HeaderOf(std::byte* block) { return reinterpret_cast<Header*>(block - kInFront); }
size_t Footprint(const Header& header) { return kInFront + header.bytes + kGuardBytes; }

uintptr_t AddressOf(const void* pointer) { return reinterpret_cast<uintptr_t>(pointer); }
std::byte* PlaceAt(uintptr_t address) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): places are kept as bits of pages, whose keys are numbers.
  return reinterpret_cast<std::byte*>(address);
}

uint64_t SealOf(const Header& header) {
  uint64_t seal = 0x9E3779B97F4A7C15u ^ AddressOf(&header);
  for (const uint64_t part :
       {header.number, uint64_t{header.bytes}, uint64_t{AddressOf(header.caller)}, uint64_t{header.function},
        static_cast<uint64_t>(header.recordType), static_cast<uint64_t>(header.owner)})
    seal = (seal ^ part) * 0x100000001B3u;
  return seal;
}

std::string Hexadecimal(uintptr_t number) {
  std::string digits;
  do digits.insert(digits.begin(), "0123456789abcdef"[number % 16]);
  while ((number /= 16) != 0);
  return "0x" + digits;
}

// The code address as a function's name, or a module and an offset, or a bare number.
std::string PlaceName(const void* address) {
  if (address == nullptr) return {};
#ifdef LOMLISP_EMBEDDED_DLADDR
  Dl_info info{};
  if (dladdr(address, &info) != 0 && info.dli_fname != nullptr) {
    if (info.dli_sname == nullptr)
      return std::string(info.dli_fname) + "+" + Hexadecimal(AddressOf(address) - AddressOf(info.dli_fbase));
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> readable(
        abi::__cxa_demangle(info.dli_sname, nullptr, nullptr, &status), &std::free);
    return readable != nullptr ? readable.get() : info.dli_sname;
  }
#endif
  return Hexadecimal(AddressOf(address));
}

bool IsFilledWith(const std::byte* memory, size_t bytes, unsigned char value) {
  // Equal to itself, one byte further on: as fast as memory can be read.
  return bytes == 0 || (memory[0] == std::byte{value} && std::memcmp(memory, memory + 1, bytes - 1) == 0);
}

void PoisonGuards(Header* header) {
  Poison(MemoryOf(header) - kGuardBytes, kGuardBytes);
  Poison(MemoryOf(header) + header->bytes, kGuardBytes);
}

void UnpoisonAll(Header* header) { Unpoison(header, Footprint(*header)); }

std::array<std::byte*, 2> GuardsOf(Header* header) {
  return {MemoryOf(header) - kGuardBytes, MemoryOf(header) + header->bytes};
}

void FillGuards(Header* header) {
  for (std::byte* guard : GuardsOf(header)) std::memset(guard, kGuardByte, kGuardBytes);
}

// Whether both guards are as they were; they are so afterwards, so that a write is found once.
bool RenewGuards(Header* header) {
  const auto guards = GuardsOf(header);
  const bool good = std::all_of(guards.begin(), guards.end(), [](const std::byte* guard) {
    return IsFilledWith(guard, kGuardBytes, kGuardByte);
  });
  if (!good) FillGuards(header);
  return good;
}

bool RenewFreed(Header* header) {
  const bool good = IsFilledWith(MemoryOf(header), header->bytes, kFreedByte);
  if (!good) std::memset(MemoryOf(header), kFreedByte, header->bytes);
  return RenewGuards(header) && good;
}

// The blocks that begin on one page of addresses. A pointer is looked up here before anything it
// points to is read, so that any number may be asked about.
struct Page {
  std::bitset<kGranules> live;
  std::bitset<kGranules> freed;
  std::byte* covering = nullptr;  // the live block that reaches into this page from an earlier one
};

}  // namespace

struct Ledger::Books {
  std::unordered_map<uintptr_t, Page> pages;
  std::deque<Header*> heldBack;
  size_t bytesHeldBack = 0;
  std::array<Balance, 2> balances;
  uint64_t count = 0;      // allocations so far
  uint64_t forgotten = 0;  // the client's blocks up to this number count no more
  uint64_t failIn = 0;     // 0: never
  bool failOn = false;
  std::vector<std::string> faults;
  std::vector<std::string> functions{std::string()};
  std::unordered_map<std::string, uint32_t> functionNumbers{{std::string(), 0}};
  uint32_t function = 0;
  // Neighbours in time are neighbours in memory.
  mutable uintptr_t lastNumber = 0;
  mutable const Page* lastPage = nullptr;

  const Page* Find(uintptr_t address) const {
    const uintptr_t number = address / kPageBytes;
    if (lastPage != nullptr && lastNumber == number) return lastPage;
    const auto found = pages.find(number);
    if (found == pages.end()) return nullptr;
    lastNumber = number;
    lastPage = &found->second;
    return lastPage;
  }
  Page* Find(uintptr_t address) { return const_cast<Page*>(std::as_const(*this).Find(address)); }

  static size_t Index(uintptr_t address) { return address % kPageBytes / kGranule; }
  static bool MayBegin(uintptr_t address) { return address % kGranule == 0; }

  bool IsLive(uintptr_t address) const {
    const Page* page = MayBegin(address) ? Find(address) : nullptr;
    return page != nullptr && page->live[Index(address)];
  }
  bool IsFreed(uintptr_t address) const {
    const Page* page = MayBegin(address) ? Find(address) : nullptr;
    return page != nullptr && page->freed[Index(address)];
  }

  // The live block that begins last at or before the address and not before its page, or that
  // covers the page.
  std::byte* Before(uintptr_t address) const {
    const Page* page = Find(address);
    if (page == nullptr) return nullptr;
    for (size_t index = Index(address) + 1; index-- > 0;)
      if (page->live[index])
        return PlaceAt(address / kPageBytes * kPageBytes + index * kGranule);
    return page->covering;
  }

  // Forgets a page on which nothing is left.
  void Prune(uintptr_t number) {
    const auto found = pages.find(number);
    if (found == pages.end()) return;
    const Page& page = found->second;
    if (page.live.any() || page.freed.any() || page.covering != nullptr) return;
    if (lastPage == &page) lastPage = nullptr;
    pages.erase(found);
  }

  void SetCover(std::byte* block, size_t bytes, std::byte* covering) {
    if (bytes == 0) return;
    const uintptr_t last = (AddressOf(block) + bytes - 1) / kPageBytes;
    for (uintptr_t number = AddressOf(block) / kPageBytes + 1; number <= last; ++number)
      pages[number].covering = covering;
    if (covering == nullptr)
      for (uintptr_t number = AddressOf(block) / kPageBytes + 1; number <= last; ++number) Prune(number);
  }

  bool MustFail() {
    if (failIn == 0 || --failIn > 0) return false;
    failIn = failOn ? 1 : 0;
    return true;
  }

  bool Counts(const Header& header) const { return header.owner == Owner::Host || header.number > forgotten; }
  Balance& BalanceOf(const Header& header) { return balances[static_cast<size_t>(header.owner)]; }

  Block Describe(const Header& header) const {
    return {header.number, header.bytes,
            header.recordType == kPlainMemory ? std::string("memory")
                                              : "record of type " + std::to_string(header.recordType),
            functions[header.function], PlaceName(header.caller)};
  }

  void Fault(const std::string& what, const Header& header) {
    const Block block = Describe(header);
    std::string text = what + ": " + block.kind + ", " + std::to_string(block.bytes) + " bytes, allocation " +
                       std::to_string(block.number);
    if (!block.function.empty()) text += ", during " + block.function;
    if (!block.place.empty()) text += ", by " + block.place;
    faults.push_back(std::move(text));
  }

  bool IsSealed(const Header& header) {
    if (header.seal == SealOf(header)) return true;
    faults.push_back("the books in front of the block at " + Hexadecimal(AddressOf(&header) + kInFront) +
                     " were written over");
    return false;
  }

  void CheckLive(Header* header) {
    if (!IsSealed(*header)) return;
    UnpoisonAll(header);
    if (!RenewGuards(header)) Fault("written outside the block", *header);
    PoisonGuards(header);
  }

  void CheckFreed(Header* header) {
    UnpoisonAll(header);
    if (!RenewFreed(header)) Fault("written after the free", *header);
  }

  void Retire(std::byte* block) {
    Header* header = HeaderOf(block);
    UnpoisonAll(header);
    if (!RenewGuards(header)) Fault("written outside the block", *header);
    if (Counts(*header)) {
      --BalanceOf(*header).blocks;
      BalanceOf(*header).bytes -= header->bytes;
    }
    Page* page = Find(AddressOf(block));
    page->live.reset(Index(AddressOf(block)));
    page->freed.set(Index(AddressOf(block)));
    SetCover(block, header->bytes, nullptr);
    std::memset(block, kFreedByte, header->bytes);
    Poison(block - kGuardBytes, header->bytes + 2 * kGuardBytes);
    heldBack.push_back(header);
    bytesHeldBack += Footprint(*header);
    while (bytesHeldBack > kMostHeldBack) LetGo();
  }

  void LetGo() {
    Header* header = heldBack.front();
    heldBack.pop_front();
    bytesHeldBack -= Footprint(*header);
    CheckFreed(header);
    const uintptr_t address = AddressOf(MemoryOf(header));
    Find(address)->freed.reset(Index(address));
    Prune(address / kPageBytes);
    std::free(header);
  }

  std::vector<Header*> LiveBlocks() const {
    std::vector<Header*> headers;
    for (const auto& [number, page] : pages) {
      if (page.live.none()) continue;  // most pages, where blocks come and go
      for (size_t index = 0; index < kGranules; ++index)
        if (page.live[index]) headers.push_back(HeaderOf(PlaceAt(number * kPageBytes + index * kGranule)));
    }
    return headers;
  }
};

Ledger::Ledger() : m_books(std::make_unique<Books>()) {}

Ledger::~Ledger() {
  while (!m_books->heldBack.empty()) m_books->LetGo();
  for (Header* header : m_books->LiveBlocks()) {
    const bool isSizeKnown = header->seal == SealOf(*header);
    if (isSizeKnown) UnpoisonAll(header);
    std::free(header);
  }
}

void* Ledger::Allocate(size_t bytes, Owner owner, int recordType, const void* caller) {
  Books& books = *m_books;
  if (owner == Owner::Client && books.MustFail()) return nullptr;
  if (bytes > kLargestBlock) return nullptr;
  auto* header = static_cast<Header*>(std::malloc(kInFront + bytes + kGuardBytes));
  if (header == nullptr) return nullptr;
  *header = {++books.count, bytes, caller, recordType, books.function, owner, 0};
  header->seal = SealOf(*header);
  std::byte* block = MemoryOf(header);
  std::memset(block, kFreshByte, bytes);
  FillGuards(header);
  PoisonGuards(header);

  Page* page = books.Find(AddressOf(block));
  if (page == nullptr) page = &books.pages[AddressOf(block) / kPageBytes];
  page->live.set(Books::Index(AddressOf(block)));
  books.SetCover(block, bytes, block);
  ++books.BalanceOf(*header).blocks;
  books.BalanceOf(*header).bytes += bytes;
  return block;
}

void Ledger::Free(void* block, Owner by) {
  if (block == nullptr) return;
  Books& books = *m_books;
  auto* memory = static_cast<std::byte*>(block);
  if (books.IsFreed(AddressOf(block))) {
    books.Fault("freed twice", *HeaderOf(memory));
  } else if (!books.IsLive(AddressOf(block))) {
    books.faults.push_back("freed a pointer that is no block of this heap: " + Hexadecimal(AddressOf(block)));
  } else if (!books.IsSealed(*HeaderOf(memory))) {
    // Its size is unknown now: it stays.
  } else if (HeaderOf(memory)->owner == Owner::Host && by == Owner::Client) {
    books.Fault("freed a block that is the host's", *HeaderOf(memory));
  } else {
    books.Retire(memory);
  }
}

Balance Ledger::Live(Owner owner) const { return m_books->balances[static_cast<size_t>(owner)]; }

bool Ledger::IsLive(const void* block) const { return m_books->IsLive(AddressOf(block)); }

bool Ledger::IsFreed(const void* block) const { return m_books->IsFreed(AddressOf(block)); }

size_t Ledger::BytesFrom(const void* pointer) const {
  std::byte* block = m_books->Before(AddressOf(pointer));
  if (block == nullptr) return 0;
  const size_t offset = AddressOf(pointer) - AddressOf(block);
  const size_t bytes = HeaderOf(block)->bytes;
  return offset < bytes ? bytes - offset : 0;
}

uint64_t Ledger::Mark() const { return m_books->count; }

std::vector<Block> Ledger::LeaksSince(uint64_t mark) const {
  std::vector<Block> leaks;
  for (const Header* header : m_books->LiveBlocks())
    if (header->owner == Owner::Client && header->number > mark && m_books->Counts(*header))
      leaks.push_back(m_books->Describe(*header));
  std::sort(leaks.begin(), leaks.end(),
            [](const Block& left, const Block& right) { return left.number < right.number; });
  return leaks;
}

void Ledger::FailAllocation(uint64_t n) {
  m_books->failIn = n;
  m_books->failOn = false;
}

void Ledger::FailAllocationsFrom(uint64_t n) {
  m_books->failIn = n;
  m_books->failOn = true;
}

void Ledger::CheckGuards() {
  for (Header* header : m_books->LiveBlocks()) m_books->CheckLive(header);
  for (Header* header : m_books->heldBack) {
    m_books->CheckFreed(header);
    Poison(MemoryOf(header) - kGuardBytes, header->bytes + 2 * kGuardBytes);
  }
}

std::vector<std::string> Ledger::TakeFaults() { return std::exchange(m_books->faults, {}); }

std::vector<std::string> Ledger::TakeFaults(size_t known) {
  std::vector<std::string>& faults = m_books->faults;
  const auto first = faults.begin() + static_cast<std::ptrdiff_t>(std::min(known, faults.size()));
  std::vector<std::string> taken(std::make_move_iterator(first), std::make_move_iterator(faults.end()));
  faults.erase(first, faults.end());
  return taken;
}

size_t Ledger::FaultCount() const { return m_books->faults.size(); }

void Ledger::Fault(std::string text) { m_books->faults.push_back(std::move(text)); }

void Ledger::SetFunction(std::string_view name) {
  const auto [entry, isNew] = m_books->functionNumbers.try_emplace(
      std::string(name), static_cast<uint32_t>(m_books->functions.size()));
  if (isNew) m_books->functions.emplace_back(name);
  m_books->function = entry->second;
}

void Ledger::Reset() {
  while (!m_books->heldBack.empty()) m_books->LetGo();
  m_books->balances[static_cast<size_t>(Owner::Client)] = {};
  m_books->forgotten = m_books->count;
  m_books->failIn = 0;
  m_books->failOn = false;
  m_books->faults.clear();
}

}  // namespace lomlisp::embedded
