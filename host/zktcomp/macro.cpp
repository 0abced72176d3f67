// Preprocessor: comments, directives, includes and object-like macros, one physical line at a time.
#include "macro.h"

#include <ctype.h>
#include <string.h>

#include "parser.h"

namespace {

// A line split for directives: cmd is the word right behind "#" (empty when
// the line is no directive), tail the rest behind the blanks that follow.
struct MacLine {
  mstring cmd;
  mstring tail;
};

// No blank may stand between "#" and the word: "# define X" has an empty
// cmd and is an ordinary text line. The tail keeps its trailing blanks.
MacLine detect(const char* line) {
  MacLine ml;
  const char* p = line;
  while (*p && isspace((unsigned char)*p)) p++;
  if (*p != '#') return ml;
  p++;
  const char* word = p;
  while (isalpha((unsigned char)*p)) p++;
  ml.cmd = mstring(word, (size_t)(p - word));
  while (*p && isspace((unsigned char)*p)) p++;
  ml.tail = mstring(p);
  return ml;
}

// The longest run of name characters from p on.
const char* nameEnd(const char* p) {
  while (*p && UT::nameCont(*p)) p++;
  return p;
}

const long kMaxExpansionsPerLine = 1000000;

}  // namespace

PreProcessor::PreProcessor(FILE* inp, const mstring& name, IErrReporter& rep, const mstring& includeDir,
                           const mstring&)
    : m_rep(rep),
      m_inp(inp),
      m_inpName(name),
      m_lineNum(0),
      m_includeDir(includeDir),
      m_finished(false),
      m_inComment(false),
      last(nullptr),
      active(true) {}

// Closes what "#include" opened: the suspended files from the second on and
// the current one. The first suspended file is the caller's and stays open;
// with nothing suspended the current file is the caller's as well.
PreProcessor::~PreProcessor() {
  if (m_inpStack.size() == 0) return;
  for (unsigned int i = 1; i < m_inpStack.size(); i++) fclose(m_inpStack[i]);
  fclose(m_inp);
}

PreProcessor::Macros* PreProcessor::findDef(const mstring& s) {
  Macros probe(s, mstring());
  HIComparable* h = s_macros.get()->find(probe);
  return h ? static_cast<Macros*>(h->get()) : nullptr;
}

void PreProcessor::removeDef(const mstring& s) {
  Macros probe(s, mstring());
  s_macros.get()->remove(probe);
}

// The reporter's error operations never return, but the attribute isn't
// trusted through a virtual call: this keeps the forwarders [[noreturn]].
[[noreturn]] static void reporterReturned() { IErrReporter::panic("error reporter returned", false); }

void PreProcessor::error(const mstring& txt, int pos) {
  m_rep.err(txt, m_inpName, m_lineNum, pos);
  reporterReturned();
}

void PreProcessor::error1(const mstring& txt, const mstring& p1, int pos) {
  m_rep.err1(txt, p1, m_inpName, m_lineNum, pos);
  reporterReturned();
}

void PreProcessor::error2(const mstring& txt, const mstring& p1, const mstring& p2, int pos) {
  m_rep.err2(txt, p1, p2, m_inpName, m_lineNum, pos);
  reporterReturned();
}

void PreProcessor::error3(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3, int pos) {
  m_rep.err3(txt, p1, p2, p3, m_inpName, m_lineNum, pos);
  reporterReturned();
}

void PreProcessor::error4(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                          const mstring& p4, int pos) {
  m_rep.err4(txt, p1, p2, p3, p4, m_inpName, m_lineNum, pos);
  reporterReturned();
}

void PreProcessor::warning(const mstring& txt, int pos) { m_rep.warning(txt, m_inpName, m_lineNum, pos); }

