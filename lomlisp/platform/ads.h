// The platform seam: the records that travel between LISP and compiled modules, their type and
// status codes, and the functions that a platform must provide.
//
// The library calls nothing else of the platform. Everything here is resolved by the linker, so
// the real host, the embedded host and a test's own double are interchangeable. With
// LOMLISP_HOST_SDK the real host's own declarations are used instead of the ones below.
//
// All functions are called from one thread, the one that runs LISP.
#pragma once

#ifdef LOMLISP_HOST_SDK

// MFC must be in front of whatever includes <windows.h>, as the real host's headers may.
#include <lomlisp/platform/mfc.h>

#include LOMLISP_HOST_HEADER

#else

#include <cstddef>
#include <cstdint>

// int64_t is `long` on some systems and would collide with the `long` overloads.
#if !defined(_MSC_VER) && !defined(__int64)
#define __int64 long long
#endif

using ACHAR = wchar_t;
using ads_real = double;
using ads_point = ads_real[3];
using ads_name = __int64[2];

union ads_u_val {
  ads_real rreal;
  ads_real rpoint[3];
  short rint;
  ACHAR* rstring;
  __int64 rlname[2];
  int32_t rlong;
  __int64 mnInt64;
};

// One link of a chain. A null `rbnext` ends the chain.
struct resbuf {
  resbuf* rbnext;
  short restype;
  ads_u_val resval;
};

// Result types: what `restype` says about `resval`. Every other value is a DXF group code or
// unknown.
constexpr short RTNONE = 5000;     // no value
constexpr short RTREAL = 5001;     // rreal
constexpr short RTPOINT = 5002;    // rpoint, two coordinates
constexpr short RTSHORT = 5003;    // rint
constexpr short RTANG = 5004;      // rreal, an angle
constexpr short RTSTR = 5005;      // rstring
constexpr short RTENAME = 5006;    // rlname, an entity
constexpr short RTPICKS = 5007;    // rlname, a selection set
constexpr short RTORINT = 5008;    // rreal, an orientation
constexpr short RT3DPOINT = 5009;  // rpoint
constexpr short RTLONG = 5010;     // rlong
constexpr short RTVOID = 5014;     // no value
constexpr short RTLB = 5016;       // a list begins
constexpr short RTLE = 5017;       // a list ends
constexpr short RTDOTE = 5018;     // the dot of a dotted pair
constexpr short RTNIL = 5019;      // nil
constexpr short RTDXF0 = 5020;     // rstring, DXF group 0
constexpr short RTT = 5021;        // T
constexpr short RTINT64 = 5031;    // mnInt64

// Status codes. Only RTNORM is success.
constexpr int RTNORM = 5100;
constexpr int RTERROR = -5001;
constexpr int RTCAN = -5002;
constexpr int RTREJ = -5003;
constexpr int RTFAIL = -5004;
constexpr int RTKWORD = -5005;

// --- Arguments and results of the LISP function that is being called ---

// The arguments as one chain, null when there are none. The platform owns it.
resbuf* acedGetArgs();
// Returns a list whose members are the chain's items; null gives nil. The chain stays the caller's.
int acedRetList(const resbuf* chain);
// Returns the value of one record. The record stays the caller's.
int acedRetVal(const resbuf* record);

// --- LISP symbols and system variables ---

// Gives a fresh chain, which the caller releases.
int acedGetSym(const ACHAR* name, resbuf** chain);
// Stores a copy of the chain.
int acedPutSym(const ACHAR* name, resbuf* chain);
// Fills the caller's record; a text in it comes from acad_malloc and is the caller's.
int acedGetVar(const ACHAR* name, resbuf* record);
// Stores a copy of the record's value.
int acedSetVar(const ACHAR* name, const resbuf* record);

// --- Entities and selection sets ---

int acdbEntDel(const ads_name name);
// The entity as a chain of DXF groups, which the caller releases; `applications` may be null.
resbuf* acdbEntGetX(const ads_name name, const resbuf* applications);
int acdbEntLast(ads_name name);
int acdbEntMake(const resbuf* groups);
int acdbEntMod(const resbuf* groups);
int acdbEntNext(const ads_name name, ads_name next);
int acdbEntUpd(const ads_name name);
int acedEntSel(const ACHAR* prompt, ads_name name, ads_point picked);
int acedSSGet(const ACHAR* mode, const void* first, const void* second, const resbuf* filter, ads_name set);

// --- Records, memory, the command line ---

// A record of that type with a cleared value, or null.
resbuf* acutNewRb(int type);
// Releases a chain with its texts.
int acutRelRb(resbuf* chain);
// A chain from pairs of type and value, ended by a type of 0; null on failure.
resbuf* acutBuildList(int type, ...);
// Prints on the command line. `%s` takes wide text, `%ld` and `%lx` print 32 bits, `%I64i` 64.
int acutPrintf(const ACHAR* format, ...);

// The platform's heap: records and their texts cross module borders only through these.
void* acad_malloc(size_t size);
void acad_free(void* block);

#endif
