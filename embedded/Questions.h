// Questions to the user, for the platform functions and for LISP.
//
// Each takes the next answer, and another one as long as it is refused, which the console says. What
// acedInitGet said (Answers::rules) holds for one question. A typed answer is one line, and blanks around it
// do not count. Nothing limits the length of texts.
#pragma once

#include <embedded/Question.h>

#include <optional>
#include <string>

namespace lomlisp::embedded {

// Enter gives an empty text, and acedInitGet means nothing here. Without blanks the text ends at the first
// one; with them all of the line counts.
Reply<std::wstring> AskText(Host& host, const std::wstring& prompt, bool withBlanks);
// From -32768 to 32767.
Reply<int> AskInteger(Host& host, const std::wstring& prompt);
Reply<double> AskReal(Host& host, const std::wstring& prompt);
// A number, or a second point; without a base a first point is asked for before.
Reply<double> AskDistance(Host& host, const std::wstring& prompt, const std::optional<Point>& base);
// Degrees, or points as for a distance; gives radians from 0 up to a whole turn.
Reply<double> AskAngle(Host& host, const std::wstring& prompt, const std::optional<Point>& base);
// LASTPOINT is the point then.
Reply<Point> AskPoint(Host& host, const std::wstring& prompt);
// The same in the plane of ELEVATION.
Reply<Point> AskCorner(Host& host, const std::wstring& prompt);
// The whole keyword with RTNORM. RTERROR, and nobody is asked, when none was allowed.
Reply<std::wstring> AskKeyword(Host& host, const std::wstring& prompt);

}  // namespace lomlisp::embedded
