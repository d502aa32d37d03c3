// The chain of an entity that has groups of every kind: what the measurements of conversions read and write.
#pragma once

#include <lomlisp/platform/ads.h>

// Groups 0, 8, 10, 40, 62, 330 in turn, and from six sevenths on extended data: -3, 1001 and 1000 groups. The
// records and texts come from the platform's heap, and are the caller's.
resbuf* NewEntityChain(int groups);
