// New entities from groups, also those that take several calls.
#pragma once

#include <embedded/drawing/EntityTypes.h>
#include <embedded/drawing/GivenGroups.h>

#include <optional>
#include <string>
#include <vector>

namespace lomlisp::embedded {

// A POLYLINE takes VERTEX, an INSERT whose 66 is 1 takes ATTRIB, each until SEQEND; a BLOCK takes entities
// until ENDBLK. Nothing of it is in the drawing before the last call, not even its layers. A refusal in
// between, by whatever call, drops the whole. Entries of tables are made as well; other objects are not.
class EntityMaker {
 public:
  explicit EntityMaker(Drawing& drawing) : m_drawing(drawing) {}

  struct Settings {
    std::wstring layer = L"0";  // of entities without one; parts take their header's
  };
  // Why nothing was made, or nothing when the entity, or its piece, was taken.
  //
  // A block of an existing name is defined anew: what was in it is erased and cannot be restored. The
  // name "*U" (D, E, T, X too) stands for the next free one of that letter.
  std::optional<std::string> Make(const Chain& chain, const Settings& settings);

  // What the last call made: an entity, a header with its parts, an entry of a table, the BLOCK of a block.
  // Null when it was refused or when pieces are still to come.
  Object* LastMade() const { return m_last; }
  bool IsPending() const { return m_header || m_block; }
  void Cancel();

 private:
  // An entity that is not in the drawing yet, without handle and owner.
  struct Draft {
    Groups groups;
    std::vector<ExtendedData> extended;
    std::vector<Draft> parts;
    std::wstring_view Type() const { return TextOf(groups, kTypeCode); }
  };
  struct BlockDraft {
    Draft begin;
    std::vector<Draft> content;
  };

  std::optional<std::string> Take(GivenGroups given, const Settings& settings);
  std::optional<std::string> CheckPlace(std::wstring_view type) const;
  std::optional<std::string> CheckPartPlace(std::wstring_view type) const;
  std::optional<std::string> CheckValues(const EntityType* type, std::wstring_view name,
                                         const Groups& own) const;
  std::optional<std::string> Draw(const std::wstring& type, GivenGroups given, const Settings& settings,
                                  Draft& draft) const;
  void AddLayer(Groups& groups, const Settings& settings) const;
  Groups Finished(const std::wstring& type, const EntityType* described, Groups groups) const;
  std::optional<std::string> Put(Draft draft);
  void PutPart(Draft part);
  void PutWhole(Draft whole);
  std::optional<std::string> PutBlock(Draft end);

  Object& NewObject(Draft draft, uint64_t owner);
  void Renew(Object& object, Draft draft, uint64_t owner);
  void NewEntity(Draft draft, EntityList& list);
  BlockDefinition& DefineBlock(Draft begin, Draft end);
  std::wstring NextAnonymous(wchar_t letter);

  Drawing& m_drawing;
  std::optional<Draft> m_header;
  std::optional<BlockDraft> m_block;
  Object* m_last = nullptr;
  size_t m_lastAnonymous = 0;
};

}  // namespace lomlisp::embedded
