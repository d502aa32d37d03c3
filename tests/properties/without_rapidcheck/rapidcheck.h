// Stands in for RapidCheck where there is none for the compiler: the part of its interface that the
// properties use. The same seed gives the same values with every compiler and on every system, so nothing is
// drawn through the distributions of the standard library. A failing case is shown as it was drawn: nothing
// is made smaller.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <memory>
#include <random>
#include <ranges>
#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace rc {

// Sizes go from 1 to this; they limit the length of containers.
inline constexpr int kNominalSize = 100;

using Random = std::mt19937_64;

// --- Values as text ---

namespace detail {

template <class Text>
std::string Quoted(const Text& text) {
  std::ostringstream out;
  for (const auto character : text) {
    if (character >= 0x20 && character < 0x7F)
      out << static_cast<char>(character);
    else
      out << '<' << std::hex << static_cast<uint32_t>(character) << '>';
  }
  return '"' + out.str() + '"';
}

}  // namespace detail

template <class T>
std::string toString(const T& value) {
  if constexpr (requires { value.c_str(); }) {
    return detail::Quoted(value);
  } else if constexpr (requires { value.second; }) {
    return '(' + toString(value.first) + ", " + toString(value.second) + ')';
  } else if constexpr (std::ranges::range<T>) {
    std::string text;
    for (const auto& member : value) text += (text.empty() ? "" : ", ") + toString(member);
    return '[' + text + ']';
  } else {
    std::ostringstream out;
    out.precision(17);
    out << std::boolalpha << value;
    return out.str();
  }
}

// --- Cases and generators ---

namespace detail {

// One run of a property: where its values come from, and what it has drawn, a line each.
struct Case {
  Random random;
  int size;
  std::string values{};

  // The one that runs.
  static Case*& Current() {
    static Case* current = nullptr;
    return current;
  }
};

}  // namespace detail

template <class T>
class Gen {
 public:
  template <std::invocable<Random&, int> Draw>
  Gen(Draw draw) : m_draw(std::make_shared<std::function<T(Random&, int)>>(std::move(draw))) {}

  T operator()(Random& random, int size) const { return (*m_draw)(random, size); }

  // The name under which a failing case shows the value.
  Gen as(std::string name) const {
    Gen named = *this;
    named.m_name = std::move(name);
    return named;
  }

  // Draws a value for the property that runs.
  T operator*() const {
    detail::Case& current = *detail::Case::Current();
    T value = (*this)(current.random, current.size);
    current.values += '\n' + m_name + ": " + toString(value);
    return value;
  }

 private:
  // Shared: a generator is made of others, which are made of others.
  std::shared_ptr<const std::function<T(Random&, int)>> m_draw;
  std::string m_name = "a value";
};

namespace detail {

inline size_t Below(size_t count, Random& random) { return static_cast<size_t>(random() % count); }

inline size_t Length(Random& random, int size) { return Below(static_cast<size_t>(size) + 1, random); }

// Draws until a value will do; the size grows, in case it is what keeps them from it.
template <class T, class Condition>
T DrawSuchThat(const Gen<T>& gen, Condition condition, Random& random, int size) {
  for (int tries = 0; tries < 1000; ++tries) {
    T value = gen(random, size + tries / 10);
    if (condition(std::as_const(value))) return value;
  }
  throw std::runtime_error("no value was found that meets the condition");
}

}  // namespace detail

