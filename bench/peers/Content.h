// What the rows work on: the same for all peers, each of which makes its own values of it.
#pragma once

#include <bench/peers/Digest.h>
#include <lomlisp/platform/ads.h>

#include <string>
#include <string_view>
#include <vector>

// --- Items: (17 17.5 "text-17") ---

struct Item {
  int number;
  double real;
  std::wstring text;
};

Item ItemAt(int position);
// The list of the first items as each family writes it. ASCII.
std::string LispText(int items);
std::string JsonText(int items);

// The atoms of a text that a peer has printed, its brackets left out: what reads as a number counts as a
// real.
Digest DigestOfPrinted(std::string_view text);
Digest DigestOfPrinted(std::wstring_view text);

// --- Numbers and keys ---

// 0 to count - 1 in an order that looks like none.
std::vector<int> Shuffled(int count);
// A key of which the first differing character comes late, as in names of layers.
std::wstring TextKey(int number);
double RealKey(int number);

// A list of small integers, of which each comes again after 100, for editing.
constexpr int kDifferent = 100;
constexpr int kOld = 7;
constexpr int kNew = 1000;

// How often a measurement runs a work that looks through `size` members.
int RepeatsOfSearch(int size);

// --- Memory ---

// The text of the text atoms.
constexpr const wchar_t* kMemoryText = L"text of group 8";
// The twelve groups of the entity; the records stay here.
const resbuf* TwelveGroups();

// --- Formatting: %5d %8.3f %s %x %e %c of these ---

constexpr int kFormatInteger = 17;
constexpr double kFormatReal = 3.14159;
constexpr const wchar_t* kFormatText = L"text";
constexpr int kFormatHexadecimal = 0x1234;
constexpr double kFormatExponent = 1e10;
constexpr const wchar_t* kFormatCharacter = L"c";

// --- Text ---

std::string Narrow(std::wstring_view text);
