// What the test asks the modules to do, each with its own view of the library.
#pragma once

#include <lomlisp/lomlisp.h>

namespace lomlisp::test {

class SharingModule {
 public:
  virtual ~SharingModule() = default;

  virtual const CLOMAdsLispVar* Nil() const = 0;
  virtual const wchar_t** ReadPosition() const = 0;
  virtual const void* FallbackRecord() const = 0;
  virtual unsigned long* DebugIndentation() const = 0;

  virtual void Make(CLOMAdsLispVar& value) const = 0;
  virtual void Change(CLOMAdsLispVar& value) const = 0;
  virtual CLOMAdsLispVar* New() const = 0;
  virtual void Destroy(CLOMAdsLispVar* value) const = 0;

  virtual resbuf* NewChain() const = 0;
  virtual void Release(resbuf* chain) const = 0;

  virtual void Throw() const = 0;
};

}  // namespace lomlisp::test
