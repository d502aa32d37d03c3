// Whether groups can be in an object of a drawing: their values, and the entries of tables that they name.
#pragma once

#include <embedded/drawing/Drawing.h>

#include <optional>
#include <string>
#include <string_view>

namespace lomlisp::embedded {

// A name that a new layer, block, ... can have.
bool IsLegalName(std::wstring_view name);

// Why an object of that type cannot hold the group. A layer need not be there, if its name is legal; line
// types, styles and blocks must be.

std::optional<std::string> CheckGroup(Drawing& drawing, std::wstring_view type, const Group& group);

// Why extended data cannot be attached: an application that is not registered.
std::optional<std::string> CheckApplication(Drawing& drawing, const ExtendedData& data);

// Makes the layer when there is none of that name.
void NeedLayer(Drawing& drawing, std::wstring_view name);

// Whether blocks of one of these names are or contain that block. Erased entities count, for they can be
// restored. Linear in the content of the blocks that are reached.
bool ContainBlock(Drawing& drawing, std::vector<std::wstring> names, std::wstring_view wanted);

}  // namespace lomlisp::embedded
