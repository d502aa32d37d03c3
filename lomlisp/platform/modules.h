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

// --- The LISP functions of a module ---
//
// A module gives its functions codes of its own, from 0. A function is called through the handler of its
// code, or, when there is none, by an invoke message to the module's entry point. It belongs to the module
// that defines it, and goes with it.

// Defines a function, to be called from a message or a function of the module. A name that is defined
// already is defined anew.
int acedDefun(const ACHAR* name, short code);
// RTERROR unless the module defined that name with that code.
int acedUndef(const ACHAR* name, short code);
// The handler of a code. It returns RTNORM, or RTERROR when the call has failed.
int acedRegFunc(int (*handler)(), int code);
// The code of the function that is being called; RTERROR when there is none.
int acedGetFunCode();

// Results, beside acedRetVal and acedRetList of ads.h. A function that returns none gives nil.

// Nothing: LISP sees nil, and the command line does not print it.
int acedRetVoid();
int acedRetNil();
int acedRetT();
int acedRetInt(int value);
int acedRetReal(ads_real value);
int acedRetStr(const ACHAR* text);
int acedRetPoint(const ads_point point);
// `type` is RTENAME for an entity and RTPICKS for a selection set.
int acedRetName(const ads_name name, int type);

// --- The entry point of a module ---

namespace AcRx {

enum AppMsgCode {
  kNullMsg = 0,
  kInitAppMsg = 1,    // the module was loaded
  kUnloadAppMsg = 2,  // the module is about to be unloaded
  kLoadDwgMsg = 3,    // a drawing is open: functions are defined now
  kUnloadDwgMsg = 4,  // the drawing is about to be closed
  kInvkSubrMsg = 5,   // a function without a handler is called: acedGetFunCode tells which
};

enum AppRetCode { kRetOK = 0, kRetError = 3 };

}  // namespace AcRx

// Written by the module, under exactly this name. `packet` stands for the module in the calls below.
// kRetError in answer to kInitAppMsg or kLoadDwgMsg refuses to be loaded, in answer to kInvkSubrMsg fails
// the call.
extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet);

// Allows the module to be unloaded, which at first it is not.
bool acrxUnlockApplication(void* packet);
// Says that the module can work on more than one drawing.
bool acrxRegisterAppMDIAware(void* packet);

#endif
