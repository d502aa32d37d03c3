// The whole library.
#pragma once

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/resbuf/ADSList.h>
#include <lomlisp/resbuf/ResBuf.h>