// Reads physical lines until one is not swallowed by a block comment. The
// read that meets the end of a file is counted, so errors at the end of a
// file name the line one past its last. A read error counts as the end of
// the file (a directory opened as a file would otherwise never end).
mstring PreProcessor::readLine() {
  if (m_finished) return mstring();
  UT::Buf buf(5000);  // one read takes at most 4999 characters
  for (;;) {
    if (!feof(m_inp) && !ferror(m_inp)) {
      buf.read(m_inp);  // cut at CR, LF or "//", also inside strings and comments
      m_lineNum++;
      if (!m_inComment) break;
      char* close = strstr(buf.m_ptr, "*/");
      if (close == nullptr) continue;
      memset(buf.m_ptr, ' ', (size_t)(close + 2 - buf.m_ptr));
      m_inComment = false;
      break;
    }
    // Intended wording: it differs from the table key "comment was not
    // closed with */" and so shows as it stands.
    if (m_inComment) error("comment is not closed with */", 0);
    if (m_inpStack.size() == 0) {
      if (v_ifStack.size() != 0) error("no #endif for #if", 0);
      m_finished = true;
      return mstring();
    }
    fclose(m_inp);
    m_inp = m_inpStack.back();
    m_inpName = m_inpNameStack.back();
    m_lineNum = m_lineNumStack.back();
    m_inpStack.pop_back();
    m_inpNameStack.pop_back();
    m_lineNumStack.pop_back();
  }
  stripComments(buf.m_ptr);
  return processLine(buf.m_ptr);
}

// Blanks out "/* ... */" so that columns stay, or cuts the line at a "/*"
// that doesn't close on it. Quotes don't count: "/*" in a string opens a
// comment too. Everything before `from` is text without "/*" or blanks, so
// the search goes on from there and the line is scanned once.
void PreProcessor::stripComments(char* line) {
  char* from = line;
  for (;;) {
    char* open = strstr(from, "/*");
    if (open == nullptr) return;
    char* close = strstr(open + 2, "*/");
    if (close == nullptr) {
      *open = 0;
      m_inComment = true;
      return;
    }
    memset(open, ' ', (size_t)(close + 2 - open));
    from = close + 2;
  }
}

void PreProcessor::setLast() {
  last = v_ifStack.size() ? &v_ifStack.back() : nullptr;
  active = last == nullptr || last->m_enabled;
}

// Conditionals are followed in inactive branches too; the other directives
// only in active ones. An unknown directive word is ignored. A directive
// line gives an empty line.
mstring PreProcessor::processLine(const char* line) {
  MacLine ml = detect(line);
  setLast();
  if (!ml.cmd.empty()) {
    // The name is the whole tail: "#ifdef X // note" asks for "X " with its
    // trailing blank, which is never defined. Intended.
    if (ml.cmd == "ifdef") {
      v_ifStack.push_back(Cond("ifdef", active && isDefined(ml.tail)));
    } else if (ml.cmd == "ifndef") {
      v_ifStack.push_back(Cond("ifndef", active && !isDefined(ml.tail)));
    } else if (ml.cmd == "else") {
      doElse(ml.tail);
    } else if (ml.cmd == "endif") {
      if (last == nullptr) error("#endif without matching #if", 0);
      v_ifStack.pop_back();
    } else if (!active) {
      // define, undef and include are skipped in an inactive branch
    } else if (ml.cmd == "define") {
      UT::pairstrings nv = UT::split2(ml.tail);  // the value keeps its trailing blanks
      if (isDefined(nv.first)) error1("macro #1 already defined", nv.first, 0);
      s_macros.insert(HIComparable(new Macros(nv.first, nv.second)));
    } else if (ml.cmd == "undef") {
      UT::pairstrings nv = UT::split2(ml.tail);
      if (!nv.second.empty()) error("illegal #undef command - extra words", 0);
      removeDef(nv.first);  // an unknown name is no error
    } else if (ml.cmd == "include") {
      doInclude(ml.tail);
    }
    return mstring();
  }
  if (!active) return mstring();
  mstring out;
  rewriteText(line, out);
  return out;
}

// else -> '#else': only one per block, enabled when the block was not and
// the surrounding block is.
void PreProcessor::doElse(const mstring& tail) {
  if (!tail.empty()) error("extra words after #else", 0);
  if (last == nullptr || (last->m_cmd != "ifdef" && last->m_cmd != "ifndef")) error("#else without matching #if", 0);
  bool enabled = !active;
  v_ifStack.pop_back();
  setLast();
  if (enabled) enabled = active;
  v_ifStack.push_back(Cond("else", enabled));
}

