// The platform of the programs that are compared: records and texts from the standard heap, without the books
// of the embedded host, and one call of a LISP function, (PICK 1 2.5 "text" (1 2 3) 5).
#pragma once

#include <bench/peers/Digest.h>
#include <lomlisp/platform/ads.h>

// The content of a chain: its records' types and values.
Digest DigestOfChain(const resbuf* chain);
// What acedRetList was given last.
const resbuf* Returned();
