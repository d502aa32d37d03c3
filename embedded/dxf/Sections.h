// What a file holds, as it stands there: sections with groups and objects, nothing related yet.
#pragma once

#include <embedded/drawing/Drawing.h>
#include <embedded/dxf/Dxf.h>
#include <embedded/dxf/Tags.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lomlisp::embedded {

struct FileObject {
  Groups groups;  // (0 . type) first
  std::vector<ExtendedData> extended;
  uint64_t handle = 0;  // 0: it has none in the file
  uint64_t place = 0;
  Object* object = nullptr;  // what it becomes in the drawing

  std::wstring_view Type() const { return object != nullptr ? object->Type() : TextOf(groups, kTypeCode); }
};

struct FileSection {
  std::wstring name;
  uint64_t place = 0;
  Groups groups;                    // all of a section without objects; otherwise those before the first
  std::vector<FileObject> objects;  // TABLE, ENDTAB, BLOCK and ENDBLK among them
};

// Whether the section holds objects: TABLES, BLOCKS, ENTITIES and OBJECTS do.
bool HasObjects(std::wstring_view section);

// Reads a file to its end, or up to the end of its header. Throw a Fault.
std::vector<FileSection> ReadSections(TagSource& source, uint64_t size, const DxfProgress& progress);
Groups ReadHeader(TagSource& source);

}  // namespace lomlisp::embedded
