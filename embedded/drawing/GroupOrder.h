// Which groups of an entity are its own, and where they stand.
#pragma once

#include <embedded/drawing/EntityTypes.h>

#include <compare>
#include <cstddef>
#include <string>
#include <vector>

namespace lomlisp::embedded {

// The places of the groups that a caller can set, and of the class markers between them. The type, handles,
// the owner, groups within brackets (102) and an embedded object (from 101 on) are not among them.
// Behind the class marker of a type that is not described, 102 and 330 are groups like others.
struct OwnGroups {
  std::vector<size_t> places;
  bool areBracketsBalanced = true;
};
// Where an embedded object begins, or else the end.
size_t EndOfOwn(const Groups& groups);
OwnGroups FindOwn(const Groups& groups, bool isDescribed);

// Keeps the last of several groups of which the type holds one, at the place of the first. Null for types
// that are not described: all stay.
Groups KeepLast(const EntityType* type, Groups groups);

// Own groups with AcDbEntity and the class markers in front of them, in the usual order of the type. Other
// markers than the type's, and those of a type that is not described (null), are left as they are.
Groups Arrange(const EntityType* type, const Groups& own);
// The same without markers, as old files have it.
Groups ArrangeWithoutMarkers(const EntityType* type, const Groups& own);

// Where a new group of an object belongs: in front of the stored group at a place, after other new ones of
// lower rank. `marker` is the one that it was given under, or empty.
struct GroupPlace {
  size_t place;
  size_t rank;
  // NOLINTNEXTLINE(modernize-use-nullptr): the 0 that the compiler compares with is no pointer.
  friend auto operator<=>(const GroupPlace&, const GroupPlace&) = default;
};
GroupPlace PlaceFor(const EntityType* type, const Groups& stored, int code, std::wstring_view marker);

inline constexpr std::wstring_view kCommonMarker = L"AcDbEntity";
inline constexpr int kEmbeddedObjectCode = 101;

}  // namespace lomlisp::embedded
