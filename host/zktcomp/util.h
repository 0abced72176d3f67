// Support library: strings, reference-counted handles and sets, output streams, text helpers.
#ifndef ZKTCOMP_UTIL_H
#define ZKTCOMP_UTIL_H

#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include <string>

#include "mvector.h"

// ---------------------------------------------------------------- mstring
// The compiler's string. p is null in a string that never held text or was
// set to empty; a null p and a one-byte buffer are equal in every operation
// except startsWith and operator[]. When p is set, p[length] is NUL and
// length < allocated. Capacity grows geometrically (internal only).
// Sizes are 32 bits: a text of 4 GiB or more is out of memory (strAlloc).
class mstring {
public:
  char* p;
  unsigned int allocated;
  unsigned int length;

  mstring() : p(nullptr), allocated(0), length(0) {}
  mstring(const mstring& other);
  mstring(const char* s);  // s must not be null; p is set even for ""
  mstring(const char* s, size_t n);
  // Moving takes the buffer; the source is left empty. An empty source gives
  // a null p, as a copy would.
  mstring(mstring&& other) noexcept : p(nullptr), allocated(0), length(0) { take(other); }
  ~mstring() {
    if (p != nullptr) release();
  }

  mstring& operator=(const mstring& other);
  mstring& operator=(mstring&& other) noexcept {
    if (this == &other) return *this;
    if (p != nullptr) release();
    p = nullptr;
    allocated = 0;
    length = 0;
    take(other);
    return *this;
  }
  void set(const char* s, size_t len);  // len 0 frees the buffer
  void reserve(size_t n);               // room for n characters and the NUL; the text stays
  // Appends in place while the buffer has room; s may point into this string.
  void add(const char* s, size_t len) {
    if (p != nullptr && len < allocated - length) {
      if (len != 0) {
        memcpy(p + length, s, len);
        length += len;
        p[length] = 0;
      }
      return;
    }
    addGrow(s, len);
  }
  mstring& operator+=(const mstring& other);
  mstring& operator+=(char c) {  // a NUL is appended like any byte
    if (p != nullptr && length + 1 < allocated) {
      p[length++] = c;
      p[length] = 0;
    } else {
      addGrow(&c, 1);
    }
    return *this;
  }

  char& operator[](int i) { return p[i]; }  // no checks, not even for a null p
  const char& operator[](int i) const { return p[i]; }
  const char* c_str() const { return p ? p : ""; }  // never null
  unsigned int size() const { return (unsigned int)length; }
  bool empty() const { return length == 0; }
  // Length of the value in a generated C string: a quoted literal counts its
  // characters between the quotes, an escape pair as one.
  unsigned int bytes() const;
  bool startsWith(const char* s) const;  // reads p directly: only for strings holding text

private:
  void take(mstring& other) {  // this holds no buffer
    if (other.length == 0) return;
    p = other.p;
    allocated = other.allocated;
    length = other.length;
    other.p = nullptr;
    other.allocated = 0;
    other.length = 0;
  }
  void addGrow(const char* s, size_t len);
  void release();  // gives the buffer back
};

mstring operator+(const mstring& a, const mstring& b);
mstring operator+(const mstring& a, const char* b);
mstring operator+(const char* a, const mstring& b);
// strcmp's order of the texts up to their first NUL; the first bytes are
// compared inline.
inline int compareTexts(const mstring& a, const mstring& b) {
  const unsigned char* x = reinterpret_cast<const unsigned char*>(a.c_str());
  const unsigned char* y = reinterpret_cast<const unsigned char*>(b.c_str());
  for (int i = 0; i < 16; i++, x++, y++)  // names are short: most end here
    if (*x != *y || *x == 0) return (int)*x - (int)*y;
  return strcmp(reinterpret_cast<const char*>(x), reinterpret_cast<const char*>(y));
}
inline bool operator==(const mstring& a, const mstring& b) { return compareTexts(a, b) == 0; }
inline bool operator!=(const mstring& a, const mstring& b) { return compareTexts(a, b) != 0; }
// Against a literal without making a string of it; b must not be null. The
// first bytes are compared inline: keyword tests mostly differ there.
inline bool operator==(const mstring& a, const char* b) {
  const char* s = a.c_str();
  return s[0] == b[0] && (s[0] == 0 || strcmp(s + 1, b + 1) == 0);
}
inline bool operator!=(const mstring& a, const char* b) { return !(a == b); }
inline bool operator<(const mstring& a, const mstring& b) { return compareTexts(a, b) < 0; }
inline bool operator>(const mstring& a, const mstring& b) { return compareTexts(a, b) > 0; }

