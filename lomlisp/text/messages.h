// What reading text prints on the command line.
#pragma once

namespace lomlisp::messages {

inline constexpr const wchar_t* TokenTooLong = L"CLOMAdsLispVar::Read : Wert zu lang ( > 100 Zeichen ) !\n";
// Takes the whole text.
inline constexpr const wchar_t* TextMalformed = L"LispVar::Read : String \"%s\" war nicht wohlgeformt\n";

}  // namespace lomlisp::messages
