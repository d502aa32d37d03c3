#include <tests/properties/Generators.h>

namespace lomlisp::test {

Gen<std::wstring> AnyText(int maxLength) {
  static const std::wstring alphabet = L"abcXYZ0189 ().;'\\%+-\t\n\u00E4\u00DF\u20AC\uFFFD";
  return rc::gen::resize(maxLength, rc::gen::container<std::wstring>(rc::gen::elementOf(alphabet)));
}

Gen<double> SixDecimals() {
  return rc::gen::map(AnyNumber<int32_t>(), [](int32_t value) { return value / 64.0; });
}

Gen<double> AnyReal() {
  return rc::gen::oneOf(SixDecimals(), AnyNumber<double>(),
                        rc::gen::element(0.0, -0.0, 0.1, 1e-9, -2.5e-300, 1e15, 1.7976931348623157e308));
}

ValueGen EntityNames() {
  return rc::gen::map(rc::gen::pair(AnyNumber<__int64>(), AnyNumber<__int64>()), [](const auto& words) {
    return model::AtomValue(model::EntityName{{words.first, words.second}});
  });
}

ValueGen ReadableAtoms() {
  return rc::gen::oneOf(Atoms(AnyNumber<short>()), Atoms(SixDecimals()), Atoms(AnyText(20)),
                        Atoms(AnyText(97)));
}

ValueGen ExtendedDataAtoms() {
  return rc::gen::oneOf(Atoms(AnyNumber<short>()), Atoms(AnyNumber<int32_t>()), Atoms(AnyReal()),
                        Atoms(AnyText(20)));
}

ValueGen ChainAtoms() {
  return rc::gen::oneOf(ExtendedDataAtoms(), Atoms(AnyNumber<__int64>()), EntityNames());
}

ValueGen NilOr(ValueGen values) {
  return rc::gen::weightedOneOf<model::Value>({{1, rc::gen::just(model::Value())}, {5, std::move(values)}});
}

ValueGen SimilarAtoms() {
  using model::AtomValue;
  static const std::vector<model::Value> atoms = {AtomValue(short{0}),
                                                  AtomValue(short{1}),
                                                  AtomValue(int32_t{1}),
                                                  AtomValue(static_cast<__int64>(1)),
                                                  AtomValue(0.5),
                                                  AtomValue(1.0),
                                                  AtomValue(1.0 + 5e-10),
                                                  AtomValue(1.0005),
                                                  AtomValue(std::wstring()),
                                                  AtomValue(std::wstring(L"a")),
                                                  AtomValue(std::wstring(L"A")),
                                                  AtomValue(model::EntityName{{1, 2}}),
                                                  AtomValue(model::NilAtom{})};
  return rc::gen::elementOf(atoms);
}

Gen<std::vector<model::Value>> Members(ValueGen member, int maxCount) {
  member = rc::gen::resize(rc::kNominalSize, std::move(member));
  return rc::gen::resize(maxCount, rc::gen::container<std::vector<model::Value>>(std::move(member)));
}

ValueGen Lists(ValueGen member, int maxCount) {
  return rc::gen::map(Members(std::move(member), maxCount), model::ListValue);
}

ValueGen Pairs(ValueGen first, ValueGen second) {
  return rc::gen::apply(
      [](const model::Value& car, const model::Value& cdr) {
        return model::DottedValue({car, cdr});
      },
      std::move(first), std::move(second));
}

ValueGen Dotted(DottedLists dotted, const ValueGen& atoms, const ValueGen& member) {
  if (dotted == DottedLists::AtomCdr) return Pairs(member, atoms);
  if (dotted == DottedLists::Pairs) return Pairs(member, member);
  const auto hasCar = [](const std::vector<model::Value>& members) { return members.size() >= 2; };
  return rc::gen::map(rc::gen::suchThat(Members(member, 4), hasCar), model::DottedValue);
}

ValueGen Values(const ValueGen& atoms, DottedLists dotted, int depth) {
  if (depth == 0) return atoms;
  const ValueGen member = Values(atoms, dotted, depth - 1);
  const ValueGen list = Lists(member, 4);
  if (dotted == DottedLists::None) return rc::gen::oneOf(atoms, list);
  return rc::gen::weightedOneOf<model::Value>({{2, atoms}, {2, list}, {1, Dotted(dotted, atoms, member)}});
}

ValueGen SimilarValues(int depth) { return Values(NilOr(SimilarAtoms()), DottedLists::AnyLength, depth); }

Gen<short> ShortKeys() { return InRange<short>(-10, 10); }

Gen<std::wstring> TextKeys() {
  static const std::wstring alphabet = L"aB\u00E4";
  return rc::gen::resize(3, rc::gen::container<std::wstring>(rc::gen::elementOf(alphabet)));
}

}  // namespace lomlisp::test
