// The LISP function (PICK a b c d e), which gives (a c e): with the library, and with the platform's
// functions alone, which copy three atoms.
#pragma once

void PickWithLibrary();
void PickByHand();
