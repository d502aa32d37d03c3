// What reading, printing and the list operations cost: time per member ("items") of lists of 1,000
// to 1,000,000 members. Linear work shows as equal figures in a row; a sort grows with the
// logarithm of the length, so its figure is also given per member and doubling.

#include <benchmark/benchmark.h>
#include <embedded/Host.h>
#include <lomlisp/lomlisp.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace {

using lomlisp::embedded::Host;

// --- Values ---

// Shares the members.
CLOMAdsLispVar ListOf(const std::vector<CLOMAdsLispVar>& members) {
  CLOMAdsLispVar list;
  for (auto member = members.rbegin(); member != members.rend(); ++member)
    CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(*member, list));
  return list;
}

std::vector<int> Shuffled(int count) {
  std::vector<int> numbers(static_cast<size_t>(count));
  std::iota(numbers.begin(), numbers.end(), 0);
  std::shuffle(numbers.begin(), numbers.end(), std::mt19937(1));
  return numbers;
}

// Keys of which the first differing character comes late, as in names of layers.
CLOMAdsLispVar TextKey(int number) { return L"LAYER-" + std::to_wstring(1'000'000 + number); }
CLOMAdsLispVar IntegerKey(int number) { return static_cast<long>(number); }

CLOMAdsLispVar Pair(const CLOMAdsLispVar& key) { return CLOMAdsLisp::Cons(key, 1); }

template <class Make>
CLOMAdsLispVar MadeFrom(const std::vector<int>& numbers, Make make) {
  std::vector<CLOMAdsLispVar> members;
  for (const int number : numbers) members.push_back(make(number));
  return ListOf(members);
}

template <class Make>
CLOMAdsLispVar Ascending(int count, Make make) {
  std::vector<int> numbers(static_cast<size_t>(count));
  std::iota(numbers.begin(), numbers.end(), 0);
  return MadeFrom(numbers, make);
}

