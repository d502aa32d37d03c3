#include <tests/fuzz/Fuzz.h>

#include <lomlisp/platform/suite.h>

#include <sanitizer/lsan_interface.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <string_view>
#include <vector>

namespace lomlisp::fuzz {

namespace {

wchar_t* NewText(const std::wstring& text) {
  auto* const copy = static_cast<wchar_t*>(acad_malloc((text.size() + 1) * sizeof(wchar_t)));
  text.copy(copy, text.size());
  copy[text.size()] = 0;
  return copy;
}

// An RT code, a DXF code, or any number.
short TakeType(Input& input) {
  constexpr short kTypes[] = {RTNONE, RTREAL, RTPOINT, RTSHORT,   RTANG,  RTSTR,  RTENAME, RTPICKS, RTORINT, RT3DPOINT,
                              RTLONG, RTVOID, RTDOTE,  RTNIL,     RTDXF0, RTINT64, RTT,    -4,      -3,      -2,
                              -1,     0,      1,       5,         8,      10,      38,     40,      48,      62,
                              66,     70,     90,      100,       102,    160,     210,    290,     310,     330,
                              370,    420,    1000,    1001,      1002,   1004,    1005,   1010,    1040,    1070,
                              1071,   4999,   5031,    32767,     -32768};
  switch (input.ConsumeIntegralInRange(0, 9)) {
    case 0:
      return input.ConsumeIntegral<short>();
    case 1:
      return RTLB;
    case 2:
      return RTLE;
    default:
      return input.PickValueInArray(kTypes);
  }
}

void FillValue(resbuf& record, Input& input) {
  switch (DxfType(record.restype)) {
    case RTDXF0:
    case RTSTR:
      record.resval.rstring = input.ConsumeIntegralInRange(0, 15) == 0 ? nullptr : NewText(TakeText(input, 12));
      break;
    case RTREAL:
    case RTANG:
      record.resval.rreal = TakeReal(input);
      break;
    case RTPOINT:
    case RT3DPOINT:
      for (double& coordinate : record.resval.rpoint) coordinate = TakeReal(input);
      break;
    case RTENAME:
    case RTPICKS:
      for (auto& word : record.resval.rlname) word = TakeInteger(input);
      break;
    default:
      record.resval.mnInt64 = TakeInteger(input);
      break;
  }
}

class ChainMaker {
 public:
  resbuf* Append(short type, Input* input = nullptr) {
    resbuf* const record = acutNewRb(type);
    record->restype = type;
    if (input != nullptr) FillValue(*record, *input);
    (m_last == nullptr ? m_first : m_last->rbnext) = record;
    m_last = record;
    return record;
  }
  resbuf* First() const { return m_first; }

 private:
  resbuf* m_first = nullptr;
  resbuf* m_last = nullptr;
};

}  // namespace

void Require(bool isTrue, const char* what) {
  if (isTrue) return;
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

std::wstring TakeText(Input& input, size_t most) {
  constexpr uint32_t kCharacters[] = {L'%', L's', L'"', L'\\', L'\n', 1, 0x7F, 0xE4, 0x20AC, 0xD83D, 0xDE00, 0xFFFF, 0x1F600};
  std::wstring text;
  for (size_t left = input.ConsumeIntegralInRange<size_t>(0, most); left > 0; --left) {
    const auto byte = input.ConsumeIntegralInRange<uint8_t>(1, 255);
    text += static_cast<wchar_t>(byte < 0xF0 ? byte % 0x80 : kCharacters[byte % std::size(kCharacters)]);
    if (text.back() == 0) text.back() = L' ';
  }
  return text;
}

std::wstring TakeRest(Input& input) {
  const std::string bytes = input.ConsumeRemainingBytesAsString();
  std::wstring text;
  for (const char byte : bytes)
    if (byte != 0) text += static_cast<wchar_t>(static_cast<unsigned char>(byte));
  return text;
}

double TakeReal(Input& input) {
  using Limits = std::numeric_limits<double>;
  constexpr double kReals[] = {0.0,  -0.0, 1.0,  -1.5, 1e-9, 1e9,   0.1,  32767.5, -32769.0, 2147483648.0, 1e19,
                               -1e19, 1e99, 1e300, Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(),
                               Limits::denorm_min(), Limits::max()};
  if (input.ConsumeBool()) return input.PickValueInArray(kReals);
  return input.ConsumeFloatingPointInRange(-1e6, 1e6);
}

long long TakeInteger(Input& input) {
  constexpr long long kIntegers[] = {0, 1, -1, 2, 255, 256, 32767, 32768, -32768, -32769, 65535, 65536, 2147483647,
                                     2147483648, -2147483648LL, 4294967296, (std::numeric_limits<long long>::max)(),
                                     (std::numeric_limits<long long>::min)()};
  if (input.ConsumeBool()) return input.PickValueInArray(kIntegers);
  return input.ConsumeIntegral<int16_t>();
}

resbuf* TakeChain(Input& input, size_t mostRecords) {
  ChainMaker chain;
  for (size_t left = input.ConsumeIntegralInRange<size_t>(0, mostRecords); left > 0 && input.remaining_bytes() > 0; --left)
    chain.Append(TakeType(input), &input);
  return chain.First();
}

resbuf* TakeGoodChain(Input& input, size_t mostRecords) {
  ChainMaker chain;
  size_t open = 1;
  chain.Append(RTLB);
  for (size_t left = input.ConsumeIntegralInRange<size_t>(0, mostRecords); left > 0 && input.remaining_bytes() > 0; --left) {
    const short type = TakeType(input);
    if (type == RTDOTE || (type == RTLE && open == 1)) continue;
    if (type == RTLB) ++open;
    if (type == RTLE) --open;
    chain.Append(type, &input);
  }
  for (; open > 0; --open) chain.Append(RTLE);
  return chain.First();
}

namespace {

// Once for all inputs: the record that failed accesses share is made, and stays.
embedded::Balance Prepare() {
  Host& host = Host::Instance();
  host.log.Enable(false);
  CLOMAdsLispVar().GetAtom() = static_cast<short>(0);
  host.console.Take();
  return host.ledger.Live();
}

// Looking for leaks after every input, as libFuzzer would, takes ten times as long as most inputs, since the
// ledger holds freed blocks back and so never frees what it allocated. The books are looked at each time.
void CheckBooks(const embedded::Balance& before) {
  Host& host = Host::Instance();
  host.console.Take();
  constexpr unsigned int kInputsBetween = 2'000;
  static unsigned int count = 0;
  if (++count % kInputsBetween == 0) {
    host.ledger.CheckGuards();
    Require(__lsan_do_recoverable_leak_check() == 0, "one of the latest inputs leaks");
  }
  for (const std::string& fault : host.ledger.TakeFaults()) {
    std::fprintf(stderr, "heap: %s\n", fault.c_str());
    std::abort();
  }
  Require(host.ledger.Live() == before, "the ledger is not balanced");
}

}  // namespace

}  // namespace lomlisp::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace lomlisp::fuzz;
  static const auto before = Prepare();
  {
    Input input(data, size);
    Try(input);
  }
  CheckBooks(before);
  return 0;
}
