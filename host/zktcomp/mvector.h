// Growable array and heap sort: the only container and the only sort of the compiler.
#ifndef ZKTCOMP_MVECTOR_H
#define ZKTCOMP_MVECTOR_H

#include <utility>

// A growable array of constructed slots. No bounds checks anywhere: an index
// beyond len but below allocated reads a stale element that an earlier shrink,
// remove or pop_back left behind. T needs a default constructor and assignment.
//
// Capacity grows geometrically so that n push_backs cost O(n); what stays
// observable (values, order, len, stale slots) does not depend on capacity.
template <class T>
class mvector {
public:
  T* ptr;
  unsigned int len;
  unsigned int allocated;

  mvector() : ptr(nullptr), len(0), allocated(0) {}
  explicit mvector(unsigned int n) : ptr(nullptr), len(0), allocated(0) { resize(n, T()); }
  ~mvector() { delete[] ptr; }

  // Copying goes through copyfrom, like assignment.
  mvector(const mvector& other) : ptr(nullptr), len(0), allocated(0) { copyfrom(other); }

  unsigned int size() const { return len; }
  T& operator[](unsigned int i) { return ptr[i]; }
  const T& operator[](unsigned int i) const { return ptr[i]; }

  // Shrinking keeps the slots behind the new end with their values; growing
  // assigns fill to every slot from the old len on, stale ones included.
  void resize(unsigned int n, const T& fill) {
    if (n < len) {
      len = n;
      return;
    }
    if (n == len) return;
    if (n > allocated) {
      unsigned int cap = allocated < 4 ? 4 : allocated;
      while (cap < n) cap = cap > 0x7fffffffu ? n : cap * 2;
      reallocate(cap);
    }
    for (unsigned int i = len; i < n; i++) ptr[i] = fill;
    len = n;
  }

  // Capacity for exactly n slots when there is less; len and values stay.
  void reserve(unsigned int n) {
    if (n > allocated) reallocate(n);
  }

  // Drops the unused capacity, stale slots included: only for a vector whose
  // slots behind len are never read.
  void shrink_to_fit() {
    if (len < allocated && len > 0) reallocate(len);
  }

  void push_back(const T& x) {
    if (len < allocated) {
      ptr[len] = x;
      len++;
      return;
    }
    T copy(x);  // x may point into the array that resize replaces
    resize(len + 1, T());
    ptr[len - 1] = std::move(copy);
  }

  void push_back(T&& x) {
    if (len < allocated) {
      ptr[len] = std::move(x);
      len++;
      return;
    }
    T taken(std::move(x));
    resize(len + 1, T());
    ptr[len - 1] = std::move(taken);
  }

  // Only lowers len; on an empty vector len wraps around.
  void pop_back() { len--; }
  T& back() { return ptr[len - 1]; }
  const T& back() const { return ptr[len - 1]; }

  void insert(int pos, const T& x) {
    T copy(x);
    resize(len + 1, T());
    for (int i = (int)len - 1; i > pos; i--) ptr[i] = std::move(ptr[i - 1]);
    ptr[pos] = std::move(copy);
  }

  // The slot behind the new end keeps a copy of the last element.
  void remove(int pos) {
    for (int i = pos; i < (int)len - 1; i++) ptr[i] = ptr[i + 1];
    len--;
  }

  mvector& operator=(const mvector& other) {
    copyfrom(other);
    return *this;
  }

private:
  // Moves the len values into a fresh array of cap default-constructed slots.
  void reallocate(unsigned int cap) {
    T* fresh = new T[cap];
    for (unsigned int i = 0; i < len; i++) fresh[i] = std::move(ptr[i]);
    delete[] ptr;
    ptr = fresh;
    allocated = cap;
  }

public:
  // No self-assignment test: the first step empties the source too, so a
  // vector assigned to itself comes out empty.
  void copyfrom(const mvector& other) {
    if (ptr) {
      delete[] ptr;
      ptr = nullptr;
      len = 0;
      allocated = 0;
    }
    allocated = other.len;
    ptr = new T[allocated];
    len = other.len;
    for (unsigned int i = 0; i < len; i++) ptr[i] = other.ptr[i];
  }
};

// Heap sort on a max-heap. Not stable: the exact steps below decide where
// equal elements end up, and the generated output depends on that order.
template <class T>
void swap_heap(mvector<T>& v, unsigned int i, unsigned int j) {
  T tmp(std::move(v[i]));
  v[i] = std::move(v[j]);
  v[j] = std::move(tmp);
}

template <class T>
void down_heap(mvector<T>& v, unsigned int i, unsigned int n) {
  unsigned int j = 2 * i + 1;
  while (j < n) {
    if (j + 1 < n && v[j] < v[j + 1]) j = j + 1;  // on equal children the left one
    if (!(v[i] < v[j])) break;                     // an equal child stays below
    swap_heap(v, i, j);
    i = j;
    j = 2 * i + 1;
  }
}

template <class T>
void build_heap(mvector<T>& v) {
  int n = (int)v.size();
  for (int i = n / 2 - 1; i >= 0; i--) down_heap(v, (unsigned int)i, (unsigned int)n);
}

template <class T>
void sort_vector(mvector<T>& v) {
  build_heap(v);
  for (int i = (int)v.size() - 1; i >= 1; i--) {
    swap_heap(v, 0, (unsigned int)i);
    down_heap(v, 0, (unsigned int)i);
  }
}

#endif
