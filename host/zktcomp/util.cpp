// Support library: strings, sets, streams and the UT text helpers.
#include "util.h"

#include <ctype.h>
#include <stdlib.h>
#include <stdint.h>
#include <string.h>

#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "arena.h"
#include "ierrrep.h"

// ---------------------------------------------------------------- mstring

// String buffers come in classes of 16 bytes. A freed buffer of up to
// kPooledMax bytes waits on its class's list in the freeing thread, up to
// kPoolBytes in all, for the next string of that class: generating text
// makes and drops millions of short strings, and this spares the general
// allocator. Sanitizer builds use plain new and delete, so that a use after
// free stays visible.
namespace {

const size_t kLargestText = 0xfffffff0u;  // a string's sizes are 32 bits

// A buffer of at least cap bytes; cap becomes its real size. Sizes in steps
// of 16 let a freed buffer serve the next string of about its length (the
// compile arena keeps a list per size).
char* strAlloc(unsigned int& cap, size_t want) {
  if (want > kLargestText) IErrReporter::panic("insufficient memory new", true);
  cap = (unsigned int)((want + 15) & ~(size_t)15);
  return static_cast<char*>(::operator new(cap));
}

void strFree(char* p, size_t cap) {
  if (p != nullptr) ::operator delete(p, cap);
}

}  // namespace

// A copy is mostly stored, not extended: into a string without a buffer it
// gets one that fits the text exactly.
static void copyExact(mstring& to, const mstring& from) {
  if (from.length == 0) return;
  to.p = strAlloc(to.allocated, (size_t)from.length + 1);
  memcpy(to.p, from.p, from.length);
  to.p[from.length] = 0;
  to.length = from.length;
}

mstring::mstring(const mstring& other) : p(nullptr), allocated(0), length(0) { copyExact(*this, other); }

mstring::mstring(const char* s) {
  length = (unsigned int)(int)strlen(s);
  p = strAlloc(allocated, (size_t)length + 1);
  memcpy(p, s, length);
  p[length] = 0;
}

mstring::mstring(const char* s, size_t n) {
  p = strAlloc(allocated, n + 1);
  length = (unsigned int)n;
  memcpy(p, s, n);
  p[n] = 0;
}

void mstring::release() { strFree(p, allocated); }

mstring& mstring::operator=(const mstring& other) {
  if (p == nullptr) {
    copyExact(*this, other);
    return *this;
  }
  set(other.p, other.size());
  return *this;
}

void mstring::set(const char* s, size_t len) {
  if (len == 0) {
    strFree(p, allocated);
    p = nullptr;
    allocated = 0;
    length = 0;
    return;
  }
  if (len >= allocated) {
    size_t want = len + 100;
    if (want < (size_t)allocated * 2) want = (size_t)allocated * 2;
    unsigned int cap;
    char* fresh = strAlloc(cap, want);
    memcpy(fresh, s, len);  // s may point into the old buffer: copy before freeing
    strFree(p, allocated);
    p = fresh;
    allocated = cap;
  } else {
    memmove(p, s, len);
  }
  p[len] = 0;
  length = (unsigned int)len;
}

void mstring::reserve(size_t n) {
  if (n < allocated) return;
  unsigned int cap;
  char* fresh = strAlloc(cap, n + 1);
  if (length != 0) memcpy(fresh, p, length);
  fresh[length] = 0;
  strFree(p, allocated);
  p = fresh;
  allocated = cap;
}

void mstring::addGrow(const char* s, size_t len) {
  if (p == nullptr) {
    set(s, len);
    return;
  }
  size_t newlen = length + len;
  if (newlen >= allocated) {
    size_t want = newlen + 200;
    if (want < (size_t)allocated * 2) want = (size_t)allocated * 2;
    unsigned int cap;
    char* fresh = strAlloc(cap, want);
    memcpy(fresh, p, length);
    if (len) memcpy(fresh + length, s, len);  // s may point into the old buffer
    strFree(p, allocated);
    p = fresh;
    allocated = cap;
  } else if (len) {
    memmove(p + length, s, len);
  }
  p[newlen] = 0;
  length = (unsigned int)newlen;
}

mstring& mstring::operator+=(const mstring& other) {
  add(other.p, other.length);
  return *this;
}

unsigned int mstring::bytes() const {
  if (p == nullptr || p[0] != '"') return size();
  unsigned int n = 0;
  // Stops at the end of the text too, so that an unclosed value can't run off.
  for (const char* s = p + 1; *s && *s != '"'; s++, n++) {
    if (*s == '\\' && s[1]) s++;
  }
  return n;
}

