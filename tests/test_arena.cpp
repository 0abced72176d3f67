// Compile arenas: reuse by size, the system's blocks left to the system, large blocks, nesting and the close.
#include <gtest/gtest.h>

#include <string.h>

#include <new>

#include "arena.h"

namespace {

// Builds without arenas (sanitizers, fuzzing) have nothing to check here.
#define NEED_ARENA(a) \
  if (!(a).reclaims()) GTEST_SKIP() << "no compile arena in this build"

TEST(Arena, FreedBlocksServeTheNextRequestOfTheirSize) {
  CompileArena arena;
  NEED_ARENA(arena);
  void* a = ::operator new(100);
  EXPECT_TRUE(CompileArena::holds(a));
  ::operator delete(a, 100);
  EXPECT_EQ(::operator new(97), a);  // 97 and 100 bytes share a class
  void* b = ::operator new(5000);
  ::operator delete(b, 5000);
  EXPECT_NE(::operator new(100), b);
  EXPECT_EQ(::operator new(4700), b);
}

TEST(Arena, OutsideBlocksAreTheSystemsEvenWhenFreedInside) {
  void* before = ::operator new(64);
  CompileArena arena;
  NEED_ARENA(arena);
  char* kept;
  {
    CompileArena::Outside keep;
    kept = new char[32];
  }
  EXPECT_FALSE(CompileArena::holds(before));
  EXPECT_FALSE(CompileArena::holds(kept));
  ::operator delete(before, 64);  // to the system, not to a list of the arena
  void* next = ::operator new(64);
  EXPECT_NE(next, before);
  EXPECT_TRUE(CompileArena::holds(next));
  delete[] kept;
}

TEST(Arena, LargeBlocksAreWholeAndGoBackWithoutTheirSize) {
  CompileArena arena;
  NEED_ARENA(arena);
  const size_t n = (size_t)3 << 20;
  char* big = static_cast<char*>(::operator new(n));
  ASSERT_TRUE(CompileArena::holds(big));
  EXPECT_EQ((uintptr_t)big % alignof(std::max_align_t), 0u);
  memset(big, 0x5a, n);
  EXPECT_EQ(big[n - 1], 0x5a);
  char* second = static_cast<char*>(::operator new(70000));
  EXPECT_TRUE(second + 70000 <= big || second >= big + n);
  ::operator delete(big);  // no size: a large block knows its own
  ::operator delete(second, 70000);
  void* small = ::operator new(16);
  EXPECT_TRUE(CompileArena::holds(small));
}

TEST(Arena, NestedArenasAndTheClose) {
  void* fromOuter;
  {
    CompileArena outer;
    NEED_ARENA(outer);
    fromOuter = ::operator new(48);
    {
      CompileArena inner;
      void* fromInner = ::operator new(48);
      EXPECT_NE(fromInner, fromOuter);
      ::operator delete(fromOuter, 48);  // found in the outer arena while the inner one is open
      void* again = ::operator new(48);
      EXPECT_NE(again, fromOuter);  // the inner arena serves its own
      EXPECT_TRUE(CompileArena::holds(again));
    }
    EXPECT_EQ(::operator new(48), fromOuter);
  }
  EXPECT_FALSE(CompileArena::holds(fromOuter));
  void* after = ::operator new(48);  // the system's again
  EXPECT_FALSE(CompileArena::holds(after));
  ::operator delete(after, 48);
}

}  // namespace