// include -> '#include' ( '"' name '"' | '<' name '>' ): both forms search
// only m_includeDir; nothing may follow the closing delimiter.
void PreProcessor::doInclude(const mstring& tail) {
  if (m_inpStack.size() > 100) error("recursion in #include", 0);  // 101 suspended files at most
  const char* t = tail.c_str();
  size_t n = tail.size();
  if (n <= 2 || !((t[0] == '"' && t[n - 1] == '"') || (t[0] == '<' && t[n - 1] == '>')))
    error("incorrect #include syntax", 0);
  mstring path = UT::makefnm(m_includeDir, mstring(t + 1, n - 2));
  FILE* f = fopen(path.c_str(), "r");
  if (f == nullptr) error2("current directory is #1, cannot open include file #2", UT::currdir(), path, 0);
  m_opened.push_back(path);
  m_inpStack.push_back(m_inp);
  m_inpNameStack.push_back(m_inpName);
  m_lineNumStack.push_back(m_lineNum);
  m_inp = f;
  m_inpName = path;
  m_lineNum = 0;
}

namespace {

// Writes into room made beforehand: no test for room at each character.
struct RoomWriter {
  char* w;
  void put(char c) { *w++ = c; }
  void add(const char* p, size_t n) {
    memcpy(w, p, n);
    w += n;
  }
};

// Appends to a string that grows as needed.
struct GrowWriter {
  mstring& s;
  void put(char c) { s += c; }
  void add(const char* p, size_t n) { s.add(p, n); }
};

// The walk of rewriteText; name writes the name [b, e) as it stands or expanded.
template <class Writer, class Name>
void rewriteWith(PreProcessor& pp, const char* line, Writer& out, Name name) {
  const char* p = line;
  char prev = 0;  // last character copied, NUL behind a name
  while (*p) {
    if (UT::nameBeg(*p, prev)) {
      const char* end = nameEnd(p);
      out.put(' ');
      name(out, p, end);
      out.put(' ');
      p = end;
      prev = 0;
    } else if (*p == '"') {
      const char* begin = p++;
      bool escaped = false;
      for (;;) {
        if (*p == 0) pp.error("non-terminated string literal", 0);
        char c = *p++;
        if (escaped)
          escaped = false;
        else if (c == '\\')
          escaped = true;
        else if (c == '"')
          break;
      }
      out.add(begin, (size_t)(p - begin));
      prev = '"';
    } else if (prev == '0' && (*p == 'x' || *p == 'X')) {
      out.put('x');
      prev = 'x';
      for (p++; UT::CVT::isHexDigit(*p); p++) {
        out.put(*p);
        prev = *p;
      }
    } else {
      out.put(*p);
      prev = *p++;
    }
  }
}

}  // namespace

// Rewrites an active text line: each name (macro or not) gets a blank on
// both sides, so reader positions refer to this text. String literals are
// copied verbatim. A name never starts right behind "0", and "x" or "X"
// there makes a hexadecimal number copied whole, always with a small "x".
void PreProcessor::rewriteText(const char* line, mstring& out) {
  m_expansions = 0;
  if (s_macros.get()->size() == 0) {
    // Without macros the text at most triples (a blank on both sides of each
    // one-letter name): room for that once, then no test for room.
    const unsigned int start = out.length;
    out.reserve(start + 3 * strlen(line));
    RoomWriter w{out.p + start};
    rewriteWith(*this, line, w, [](RoomWriter& o, const char* b, const char* e) { o.add(b, (size_t)(e - b)); });
    out.length = (unsigned int)(w.w - out.p);
    out.p[out.length] = 0;
    return;
  }
  GrowWriter w{out};
  rewriteWith(*this, line, w, [this](GrowWriter& o, const char* b, const char* e) {
    o.s += expand(mstring(b, (size_t)(e - b)), 0);
  });
}

// A macro value is walked like a text line but plainly: names inside quotes
// are expanded too, and there is no hexadecimal rule (0x1F gives "0x1 F ").
// Intended. Levels 0 to 20 may expand a macro; level 21 is an error, so a
// macro defined as itself fails at its first use.
mstring PreProcessor::expand(const mstring& token, int level) {
  Macros* m = findDef(token);
  if (m == nullptr) return token;
  if (level > 20) error("recursion in macro", 0);
  // Macros that name others several times grow exponentially with depth;
  // a line that needs this many expansions would never finish.
  if (++m_expansions > kMaxExpansionsPerLine) error("macro expansion is too large", 0);
  mstring out;
  const char* p = m->m_value.c_str();
  char prev = 0;
  while (*p) {
    if (UT::nameBeg(*p, prev)) {
      const char* end = nameEnd(p);
      out += ' ';
      out += expand(mstring(p, (size_t)(end - p)), level + 1);
      out += ' ';
      p = end;
      prev = 0;
    } else {
      out += *p;
      prev = *p++;
    }
  }
  return out;
}
