// Compile arenas, and the allocation functions of the whole compiler: memory
// that never returns null, from the thread's open arena when there is one.
#include "arena.h"

#include <stdint.h>
#include <stdlib.h>

#include <new>

#include "ierrrep.h"

#ifndef ZKT_PLAIN_ALLOC

#include <sys/mman.h>

namespace {

const size_t kPage = 4096;
const size_t kHugePage = (size_t)2 << 20;
const size_t kCommitStep = (size_t)4 << 20;  // address space is made usable this much at a time
const size_t kSmallMax = (size_t)64 << 10;   // a larger request gets pages of its own
const size_t kLargeHead = 16;                // in front of a large block: its size, keeping new's alignment
// What an arena tries to reserve, largest first; each is only address space until used.
const size_t kReserve[] = {(size_t)64 << 30, (size_t)16 << 30, (size_t)4 << 30, (size_t)1 << 30,
                           (size_t)256 << 20};

// Classes 1..256 step by 16 bytes up to 4 KiB; above that each doubling has
// eight classes, so a request gets at most an eighth more than it asked for.
const int kClasses = 289;

int classOf(size_t n) {
  if (n <= 4096) return (int)((n + 15) >> 4);
  const int bits = 64 - __builtin_clzll((unsigned long long)(n - 1));  // 13..16
  return 256 + (bits - 13) * 8 + (int)(((n - 1) - ((size_t)1 << (bits - 1))) >> (bits - 4)) + 1;
}

size_t classSize(int c) {
  if (c <= 256) return (size_t)c << 4;
  const int bits = 13 + (c - 257) / 8;
  return ((size_t)1 << (bits - 1)) + (size_t)((c - 257) % 8 + 1) * ((size_t)1 << (bits - 4));
}

size_t roundUp(size_t n, size_t step) { return (n + step - 1) / step * step; }

// One reserved range: small blocks are carved upwards from its start, large
// ones downwards from its end. A freed small block waits on the list of its
// class; a freed large one gives its pages back to the system, and its
// addresses are not used again.
class Arena {
public:
  Arena* prev = nullptr;
  bool overflowed = false;  // some block of this compile came from the system

