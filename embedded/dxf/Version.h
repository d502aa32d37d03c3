// The versions of DXF files by what their headers say.
#pragma once

#include <embedded/drawing/Drawing.h>

#include <string_view>

namespace lomlisp::embedded {

// By the text of $ACADVER: the newest version that is not newer than it, so that unknown ones are read as
// what they follow. R12 for what is older, and for no such text at all.
DxfVersion VersionOf(std::wstring_view text);

inline constexpr std::wstring_view kVersionVariable = L"$ACADVER";
inline constexpr std::wstring_view kCodePageVariable = L"$DWGCODEPAGE";
inline constexpr std::wstring_view kNextHandleVariable = L"$HANDSEED";
// Of files that name none.
inline constexpr std::wstring_view kUsualCodePage = L"ANSI_1252";
inline constexpr int kVariableCode = 9;

}  // namespace lomlisp::embedded
