// What the value handle prints on the command line.
#pragma once

namespace lomlisp::messages {

inline constexpr const wchar_t* GetAtomOfList = L"CLOMAdsLispVar::GetAtom : Kein Atom : Liste !";
inline constexpr const wchar_t* GetNameOfOther =
    L"CLOMAdsLispVar::GetEName() : Kein Entity-Name und kein Auswahlsatz !\n";
inline constexpr const wchar_t* GetPointOfOther = L"CLOMAdsLispVar::GetPoint() : Kein Punkt !\n";
inline constexpr const wchar_t* GetStringNoRoom =
    L"CLOMAdsLispVar::GetString : Ziel-String hat Gr\u00F6\u00DFe 0 !\n";
inline constexpr const wchar_t* GetStringOfOther = L"CLOMAdsLispVar::GetString() : Kein String !\n";
inline constexpr const wchar_t* GetStringCut =
    L"CLOMAdsLispVar::GetString() : String zu gro\u00DF, wird abgeschnitten !\n";

inline constexpr const wchar_t* TypeUnknown = L"CLOMAdsLispVar::Type : Unbekannter Variablen-Typ !\n";
inline constexpr const wchar_t* ZeroPOfOther = L"CLOMAdsLispVar::ZeroP : Argument ist keine Zahl !\n";

// All four orders name operator!=.
inline constexpr const wchar_t* OrderOfOther =
    L"CLOMAdsLispVar::operator!= : Mind. ein Operand ist kein Atom !\n";

}  // namespace lomlisp::messages
