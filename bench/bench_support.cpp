// Growth benchmark: appends to mvector, mstring and the string stream must scale linearly.
#include <stdio.h>

#include <chrono>

#include "util.h"

template <class F>
static double seconds(F f) {
  auto t0 = std::chrono::steady_clock::now();
  f();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
}

static void vectorPushes(int n) {
  mvector<int> v;
  for (int i = 0; i < n; i++) v.push_back(i);
  if (v.size() != (unsigned)n) printf("wrong size\n");
}

static void stringAppends(int n) {
  mstring s;
  for (int i = 0; i < n; i++) s += "abc";
  if (s.size() != 3u * n) printf("wrong size\n");
}

static void streamAppends(int n) {
  HIOutStream os(IOutStream::createStrStream(mstring()));
  for (int i = 0; i < n; i++) *os.get() << "abc" << i;
  if (os.get()->retstr().empty()) printf("empty\n");
}

int main() {
  struct Case {
    const char* name;
    void (*run)(int);
  } cases[] = {{"mvector push_back", vectorPushes},
               {"mstring append", stringAppends},
               {"string stream append", streamAppends}};
  printf("%-22s %12s %12s %8s\n", "operation", "1e5 (s)", "1e6 (s)", "ratio");
  for (const Case& c : cases) {
    c.run(100000);  // warm up the allocator
    double small = seconds([&] { c.run(100000); });
    double large = seconds([&] { c.run(1000000); });
    printf("%-22s %12.6f %12.6f %8.1f\n", c.name, small, large, large / small);
  }
  return 0;
}
