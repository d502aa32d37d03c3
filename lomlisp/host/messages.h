// What the host functions print on the command line.
#pragma once

namespace lomlisp::messages {

inline constexpr const wchar_t* GetSymNoName = L"CLOMAdsLisp::GetSym : Parameter ist kein String !\n";
inline constexpr const wchar_t* PutSymNoName = L"CLOMAdsLisp::PutSym : Parameter ist kein String !\n";
inline constexpr const wchar_t* GetVarNoName = L"CLOMAdsLisp::GetVar : Parameter ist kein String !\n";
inline constexpr const wchar_t* SetVarNoName = L"CLOMAdsLisp::SetVar : Parameter ist kein String !\n";

// Take the name.
inline constexpr const wchar_t* PutSymRefused =
    L"\nLOM_LispVariable::PutSym : Kann Variable \"%s\" nicht setzen !";
inline constexpr const wchar_t* SetVarPointRefused =
    L"CLOMAdsLispVar::SetVar : Kann Variable \"%s\" nicht setzen !\n";
// The value and SetVarAtomRefusedEnd follow.
inline constexpr const wchar_t* SetVarAtomRefused =
    L"CLOMAdsLispVar::SetVar : Kann Variable \"%s\" nicht setzen ( ";
inline constexpr const wchar_t* SetVarAtomRefusedEnd = L" ) !\n";

inline constexpr const wchar_t* SetVarNoAtom = L"CLOMAdsLispVar::SetVar : Wert ist kein Atom !\n";

inline constexpr const wchar_t* EntDelNoName = L"CLOMAdsLisp::EntDel : Parameter ist kein Entity-Name!\n";
inline constexpr const wchar_t* EntGetNoName = L"CLOMAdsLisp::EntGet : Parameter ist kein Entity-Name!\n";
inline constexpr const wchar_t* EntLastFailed = L"CLOMAdsLisp::EntLast : ads_entlast meldet Fehler !\n";
inline constexpr const wchar_t* EntNextNoName = L"CLOMAdsLisp::EntNext : Parameter ist kein Entity-Name!\n";
inline constexpr const wchar_t* EntSelNoPrompt = L"CLOMAdsLisp::EntSel : Parameter ist kein String !\n";
inline constexpr const wchar_t* EntUpdNoName = L"CLOMAdsLisp::EntUpd : Parameter ist kein Entity-Name!\n";

}  // namespace lomlisp::messages
