// Workloads that make something: it is dropped behind the clock.
#pragma once

#include <bench/peers/Peer.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

// `make` is what is timed; `digestOf` takes what it gave.
template <class Make, class DigestOf>
Workload Making(Make make, DigestOf digestOf) {
  auto made = std::make_shared<std::optional<decltype(make())>>();
  Workload work;
  work.run = [made, make = std::move(make)] { made->emplace(make()); };
  work.check = [made, digestOf = std::move(digestOf)] {
    const Digest digest = digestOf(**made);
    made->reset();
    return digest;
  };
  return work;
}

inline Workload Repeated(int repeats, Workload work) {
  work.repeats = repeats;
  return work;
}

inline void Require(bool isTrue, const char* what) {
  if (!isTrue) throw std::runtime_error(what);
}
