// What the list operations print on the command line.
#pragma once

namespace lomlisp::messages {

// The static forms; the argument follows, except where it is said otherwise.
inline constexpr const wchar_t* CarOfAtom = L"CLOMAdsLisp::Car : Parameter mu\u00DF eine Liste sein !\n";
inline constexpr const wchar_t* CarOfNil = L"CLOMAdsLisp::Car : Parameter ist nil !\n";  // alone
inline constexpr const wchar_t* CdrOfAtom = L"CLOMAdsLisp::Cdr : Parameter mu\u00DF eine Liste sein !\n";
inline constexpr const wchar_t* NthOfOther = L"CLOMAdsLisp::Nth : Parameter mu\u00DF eine Liste sein !\n";
inline constexpr const wchar_t* LengthOfOther =
    L"CLOMAdsLisp::Length : Parameter mu\u00DF eine Liste sein !\n";
inline constexpr const wchar_t* LastOfOther = L"CLOMAdsLisp::Last : Parameter mu\u00DF eine Liste sein !\n";
inline constexpr const wchar_t* AppendOfOther = L"CLOMAdsLisp::Append : keine Liste !\n";  // alone
inline constexpr const wchar_t* ReverseOfOther =
    L"CLOMAdsLisp::Reverse : Parameter mu\u00DF eine Liste sein !\n";  // alone

// The members.
inline constexpr const wchar_t* MemberCarOfNil = L"CLOMAdsLispVar::Car : nil !\n";
inline constexpr const wchar_t* MemberCarOfAtom = L"CLOMAdsLispVar::Car : Keine Liste !\n";
inline constexpr const wchar_t* MemberCdrOfAtom = L"CLOMAdsLispVar::Cdr : Keine Liste !\n";
// The value follows these two; the second takes the position and the length.
inline constexpr const wchar_t* MemberNthOfOther = L"CLOMAdsLispVar::Nth : Keine Liste !\n";
inline constexpr const wchar_t* MemberNthBehindEnd =
    L"CLOMAdsLispVar::Nth : Zuwenig Elemente ( %d >= %d) !\n";
// Takes the name of the function.
inline constexpr const wchar_t* MemberLengthOfOther = L"%s: Keine Liste !\n";
inline constexpr const wchar_t* MemberLastOfNil = L"CLOMAdsLispVar::Last : nil !\n";
inline constexpr const wchar_t* MemberLastOfOther = L"CLOMAdsLispVar::Last : Keine Liste !\n";
inline constexpr const wchar_t* MemberAppendOfOther = L"CLOMAdsLispVar::Append : Keine Liste !\n";
inline constexpr const wchar_t* MemberReverseOfOther = L"CLOMAdsLispVar::Reverse : Keine Liste !\n";
inline constexpr const wchar_t* RplaCaOfOther = L"CLOMAdsLispVar::RplaCa : Keine oder leere Liste !\n";
inline constexpr const wchar_t* RplaCdOfOther = L"CLOMAdsLispVar::RplaCd : Keine oder leere Liste !\n";
inline constexpr const wchar_t* SortOfOther =
    L"CLOMAdsLispVar::Sort : Keine Liste aus Atomen oder Assoziativ-Liste!\n";

// Editing.
inline constexpr const wchar_t* AddNthOfOther = L"CLOMAdsLisp::AddNth :  Keine Liste !\n";
inline constexpr const wchar_t* AddNthBehindEnd = L"CLOMAdsLisp::AddNth : Liste hat zuwenig Elemente !\n";
inline constexpr const wchar_t* DeleteNthOfOther = L"CLOMAdsLisp::DeleteNth :  Keine Liste !\n";
inline constexpr const wchar_t* DeleteNthBehindEnd =
    L"CLOMAdsLisp::DeleteNth : Liste hat zuwenig Elemente !\n";
inline constexpr const wchar_t* SubstNthOfOther = L"CLOMAdsLisp::SubstNth :  Keine Liste !\n";
inline constexpr const wchar_t* SubstNthBehindEnd = L"CLOMAdsLisp::SubstNth : Liste hat zuwenig Elemente !\n";
inline constexpr const wchar_t* SubstOfOther = L"CLOMAdsLisp::Subst :  Keine Liste !\n";  // Delete too

// Search. The list follows AssocOfOther and IndexOfOther, which takes the name of the function.
inline constexpr const wchar_t* AssocOfOther = L"CLOMAdsLisp::Assoc : keine Assoziativ-Liste : ";
inline constexpr const wchar_t* MemberOfOther =
    L"CLOMAdsLisp::Member : Parameter \"List\" mu\u00DF eine Liste sein !\n";
inline constexpr const wchar_t* PositionOfOther = L"CLOMAdsLisp::Position :  Keine Liste !\n";
inline constexpr const wchar_t* IndexOfOther = L"%s: keine Assoziativ-Liste !\n";

// Inheritance.
inline constexpr const wchar_t* InheritOfOther = L"CLOMAdsLisp::Inherit : keine Assoziations-Liste !\n";
inline constexpr const wchar_t* InheritanceStatusOfOther =
    L"CLOMAdsLisp::InheritanceStatus : keine Assoziations-Liste !\n";

// Texts.
inline constexpr const wchar_t* ReadOfOther = L"CLOMAdsLisp::Read : Parameter ist nicht vom Typ String !\n";
inline constexpr const wchar_t* StrCaseOfOther =
    L"CLOMAdsLisp::StrCase : Parameter ist nicht vom Typ String !\n";

}  // namespace lomlisp::messages
