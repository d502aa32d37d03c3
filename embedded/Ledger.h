// The books of the platform's heap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lomlisp::embedded {

// Whose memory a block is: the balance of the modules is exact because the host's own is apart.
enum class Owner { Client, Host };

struct Balance {
  size_t blocks = 0;
  size_t bytes = 0;
  friend bool operator==(const Balance&, const Balance&) = default;
};

// A live block, as a leak report names it.
struct Block {
  uint64_t number;  // the how-manieth allocation it was
  size_t bytes;
  std::string kind;      // "memory", or "record of type 5005"
  std::string function;  // the LISP function that was being called, or empty
  std::string place;     // the code that asked for it, as far as the system can name it
};

// Every block that acad_malloc, acutNewRb and the host's own chains take. Misuse (a double free, a
// pointer that is none of ours, a write past the end or after the free) is noted as a fault, and
// the program goes on. Freed memory is filled with 0xDD and held back for a while, so that later
// uses are found; under AddressSanitizer they are reported at once.
class Ledger {
 public:
  // The record type of a block that is no record: DXF codes may be negative.
  static constexpr int kPlainMemory = std::numeric_limits<int>::min();

  Ledger();
  ~Ledger();
  Ledger(const Ledger&) = delete;
  Ledger& operator=(const Ledger&) = delete;

  // Null when memory runs out or the allocation is told to fail. `caller` is a code address.
  void* Allocate(size_t bytes, Owner owner, int recordType = kPlainMemory, const void* caller = nullptr);
  // Null is ignored. The client may not free what is the host's.
  void Free(void* block, Owner by = Owner::Client);

  Balance Live(Owner owner = Owner::Client) const;
  bool IsLive(const void* block) const;
  // Whether it is a freed block that is still held back.
  bool IsFreed(const void* block) const;
  // The bytes of a live block from `pointer`, which may lie within it, to its end; 0 for others.
  size_t BytesFrom(const void* pointer) const;

  // A point in time. Leaks since a mark are the client's live blocks that came after it.
  uint64_t Mark() const;
  std::vector<Block> LeaksSince(uint64_t mark) const;

  // The n-th allocation of the client from now on fails (1 is the next one); 0 takes it back.
  void FailAllocation(uint64_t n);
  // That one and all after it.
  void FailAllocationsFrom(uint64_t n);

  // Looks at the bytes around every live block and at the freed ones held back.
  void CheckGuards();
  // What went wrong since the last call, a line each; empty when nothing did.
  std::vector<std::string> TakeFaults();
  // The same without those that were there when there were `known` of them; they stay.
  std::vector<std::string> TakeFaults(size_t known);
  size_t FaultCount() const;
  void Fault(std::string text);

  // Which LISP function is being called from now on; for Block::function.
  void SetFunction(std::string_view name);

  // Forgets the live blocks of the client, orders to fail, and faults, and no longer holds freed blocks
  // back. A forgotten block may still be freed; that counts no more.
  void Reset();

 private:
  struct Books;
  std::unique_ptr<Books> m_books;
};

}  // namespace lomlisp::embedded
