// A drawing: objects with their groups, in tables, blocks and the main list of entities.
//
// What a DXF file holds is kept whole and in its order; what is unknown is kept too.
#pragma once

#include <lomlisp/platform/ads.h>

#include <embedded/drawing/Group.h>
#include <embedded/drawing/HandleHash.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lomlisp::embedded {

// What an application has attached to an object: the groups behind its 1001.
struct ExtendedData {
  std::wstring application;
  Groups groups;
  friend bool operator==(const ExtendedData&, const ExtendedData&) = default;
};

struct EntityList;
struct Table;

// An entity, an entry or the head of a table, the begin or end of a block, a dictionary, ...
struct Object {
  uint64_t handle = 0;  // never 0 in a drawing
  Groups groups;        // (0 . type) first; without the extended data
  std::vector<ExtendedData> extended;

  Table* table = nullptr;          // whose entry it is
  EntityList* list = nullptr;      // the list of entities that it is in, also while erased
  size_t position = 0;             // where it stands there
  Object* header = nullptr;        // of a VERTEX, ATTRIB or SEQEND
  std::vector<Object*> parts;      // of a POLYLINE, or of an INSERT with attributes; the SEQEND comes last
  bool isErased = false;           // a part is erased with its header
  bool needsRegeneration = false;  // a part of it was changed and not updated since
  bool isNoted = false;            // among the changes that nobody has taken yet

  std::wstring_view Type() const { return TextOf(groups, kTypeCode); }
};

struct BlockDefinition;

// Entities in drawing order, headers without their parts. Erased ones keep their places.
struct EntityList {
  std::vector<Object*> members;
  size_t begin = 0;                  // all members in front of it are erased
  size_t end = 0;                    // all members from there on are erased
  BlockDefinition* block = nullptr;  // whose content it is; null for the main list
};

struct BlockDefinition {
  Object* begin = nullptr;  // BLOCK
  Object* end = nullptr;    // ENDBLK
  size_t position = 0;      // among the drawing's blocks
  EntityList content;
  std::wstring_view Name() const { return TextOf(begin->groups, kNameCode); }
};

struct Table {
  Object* head = nullptr;  // TABLE; in old files without a handle of its own
  std::vector<Object*> entries;
  Object* end = nullptr;  // ENDTAB, in the rare file where it has groups; otherwise null
  std::wstring_view Name() const { return TextOf(head->groups, kNameCode); }
};

// A section of the file. HEADER, CLASSES and unknown sections are kept as their groups; those of
// TABLES, BLOCKS, ENTITIES and OBJECTS are in the drawing and this is only their place.
struct Section {
  std::wstring name;
  Groups groups;
};

enum class DxfVersion { R12, R13, R14, R2000, R2004, R2007, R2010, R2013, R2018 };

class Drawing {
 public:
  // A new drawing, with the entries that every drawing has. It has a number of its own, which is a part of
  // the names of its objects: a name is never that of an object of another drawing.
  Drawing();
  // A drawing without anything, for whoever fills it.
  struct Empty {};
  explicit Drawing(Empty);
  Drawing(const Drawing&) = delete;
  Drawing& operator=(const Drawing&) = delete;
  ~Drawing();

  // Its number: greater than 0, and no other drawing of the process has it.
  uint64_t Serial() const { return m_serial; }

  // --- Objects and their names ---

  // A new object, in no list yet. Its handle is `handle`, or for 0 the next one; false handles are the
  // caller's fault (see IsFree). Its groups hold a 5 (105 for a DIMSTYLE) with it where the drawing's file
  // holds handles. It stays at its address until the drawing dies.
  Object& NewObject(Groups groups, uint64_t handle = 0);
  // Whether a handle is neither 0 nor in use.
  bool IsFree(uint64_t handle) const;
  // The handle that the next object gets: greater than all in use, or where there is none a free one.
  uint64_t NextHandle() const { return m_nextHandle; }
  // Lets the next handle be no less than that.
  void RaiseNextHandle(uint64_t handle);