bool mstring::startsWith(const char* s) const { return strncmp(p, s, strlen(s)) == 0; }

// The left side is set, not copied: its buffer keeps room for the right one.
mstring operator+(const mstring& a, const mstring& b) {
  mstring r;
  r.set(a.p, a.size());
  r += b;
  return r;
}

mstring operator+(const mstring& a, const char* b) {
  mstring r;
  r.set(a.p, a.size());
  if (b) r.add(b, strlen(b));
  return r;
}

mstring operator+(const char* a, const mstring& b) {
  mstring r(a);
  r += b;
  return r;
}


// ---------------------------------------------------------------- handles

HIComparable::HIComparable(IComparable* p) : ptr(p) {
  if (ptr) ptr->count++;
}

HIComparable::HIComparable(const HIComparable& other) : ptr(other.ptr) {
  if (ptr) ptr->count++;
}

HIComparable::~HIComparable() {
  if (ptr && --ptr->count < 1) delete ptr;
}

HIComparable HIComparable::operator=(const HIComparable& other) {
  if (ptr && --ptr->count < 1) delete ptr;
  ptr = other.ptr;
  if (ptr) ptr->count++;
  return *this;
}

bool HIComparable::less(const HIComparable& other) const {
  if (ptr == nullptr) return true;
  return ptr->less(other.get());
}

// ---------------------------------------------------------------- sets

namespace {

// Orders handles and probe objects by the objects' own less.
struct ByLess {
  using is_transparent = void;
  static const IComparable* obj(const HIComparable& h) { return h.get(); }
  static const IComparable* obj(const IComparable& o) { return &o; }
  template <class A, class B>
  bool operator()(const A& a, const B& b) const {
    const IComparable* x = obj(a);
    if (x == nullptr) return true;
    return x->less(obj(b));
  }
};

class SetImpl;

class PosImpl : public ISet::Pos {
public:
  const SetImpl* owner;
  unsigned int index;
  explicit PosImpl(const SetImpl* o) : owner(o), index(0) {}
  HIComparable get() override;
  void next() override { index++; }
  bool valid() override;
};

// Holds every object in els, in order of insertion (iteration, size).
// While every object is ordered by name alone, a table of positions by the
// hash of that name answers add, find and remove. When an object without a
// name arrives or names may change, a balanced tree ordered by less takes
// over, built from the objects present then.
class SetImpl : public ISet {
public:
  mvector<HIComparable> els;

  ~SetImpl() override {
    for (unsigned int i = 0; i < els.len; i++) els[i] = HIComparable();
    sorted_els.clear();
  }

  bool add(const HIComparable& obj) override {
    const mstring* k = obj.get() != nullptr ? obj.get()->key() : nullptr;
    if (m_keyed && k == nullptr) keysChanged();
    if (m_keyed) {
      const unsigned int hash = textHash(k->c_str());
      if (position(k->c_str(), hash) >= 0) return false;  // the object that came first stays
      els.push_back(obj);
      m_table.add(els.size() - 1, hash);
      return true;
    }
    if (!sorted_els.insert(obj).second) return false;
    els.push_back(obj);
    return true;
  }

  // A found handle is valid until the next add.
  HIComparable* find(const HIComparable& obj) override {
    if (obj.get() == nullptr) return m_keyed ? nullptr : found(sorted_els.find(obj));
    return find(*obj.get());
  }
  HIComparable* find(const IComparable& obj) override {
    if (m_keyed && obj.key() != nullptr) return findKey(*obj.key());
    if (m_keyed) keysChanged();  // a probe without a name: only less can tell
    return found(sorted_els.find(obj));
  }

  int size() const override { return (int)els.size(); }

  // The object is no longer found, but iteration and size still show it.
  void remove(const IComparable& obj) override {
    if (m_keyed && obj.key() != nullptr) {
      const unsigned int hash = textHash(obj.key()->c_str());
      const int at = position(obj.key()->c_str(), hash);
      if (at < 0) return;
      m_table.remove((unsigned int)at, hash);
      m_removed.push_back((unsigned int)at);
      return;
    }
    if (m_keyed) keysChanged();
    auto it = sorted_els.find(obj);
    if (it != sorted_els.end()) sorted_els.erase(it);
  }

  Pos* first() const override { return new PosImpl(this); }

