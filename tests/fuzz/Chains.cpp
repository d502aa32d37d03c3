// Chains of records to values and back, good ones and bad ones.
#include <tests/fuzz/Fuzz.h>

namespace {

using lomlisp::fuzz::Require;

// A value that was written reads back as itself, unless an atom of it is none for a chain.
void GoThereAndBack(const CLOMAdsLispVar& value) {
  ADSList chain;
  value.LispToADS(chain);
  CLOMAdsLispVar again;
  again.ADSToLisp(chain);
  ADSList copy(chain);
  resbuf* const forPlatform = ResBuf::copyToAcadResBufList(copy);
  if (forPlatform != nullptr) acutRelRb(forPlatform);
  chain.Reverse();
  chain.Reverse();
}

}  // namespace

void lomlisp::fuzz::Try(Input& input) {
  const bool isGood = input.ConsumeBool();
  resbuf* const chain = isGood ? TakeGoodChain(input, 60) : TakeChain(input, 60);
  CLOMAdsLispVar value;
  const bool read = value.ADSToLisp(chain);
  Require(read || value.NilP(), "what cannot be read is nil");
  GoThereAndBack(value);
  ADSList groups;
  value.LispToDXF(groups);
  CLOMAdsLispVar fromGroups;
  fromGroups.ADSToLisp(groups);
  groups.DeleteMode(ADSDeleteFlag::Keep);
  if (resbuf* const given = groups; given != nullptr) acutRelRb(given);
  // The list takes the chain, with its texts.
  ADSList owner(chain, ADSCopyFlag::Adopt);
  bool doubled = false;
  for (int moves = input.ConsumeIntegralInRange(0, 8); moves > 0; --moves) {
    switch (input.ConsumeIntegralInRange(0, 6)) {
      case 0:
        owner.GoNextElement();
        break;
      case 1:
        owner.GoPreviousElement();
        break;
      case 2:
        owner.GoNext();
        break;
      case 3:
        owner.Delete();
        break;
      case 4:
        if (!doubled) owner.Add(ADSList(owner));
        doubled = true;
        break;
      case 5:
        owner.Reverse();
        break;
      default:
        owner.GoFirst();
        break;
    }
  }
}
