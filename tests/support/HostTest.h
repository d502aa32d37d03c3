// What the tests share: a fresh host around each, and short ways to write values and chains.
#pragma once

#include <embedded/Host.h>
#include <gtest/gtest.h>
#include <lomlisp/lomlisp.h>

#include <ostream>
#include <string>

namespace lomlisp::test {

using embedded::Host;

#ifdef LOMLISP_SANITIZED
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif

// Under the sanitizers and other checks everything takes ten times as long and more.
#ifdef LOMLISP_SMALL_TESTS
inline constexpr bool kSlow = true;
#else
inline constexpr bool kSlow = kSanitized;
#endif

// How deep and how long the large values are: far beyond what a stack bears, and quadratic work on
// them would meet the time limit of the run. Where all is slow they get a fiftieth; `tools/test` runs
// these tests at full size as well.
inline constexpr int kLarge = kSlow ? 20'000 : 1'000'000;

// How long the longest values are. Where they have their full size, `tools/test --huge` runs the tests with
// them, whose names begin with "Huge".
inline constexpr size_t kHuge = kSlow ? kLarge : 10'000'000;

// How many random cases are tried.
constexpr unsigned int Rounds(unsigned int all) { return kSlow ? (all + 9) / 10 : all; }

inline std::string Utf8(std::wstring_view text) {
  std::string bytes;
  for (const wchar_t character : text) {
    const auto code = static_cast<uint32_t>(character);
    if (code < 0x80) {
      bytes += static_cast<char>(code);
    } else if (code < 0x800) {
      bytes += static_cast<char>(0xC0 | (code >> 6));
      bytes += static_cast<char>(0x80 | (code & 0x3F));
    } else {
      bytes += "<" + std::to_string(code) + ">";
    }
  }
  return bytes;
}

// A new host for each test. At its end nothing may be live on the platform's heap that was not
// live before, and no misuse of it may have been noticed.
class HostTest : public ::testing::Test {
 protected:
  HostTest() {
    Host::Instance().Reset();
    // The record that failed accesses share is made once and stays.
    CLOMAdsLispVar().GetAtom() = static_cast<short>(0);
    Host::Instance().Reset();
    m_before = host.ledger.Live();
    m_mark = host.ledger.Mark();
  }

  void TearDown() override {
    host.ledger.CheckGuards();
    for (const std::string& fault : host.ledger.TakeFaults()) ADD_FAILURE() << "heap: " << fault;
    EXPECT_TRUE(host.ledger.Live() == m_before) << "the ledger is not balanced";
    for (const embedded::Block& block : host.ledger.LeaksSince(m_mark))
      ADD_FAILURE() << "leak: " << block.kind << ", " << block.bytes << " bytes, " << block.place;
  }

  // What was printed on the command line since the last call.
  std::string Printed() { return Utf8(host.console.Take()); }

  Host& host = Host::Instance();

 private:
  embedded::Balance m_before;
  uint64_t m_mark = 0;
};

// A chain on the platform's heap from LISP text, for as long as the object lives.
class TextChain {
 public:
  explicit TextChain(std::wstring_view text) {
    std::string error;
    const auto chain = embedded::FromText(text, error);
    if (!chain) ADD_FAILURE() << error;
    if (chain) m_chain = Materialise(*chain, Host::Instance().ledger, embedded::Owner::Client);
  }
  ~TextChain() { ReleaseChain(m_chain, Host::Instance().ledger); }
  TextChain(const TextChain&) = delete;
  TextChain& operator=(const TextChain&) = delete;
  operator resbuf*() const { return m_chain; }

 private:
  resbuf* m_chain = nullptr;
};

// A value from LISP text, as in V(L"(1 2.5 (\"a\" . nil))").
inline CLOMAdsLispVar V(std::wstring_view text) { return CLOMAdsLispVar(TextChain(text)); }

// A value or a chain as LISP text. An RTLONG prints as an RTSHORT does.
inline std::string Text(const CLOMAdsLispVar& value) {
  return Utf8(CLOMAdsLisp::ToCString(value).GetString());
}
inline std::string Text(const resbuf* chain) { return Utf8(embedded::ToText(embedded::Capture(chain))); }

// The types of a chain with their values, as in "5016 5003:1 5017", which shows what text hides.
inline std::string Types(const resbuf* chain) {
  std::string types;
  for (; chain != nullptr; chain = chain->rbnext) {
    if (!types.empty()) types += ' ';
    types += std::to_string(chain->restype);
    if (chain->restype == RTSHORT) types += ":" + std::to_string(chain->resval.rint);
    if (embedded::HoldsText(chain->restype) && chain->resval.rstring != nullptr)
      types += ":" + Utf8(chain->resval.rstring);
  }
  return types;
}

}  // namespace lomlisp::test
