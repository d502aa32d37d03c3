// What the conversions print on the command line.
#pragma once

namespace lomlisp::messages {

// Takes the type; InvalidTypeReason follows.
inline constexpr const wchar_t* InvalidType = L"LispVar::ADSToLisp : invalid type Nr. %d in resbuf\n";
inline constexpr const wchar_t* InvalidTypeReason =
    L"                     as a result of the nontransparent interface\n";
inline constexpr const wchar_t* RecordsLeftOver = L"ListVar::ADSToLisp: malformed ADS-Liste\n";

inline constexpr const wchar_t* UnsupportedAtom =
    L"CLOMAdsLispVar::LispToXData : Nicht unterstuetztes Atom !\n";
inline constexpr const wchar_t* DottedPair =
    L"LispVaribale::LispToXData : Dotted Pairs werden nicht unterstuetzt !\n";
inline constexpr const wchar_t* GroupsLeftOver = L"ListVar::XDataToLisp: ADS-Liste war nicht wohlgeformt\n";

}  // namespace lomlisp::messages