// A value that most owners never set, kept behind a pointer made on the
// first assignment: eight bytes while unset. Reads see an empty value.
template <class T>
class Rare {
public:
  Rare() = default;
  Rare(const Rare& o) : m(o.m != nullptr ? new T(*o.m) : nullptr) {}
  Rare(Rare&& o) noexcept : m(o.m) { o.m = nullptr; }
  ~Rare() { delete m; }
  Rare& operator=(const Rare& o) {
    if (this != &o && (m != nullptr || o.m != nullptr)) edit() = o.get();
    return *this;
  }
  Rare& operator=(Rare&& o) noexcept {
    T* old = m;
    m = o.m;
    o.m = old;
    return *this;
  }

  const T& get() const { return m != nullptr ? *m : none(); }
  T& edit() {  // makes the value when it is unset
    if (m == nullptr) m = new T();
    return *m;
  }

private:
  T* m = nullptr;
  static const T& none() {
    static const T value;
    return value;
  }
};

// ---------------------------------------------------------------- handles and sets
// Base of everything a set holds; made with new, deleted by its last handle.
class IComparable {
public:
  int count;
  IComparable() : count(0) {}
  virtual ~IComparable() {}
  virtual bool less(const IComparable* other) const = 0;
  // The name that less compares, for objects ordered by name alone; null
  // for others. Sets index such objects by it.
  virtual const mstring* key() const { return nullptr; }
};

class HIComparable {
public:
  IComparable* ptr;
  HIComparable() : ptr(nullptr) {}
  HIComparable(IComparable* p);
  HIComparable(const HIComparable& other);
  ~HIComparable();
  // Releases the old object before taking the new one.
  HIComparable operator=(const HIComparable& other);
  IComparable* get() { return ptr; }
  const IComparable* get() const { return ptr; }
  bool less(const HIComparable& other) const;  // a null handle is less than everything
};

// A set of named objects: searched by name (through less), walked in the
// order of insertion.
class ISet {
public:
  class Pos {
  public:
    virtual ~Pos() {}
    virtual HIComparable get() = 0;
    virtual void next() = 0;
    virtual bool valid() = 0;
  };
  class HPos {
  public:
    Pos* ptr;
    HPos(Pos* p) : ptr(p) {}
    ~HPos() { delete ptr; }
    void next() { ptr->next(); }
    bool valid() { return ptr->valid(); }
    HIComparable get() { return ptr->get(); }
  private:
    HPos(const HPos&);
    HPos& operator=(const HPos&);
  };

  virtual ~ISet() {}
  virtual bool add(const HIComparable& obj) = 0;
  virtual HIComparable* find(const HIComparable& obj) = 0;
  virtual HIComparable* find(const IComparable& obj) = 0;
  virtual int size() const = 0;
  virtual void remove(const IComparable& obj) = 0;
  virtual Pos* first() const = 0;
  // While every object has a key and none was renamed, the object of a name
  // is found by hash: findKey answers like find, and keyed() says it may.
  virtual bool keyed() const = 0;
  virtual HIComparable* findKey(const mstring& key) = 0;
  // The names of the objects may change from now on: finds go by less alone.
  virtual void keysChanged() = 0;
  static ISet* create();
};

class HISet {
public:
  ISet* ptr;
  HISet() : ptr(ISet::create()) {}
  ~HISet() { delete ptr; }
  ISet* get() const { return ptr; }
  ISet::Pos* first() const { return ptr->first(); }
  void insert(const HIComparable& h) { ptr->add(h); }
private:
  HISet(const HISet&);
  HISet& operator=(const HISet&);
};

