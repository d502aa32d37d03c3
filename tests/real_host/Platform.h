// A host in the real one's shape: an entity that is read and changed, and the call of a function.
#pragma once

#include <lomlisp/platform/ads.h>

#include <string>

// What acdbEntGetX gives; who asks owns it.
void SetEntity(resbuf* chain);
// What acdbEntMod was given last, as "8 'Walls', 310 [00FF], 90 ?", and what it answers.
const std::string& Modified();
// What acedGetArgs gives; it stays the caller's.
void SetArguments(resbuf* chain);
// What the function returned, in the same form as above.
const std::string& Returned();

// Records as the host makes them, with texts and buffers of exactly their size.
resbuf* TextGroup(short code, const ACHAR* text, resbuf* next = nullptr);
resbuf* BinaryGroup(short code, const std::string& bytes, resbuf* next = nullptr);
