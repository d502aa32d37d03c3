// What drawings cost: opening and saving them (bytes and entities per second), reading and changing an
// entity, selecting by a filter and by a window among 100,000 entities.
//
// With LOMLISP_BENCH_DXF=FILE the drawing is also written there, for bench/compare_ezdxf.py.

#include <bench/SampleDrawing.h>
#include <benchmark/benchmark.h>
#include <embedded/Host.h>
#include <embedded/drawing/Drawing.h>
#include <embedded/dxf/Dxf.h>
#include <lomlisp/lomlisp.h>
#include <lomlisp/platform/modules.h>

#include <cstdlib>
#include <string>

namespace {

using lomlisp::embedded::Drawing;
using lomlisp::embedded::DxfForm;
using lomlisp::embedded::Host;

constexpr int kEntities = 100'000;

// The host with the drawing, made once; the log off.
Host& PreparedHost() {
  static Host& host = [&]() -> Host& {
    Host& made = Host::Instance();
    made.log.Enable(false);
    FillWithSamples(made.CurrentDrawing(), kEntities);
    if (const char* file = std::getenv("LOMLISP_BENCH_DXF")) made.Save(file);
    return made;
  }();
  return host;
}

void Count(benchmark::State& state, size_t bytes) {
  state.SetItemsProcessed(state.iterations() * kEntities);
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
}

void OpenDrawing(benchmark::State& state, DxfForm form) {
  const std::string file = WriteDxf(PreparedHost().CurrentDrawing(), form);
  for (auto _ : state) {
    auto opened = lomlisp::embedded::ReadDxf(file);
    if (opened.error) state.SkipWithError(opened.error->message.c_str());
    benchmark::DoNotOptimize(opened.drawing.get());
  }
  Count(state, file.size());
}
BENCHMARK_CAPTURE(OpenDrawing, Ascii, DxfForm::Ascii)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(OpenDrawing, Binary, DxfForm::Binary)->Unit(benchmark::kMillisecond);

void SaveDrawing(benchmark::State& state, DxfForm form) {
  Drawing& drawing = PreparedHost().CurrentDrawing();
  size_t bytes = 0;
  for (auto _ : state) bytes = WriteDxf(drawing, form).size();
  Count(state, bytes);
}
BENCHMARK_CAPTURE(SaveDrawing, Ascii, DxfForm::Ascii)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SaveDrawing, Binary, DxfForm::Binary)->Unit(benchmark::kMillisecond);

CLOMAdsLispVar FirstEntity() {
  ads_name first = {};
  acdbEntNext(nullptr, first);
  return CLOMAdsLispVar(static_cast<const __int64*>(first));
}

// All entities one after the other, as (entnext) and (entget) do it.
void EntGet(benchmark::State& state) {
  PreparedHost();
  CLOMAdsLispVar name = FirstEntity();
  for (auto _ : state) {
    benchmark::DoNotOptimize(CLOMAdsLisp::EntGet(name).NilP());
    CLOMAdsLispVar next = CLOMAdsLisp::EntNext(name);
    name = next.NilP() ? FirstEntity() : next;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(EntGet);

// A new color for one entity after the other.
void EntMod(benchmark::State& state) {
  PreparedHost();
  CLOMAdsLispVar name = FirstEntity();
  int color = 1;
  for (auto _ : state) {
    color = color % 250 + 1;
    const CLOMAdsLispVar identity = CLOMAdsLisp::Cons(-1, name);
    const CLOMAdsLispVar groups = CLOMAdsLisp::List(identity, CLOMAdsLispVar(CLOMAdsLisp::Cons(62, color)));
    if (CLOMAdsLisp::EntMod(groups).NilP()) state.SkipWithError("refused");
    CLOMAdsLispVar next = CLOMAdsLisp::EntNext(name);
    name = next.NilP() ? FirstEntity() : next;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(EntMod);

void FreeSet(const CLOMAdsLispVar& set) {
  ads_name name;
  CLOMAdsLisp::SetQ(name, set);
  acedSSFree(name);
}

// SSGet("X", ((0 . "TEXT,LINE") (8 . "LAYER-1*"))): half of the layers.
void SelectByFilter(benchmark::State& state) {
  PreparedHost();
  const CLOMAdsLispVar type = CLOMAdsLisp::Cons(0, L"TEXT,LINE");
  const CLOMAdsLispVar filter = CLOMAdsLisp::List(type, CLOMAdsLispVar(CLOMAdsLisp::Cons(8, L"LAYER-1*")));
  for (auto _ : state) {
    const CLOMAdsLispVar set = CLOMAdsLisp::SSGet(L"X", filter, CLOMAdsLisp::Nil, CLOMAdsLisp::Nil);
    if (set.NilP()) state.SkipWithError("nothing found");
    FreeSet(set);
  }
  state.SetItemsProcessed(state.iterations() * kEntities);
}
BENCHMARK(SelectByFilter)->Unit(benchmark::kMillisecond);

// A crossing window over range(0) by range(0) cells.
void SelectByWindow(benchmark::State& state) {
  PreparedHost();
  const double side = 10.0 * static_cast<double>(state.range(0));
  const double lower[3] = {500.0, 500.0, 0.0};
  const double upper[3] = {500.0 + side, 500.0 + side, 0.0};
  for (auto _ : state) {
    const CLOMAdsLispVar set = CLOMAdsLisp::SSGet(L"C", lower, upper, CLOMAdsLisp::Nil);
    if (set.NilP()) state.SkipWithError("nothing found");
    FreeSet(set);
  }
}
BENCHMARK(SelectByWindow)->Arg(1)->Arg(10)->Arg(32)->Arg(100)->Unit(benchmark::kMicrosecond);

}  // namespace