// Positions in a list, found by a 32-bit hash of their entries: open
// addressing, at most half full. The owner says which position holds what
// it looks for. A removed position's cell is skipped until the table grows.
class PosTable {
public:
  bool empty() const { return m_cells.size() == 0; }
  // The position with this hash that same(position) accepts, or -1.
  template <class Same>
  int find(unsigned int hash, Same same) const {
    if (m_cells.size() == 0) return -1;
    const unsigned int mask = m_cells.size() - 1;
    for (unsigned int i = hash & mask;; i = (i + 1) & mask) {
      const Cell& c = m_cells[i];
      if (c.at == 0) return -1;
      if (c.hash == hash && c.at != kGone && same(c.at - 1)) return (int)(c.at - 1);
    }
  }
  void add(unsigned int pos, unsigned int hash);
  void remove(unsigned int pos, unsigned int hash);

private:
  struct Cell {
    unsigned int at;    // position + 1; 0 for a free cell
    unsigned int hash;
  };
  static const unsigned int kGone = 0xffffffffu;  // a removed position's cell
  mvector<Cell> m_cells;
  unsigned int m_used = 0;  // cells not free
  void place(unsigned int pos, unsigned int hash);
};

// The hash of a text up to its first NUL, as strcmp sees it.
unsigned int textHash(const char* s);

// A plain list of distinct strings, in insertion order. els is written only
// through insert. Equality is strcmp on c_str(), so the key is the text up
// to its first NUL. A short list is searched directly; a longer one also
// keeps positions by hash, so lookups stay constant-time.
class StringSet {
public:
  mvector<mstring> els;
  bool insert(const mstring& s);
  bool find(const mstring& s) const;

private:
  PosTable m_index;  // empty for a short list
  int position(const char* text) const;
};

// ---------------------------------------------------------------- output streams
class IOutStream {
public:
  virtual ~IOutStream() {}
  virtual IOutStream& operator<<(const mstring& s) = 0;
  virtual IOutStream& operator<<(const char* s) = 0;
  virtual IOutStream& operator<<(long n) = 0;
  virtual IOutStream& operator<<(unsigned long n) = 0;
  virtual IOutStream& operator<<(char c) = 0;
  virtual IOutStream& operator<<(long long n) = 0;
  virtual bool good() = 0;
  virtual mstring retstr();  // empty but for the string stream
  // Writes out what is buffered; false when a write failed (a full disk).
  virtual bool flush() { return true; }
  // True for a stream that drops everything written to it.
  virtual bool discards() const { return false; }

  IOutStream& operator<<(char* s) { return *this << (const char*)s; }
  IOutStream& operator<<(int n) { return *this << (long)n; }
  IOutStream& operator<<(unsigned int n) { return *this << (long)n; }
  IOutStream& operator<<(unsigned short n) { return *this << (long)n; }

  static IOutStream* createFileStream(const mstring& fnm);  // panics when it can't open
  // Writes what this thread's file streams hold in their buffers to their
  // files, for a process about to end without closing them.
  static void drainOpenFiles();
  static IOutStream* createStrStream(const mstring& m_dir);  // argument ignored
  static IOutStream* createNullStream();
  static IOutStream* createWrapStream(IOutStream* s1);
  static IOutStream* createDupStream(IOutStream* s1, IOutStream* s2, bool own);
};

class HIOutStream {
public:
  IOutStream* ptr;
  HIOutStream(IOutStream* p) : ptr(p) {}
  ~HIOutStream() { delete ptr; }
  IOutStream* get() { return ptr; }
private:
  HIOutStream(const HIOutStream&);
  HIOutStream& operator=(const HIOutStream&);
};

// ---------------------------------------------------------------- helpers
class FSize;

#define OS_SEP "/"

