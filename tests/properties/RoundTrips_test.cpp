// There and back again: through text, through chains, through extended data, and a deep copy.
#include <tests/properties/Generators.h>

#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace lomlisp::test::round_trips {

using RoundTripOfValues = PropertyTest;

namespace {

std::wstring Print(const CLOMAdsLispVar& value) {
  std::vector<wchar_t> text(65536);  // twice what the longest of the values needs
  value.PrinC(text.data(), text.size());
  return text.data();
}

// --- Entity lists ---

std::vector<DxfRange> RangesOfGroups() {
  std::vector<DxfRange> ranges(std::begin(kDxfRanges), std::end(kDxfRanges));
  std::erase_if(ranges, [](const DxfRange& range) { return range.first == -3; });  // extended data
  return ranges;
}

ValueGen Points() {
  const auto point = [](double x, double y, double z) {
    return model::ListValue({model::AtomValue(x), model::AtomValue(y), model::AtomValue(z)});
  };
  return rc::gen::apply(point, AnyReal(), AnyReal(), AnyReal());
}

ValueGen ValuesOfGroups(short type) {
  switch (type) {
    case RTSHORT:
      return Atoms(AnyNumber<short>());
    case RTLONG:
      return Atoms(AnyNumber<int32_t>());
    case RTINT64:
      return Atoms(AnyNumber<__int64>());
    case RTREAL:
      return Atoms(AnyReal());
    case RTENAME:
      return EntityNames();
    case RT3DPOINT:
      return Points();
    default:
      return Atoms(AnyText(20));
  }
}

ValueGen Groups() {
  const auto group = [](const DxfRange& range) {
    const auto isNoApplication = [](short code) { return code != 1001; };
    return Pairs(Atoms<short>(rc::gen::suchThat(InRange(range.first, range.last), isNoApplication)),
                 ValuesOfGroups(range.type));
  };
  return rc::gen::mapcat(rc::gen::elementOf(RangesOfGroups()), group);
}

bool HasMembers(const model::Value& list) { return !list.node->members.empty(); }

}  // namespace

RC_GTEST_FIXTURE_PROP(RoundTripOfValues, ThroughText, ()) {
  const auto source = *Values(ReadableAtoms(), DottedLists::AtomCdr, 3);
  const std::wstring text = Print(model::ToLibrary(source));
  CLOMAdsLispVar value;
  const bool wasRead = value.Read(text.c_str());
  RC_ASSERT(Printed() == "");
  RC_ASSERT(wasRead);
  ExpectSame(value, source);
}

RC_GTEST_FIXTURE_PROP(RoundTripOfValues, ThroughAChain, ()) {
  const auto source = *Values(NilOr(ChainAtoms()), DottedLists::Pairs, 3);
  ADSList chain;
  model::ToLibrary(source).LispToADS(chain);
  CLOMAdsLispVar value;
  const bool wasConverted = value.ADSToLisp(chain);
  RC_ASSERT(Printed() == "");
  RC_ASSERT(wasConverted);
  ExpectSame(value, source);
}

RC_GTEST_FIXTURE_PROP(RoundTripOfValues, OfAnEntityListThroughABareChain, ()) {
  const auto source = *rc::gen::suchThat(Lists(Groups(), 20), HasMembers);
  ADSList chain;
  model::ToLibrary(source).LispToDXF(chain);
  const short firstCode = std::get<short>(source.node->members[0]->members[0]->atom);
  RC_ASSERT(chain.First()->Type() == firstCode);
  CLOMAdsLispVar value;
  const bool wasConverted = value.ADSToLisp(chain);
  RC_ASSERT(Printed() == "");
  RC_ASSERT(wasConverted);
  ExpectSame(value, source);
}

RC_GTEST_FIXTURE_PROP(RoundTripOfValues, ThroughExtendedData, ()) {
  const auto source = *Values(ExtendedDataAtoms(), DottedLists::None, 3);
  ADSList chain;
  const bool wasWritten = model::ToLibrary(source).LispToXData(chain);
  CLOMAdsLispVar value;
  const bool wasRead = value.XDataToLisp(chain);
  RC_ASSERT(Printed() == "");
  RC_ASSERT(wasWritten);
  RC_ASSERT(wasRead);
  ExpectSame(value, source);
}

RC_GTEST_FIXTURE_PROP(RoundTripOfValues, ADeepCopyIsTheSameAndSharesNothing, ()) {
  const auto source = *Values(NilOr(ChainAtoms()), DottedLists::AnyLength, 3);
  const CLOMAdsLispVar value = model::ToLibrary(source);
  const CLOMAdsLispVar copy = CLOMAdsLisp::Head(-1, value);
  ExpectSame(copy, source);
  ExpectSame(value, source);
  RC_ASSERT(copy == value);
  RC_ASSERT(!ShareNodes(copy, value));
  RC_ASSERT(Printed() == "");
}

}  // namespace lomlisp::test::round_trips
