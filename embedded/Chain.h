// Chains of records as the host keeps them: flat, owning their texts, off the platform's heap.
#pragma once

#include <lomlisp/platform/ads.h>

#include <embedded/Ledger.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomlisp::embedded {

struct Record {
  short type = RTNONE;
  ads_u_val value{};     // everything but the text
  std::wstring text;     // for types that hold one
  bool hasText = false;  // false for a null text too
};

using Chain = std::vector<Record>;

// Whether records of that type point to a text: RTSTR, RTDXF0 and the DXF text groups.
bool HoldsText(short type);
// Whether it is one of the RT codes or a DXF group code.
bool IsKnown(short type);

// Where a chain stands: the inside of a list comes without the brackets around it.
enum class Place { Items, InsideOfList };

// Why the chain cannot be accepted (unknown type, unbalanced brackets, a misplaced dot, a text pointer that
// cannot be one, a ring), or nothing when it can. Null is a good chain. Never crashes on a number
// under a text code.
std::optional<std::string> Check(const resbuf* chain, const Ledger& ledger, Place place = Place::Items);

// A deep copy of a good chain.
Chain Capture(const resbuf* chain);
// A chain on the platform's heap; null for an empty one and when memory runs out. `caller` is the
// code address for the books.
resbuf* Materialise(const Chain& chain, Ledger& ledger, Owner owner, const void* caller = nullptr);
// Whether a chain still says what the copy says.
bool Matches(const resbuf* chain, const Chain& copy);
// Releases records and texts. What is no live block is a fault, and what follows it is left alone.
void ReleaseChain(resbuf* chain, Ledger& ledger);

// The items as LISP text, separated by blanks: numbers, "texts" with their escapes, T, nil, lists,
// dotted pairs, <Entity name: 1f>; DXF groups as (8 . "0"), points as lists.
std::wstring ToText(const Chain& chain);
// Reads items from LISP text: integers (RTSHORT, RTLONG beyond 16 bits, a real beyond 32), reals,
// "texts" with \" \\ \n \t \r \e \nnn, T, nil, lists, dotted pairs, <Entity name: 1f>,
// 'quoted items as the item, ; comments. A symbol becomes nothing but an error. Gives nothing and
// says why and where in `error`.
std::optional<Chain> FromText(std::wstring_view text, std::string& error);

}  // namespace lomlisp::embedded