  // False when no range could be reserved.
  bool reserve() {
    for (size_t size : kReserve) {
      // One huge page more, so that the small blocks start on a huge page.
      void* m = mmap(nullptr, size + kHugePage, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
      if (m == MAP_FAILED) continue;
      m_map = static_cast<char*>(m);
      m_base = m_map + (roundUp((uintptr_t)m_map, kHugePage) - (uintptr_t)m_map);
      m_size = size;
      m_low = m_lowReady = m_base;
      m_high = m_highReady = m_base + size;
      return true;
    }
    return false;
  }

  ~Arena() {
    if (m_map != nullptr) munmap(m_map, m_size + kHugePage);
  }

  bool holds(const void* p) const { return (uintptr_t)p - (uintptr_t)m_base < m_size; }

  // Null when the range is full: the system serves the request then. A
  // block from the list of its class is the common case, and is inline.
  __attribute__((always_inline)) void* take(size_t n) {
    if (n > kSmallMax) return takeLarge(n);
    const int c = classOf(n != 0 ? n : 1);
    if (void* f = m_free[c]) {
      m_free[c] = *static_cast<void**>(f);
      return f;
    }
    return carve(classSize(c));
  }

  // p is held by this arena; n is its size, or 0 when not known.
  __attribute__((always_inline)) void give(void* p, size_t n) {
    if (p >= m_high) {
      char* head = static_cast<char*>(p) - kLargeHead;
      (void)madvise(head, *reinterpret_cast<size_t*>(head), MADV_DONTNEED);
      return;
    }
    if (n == 0) return;  // size not known: the block waits for the close
    const int c = classOf(n);
    *static_cast<void**>(p) = m_free[c];
    m_free[c] = p;
  }

private:
  char* m_map = nullptr;  // the whole reservation
  char* m_base = nullptr;  // its first huge page
  size_t m_size = 0;
  char* m_low;        // small blocks end here
  char* m_lowReady;   // [m_base, m_lowReady) is usable
  char* m_high;       // large blocks start here
  char* m_highReady;  // [m_highReady, m_base + m_size) is usable
  void* m_free[kClasses] = {};

  __attribute__((noinline)) void* carve(size_t size) {
    if (size > (size_t)(m_high - m_low)) return nullptr;
    if (m_low + size > m_lowReady && !readyLow(m_low + size)) return nullptr;
    void* r = m_low;
    m_low += size;
    return r;
  }

  // The small blocks ask for huge pages where the system gives them: a
  // compile fills its memory densely, and one fault then serves 2 MiB.
  bool readyLow(char* end) {
    char* to = m_base + roundUp((size_t)(end - m_base), kCommitStep);
    if (to > m_base + m_size) to = m_base + m_size;
    if (mprotect(m_lowReady, (size_t)(to - m_lowReady), PROT_READ | PROT_WRITE) != 0) return false;
    (void)madvise(m_lowReady, (size_t)(to - m_lowReady), MADV_HUGEPAGE);
    m_lowReady = to;
    return true;
  }

  __attribute__((noinline)) void* takeLarge(size_t n) {
    if (n > m_size) return nullptr;
    const size_t size = roundUp(n + kLargeHead, kPage);
    if (size > (size_t)(m_high - m_low)) return nullptr;
    char* head = m_high - size;
    if (head < m_highReady) {
      const size_t below = (size_t)(head - m_base) / kCommitStep * kCommitStep;
      char* from = m_base + below;
      if (mprotect(from, (size_t)(m_highReady - from), PROT_READ | PROT_WRITE) != 0) return nullptr;
      m_highReady = from;
    }
    m_high = head;
    *reinterpret_cast<size_t*>(head) = size;
    return head + kLargeHead;
  }
};

// Plain data, so that reaching it costs no initialisation check.
struct ThreadArena {
  Arena* open;
  bool outside;
};
thread_local ThreadArena t_arena __attribute__((tls_model("initial-exec")));

Arena* holder(const void* p) {
  for (Arena* a = t_arena.open; a != nullptr; a = a->prev)
    if (a->holds(p)) return a;
  return nullptr;
}

__attribute__((always_inline)) inline void* allocate(size_t n) {
  Arena* a = t_arena.open;
  if (a != nullptr && !t_arena.outside) {
    if (void* p = a->take(n)) return p;
    a->overflowed = true;  // its range is full: the system serves the rest
  }
  return malloc(n);
}

__attribute__((always_inline)) inline void release(void* p, size_t n) {
  if (Arena* a = holder(p)) a->give(p, n);
  else free(p);
}

}  // namespace

CompileArena::CompileArena() : m_impl(nullptr) {
  void* room = malloc(sizeof(Arena));
  if (room == nullptr) return;
  Arena* a = new (room) Arena();
  if (!a->reserve()) {
    a->~Arena();
    free(room);
    return;
  }
  a->prev = t_arena.open;
  t_arena.open = a;
  m_impl = a;
}

CompileArena::~CompileArena() {
  Arena* a = static_cast<Arena*>(m_impl);
  if (a == nullptr) return;
  t_arena.open = a->prev;
  a->~Arena();
  free(a);
}

bool CompileArena::reclaims() const {
  return m_impl != nullptr && !static_cast<const Arena*>(m_impl)->overflowed;
}

bool CompileArena::holds(const void* p) { return holder(p) != nullptr; }

CompileArena::Outside::Outside() : m_wasOutside(t_arena.outside) { t_arena.outside = true; }
CompileArena::Outside::~Outside() { t_arena.outside = m_wasOutside; }

#else  // ZKT_PLAIN_ALLOC

namespace {
inline void* allocate(size_t n) { return malloc(n); }
inline void release(void* p, size_t) { free(p); }
}  // namespace

CompileArena::CompileArena() : m_impl(nullptr) {}
CompileArena::~CompileArena() {}
bool CompileArena::reclaims() const { return m_impl != nullptr; }  // never set here
bool CompileArena::holds(const void*) { return false; }
CompileArena::Outside::Outside() : m_wasOutside(false) {}
CompileArena::Outside::~Outside() { (void)m_wasOutside; }

#endif

// An allocation never returns null: exhaustion ends the process.
void* operator new(size_t sz) {
  void* p = allocate(sz);
  if (p == nullptr && sz != 0) IErrReporter::panic("insufficient memory new", true);
  return p;
}

void* operator new[](size_t sz) {
  void* p = allocate(sz);
  if (p == nullptr && sz != 0) IErrReporter::panic("insufficient memory new[]", true);
  return p;
}

void operator delete(void* p) noexcept { release(p, 0); }
void operator delete[](void* p) noexcept { release(p, 0); }
void operator delete(void* p, size_t sz) noexcept { release(p, sz); }
void operator delete[](void* p, size_t sz) noexcept { release(p, sz); }
