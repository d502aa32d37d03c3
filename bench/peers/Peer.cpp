// The program around a peer:
//
//     PEER ROW SIZE
//
// measures once for each line of its input and answers with "<figure> <digest>": nanoseconds for one run, or
// bytes for a row of memory. It lives as long as the row, so that the driver can let the peers take turns,
// and starts anew for the next one, so that no row finds the heap that another one left.

#include <bench/peers/Peer.h>

#include <malloc.h>

#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <limits>
#include <string>

namespace {

double Time(const Workload& work) {
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < work.repeats; ++i) work.run();
  const auto end = std::chrono::steady_clock::now();
  return std::chrono::duration<double, std::nano>(end - begin).count() / work.repeats;
}

double Bytes(const Workload& work) {
  const auto before = static_cast<double>(work.heapBytes());
  work.run();
  return static_cast<double>(work.heapBytes()) - before;
}

void Measure(const Workload& work) {
  if (work.prepare) work.prepare();
  const double figure = work.heapBytes ? Bytes(work) : Time(work);
  std::cout << figure << " " << work.check().Text() << std::endl;
}

// As in a host that has run for hours, and as those with a garbage collector do anyway: memory that was given
// back stays with the process. Otherwise large sizes would measure the system, which hands out pages.
void KeepFreedMemory() {
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
  mallopt(M_MMAP_MAX, 0);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: " << argv[0] << " ROW SIZE\n";
    return 2;
  }
  KeepFreedMemory();
  try {
    std::cout.precision(12);
    const Workload work = MakeWorkload(argv[1], std::stoi(argv[2]));
    for (std::string line; std::getline(std::cin, line);) Measure(work);
  } catch (const std::exception& error) {
    std::cerr << argv[0] << ": " << error.what() << "\n";
    return 1;
  }
}