  bool keyed() const override { return m_keyed; }
  HIComparable* findKey(const mstring& key) override {
    if (!m_keyed || m_table.empty()) return nullptr;  // an empty set needs no hash
    const int at = position(key.c_str(), textHash(key.c_str()));
    return at >= 0 ? &els[(unsigned int)at] : nullptr;
  }
  void keysChanged() override {
    if (!m_keyed) return;
    m_keyed = false;
    mvector<bool> gone;
    gone.resize(els.size(), false);
    for (unsigned int i = 0; i < m_removed.size(); i++) gone[m_removed[i]] = true;
    for (unsigned int i = 0; i < els.size(); i++)
      if (!gone[i]) sorted_els.insert(els[i]);
    m_table = PosTable();
    m_removed = mvector<unsigned int>();
  }

private:
  bool m_keyed = true;
  PosTable m_table;  // while keyed
  mvector<unsigned int> m_removed;
  std::set<HIComparable, ByLess> sorted_els;  // once not keyed

  int position(const char* key, unsigned int hash) const {
    return m_table.find(hash, [&](unsigned int at) { return strcmp(els[at].get()->key()->c_str(), key) == 0; });
  }

  HIComparable* found(std::set<HIComparable, ByLess>::iterator it) {
    if (it == sorted_els.end()) return nullptr;
    return const_cast<HIComparable*>(&*it);
  }
};

HIComparable PosImpl::get() {
  if (index < owner->els.size()) return owner->els[index];
  return HIComparable();
}

bool PosImpl::valid() { return index < owner->els.size(); }

}  // namespace

ISet* ISet::create() { return new SetImpl(); }

namespace {

const unsigned int kDirectMax = 8;  // lists up to this long are searched directly

}  // namespace

unsigned int textHash(const char* s) {
  unsigned long long h = 14695981039346656037ull;
  for (; *s; s++) h = (h ^ (unsigned char)*s) * 1099511628211ull;
  return (unsigned int)(h ^ (h >> 32));
}

void PosTable::place(unsigned int pos, unsigned int hash) {
  const unsigned int mask = m_cells.size() - 1;
  unsigned int i = hash & mask;
  while (m_cells[i].at != 0) i = (i + 1) & mask;
  m_cells[i] = Cell{pos + 1, hash};
  m_used++;
}

void PosTable::add(unsigned int pos, unsigned int hash) {
  if (2 * (m_used + 1) > m_cells.size()) {
    // Room for twice the live positions, entered afresh; removed cells go.
    unsigned int cap = 16;
    while (cap < 4 * (m_used + 1)) cap *= 2;
    const mvector<Cell> old = std::move(m_cells);
    m_cells = mvector<Cell>();
    m_cells.resize(cap, Cell{0, 0});
    m_used = 0;
    for (unsigned int i = 0; i < old.size(); i++)
      if (old[i].at != 0 && old[i].at != kGone) place(old[i].at - 1, old[i].hash);
  }
  place(pos, hash);
}

void PosTable::remove(unsigned int pos, unsigned int hash) {
  if (m_cells.size() == 0) return;
  const unsigned int mask = m_cells.size() - 1;
  for (unsigned int i = hash & mask; m_cells[i].at != 0; i = (i + 1) & mask) {
    if (m_cells[i].at == pos + 1) {
      m_cells[i].at = kGone;
      return;
    }
  }
}

int StringSet::position(const char* text) const {
  if (m_index.empty()) {
    for (unsigned int i = 0; i < els.size(); i++)
      if (strcmp(els[i].c_str(), text) == 0) return (int)i;
    return -1;
  }
  return m_index.find(textHash(text), [&](unsigned int at) { return strcmp(els[at].c_str(), text) == 0; });
}

bool StringSet::insert(const mstring& s) {
  if (position(s.c_str()) >= 0) return false;
  els.push_back(s);
  const unsigned int n = els.size();
  if (n <= kDirectMax) return true;
  if (m_index.empty()) {  // the list just became long
    for (unsigned int i = 0; i + 1 < n; i++) m_index.add(i, textHash(els[i].c_str()));
  }
  m_index.add(n - 1, textHash(els[n - 1].c_str()));
  return true;
}

bool StringSet::find(const mstring& s) const { return position(s.c_str()) >= 0; }

// ---------------------------------------------------------------- streams

mstring IOutStream::retstr() { return mstring(); }