namespace UT {
struct pairstrings {
  mstring first;
  mstring second;
};

// A line buffer for reading schema files.
class Buf {
public:
  char* m_ptr;
  int m_bufsz;
  explicit Buf(int size);
  ~Buf();
  void eos() { m_ptr[0] = 0; }
  // At most m_bufsz - 1 characters, cut at the first CR, LF or "//".
  void read(FILE* is);
private:
  Buf(const Buf&);
  Buf& operator=(const Buf&);
};

mstring trim(const mstring& s0);
mvector<mstring> splitName(const mstring& name, char sep);

// Writes n in decimal and a NUL into buf (at least 21 bytes); returns the length.
size_t decimal(long long n, char* buf);
mstring n2s(unsigned int n);  // "U" suffix above the largest int
mstring n2s(void* p);
mstring n2s(int n);
mstring n2s(double d);
mstring n2s(long long n);
mstring n2s(long long n, int width);
mstring n2s(int n, int width);
mstring n2s(unsigned int n, int width);

mstring Q(const mstring& s);
mstring Q(int n);
mstring Q(const FSize& f);

mstring adjust(const mstring& s, int lenWanted);  // pads on the right, never cuts
pairstrings split2(const mstring& s);
int imax(int a, int b);
// Characters of names, by byte: 1 may begin a name (_, a-z, A-Z), 2 may
// continue one (those and 0-9). One load instead of a chain of tests.
struct NameChars {
  unsigned char v[256];
  constexpr NameChars() : v() {
    for (int c = 0; c < 256; c++) {
      const bool beg = c == '_' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
      v[c] = (unsigned char)((beg ? 1 : 0) | (beg || (c >= '0' && c <= '9') ? 2 : 0));
    }
  }
};
inline constexpr NameChars kNameChars{};
inline bool nameBeg(char c) { return (kNameChars.v[(unsigned char)c] & 1) != 0; }
// Never right behind a "0": keeps hex letters out of names.
inline bool nameBeg(char c, char prev) { return prev != '0' && nameBeg(c); }
inline bool nameCont(char c) { return (kNameChars.v[(unsigned char)c] & 2) != 0; }

mstring makefnm(const mstring& dir_, const mstring& fnm);
mstring currdir();
mstring stringTime();  // keeps asctime's trailing newline
void dlog(const mstring&);
void finishComp(bool ok);

// The C# and Java type of a schema type name; a name not in the tables comes
// back unchanged. mapJavaType gives "boolean" (or "Boolean") whenever zktType
// is "boolean", whatever cType says.
mstring mapCSType(const mstring& cType);
mstring mapJavaType(const mstring& cType, const mstring& zktType, bool nullable);
}  // namespace UT

// The word of a sequence element type in the Java bindings; "Char" for any
// type not in the table.
const char* java_seq_elem_type(const mstring& type);

void file_remove(const char* name);

// Generator helpers.
mstring hppClass(const mstring& n);
const char* simple_put_cast(int size);
const char* enum_int_type(int size);
const char* simple_get_accessor_name(int size);
const char* simple_put_accessor_name(int size, bool with_event);

// Dump helpers: n blanks; an attribute name="value" followed by a blank.
// Only the text form maps "<" and ">" to "{" and "}". A string literal as
// value would pick the bool form: pass an mstring.
IOutStream& I(IOutStream& os, int n);
mstring A(const mstring& name, const mstring& value);
mstring A(const mstring& name, int value);
mstring A(const mstring& name, bool value);
mstring A(const mstring& name, const FSize& value);

// Fills the {name} placeholders of a generated-text fragment in one pass: a
// substituted value is never scanned again, and every brace that does not
// enclose an identifier is literal text ("{{ctype}" is "{" then {ctype}).
// A placeholder that was never set is an internal error.
// Names and fragment texts are kept by pointer: pass literals (or text that
// outlives the thread). Each thread numbers the names it meets and cuts each
// text once into literal runs and placeholder numbers, so filling a fragment
// neither scans it nor compares names.
class Frag {
public:
  Frag& set(const char* name, const mstring& value);
  Frag& set(const char* name, long value);
  Frag& set(const char* name, const char* value);  // a text that need not outlive the call
  mstring fill(const char* text) const;
  // os << fill(text), through a buffer kept from call to call.
  void fillTo(IOutStream& os, const char* text) const;

private:
  // A value lives in m_text at off, in room for cap bytes; a longer value
  // for the same name moves to the end.
  struct Slot {
    int id;  // the name's number in this thread
    unsigned off;
    unsigned len;
    unsigned cap;
  };
  mvector<Slot> v_slots;
  mstring m_text;
  size_t m_limit = 65536;  // m_text beyond this is compacted first
  // 1 + the index of the slot of each name number, open addressing over the
  // first kIndexed slots; later slots are searched linearly.
  static const unsigned kTable = 128;
  static const unsigned kIndexed = 96;
  unsigned char m_table[kTable] = {};
  const Slot* find(int id) const;
  void fillInto(mstring& res, const char* text) const;  // appends the filled text
  void put(const char* name, const char* value, size_t len);
  void compact();
};

#endif
