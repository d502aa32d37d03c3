// What the fuzzing targets share. A target is a file with the function Try; libFuzzer calls it with input
// after input, and a fault of any kind ends the program with the input in a file.
#pragma once

#include <embedded/Host.h>
#include <lomlisp/lomlisp.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <string>

namespace lomlisp::fuzz {

using Input = FuzzedDataProvider;
using embedded::Host;

// Defined by the target. Behind it, nothing may be live on the platform's heap that was not before, and no
// misuse of it may have been noticed.
void Try(Input& input);

// Ends the program unless it is true.
void Require(bool isTrue, const char* what);

// Characters of all kinds: mostly ASCII, some beyond the first plane, lone surrogates, controls. Never a zero.
std::wstring TakeText(Input& input, size_t most);
// All that is left, as text of one character a byte.
std::wstring TakeRest(Input& input);
// A number of any kind: small, at the limits of the integers, infinite, NaN.
double TakeReal(Input& input);
long long TakeInteger(Input& input);

// A chain on the platform's heap: records of known and unknown types, brackets that are balanced now and then.
// Texts stand under the types that have them, and only there. The caller releases it.
resbuf* TakeChain(Input& input, size_t mostRecords);
// The same in brackets that are balanced, so that it mostly is a value.
resbuf* TakeGoodChain(Input& input, size_t mostRecords);

}  // namespace lomlisp::fuzz
