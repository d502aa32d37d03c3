// What the records print on the command line. The trailing "Name" belongs to the texts.
#pragma once

namespace lomlisp::messages {

// Each takes the type name; then follow CastValue, the value and CastEnd.
inline constexpr const wchar_t* CastToShort =
    L"Fehler bei Cast von ResBuf auf short: ResBuf ist vom Typ %s\nName";
inline constexpr const wchar_t* CastToInt =
    L"Fehler bei Cast von ResBuf auf int: ResBuf ist vom Typ %s\nName";
inline constexpr const wchar_t* CastToLong =
    L"Fehler bei Cast von ResBuf auf long: ResBuf ist vom Typ %s\nName";
inline constexpr const wchar_t* CastToInt64 =
    L"Fehler bei Cast von ResBuf auf __int64: ResBuf ist vom Typ %s\nName";
inline constexpr const wchar_t* CastToDouble =
    L"Fehler bei Cast von ResBuf auf double: ResBuf ist vom Typ %s\nName";
inline constexpr const wchar_t* CastToText =
    L"Fehler bei Cast von ResBuf auf TCHAR* : ResBuf ist vom Typ %s\nName";
inline constexpr const wchar_t* CastToPoint =
    L"Fehler bei Cast von ResBuf auf ads_point: ResBuf ist vom Typ %s\nName";
inline constexpr const wchar_t* CastToName =
    L"Fehler bei Cast von ResBuf auf ads_name: ResBuf ist vom Typ %s\nName";
inline constexpr const wchar_t* CastValue = L"Value= ";
inline constexpr const wchar_t* CastEnd = L"\nName";

// Take the type name of the record on the left.
inline constexpr const wchar_t* CannotCompare =
    L"Fehler bei ResBuf::operator== :Ich kann ResBufs vom Typ %s nicht vergleichen\nName";
inline constexpr const wchar_t* CannotOrder =
    L"Fehler bei ResBuf::operator< :Ich kann ResBufs vom Typ %s nicht vergleichen\nName";

inline constexpr const wchar_t* NoDxfCode =
    L"ResBuf::MakeDXF : \u00DCbergebener Typ %d ist kein DXF-Code !\nName";

inline constexpr const wchar_t* NoBytes =
    L"ResBuf::MakeDXF : Text f\u00FCr Gruppe %d besteht nicht aus Paaren von Hexadezimalziffern !\nName";

// Take the name of the function.
inline constexpr const wchar_t* CannotMakeTextRecord = L"%s: can't make new resbuf (1)\nName";
inline constexpr const wchar_t* CannotMakeRecord = L"%s: can't make new resbuf (2)\nName";
inline constexpr const wchar_t* CannotMakeText = L"%s: can't allocate string space\nName";

}  // namespace lomlisp::messages
