// Growable array and heap sort: the only container and the only sort of the compiler.
#ifndef ZKTCOMP_MVECTOR_H
#define ZKTCOMP_MVECTOR_H

#include <new>
#include <utility>

// A growable array. No bounds checks anywhere: an index beyond len but below
// the slots ever used reads a stale element that an earlier shrink, remove or
// pop_back left behind. T needs a default constructor and assignment.
//
// Capacity grows geometrically so that n push_backs cost O(n); what stays
// observable (values, order, len, stale slots) does not depend on capacity.
// Slots are constructed when first used (the first `built` ones), so growing
// an array of large records does not construct records nobody reads.
template <class T>
class mvector {
public:
  T* ptr;
  unsigned int len;
  unsigned int allocated;

  mvector() : ptr(nullptr), len(0), allocated(0), built(0) {}
  explicit mvector(unsigned int n) : ptr(nullptr), len(0), allocated(0), built(0) { resize(n, T()); }
  ~mvector() { release(); }

  // Copying goes through copyfrom, like assignment.
  mvector(const mvector& other) : ptr(nullptr), len(0), allocated(0), built(0) { copyfrom(other); }
  // Moving takes the array; the source is left empty.
  mvector(mvector&& other) noexcept : ptr(other.ptr), len(other.len), allocated(other.allocated), built(other.built) {
    other.forget();
  }
  mvector& operator=(mvector&& other) noexcept {
    if (this != &other) {
      release();
      ptr = other.ptr;
      len = other.len;
      allocated = other.allocated;
      built = other.built;
      other.forget();
    }
    return *this;
  }

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
    if (n > allocated) growTo(n);
    for (unsigned int i = len; i < n; i++) store(i, fill);
    len = n;
  }

  // Capacity for exactly n slots when there is less; len and values stay.
  void reserve(unsigned int n) {
    if (n > allocated) reallocate(n);
  }

  // Drops the unused capacity, stale slots included: only for a vector whose
  // slots behind len are never read.
  void shrink_to_fit() {
    if (len < allocated && len > 0) {
      for (unsigned int i = len; i < built; i++) ptr[i].~T();
      built = len;
      reallocate(len);
    }
  }

  void push_back(const T& x) {
    if (len < allocated) {
      store(len, x);
      len++;
      return;
    }
    T copy(x);  // x may point into the array that reallocate replaces
    growTo(len + 1);
    store(len, std::move(copy));
    len++;
  }

  void push_back(T&& x) {
    if (len < allocated) {
      store(len, std::move(x));
      len++;
      return;
    }
    T taken(std::move(x));
    growTo(len + 1);
    store(len, std::move(taken));
    len++;
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
  unsigned int built;  // slots [0, built) hold constructed objects

  // Assigns slot i, constructing it when it is new.
  template <class V>
  void store(unsigned int i, V&& v) {
    if (i < built) {
      ptr[i] = std::forward<V>(v);
    } else {
      new (ptr + i) T(std::forward<V>(v));  // slots are used in order: i == built
      built = i + 1;
    }
  }

  // Geometric growth to room for n slots at least.
  void growTo(unsigned int n) {
    unsigned int cap = allocated < 4 ? 4 : allocated;
    while (cap < n) cap = cap > 0x7fffffffu ? n : cap * 2;
    reallocate(cap);
  }

  // Moves the constructed slots, stale ones included, into fresh room for cap.
  void reallocate(unsigned int cap) {
    T* fresh = static_cast<T*>(::operator new(sizeof(T) * (size_t)cap));
    for (unsigned int i = 0; i < built; i++) {
      new (fresh + i) T(std::move(ptr[i]));
      ptr[i].~T();
    }
    drop();
    ptr = fresh;
    allocated = cap;
  }

  // Frees the array with its size, so that an arena can use it again.
  void drop() {
    if (ptr != nullptr) ::operator delete(ptr, sizeof(T) * (size_t)allocated);
  }

  void forget() {
    ptr = nullptr;
    len = 0;
    allocated = 0;
    built = 0;
  }

  void release() {
    for (unsigned int i = 0; i < built; i++) ptr[i].~T();
    drop();
    forget();
  }

public:
  // No self-assignment test: the first step empties the source too, so a
  // vector assigned to itself comes out empty.
  void copyfrom(const mvector& other) {
    if (ptr) release();
    allocated = other.len;
    ptr = allocated != 0 ? static_cast<T*>(::operator new(sizeof(T) * (size_t)allocated)) : nullptr;
    for (unsigned int i = 0; i < other.len; i++) store(i, other.ptr[i]);
    len = other.len;
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

// The same sort for records that are dear to move and to compare: the heap
// holds each record's position and a number whose order is the records'
// own order (key(a) < key(b) exactly when a < b). The heap steps are those
// above, so the order comes out the same; every record then moves about once.
struct SortKey {
  long long key;
  unsigned int pos;
  bool operator<(const SortKey& o) const { return key < o.key; }
};

template <class T, class KeyOf>
void sort_vector_by_key(mvector<T>& v, KeyOf keyOf) {
  const unsigned int n = v.size();
  if (n < 2) return;
  mvector<SortKey> keys;
  keys.reserve(n);
  for (unsigned int i = 0; i < n; i++) keys.push_back(SortKey{keyOf(v[i]), i});
  sort_vector(keys);
  // Slot i takes the record from keys[i].pos: each cycle of that
  // permutation goes round once through one spare record.
  for (unsigned int i = 0; i < n; i++) {
    if (keys[i].pos == i) continue;
    T spare(std::move(v[i]));
    unsigned int j = i;
    while (keys[j].pos != i) {
      const unsigned int from = keys[j].pos;
      v[j] = std::move(v[from]);
      keys[j].pos = j;  // done
      j = from;
    }
    v[j] = std::move(spare);
    keys[j].pos = j;
  }
}

#endif
