// What client modules ask of the platform beyond ads.h: the library itself calls none of it, so a
// platform of one's own need not have it. With LOMLISP_HOST_SDK it is the real host's.
//
// All functions are called from one thread, the one that runs LISP.
#pragma once

#include <lomlisp/platform/ads.h>

#ifdef LOMLISP_HOST_SDK

#include LOMLISP_HOST_MODULE_HEADER

#else

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

// The entity name that belongs to a handle, a text of hexadecimal digits. That of an erased entity too, which
// acdbEntDel restores by it.
int acdbHandEnt(const ACHAR* handle, ads_name object);

// --- Questions to the user ---
//
// They give RTNORM, RTNONE for an empty answer, RTKWORD for a keyword, RTCAN when the user cancels, or
// RTERROR. An answer that cannot be taken is refused on the command line, and the user is asked again. Only
// with RTNORM is the result set. A prompt may be null. Texts have at most 132 characters and a NUL: what is
// longer is cut.

// What the next of the questions below takes; of acedEntSel, and of acedSSGet where it asks, the keywords
// alone, and of acedGetString nothing.
// `flags` is a sum of 1: an empty answer is refused, 2: so is zero, 4: so are negative numbers, 128: what is
// no answer else is given as a keyword, and with 1 an empty text too. The others (8: points beyond the
// limits, 32: dashed rubber bands, 64: distances in the plane) change nothing in the embedded host.
// `keywords` are separated by blanks and may be null; the upper case of each, as in "Yes eXit", or what
// follows a comma, as in "LTYPE,LT", is enough to type.
int acedInitGet(int flags, const ACHAR* keywords);
// The whole keyword, or the text, that was the last RTKWORD.
int acedGetInput(ACHAR* result);

// `result` has room for 133 characters. An empty answer is RTNORM. Without `allowBlanks` the text ends at the
// first blank.
int acedGetString(int allowBlanks, const ACHAR* prompt, ACHAR* result);
// One of acedInitGet's keywords, with RTNORM; RTERROR when there are none. `result` as for acedGetString.
int acedGetKword(const ACHAR* prompt, ACHAR* result);
// From -32768 to 32767.
int acedGetInt(const ACHAR* prompt, int* result);
int acedGetReal(const ACHAR* prompt, ads_real* result);
// A number or a second point; with a null base the user may show both points.
int acedGetDist(const ads_point base, const ACHAR* prompt, ads_real* result);
// The same: typed in degrees, given in radians. 4 of acedInitGet does not count.
int acedGetAngle(const ads_point base, const ACHAR* prompt, ads_real* result);
// "1,2", "1,2,3", "5<30", and with a @ from the last point. The base, which may be null, is where a rubber
// band begins. 2 and 4 of acedInitGet do not count.
int acedGetPoint(const ads_point base, const ACHAR* prompt, ads_point result);
// The corner of a rectangle from the base on, in the plane of the current elevation.
int acedGetCorner(const ads_point base, const ACHAR* prompt, ads_point result);

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
