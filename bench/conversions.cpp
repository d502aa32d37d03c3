// What the conversions and a whole call cost: time per group of an entity chain of 200,000 groups
// ("items"), or per call, and the bytes that were asked of both heaps, the standard allocator's and
// the platform's.
//
// Compare rows of one run only: ChainToValue with ChainToValueByHand, the loop that makes the
// same nodes.

#include <bench/StandardHeap.h>
#include <benchmark/benchmark.h>
#include <embedded/Host.h>
#include <lomlisp/lomlisp.h>

#include <memory>
#include <string>

namespace {

using lomlisp::embedded::Host;

constexpr int kGroups = 200'000;

// --- The chain ---

wchar_t* PlatformText(const std::wstring& text) {
  auto* const copy = static_cast<wchar_t*>(acad_malloc((text.size() + 1) * sizeof(wchar_t)));
  text.copy(copy, text.size());
  copy[text.size()] = 0;
  return copy;
}

resbuf* NewGroup(short code) {
  resbuf* const record = acutNewRb(code);
  switch (DxfType(code)) {
    case RTSTR:
      record->resval.rstring = PlatformText(L"text of group " + std::to_wstring(code));
      break;
    case RT3DPOINT:
      record->resval.rpoint[0] = 1.5;
      break;
    case RTREAL:
      record->resval.rreal = 2.5;
      break;
    case RTENAME:
      record->resval.rlname[0] = 77;
      break;
    default:
      record->resval.rint = 3;
      break;
  }
  return record;
}

// Common groups in turn, then extended data.
short CodeAt(int position) {
  constexpr short kCommon[] = {0, 8, 10, 40, 62, 330};
  const int firstExtended = kGroups / 7 * 6;
  if (position < firstExtended) return kCommon[position % 6];
  if (position == firstExtended) return -3;
  return position == firstExtended + 1 ? 1001 : 1000;
}

resbuf* EntityChain() {
  static resbuf* const chain = [] {
    resbuf* first = nullptr;
    resbuf** link = &first;
    for (int i = 0; i < kGroups; ++i) {
      *link = NewGroup(CodeAt(i));
      link = &(*link)->rbnext;
    }
    return first;
  }();
  return chain;
}

// --- The loop that makes the same nodes ---

CLOMAdsLispVar::Element Atom(const resbuf& record) {
  auto atom = std::make_shared<CLOMLispElement>();
  atom->atom = record;
  return atom;
}

CLOMAdsLispVar::Element Value(const resbuf& group) {
  if (DxfType(group.restype) != RT3DPOINT) {
    resbuf retyped = group;
    retyped.restype = DxfType(group.restype);
    return Atom(retyped);
  }
  auto point = std::make_shared<CLOMLispElement>();
  point->children.reserve(3);
  for (const double coordinate : group.resval.rpoint) {
    auto atom = std::make_shared<CLOMLispElement>();
    atom->atom = coordinate;
    point->children.push_back(std::move(atom));
  }
  return point;
}

CLOMAdsLispVar::Element ByHand(const resbuf* chain) {
  auto list = std::make_shared<CLOMLispElement>();
  for (; chain != nullptr; chain = chain->rbnext) {
    auto group = std::make_shared<CLOMLispElement>();
    if (chain->restype == -3) {
      group->atom = chain->restype;
    } else if (chain->restype == 1001) {
      group->children.push_back(Value(*chain));
    } else {
      auto code = std::make_shared<CLOMLispElement>();
      code->atom = chain->restype;
      group->dotted = 1;
      group->children.reserve(2);
      group->children.push_back(std::move(code));
      group->children.push_back(Value(*chain));
    }
    list->children.push_back(std::move(group));
  }
  return list;
}

// --- The measurements ---

size_t BytesLive() { return StandardHeapBytes() + Host::Instance().ledger.Live().bytes; }

// Times `make` and releases what it gives outside the measured time.
template <class Make>
void Measure(benchmark::State& state, Make make) {
  Host::Instance().log.Enable(false);
  size_t bytes = 0;
  for (auto _ : state) {
    const size_t before = BytesLive();
    auto made = std::make_unique<decltype(make())>(make());
    state.PauseTiming();
    bytes = BytesLive() - before;
    made.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kGroups);
  state.counters["time/group"] = benchmark::Counter(
      kGroups, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  if (kSeesHeapOfLibrary) state.counters["bytes/group"] = static_cast<double>(bytes) / kGroups;
}

void ChainToValue(benchmark::State& state) {
  Measure(state, [chain = EntityChain()] { return CLOMAdsLispVar(chain); });
}

void ChainToValueByHand(benchmark::State& state) {
  Measure(state, [chain = EntityChain()] { return ByHand(chain); });
}

template <class Write>
void ValueToChain(benchmark::State& state, Write write) {
  const CLOMAdsLispVar value(EntityChain());
  Measure(state, [&] {
    auto list = std::make_unique<ADSList>();
    write(value, *list);
    return list;
  });
}

void ValueToPlainChain(benchmark::State& state) {
  ValueToChain(state, [](const CLOMAdsLispVar& value, ADSList& list) { value.LispToADS(list); });
}

void ValueToDxfChain(benchmark::State& state) {
  ValueToChain(state, [](const CLOMAdsLispVar& value, ADSList& list) { value.LispToDXF(list); });
}

void DeepCopy(benchmark::State& state) {
  const CLOMAdsLispVar value(EntityChain());
  Measure(state, [&] { return CLOMAdsLisp::Head(-1, value); });
}

void Release(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    CLOMAdsLispVar value(EntityChain());
    state.ResumeTiming();
    value.Clean();
  }
  state.counters["time/group"] = benchmark::Counter(
      kGroups, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// Five arguments in, a list of three back, the embedded host's part included.
void WholeCall(benchmark::State& state) {
  Host& host = Host::Instance();
  host.log.Enable(false);
  host.Define(L"PICK", [] {
    CLOMAdsLispVar a;
    CLOMAdsLispVar b;
    CLOMAdsLispVar c;
    CLOMAdsLispVar d;
    CLOMAdsLispVar e;
    CLOMAdsLisp::Parameter(a, b, c, d, e);
    CLOMAdsLisp::Return(CLOMAdsLisp::List(a, c, e));
    return RTNORM;
  });
  std::string error;
  const auto arguments = lomlisp::embedded::FromText(L"1 2.5 \"text\" (1 2 3) 5", error);
  for (auto _ : state) benchmark::DoNotOptimize(host.Call(L"PICK", *arguments));
}

BENCHMARK(ChainToValue)->Unit(benchmark::kMillisecond);
BENCHMARK(ChainToValueByHand)->Unit(benchmark::kMillisecond);
BENCHMARK(ValueToPlainChain)->Unit(benchmark::kMillisecond);
BENCHMARK(ValueToDxfChain)->Unit(benchmark::kMillisecond);
BENCHMARK(DeepCopy)->Unit(benchmark::kMillisecond);
BENCHMARK(Release)->Unit(benchmark::kMillisecond);
BENCHMARK(WholeCall)->Unit(benchmark::kNanosecond);

}  // namespace
