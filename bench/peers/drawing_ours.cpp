// lomlisp in the embedded host.

#include <bench/peers/Drawings.h>
#include <bench/peers/Made.h>
#include <bench/peers/Pick.h>
#include <lomlisp/lomlisp.h>
#include <lomlisp/platform/modules.h>

#include <map>
#include <memory>

namespace {

using Value = CLOMAdsLispVar;
using Lisp = CLOMAdsLisp;
using lomlisp::embedded::Host;

Value FirstEntity() {
  ads_name first = {};
  acdbEntNext(nullptr, first);
  return Value(static_cast<const __int64*>(first));
}

// Reads every entity, and adds up where they are.
Workload EntGet(int size) {
  HostWithDrawing(size);
  return Making(
      [] {
        double sum = 0.0;
        for (Value name = FirstEntity(); !name.NilP(); Lisp::SetQ(name, Lisp::EntNext(name))) {
          double point[3];
          Value place = Lisp::Assoc(10, Lisp::EntGet(name));
          Lisp::SetQ(point, place.Cdr(true));
          sum += point[0] + point[1];
        }
        return sum;
      },
      [](double sum) {
        Digest digest;
        digest.Real(sum);
        return digest;
      });
}

Workload EntMod(int size) {
  Host& host = HostWithDrawing(size);
  auto run = std::make_shared<int>(0);
  Workload work;
  work.run = [run] {
    ++*run;
    int position = 0;
    for (Value name = FirstEntity(); !name.NilP(); Lisp::SetQ(name, Lisp::EntNext(name)), ++position) {
      const Value identity = Lisp::Cons(-1, name);
      const Value colour = Lisp::Cons(62, NewColour(position, *run));
      Require(!Lisp::EntMod(Lisp::List(identity, colour)).NilP(), "an entity takes a colour");
    }
  };
  work.check = [&host] { return DigestOfColours(host.CurrentDrawing()); };
  return work;
}

// ((0 . "TEXT,LINE") (8 . "LAYER-1*")): half of the layers.
Workload SSGet(int size) {
  HostWithDrawing(size);
  const Value type = Lisp::Cons(0, L"TEXT,LINE");
  const Value filter = Lisp::List(type, Value(Lisp::Cons(8, L"LAYER-1*")));
  return Making([filter] { return Lisp::SSGet(L"X", filter, Lisp::Nil, Lisp::Nil); },
                [](const Value& set) {
                  ads_name name;
                  Lisp::SetQ(name, set);
                  int32_t length = 0;
                  acedSSLength(name, &length);
                  acedSSFree(name);
                  Digest digest;
                  digest.Integer(length);
                  return digest;
                });
}

}  // namespace

Workload MakeWorkload(const std::string& row, int size) {
  static const std::map<std::string, std::function<Workload(int)>> rows{
      {"entget", EntGet},
      {"entmod", EntMod},
      {"ssget", SSGet},
      {"call-in-host", [](int n) { return CallsInHost(n, PickWithLibrary); }},
  };
  const auto found = rows.find(row);
  if (found == rows.end()) throw std::invalid_argument("no such row: " + row);
  return found->second(size);
}
