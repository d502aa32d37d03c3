// What the conversions and a whole call cost: time per group of an entity chain of 200,000 groups
// ("items"), or per call, and the bytes that were asked of both heaps, the standard allocator's and
// the platform's.
//
// Compare rows of one run only: ChainToValue with ChainToValueByHand, the loop that makes the
// same nodes.

#include <bench/ByHand.h>
#include <bench/EntityChain.h>
#include <bench/StandardHeap.h>
#include <benchmark/benchmark.h>
#include <embedded/Host.h>
#include <lomlisp/lomlisp.h>

#include <memory>
#include <string>

namespace {

using lomlisp::embedded::Host;

constexpr int kGroups = 200'000;

resbuf* EntityChain() {
  static resbuf* const chain = NewEntityChain(kGroups);
  return chain;
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
  Measure(state, [chain = EntityChain()] { return NodesByHand(chain); });
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
