// The groups of table entries, and what every object has in a file of some version.
#pragma once

#include <embedded/drawing/Drawing.h>

#include <string_view>

namespace lomlisp::embedded {

// The groups of an entry of that table, without its handle: its type, owner and markers from R13 on, its
// name, then `groups`.
Groups EntryGroups(const Drawing& drawing, const Table& table, std::wstring_view name, Groups groups);

// Puts the object's handle behind its type, of a TABLE behind its name, where the drawing's file holds
// handles.
void AddHandle(const Drawing& drawing, Object& object);

// The class of the entries of a table: "AcDbLayerTableRecord" for LAYER.
std::wstring_view EntryMarker(std::wstring_view table);

}  // namespace lomlisp::embedded