// (17 17.5 "text 17")
CLOMAdsLispVar Item(int number) {
  return CLOMAdsLisp::List(number % 10'000, number + 0.5, L"text " + std::to_wstring(number));
}

// --- Measuring ---

void ReportMembers(benchmark::State& state, double members) {
  state.SetItemsProcessed(static_cast<int64_t>(members) * state.iterations());
  state.counters["time/member"] = benchmark::Counter(
      members, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// Times `work` on the members of a list; what it gives is released outside the measured time.
template <class Work>
void Measure(benchmark::State& state, Work work) {
  Host::Instance().log.Enable(false);
  for (auto _ : state) {
    auto result = work();
    benchmark::DoNotOptimize(result);
    state.PauseTiming();
    result = {};
    state.ResumeTiming();
  }
  ReportMembers(state, static_cast<double>(state.range(0)));
}

int Count(const benchmark::State& state) { return static_cast<int>(state.range(0)); }

// --- Text ---

void Read(benchmark::State& state) {
  const CString text = Ascending(Count(state), Item).GetAsDebugString();
  Measure(state, [&] {
    CLOMAdsLispVar value;
    value.Read(text);
    return value;
  });
}

void PrintToBuffer(benchmark::State& state) {
  const CLOMAdsLispVar value = Ascending(Count(state), Item);
  std::vector<wchar_t> buffer(static_cast<size_t>(Count(state)) * 100);
  Measure(state, [&] {
    value.PrinC(buffer.data(), buffer.size());
    return buffer[0];
  });
}

void PrintDebugText(benchmark::State& state) {
  const CLOMAdsLispVar value = Ascending(Count(state), Item);
  Measure(state, [&] { return value.GetAsDebugString(); });
}

void FormatSixDirectives(benchmark::State& state) {
  CArray<CLOMAdsLispVar, CLOMAdsLispVar> args;
  for (const CLOMAdsLispVar& value : std::vector<CLOMAdsLispVar>{17, 3.14159, L"text", 255, 1e10, L"char"})
    args.Add(value);
  for (auto _ : state) {
    CLOMAdsLispVar result;
    benchmark::DoNotOptimize(CLOMAdsLispVar::Format(result, L"%5d %8.3f %s %x %e %c", args));
  }
}

// --- Equality and search ---

void EqualOfDeepCopies(benchmark::State& state) {
  const CLOMAdsLispVar value = Ascending(Count(state), Item);
  const CLOMAdsLispVar copy = CLOMAdsLisp::Head(-1, value);
  Measure(state, [&] { return CLOMAdsLisp::Equal(value, copy, 0.0); });
}

template <class MakeKey>
void AssocOfLast(benchmark::State& state, MakeKey makeKey) {
  const CLOMAdsLispVar pairs = Ascending(Count(state), [&](int n) { return Pair(makeKey(n)); });
  const CLOMAdsLispVar key = makeKey(Count(state) - 1);
  Measure(state, [&] { return CLOMAdsLisp::Assoc(key, pairs); });
}

void AssocByText(benchmark::State& state) { AssocOfLast(state, TextKey); }
void AssocByInteger(benchmark::State& state) { AssocOfLast(state, IntegerKey); }

// --- Lists ---

template <class Make>
void SortShuffled(benchmark::State& state, Make make) {
  Host::Instance().log.Enable(false);
  const CLOMAdsLispVar shuffled = MadeFrom(Shuffled(Count(state)), make);
  for (auto _ : state) {
    state.PauseTiming();
    // Only the outermost list is new: the same members in their first order.
    CLOMAdsLispVar list = CLOMAdsLisp::Insert(CLOMAdsLisp::Nil, shuffled, 0);
    state.ResumeTiming();
    list.Sort();
    benchmark::DoNotOptimize(list);
  }
  ReportMembers(state, Count(state));
  const double doublings = Count(state) * std::log2(Count(state));
  state.counters["time/doubling"] = benchmark::Counter(
      doublings, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void SortIntegers(benchmark::State& state) { SortShuffled(state, IntegerKey); }
void SortTexts(benchmark::State& state) { SortShuffled(state, TextKey); }
void SortPairs(benchmark::State& state) {
  SortShuffled(state, [](int number) { return Pair(IntegerKey(number)); });
}

void ReverseInPlace(benchmark::State& state) {
  CLOMAdsLispVar list = Ascending(Count(state), IntegerKey);
  Measure(state, [&] {
    list.Reverse(false);
    return true;
  });
}

void AppendToACopy(benchmark::State& state) {
  const CLOMAdsLispVar list = Ascending(Count(state), IntegerKey);
  Measure(state, [&] { return CLOMAdsLisp::Append(list, list); });
}

void InheritOfTwo(benchmark::State& state) {
  const CLOMAdsLispVar own = Ascending(Count(state) / 2, [](int n) { return Pair(IntegerKey(2 * n)); });
  const CLOMAdsLispVar inherited = Ascending(Count(state) / 2, [](int n) { return Pair(IntegerKey(3 * n)); });
  Measure(state, [&] { return CLOMAdsLisp::Inherit(own, inherited); });
}

void Lengths(benchmark::internal::Benchmark* benchmark) {
  for (const int length : {1'000, 200'000, 1'000'000}) benchmark->Arg(length);
}

BENCHMARK(Read)->Apply(Lengths);
BENCHMARK(PrintToBuffer)->Apply(Lengths);
BENCHMARK(PrintDebugText)->Apply(Lengths);
BENCHMARK(FormatSixDirectives);
BENCHMARK(EqualOfDeepCopies)->Apply(Lengths);
BENCHMARK(AssocByText)->Apply(Lengths);
BENCHMARK(AssocByInteger)->Apply(Lengths);
BENCHMARK(SortIntegers)->Apply(Lengths);
BENCHMARK(SortTexts)->Apply(Lengths);
BENCHMARK(SortPairs)->Apply(Lengths);
BENCHMARK(ReverseInPlace)->Apply(Lengths);
BENCHMARK(AppendToACopy)->Apply(Lengths);
BENCHMARK(InheritOfTwo)->Apply(Lengths);

}  // namespace
