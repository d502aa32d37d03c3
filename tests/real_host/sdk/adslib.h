// Stand-in: the functions for client modules.
#pragma once

#include <adscodes.h>
#include <adsdef.h>

#include <stddef.h>
#include <stdlib.h>

#ifdef _WIN32
// Whoever wants MFC has it in front of everything else.
#include <windows.h>
typedef int AdsInt32;
#else
typedef std::int32_t AdsInt32;
#endif

#define acad_malloc(size) malloc(size)
#define acad_realloc(block, size) realloc(block, size)
#define acad_free(block) free(block)

struct resbuf* acedGetArgs(void);
int acedRetList(const struct resbuf* rbuf);
int acedRetVal(const struct resbuf* rbuf);
int acedRetNil(void);
int acedRetT(void);
int acedRetVoid(void);
int acedRetInt(int ival);
int acedRetReal(ads_real rval);
int acedRetStr(const ACHAR* s);
int acedRetPoint(const ads_point pt);
int acedRetName(const ads_name aname, int type);

int acedDefun(const ACHAR* sname, short funcno);
int acedUndef(const ACHAR* sname, short funcno);
int acedRegFunc(int (*fhdl)(void), int fcode);
int acedGetFunCode(void);

int acedGetSym(const ACHAR* sname, struct resbuf** value);
int acedPutSym(const ACHAR* sname, struct resbuf* value);
int acedGetVar(const ACHAR* sym, struct resbuf* result);
int acedSetVar(const ACHAR* sym, const struct resbuf* val);

int acedInitGet(int val, const ACHAR* kwl);
int acedGetInput(ACHAR* str);
int acedGetInt(const ACHAR* prompt, int* result);
int acedGetReal(const ACHAR* prompt, ads_real* result);
int acedGetString(int cronly, const ACHAR* prompt, ACHAR* result);
int acedGetKword(const ACHAR* prompt, ACHAR* result);
int acedGetDist(const ads_point pt, const ACHAR* prompt, ads_real* result);
int acedGetAngle(const ads_point pt, const ACHAR* prompt, ads_real* result);
int acedGetPoint(const ads_point pt, const ACHAR* prompt, ads_point result);
int acedGetCorner(const ads_point pt, const ACHAR* prompt, ads_point result);

int acedEntSel(const ACHAR* str, ads_name entres, ads_point ptres);
int acedSSGet(const ACHAR* str, const void* pt1, const void* pt2, const struct resbuf* filter, ads_name ss);
int acedSSLength(const ads_name sname, AdsInt32* len);
int acedSSName(const ads_name ss, AdsInt32 i, ads_name entres);
int acedSSAdd(const ads_name ename, const ads_name sname, ads_name result);
int acedSSDel(const ads_name ename, const ads_name ss);
int acedSSMemb(const ads_name ename, const ads_name ss);
int acedSSFree(const ads_name sname);

int acdbEntDel(const ads_name ent);
struct resbuf* acdbEntGet(const ads_name ent);
struct resbuf* acdbEntGetX(const ads_name ent, const struct resbuf* args);
int acdbEntLast(ads_name result);
int acdbEntMake(const struct resbuf* ent);
int acdbEntMod(const struct resbuf* ent);
int acdbEntNext(const ads_name ent, ads_name result);
int acdbEntUpd(const ads_name ent);
int acdbHandEnt(const ACHAR* handle, ads_name entres);
int acdbRegApp(const ACHAR* appname);
struct resbuf* acdbTblSearch(const ACHAR* tblname, const ACHAR* sym, int setnext);
struct resbuf* acdbTblNext(const ACHAR* tblname, int rewind);
int acdbTblObjName(const ACHAR* tblname, const ACHAR* sym, ads_name objid);

struct resbuf* acutNewRb(int v);
int acutRelRb(struct resbuf* rb);
struct resbuf* acutBuildList(int rtype, ...);
int acutPrintf(const ACHAR* format, ...);