  // Erased objects too; null when there is none.
  Object* FindHandle(uint64_t handle) const;
  Object* FindName(const ads_name name) const;
  // The same without the erased ones.
  Object* FindLive(const ads_name name) const;
  // The name that belongs to a handle, whether there is such an object or not; (0, 0) for 0.
  void NameOf(uint64_t handle, ads_name name) const;
  // The handle in a name of this drawing; nothing for names of others. (0, 0) gives 0.
  std::optional<uint64_t> HandleOf(const ads_name name) const;

  // --- Entities ---

  EntityList& Entities() { return m_entities; }
  const EntityList& Entities() const { return m_entities; }
  // Puts an object at the end of a list.
  void Append(EntityList& list, Object& entity);
  // Puts a VERTEX, ATTRIB or SEQEND at the end of its header's parts.
  void AppendPart(Object& header, Object& part);
  // Erases an entity or restores it, with its parts.
  void SetErased(Object& entity, bool isErased);
  // The first and the last entity of a list that are not erased, null when there is none. Erasing a list
  // from either end, one by one, takes linear time.
  static Object* First(EntityList& list);
  static Object* Last(EntityList& list);
  // The one behind an entity, which is not erased: its first part, the next part, or the next in its list;
  // null at the end.
  static Object* Next(const Object& entity);

  // --- Tables, blocks, objects, sections ---

  // Null when there is no such table or entry. Names without regard to case. Of entries of one name
  // the first.
  Table* FindTable(std::wstring_view name);
  Object* FindEntry(std::wstring_view table, std::wstring_view name);
  Table& AppendTable(Object& head);
  void AppendEntry(Table& table, Object& entry);
  // Makes the entry of a new layer, application, ... of that name with `groups` behind the name. The table
  // must be there.
  Object& NewEntry(std::wstring_view table, std::wstring_view name, Groups groups);
  // To be called after the name in an entry's groups was changed.
  void NoteRename(Object& entry, std::wstring_view oldName);
  std::deque<Table>& Tables() { return m_tables; }

  BlockDefinition* FindBlock(std::wstring_view name);
  BlockDefinition& AppendBlock(Object& begin, Object& end);
  std::deque<BlockDefinition>& Blocks() { return m_blocks; }

  // The section OBJECTS, in order.
  std::vector<Object*>& Objects() { return m_objects; }
  std::vector<Section>& Sections() { return m_sections; }
  Section* FindSection(std::wstring_view name);
  // The groups of a header variable, as "$CLAYER", behind its 9; nothing when it is not there.
  Groups HeaderVariable(std::wstring_view name);
  // Sets the values of a header variable; one that is missing is put at the end of the header.
  void SetHeaderVariable(std::wstring_view name, Groups values);

  DxfVersion version = DxfVersion::R2018;
  bool hasHandles = true;  // whether the file holds handles; old ones may not

  // The object that owns the entities of a list: the block record, from R13 on. 0 where there is none.
  uint64_t OwnerOf(const EntityList& list);

  // --- Changes ---

  // To be called after every change of an entity's groups, its place or its erased mark. A part counts
  // as its header.
  void NoteChange(Object& entity);
  // The entities that changed since the last call, each once.
  std::vector<Object*> TakeChanges();
  // Whether something has changed since the drawing was opened, made or saved.
  bool IsModified() const { return m_isModified; }
  void SetModified(bool isModified) { m_isModified = isModified; }
  // How often entities were regenerated, by changes of their own and by acdbEntUpd.
  size_t regenerations = 0;

 private:
  void SkipUsedHandles();

  uint64_t m_serial;
  uint64_t m_nextHandle = 1;
  std::deque<Object> m_all;
  std::unordered_map<uint64_t, Object*, HandleHash> m_byHandle;
  EntityList m_entities;
  std::deque<Table> m_tables;
  // Names are the file's too, and keep their time in a tree.
  std::map<std::wstring, Table*> m_tablesByName;
  std::map<std::wstring, Object*> m_entries;  // under table, NUL, name
  std::deque<BlockDefinition> m_blocks;
  std::map<std::wstring, BlockDefinition*> m_blocksByName;
  std::vector<Object*> m_objects;
  std::vector<Section> m_sections;
  std::vector<Object*> m_changes;
  bool m_isModified = false;
};

}  // namespace lomlisp::embedded
