// Stand-in: the records.
#pragma once

#ifndef _WIN32
#include <cstdint>
#define __int64 long long
#endif

typedef wchar_t ACHAR;

#define TRUE 1
#define FALSE 0
#define GOOD 0
#define BAD 1

typedef double ads_real;
typedef ads_real ads_point[3];
typedef ads_real ads_matrix[4][4];
typedef __int64 ads_name[2];
typedef struct resbuf ads_rb;

enum { X = 0, Y = 1, Z = 2, T = 3 };

#define ads_point_set(from, to) (*(to) = *(from), (to)[1] = (from)[1], (to)[2] = (from)[2])
#define ads_name_set(from, to) (*(to) = *(from), (to)[1] = (from)[1])
#define ads_name_nil(name) ((name)[0] == 0)
#define ads_name_equal(a, b) ((a)[0] == (b)[0] && (a)[1] == (b)[1])

struct ads_binary {
  short clen;
  char* buf;
};

union ads_u_val {
  ads_real rreal;
  ads_real rpoint[3];
  short rint;
  ACHAR* rstring;
  __int64 rlname[2];
#ifdef _WIN32
  long rlong;
#else
  std::int32_t rlong;
#endif
  __int64 mnInt64;
  struct ads_binary rbinary;
};

struct resbuf {
  struct resbuf* rbnext;
  short restype;
  union ads_u_val resval;
};
