// The memory of one compile.
#ifndef ZKTCOMP_ARENA_H
#define ZKTCOMP_ARENA_H

// While an arena is open on a thread, everything that thread allocates with
// new comes from one reserved range of addresses that the arena owns, and
// what is freed goes on a list of its size for the next allocation of that
// size. Closing the arena gives the whole range back at once, so a compile
// need not tear its model down object by object. Arenas nest: closing one
// reopens the one before it.
//
// Nothing allocated while an arena is open may be used after it closes:
// what must live longer (per-thread caches, anything handed to the caller or
// made by the caller's callbacks) is made under Outside.
//
// Builds with ZKT_PLAIN_ALLOC open no arena: every allocation is the
// system's own, where leak and use-after-free checkers see it. Without
// address space to reserve, an arena stays closed the same way.
class CompileArena {
public:
  CompileArena();
  ~CompileArena();
  CompileArena(const CompileArena&) = delete;
  CompileArena& operator=(const CompileArena&) = delete;

  // True when closing this arena frees everything allocated while it was
  // open: false without an arena, and once its range was full and the
  // system served what followed.
  bool reclaims() const;

  // True when an open arena of this thread holds p.
  static bool holds(const void* p);

  // Suspends the thread's arena: allocations go to the system meanwhile.
  class Outside {
  public:
    Outside();
    ~Outside();
    Outside(const Outside&) = delete;
    Outside& operator=(const Outside&) = delete;

  private:
    bool m_wasOutside;
  };

private:
  void* m_impl;
};

#endif