namespace {

// Generated files run to megabytes of small writes: they collect in a
// buffer of kBuf bytes that goes to the file in one write when full.
class ZktOFstream;
thread_local ZktOFstream* t_openFiles = nullptr;  // this thread's file streams, for drainOpenFiles

class ZktOFstream : public IOutStream {
public:
  FILE* fs;
  ZktOFstream(const mstring& name, bool binary) : fs(fopen(name.c_str(), binary ? "wb" : "w")) {
    if (fs == nullptr) IErrReporter::panic(mstring("Cannot open file ") + name, true);
    setvbuf(fs, nullptr, _IONBF, 0);  // the buffer below is the only one
    m_buf = new char[kBuf];
    m_next = t_openFiles;
    if (m_next != nullptr) m_next->m_prev = this;
    t_openFiles = this;
  }
  ~ZktOFstream() override {
    if (fs) {
      drain();
      fclose(fs);
    }
    delete[] m_buf;
    if (m_prev != nullptr) m_prev->m_next = m_next;
    else t_openFiles = m_next;
    if (m_next != nullptr) m_next->m_prev = m_prev;
  }
  // What is written so far goes to the file, as an unbuffered stream would have it.
  static void drainAll() {
    for (ZktOFstream* f = t_openFiles; f != nullptr; f = f->m_next) f->drain();
  }
  // Text up to its first NUL, as fputs would write it.
  IOutStream& operator<<(const mstring& s) override {
    if (s.p == nullptr) return *this;
    const void* nul = memchr(s.p, 0, s.length);
    put(s.p, nul != nullptr ? (size_t)((const char*)nul - s.p) : s.length);
    return *this;
  }
  IOutStream& operator<<(const char* s) override {
    put(s, strlen(s));
    return *this;
  }
  IOutStream& operator<<(long n) override {
    char buf[24];
    put(buf, UT::decimal(n, buf));
    return *this;
  }
  IOutStream& operator<<(unsigned long n) override {
    char buf[24];
    put(buf, (size_t)snprintf(buf, sizeof buf, "%lu", n));
    return *this;
  }
  IOutStream& operator<<(char c) override {
    put(&c, 1);
    return *this;
  }
  IOutStream& operator<<(long long n) override { return *this << (long)n; }
  bool good() override { return fs != nullptr; }
  bool flush() override {
    drain();
    return fflush(fs) == 0 && !ferror(fs);
  }

private:
  static const size_t kBuf = 1 << 20;
  char* m_buf;
  size_t m_len = 0;
  ZktOFstream* m_prev = nullptr;
  ZktOFstream* m_next = nullptr;

  void put(const char* s, size_t n) {
    if (n > kBuf - m_len) {
      drain();
      if (n >= kBuf) {
        (void)fwrite(s, 1, n, fs);
        return;
      }
    }
    memcpy(m_buf + m_len, s, n);
    m_len += n;
  }
  void drain() {
    if (m_len != 0) (void)fwrite(m_buf, 1, m_len, fs);
    m_len = 0;
  }
};

class ZktOstringstream : public IOutStream {
public:
  mstring str;
  IOutStream& operator<<(const mstring& s) override {
    str.add(s.c_str(), strlen(s.c_str()));
    return *this;
  }
  IOutStream& operator<<(const char* s) override {
    str.add(s, strlen(s));
    return *this;
  }
  IOutStream& operator<<(long n) override {
    char buf[24];
    str.add(buf, UT::decimal(n, buf));
    return *this;
  }
  IOutStream& operator<<(unsigned long n) override { return num("%lu", n); }
  IOutStream& operator<<(char c) override {
    str += c;
    return *this;
  }
  IOutStream& operator<<(long long n) override { return *this << (long)n; }
  bool good() override { return true; }
  mstring retstr() override { return str; }

private:
  template <class N>
  IOutStream& num(const char* fmt, N n) {
    char buf[32];
    int k = snprintf(buf, sizeof buf, fmt, n);
    str.add(buf, (size_t)k);
    return *this;
  }
};

class NullStream : public IOutStream {
public:
  IOutStream& operator<<(const mstring&) override { return *this; }
  IOutStream& operator<<(const char*) override { return *this; }
  IOutStream& operator<<(long) override { return *this; }
  IOutStream& operator<<(unsigned long) override { return *this; }
  IOutStream& operator<<(char) override { return *this; }
  IOutStream& operator<<(long long) override { return *this; }
  bool good() override { return true; }
  bool discards() const override { return true; }
};

// A second name for a stream it doesn't own; returns itself, not the target.
class WrapStream : public IOutStream {
public:
  IOutStream* os1;
  explicit WrapStream(IOutStream* s) : os1(s) {}
  IOutStream& operator<<(const mstring& s) override { return fwd(s); }
  IOutStream& operator<<(const char* s) override { return fwd(s); }
  IOutStream& operator<<(long n) override { return fwd(n); }
  IOutStream& operator<<(unsigned long n) override { return fwd(n); }
  IOutStream& operator<<(char c) override { return fwd(c); }
  IOutStream& operator<<(long long n) override { return fwd(n); }
  bool good() override { return os1->good(); }
  bool discards() const override { return os1->discards(); }

private:
  template <class V>
  IOutStream& fwd(const V& v) {
    *os1 << v;
    return *this;
  }
};

// Writes every call to os1, then to os2.
class DupStream : public IOutStream {
public:
  IOutStream* os1;
  IOutStream* os2;
  bool m_own;
  DupStream(IOutStream* a, IOutStream* b, bool own) : os1(a), os2(b), m_own(own) {}
  ~DupStream() override {
    if (m_own) {
      delete os1;
      delete os2;
    }
  }
  IOutStream& operator<<(const mstring& s) override { return fwd(s); }
  IOutStream& operator<<(const char* s) override { return fwd(s); }
  IOutStream& operator<<(long n) override { return fwd(n); }
  IOutStream& operator<<(unsigned long n) override { return fwd(n); }
  IOutStream& operator<<(char c) override { return fwd(c); }
  IOutStream& operator<<(long long n) override { return fwd(n); }
  bool good() override { return os1->good() && os2->good(); }
  bool discards() const override { return os1->discards() && os2->discards(); }

private:
  template <class V>
  IOutStream& fwd(const V& v) {
    *os1 << v;
    *os2 << v;
    return *this;
  }
};

}  // namespace