namespace gen {

// --- Plain data, of the full range whatever the size ---

template <class T>
Gen<T> just(T value) {
  return [value](Random&, int) { return value; };
}

template <class T>
Gen<T> arbitrary() {
  return [](Random& random, int) {
    if constexpr (std::is_same_v<T, bool>) {
      return random() % 2 != 0;
    } else if constexpr (std::is_same_v<T, double>) {
      double value = 0;
      do value = std::bit_cast<double>(uint64_t{random()});
      while (!std::isfinite(value));
      return value;
    } else {
      static_assert(std::is_integral_v<T>);
      return static_cast<T>(random());
    }
  };
}

// Without the last.
template <class T>
Gen<T> inRange(T first, T last) {
  return [first, count = static_cast<size_t>(last - first)](Random& random, int) {
    return static_cast<T>(first + static_cast<T>(detail::Below(count, random)));
  };
}

template <class Container>
Gen<typename Container::value_type> elementOf(Container values) {
  return [values = std::move(values)](Random& random, int) {
    return values[detail::Below(values.size(), random)];
  };
}

template <class T, class... Ts>
Gen<T> element(T first, Ts... rest) {
  return elementOf(std::vector<T>{std::move(first), std::move(rest)...});
}

// --- Made of others ---

template <class T>
Gen<T> resize(int size, Gen<T> gen) {
  return [=](Random& random, int) { return gen(random, size); };
}

template <class T>
Gen<T> scale(double factor, Gen<T> gen) {
  return [=](Random& random, int size) { return gen(random, static_cast<int>(size * factor)); };
}

// A list in braces is drawn from the left to the right; the arguments of a call need not be.
template <class Function, class... Ts>
auto apply(Function function, Gen<Ts>... gens) -> Gen<std::decay_t<std::invoke_result_t<Function, Ts...>>> {
  return [=](Random& random, int size) {
    return std::apply(function, std::tuple<Ts...>{gens(random, size)...});
  };
}

template <class T, class Function>
auto map(Gen<T> gen, Function function) {
  return rc::gen::apply(std::move(function), std::move(gen));
}

template <class A, class B>
Gen<std::pair<A, B>> pair(Gen<A> first, Gen<B> second) {
  return [=](Random& random, int size) { return std::pair<A, B>{first(random, size), second(random, size)}; };
}

// What the function makes of a value is a generator.
template <class T, class Function>
auto mapcat(Gen<T> gen, Function function) -> std::invoke_result_t<Function, T> {
  return [=](Random& random, int size) { return function(gen(random, size))(random, size); };
}

template <class T, class Condition>
Gen<T> suchThat(Gen<T> gen, Condition condition) {
  return [=](Random& random, int size) { return detail::DrawSuchThat(gen, condition, random, size); };
}

template <class T>
Gen<T> weightedOneOf(std::initializer_list<std::pair<size_t, Gen<T>>> choices) {
  std::vector<Gen<T>> gens;
  for (const auto& [weight, gen] : choices) gens.insert(gens.end(), weight, gen);
  return [gens](Random& random, int size) { return gens[detail::Below(gens.size(), random)](random, size); };
}

template <class T, class... Ts>
Gen<T> oneOf(Gen<T> first, Gen<Ts>... rest) {
  return weightedOneOf<T>({{1, std::move(first)}, {1, std::move(rest)}...});
}

// --- Containers and structures ---

template <class Container, class T>
Gen<Container> container(size_t length, Gen<T> members) {
  return [=](Random& random, int size) {
    Container values;
    while (values.size() < length) values.push_back(members(random, size));
    return values;
  };
}

template <class Container, class T>
Gen<Container> container(Gen<T> members) {
  return [=](Random& random, int size) {
    return container<Container>(detail::Length(random, size), members)(random, size);
  };
}

template <class Map, class Key, class T>
Gen<Map> container(Gen<Key> keys, Gen<T> values) {
  return [=](Random& random, int size) {
    Map map;
    const auto isNew = [&map](const Key& key) { return !map.contains(key); };
    for (size_t left = detail::Length(random, size); left > 0; --left) {
      Key key = detail::DrawSuchThat(keys, isNew, random, size);
      map.emplace(std::move(key), values(random, size));
    }
    return map;
  };
}

// No two members are equal.
template <class Container, class T>
Gen<Container> unique(Gen<T> members) {
  return [=](Random& random, int size) {
    Container values;
    const auto isNew = [&values](const T& value) { return std::ranges::find(values, value) == values.end(); };
    for (size_t left = detail::Length(random, size); left > 0; --left)
      values.push_back(detail::DrawSuchThat(members, isNew, random, size));
    return values;
  };
}

template <class Owner, class Member>
auto set(Member Owner::*member, Gen<Member> gen) {
  return [=](Owner& owner, Random& random, int size) { owner.*member = gen(random, size); };
}

template <class T, class... Setters>
Gen<T> build(Setters... setters) {
  return [=](Random& random, int size) {
    T value;
    (setters(value, random, size), ...);
    return value;
  };
}

}  // namespace gen

// --- Running ---

namespace detail {

class Failure : public std::runtime_error {
 public:
  Failure(const char* file, int line, const std::string& text)
      : runtime_error(std::string(file) + ':' + std::to_string(line) + ": " + text) {}
};

struct Parameters {
  uint64_t seed = 1;
  uint64_t cases = 100;
};

// Of a text like "seed=7 max_success=300".
inline Parameters ParametersFrom(const std::string& text) {
  Parameters parameters;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const size_t value = word.find('=') + 1;
    if (word.starts_with("seed="))
      parameters.seed = std::stoull(word.substr(value));
    else if (word.starts_with("max_success="))
      parameters.cases = std::stoull(word.substr(value));
    else
      throw std::invalid_argument("RC_PARAMS: " + word);
  }
  return parameters;
}

inline Parameters EnvironmentsParameters() {
  const char* const text = std::getenv("RC_PARAMS");
  return ParametersFrom(text != nullptr ? text : "");
}

// Each case has a seed of its own, so that it does not depend on how much the others drew.
inline Case MakeCase(const Parameters& parameters, uint64_t number) {
  std::seed_seq seed{parameters.seed, parameters.seed >> 32, number};
  const uint64_t size = (number + 1) * kNominalSize / parameters.cases;
  return {Random(seed), std::max(1, static_cast<int>(size))};
}

// The first case of a property that fails, and why; empty when all hold.
template <class Property>
std::string FirstFailure(Property property, const Parameters& parameters) {
  for (uint64_t number = 0; number < parameters.cases; ++number) {
    Case current = MakeCase(parameters, number);
    Case::Current() = &current;
    try {
      property();
    } catch (const std::exception& failure) {
      return "case " + std::to_string(number + 1) +
             " with RC_PARAMS=\"seed=" + std::to_string(parameters.seed) +
             " max_success=" + std::to_string(parameters.cases) + '"' + current.values + '\n' +
             failure.what();
    }
  }
  return "";
}

}  // namespace detail
}  // namespace rc

#define RC_FAIL(text) throw ::rc::detail::Failure(__FILE__, __LINE__, text)

#define RC_ASSERT(condition)                                \
  do {                                                      \
    if (!(condition)) RC_FAIL("RC_ASSERT(" #condition ")"); \
  } while (false)
