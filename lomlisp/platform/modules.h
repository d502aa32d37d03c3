// What client modules ask of the platform beyond ads.h: the library itself calls none of it, so a
// platform of one's own need not have it. With LOMLISP_HOST_SDK it is the real host's.
//
// All functions are called from one thread, the one that runs LISP.
#pragma once

#include <lomlisp/platform/ads.h>

#ifndef LOMLISP_HOST_SDK

// --- Selection sets ---
//
// A set's name comes from acedSSGet or acedSSAdd and is good until acedSSFree, or until another drawing
// is opened. Only so many sets can be had at a time.

int acedSSLength(const ads_name set, int32_t* length);
// The name of the entity at a position, from 0. RTERROR beyond the end.
int acedSSName(const ads_name set, int32_t position, ads_name entity);
// Adds an entity and gives the set. A null set is a new one; with a null entity it stays empty. An entity
// that is in the set already stays where it is.
int acedSSAdd(const ads_name entity, const ads_name set, ads_name result);
// RTERROR when the entity is not in the set.
int acedSSDel(const ads_name entity, const ads_name set);
// RTNORM when the entity is in the set, otherwise RTERROR.
int acedSSMemb(const ads_name entity, const ads_name set);
int acedSSFree(const ads_name set);

// --- Tables: "LAYER", "LTYPE", "STYLE", "BLOCK", "APPID", "DIMSTYLE", "UCS", "VIEW", "VPORT" ---
//
// Names without regard to case. A chain that is given is the caller's, who releases it.

// The groups of an entry, without its names and owners; of a block with -2, its first entity. Null when
// there is none. With `setNext` acdbTblNext goes on behind it.
resbuf* acdbTblSearch(const ACHAR* table, const ACHAR* name, int setNext);
// The next entry, the first one when `rewind` is not 0; null at the end. Blocks without the spaces.
resbuf* acdbTblNext(const ACHAR* table, int rewind);
// The entity name of an entry; of a block the one of its BLOCK.
int acdbTblObjName(const ACHAR* table, const ACHAR* name, ads_name object);
// Registers an application for extended data. RTERROR for one that is registered, and for a bad name.
int acdbRegApp(const ACHAR* application);

// The entity name that belongs to a handle, a text of hexadecimal digits.
int acdbHandEnt(const ACHAR* handle, ads_name object);

#endif