IOutStream* IOutStream::createFileStream(const mstring& fnm) { return new ZktOFstream(fnm, false); }
void IOutStream::drainOpenFiles() { ZktOFstream::drainAll(); }
IOutStream* IOutStream::createStrStream(const mstring&) { return new ZktOstringstream(); }
IOutStream* IOutStream::createNullStream() { return new NullStream(); }
IOutStream* IOutStream::createWrapStream(IOutStream* s1) { return new WrapStream(s1); }
IOutStream* IOutStream::createDupStream(IOutStream* s1, IOutStream* s2, bool own) {
  return new DupStream(s1, s2, own);
}

// ---------------------------------------------------------------- UT

namespace UT {

// Freed with its size, so that the compile arena can use it again for the next line.
Buf::Buf(int size) : m_ptr(static_cast<char*>(::operator new((size_t)size + 2))), m_bufsz(size) { eos(); }
Buf::~Buf() { ::operator delete(m_ptr, (size_t)m_bufsz + 2); }

void Buf::read(FILE* is) {
  if (fgets(m_ptr, m_bufsz, is) == nullptr) {
    // Nothing read: the buffer keeps what it held and is scanned the same way.
  }
  // The first CR, LF or "//" ends the line; single slashes are stepped over.
  for (char* s = m_ptr + strcspn(m_ptr, "\r\n/"); *s; s += 1 + strcspn(s + 1, "\r\n/")) {
    if (*s != '/' || s[1] == '/') {
      *s = 0;
      break;
    }
  }
}

mstring trim(const mstring& s0) {
  const char* b = s0.c_str();
  const char* e = b + strlen(b);
  while (b < e && isspace((unsigned char)*b)) b++;
  while (e > b && isspace((unsigned char)e[-1])) e--;
  return mstring(b, (size_t)(e - b));
}

// The character right behind a separator is never tested, so of two adjacent
// separators only the first splits: "a..b" gives "a" and ".b". The text must
// not end in sep.
mvector<mstring> splitName(const mstring& name, char sep) {
  mvector<mstring> res;
  const char* s = name.c_str();
  const char* beg = s;
  while (*s) {
    if (*s == sep) {
      res.push_back(mstring(beg, (size_t)(s - beg)));
      s++;
      beg = s;
      if (*s == 0) break;  // a trailing separator would step over the NUL
    }
    s++;
  }
  res.push_back(mstring(beg));
  return res;
}

size_t decimal(long long n, char* buf) {
  if (n >= 0 && n < 100) {  // most numbers in generated text
    size_t len = 0;
    if (n >= 10) buf[len++] = (char)('0' + n / 10);
    buf[len++] = (char)('0' + n % 10);
    buf[len] = 0;
    return len;
  }
  char digits[20];
  unsigned long long u = n < 0 ? 0ULL - (unsigned long long)n : (unsigned long long)n;
  size_t k = 0;
  do {
    digits[k++] = (char)('0' + u % 10);
    u /= 10;
  } while (u != 0);
  size_t len = 0;
  if (n < 0) buf[len++] = '-';
  while (k > 0) buf[len++] = digits[--k];
  buf[len] = 0;
  return len;
}

mstring n2s(unsigned int n) {
  char buf[24];
  mstring r(buf, decimal((long long)n, buf));
  if (n > 2147483647u) r += 'U';
  return r;
}

mstring n2s(void* p) {
  char buf[32];
  snprintf(buf, sizeof buf, "%p", p);
  return mstring(buf);
}

mstring n2s(int n) {
  char buf[24];
  return mstring(buf, decimal(n, buf));
}

mstring n2s(double d) {
  char buf[64];
  snprintf(buf, sizeof buf, "%g", d);
  return mstring(buf);
}

mstring n2s(long long n) {
  char buf[24];
  return mstring(buf, decimal(n, buf));
}

mstring n2s(long long n, int width) { return adjust(n2s(n), width); }
mstring n2s(int n, int width) { return adjust(n2s(n), width); }
mstring n2s(unsigned int n, int width) { return adjust(n2s(n), width); }

mstring Q(const mstring& s) { return "\"" + s + "\""; }
mstring Q(int n) { return Q(n2s(n)); }

mstring adjust(const mstring& s, int lenWanted) {
  static const char kBlanks[] = "                                                                ";
  mstring r;
  r.set(s.p, s.size());  // with room for the blanks
  for (int i = (int)s.size(); i < lenWanted;) {
    const int n = lenWanted - i < 64 ? lenWanted - i : 64;
    r.add(kBlanks, (size_t)n);
    i += n;
  }
  return r;
}

pairstrings split2(const mstring& s) {
  pairstrings r;
  const char* b = s.c_str();
  const char* w = b;
  while (*w && !isspace((unsigned char)*w)) w++;
  r.first = mstring(b, (size_t)(w - b));
  while (*w && isspace((unsigned char)*w)) w++;
  if (*w) r.second = mstring(w);
  return r;
}

int imax(int a, int b) { return a > b ? a : b; }

// Letters are the ASCII ones: the compiler never sets a locale.
// The root directory "/" comes out as nothing, so a name joined to it is
// relative: intended, and kept.
mstring makefnm(const mstring& dir_, const mstring& fnm) {
  mstring d(dir_);
  if (!d.empty() && (d[(int)d.size() - 1] == '/' || d[(int)d.size() - 1] == '\\'))
    d = mstring(d.c_str(), d.size() - 1);
  if (!d.empty()) d += mstring(OS_SEP);
  d += fnm;
  return d;
}

void dlog(const mstring&) {}

}  // namespace UT

