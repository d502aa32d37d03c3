// The drawing of the embedded host, and what the rows of drawings have in common.
#pragma once

#include <bench/peers/Peer.h>
#include <embedded/Host.h>
#include <embedded/drawing/Drawing.h>

// With that many entities; the log off.
lomlisp::embedded::Host& HostWithDrawing(int entities);

// The colours of all entities.
Digest DigestOfColours(const lomlisp::embedded::Drawing& drawing);
// The new colour of the n-th entity in a run; the runs differ, so that there is always something to change.
int NewColour(int position, int run);

// Calls of (PICK 1 2.5 "text" (1 2 3) 5) by the embedded host, which checks and copies arguments and result.
Workload CallsInHost(int calls, void (*pick)());
