// A standard heap that has nothing left.
#pragma once

// While one lives, operator new throws std::bad_alloc. The platform's heap goes on.
class ExhaustedHeap {
 public:
  ExhaustedHeap();
  ~ExhaustedHeap();
  ExhaustedHeap(const ExhaustedHeap&) = delete;
  ExhaustedHeap& operator=(const ExhaustedHeap&) = delete;
};