// ---------------------------------------------------------------- generator helpers

mstring hppClass(const mstring& n) { return mstring("") + n + mstring(""); }

const char* simple_put_cast(int size) {
  switch (size) {
    case 1: return "uint1";
    case 2: return "uint2";
    case 4: return "uint4";
    case 8: return "&";
  }
  return nullptr;
}

const char* enum_int_type(int size) {
  switch (size) {
    case 1: return "uint1";
    case 2: return "uint2";
    case 4: return "uint4";
  }
  IErrReporter::panic("illegal enum element size (" + UT::n2s(size) + ")", false);
}

const char* simple_get_accessor_name(int size) {
  switch (size) {
    case 1: return "zkt_w_b1_get";
    case 2: return "zkt_w_b2_get";
    case 4: return "zkt_w_b4_get";
    case 8: return "zkt_w_b8_get";
  }
  IErrReporter::panic("illegal simple element size (" + UT::n2s(size) + ")", false);
}

const char* simple_put_accessor_name(int size, bool with_event) {
  // clang-format off
  static const char* const names[2][4] = {
    { "zkt_w_b1_put",    "zkt_w_b2_put",    "zkt_w_b4_put",    "zkt_w_b8_put" },
    { "zkt_w_b1_put_ev", "zkt_w_b2_put_ev", "zkt_w_b4_put_ev", "zkt_w_b8_put_ev" },
  };
  // clang-format on
  switch (size) {
    case 1: return names[with_event][0];
    case 2: return names[with_event][1];
    case 4: return names[with_event][2];
    case 8: return names[with_event][3];
  }
  IErrReporter::panic("illegal simple element size (" + UT::n2s(size) + ")", false);
}

IOutStream& I(IOutStream& os, int n) {
  for (int i = 0; i < n; i++) os << ' ';
  return os;
}

// "<" and ">" become "{" and "}" so that the dump stays well-formed XML.
mstring A(const mstring& name, const mstring& value) {
  mstring v(value);
  for (unsigned int i = 0; i < v.size(); i++) {
    if (v[(int)i] == '<') v[(int)i] = '{';
    else if (v[(int)i] == '>') v[(int)i] = '}';
  }
  return name + "=" + UT::Q(v) + " ";
}

mstring A(const mstring& name, int value) { return name + "=" + UT::Q(value) + " "; }
mstring A(const mstring& name, bool value) { return name + "=" + UT::Q(mstring(value ? "true" : "false")) + " "; }
mstring A(const mstring& name, const FSize& value) { return name + "=" + UT::Q(value) + " "; }

// ---------------------------------------------------------------- Frag

namespace {

// Open addressing from a pointer to a number: power-of-two capacity, at most
// half full, a null key marks a free cell.
class PtrIndex {
public:
  int find(const void* key) const {
    if (m_cells.empty()) return -1;
    for (size_t i = hash(key) & (m_cells.size() - 1);; i = (i + 1) & (m_cells.size() - 1)) {
      if (m_cells[i].key == key) return m_cells[i].value;
      if (m_cells[i].key == nullptr) return -1;
    }
  }
  void add(const void* key, int value) {
    if (2 * (m_count + 1) > m_cells.size()) grow();
    put(key, value);
    m_count++;
  }

private:
  struct Cell {
    const void* key = nullptr;
    int value = 0;
  };
  std::vector<Cell> m_cells;
  size_t m_count = 0;

  static size_t hash(const void* key) {
    unsigned long long x = (unsigned long long)(uintptr_t)key;
    return (size_t)((x * 0x9E3779B97F4A7C15ull) >> 40);
  }
  void put(const void* key, int value) {
    size_t i = hash(key) & (m_cells.size() - 1);
    while (m_cells[i].key != nullptr) i = (i + 1) & (m_cells.size() - 1);
    m_cells[i].key = key;
    m_cells[i].value = value;
  }
  void grow() {
    std::vector<Cell> old;
    old.swap(m_cells);
    m_cells.resize(old.empty() ? 256 : old.size() * 2);
    for (const Cell& c : old)
      if (c.key != nullptr) put(c.key, c.value);
  }
};

// One run of a fragment text: literal text, then a placeholder by number;
// the last run has no placeholder (id -1).
struct FragPiece {
  const char* lit;
  size_t litLen;
  int id;
  const char* name;  // for the message of a placeholder never set
  size_t nameLen;
};

// The placeholder names and fragment texts one thread has met. A name gets
// its number from its text, so two literals of one name share it; pointers
// are only the fast way there.
class FragRegistry {
public:
  int nameId(const char* name) {
    int id = m_names.find(name);
    if (id < 0) {
      CompileArena::Outside keep;  // the registry outlives every compile of its thread
      id = idOfText(name, strlen(name));
      m_names.add(name, id);
#ifdef ZKT_CHECK_FRAGMENTS
      m_nameCopies[name] = name;
    } else if (m_nameCopies[name] != name) {
      IErrReporter::panic("placeholder name changed at its address", false);
#endif
    }
    return id;
  }

  const FragPiece* pieces(const char* text) {
    int n = m_texts.find(text);
    if (n >= 0) {
#ifdef ZKT_CHECK_FRAGMENTS
      if (m_copies[(size_t)n] != text) IErrReporter::panic("fragment text changed at its address", false);
#endif
      return m_pieces[(size_t)n].data();
    }
    CompileArena::Outside keep;
    std::vector<FragPiece> v;
    const char* from = text;
    for (const char* s = strchr(text, '{'); s != nullptr; s = strchr(s + 1, '{')) {
      if (!UT::nameBeg(s[1])) continue;
      const char* e = s + 2;
      while (UT::nameCont(*e)) e++;
      if (*e != '}') continue;
      const size_t len = (size_t)(e - s - 1);
      v.push_back(FragPiece{from, (size_t)(s - from), idOfText(s + 1, len), s + 1, len});
      s = e;
      from = e + 1;
    }
    v.push_back(FragPiece{from, strlen(from), -1, nullptr, 0});
    m_texts.add(text, (int)m_pieces.size());
    m_pieces.push_back(std::move(v));
#ifdef ZKT_CHECK_FRAGMENTS
    m_copies.push_back(text);
#endif
    return m_pieces.back().data();
  }

private:
  PtrIndex m_names;
  PtrIndex m_texts;
  std::unordered_map<std::string, int> m_byText;
  std::vector<std::vector<FragPiece>> m_pieces;  // each run list stays put when this grows
#ifdef ZKT_CHECK_FRAGMENTS
  std::vector<std::string> m_copies;  // each text as first met, to catch one that was not a literal
  std::unordered_map<const void*, std::string> m_nameCopies;  // the same for names
#endif

  int idOfText(const char* name, size_t len) {
    return m_byText.emplace(std::string(name, len), (int)m_byText.size()).first->second;
  }
};

FragRegistry& fragRegistry() {
  static thread_local FragRegistry registry;
  return registry;
}

[[noreturn]] void placeholderNeverSet(const FragPiece& pc) {
  IErrReporter::panic("undefined placeholder {" + mstring(pc.name, pc.nameLen) + "} in generated text", false);
}

}  // namespace

const Frag::Slot* Frag::find(int id) const {
  for (unsigned h = (unsigned)id & (kTable - 1);; h = (h + 1) & (kTable - 1)) {
    const unsigned b = m_table[h];
    if (b == 0) break;
    if (v_slots[b - 1].id == id) return &v_slots[b - 1];
  }
  for (unsigned int i = kIndexed; i < v_slots.size(); i++)
    if (v_slots[i].id == id) return &v_slots[i];
  return nullptr;
}

void Frag::put(const char* name, const char* value, size_t len) {
  const int id = fragRegistry().nameId(name);
  Slot* sl = const_cast<Slot*>(find(id));
  if (sl == nullptr) {
    if (v_slots.size() == 0) v_slots.reserve(32);
    v_slots.push_back(Slot{id, 0, 0, 0});
    sl = &v_slots.back();
    if (v_slots.size() <= kIndexed) {
      unsigned h = (unsigned)id & (kTable - 1);
      while (m_table[h] != 0) h = (h + 1) & (kTable - 1);
      m_table[h] = (unsigned char)v_slots.size();
    }
  }
  if (len > sl->cap) {
    if (m_text.length + len > m_limit) compact();
    sl->off = (unsigned)m_text.length;
    sl->cap = (unsigned)len;
    m_text.add(value, len);
  } else if (len != 0) {
    memcpy(m_text.p + sl->off, value, len);
  }
  sl->len = (unsigned)len;
}

// Drops the room of values that moved: a Frag reused for many entities
// keeps a text of about its current values.
void Frag::compact() {
  mstring text;
  for (unsigned int i = 0; i < v_slots.size(); i++) {
    Slot& sl = v_slots[i];
    const unsigned off = (unsigned)text.length;
    text.add(m_text.p + sl.off, sl.len);
    sl.off = off;
    sl.cap = sl.len;
  }
  m_text = std::move(text);
  m_limit = 2 * m_text.length + 65536;
}

Frag& Frag::set(const char* name, const mstring& value) {
  put(name, value.p, value.length);
  return *this;
}

Frag& Frag::set(const char* name, const char* value) {
  put(name, value, strlen(value));
  return *this;
}

Frag& Frag::set(const char* name, long value) {
  char buf[24];
  put(name, buf, UT::decimal((long long)value, buf));
  return *this;
}

mstring Frag::fill(const char* text) const {
  mstring res;
  fillInto(res, text);
  return res;
}

void Frag::fillTo(IOutStream& os, const char* text) const {
  if (os.discards()) {  // nothing to write, but a missing placeholder is still an error
    for (const FragPiece* pc = fragRegistry().pieces(text); pc->id >= 0; pc++)
      if (find(pc->id) == nullptr) placeholderNeverSet(*pc);
    return;
  }
  // Emptied by hand: set() with no text would free the buffer. It lives as
  // long as the thread, so it grows outside the compile arena.
  static thread_local mstring scratch;
  scratch.length = 0;
  CompileArena::Outside keep;
  fillInto(scratch, text);
  os << scratch;
}

void Frag::fillInto(mstring& res, const char* text) const {
  for (const FragPiece* pc = fragRegistry().pieces(text);; pc++) {
    res.add(pc->lit, pc->litLen);
    if (pc->id < 0) return;
    const Slot* sl = find(pc->id);
    if (sl == nullptr) placeholderNeverSet(*pc);
    res.add(m_text.p + sl->off, sl->len);
  }
}
