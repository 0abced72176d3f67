// Token reader: cuts preprocessed lines into tokens, and the number conversions of UT::CVT.
#include "parser.h"

#include <ctype.h>
#include <stdlib.h>
#include <string.h>

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
// The blanks of the C locale, whatever locale the host has set.
bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isHexStart(const char* s) { return s[0] == '0' && (s[1] == 'x' || s[1] == 'X'); }

// The characters that stand alone as tokens (canAppend refuses anything behind them).
bool isSign(char c) {
  switch (c) {
    case '{': case '}': case '<': case '>': case ';': case ',': case '(': case ')':
    case '[': case ']': case ':': case '*': case '.': case '=':
      return true;
    default:
      return false;
  }
}

}  // namespace

// ---------------------------------------------------------------- UT::CVT

namespace UT {

bool CVT::isHexDigit(char c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

// No overflow check: the digits accumulate in 64 bits and wrap. "0x" alone is 0.
bool CVT::fromHex(const char* s, long* n) {
  if (!isHexStart(s)) return false;
  unsigned long long v = 0;
  for (s += 2; *s; s++) {
    char c = *s;
    if (isDigit(c))
      v = v * 16 + (unsigned long long)(c - '0');
    else if (c >= 'a' && c <= 'f')
      v = v * 16 + (unsigned long long)(c - 'a' + 10);
    else if (c >= 'A' && c <= 'F')
      v = v * 16 + (unsigned long long)(c - 'A' + 10);
    else
      return false;
  }
  *n = (long)v;
  return true;
}

bool CVT::fromOct(const char* s, long* n) {
  if (s[0] != '0') return false;
  unsigned long long v = 0;
  for (s++; *s; s++) {
    if (*s < '0' || *s > '7') return false;
    v = v * 8 + (unsigned long long)(*s - '0');
  }
  *n = (long)v;
  return true;
}

bool CVT::s2int(const char* s, long* n) {
  if (s[0] == '0') return isHexStart(s) ? fromHex(s, n) : fromOct(s, n);
  char* end;
  long v = strtol(s, &end, 10);
  if (*end != 0) return false;
  *n = v;
  return true;
}

// These three store the value even when the text wasn't used whole; an
// empty text counts as a number.
bool CVT::s2i8(const char* s, long long* n) {
  char* end;
  *n = strtoll(s, &end, 0);
  return *end == 0;
}

bool CVT::s2u8(const char* s, unsigned long long* n) {
  char* end;
  *n = strtoull(s, &end, 0);
  return *end == 0;
}

bool CVT::s2dbl(const char* s, double* n) {
  char* end;
  *n = strtod(s, &end);
  return *end == 0;
}

}  // namespace UT

// ---------------------------------------------------------------- Parser

Parser::Parser(FILE* inp, const mstring& name, IErrReporter* rep, const mstring& includeDir, const mstring& dir)
    : m_pos(0), m_prepr(inp, name, *rep, includeDir, dir) {}

// Finds the next token of the input, reading lines as needed: it is
// m_line[begin, m_pos). False at the end of the input. A token never spans
// two lines.
bool Parser::nextToken(int& begin) {
  for (;;) {
    while (!m_prepr.finished() && m_pos >= (int)m_line.size()) {
      m_line = m_prepr.readLine();
      m_pos = 0;
    }
    if (m_prepr.finished()) return false;
    // The scan keeps its place in a local: stores into m_pos would be
    // repeated at every character, which may alias it.
    const char* line = m_line.c_str();
    const int size = (int)m_line.size();
    int pos = m_pos;
    while (pos < size && isBlank(line[pos])) pos++;
    begin = pos;
    if (pos < size) pos++;
    // What canAppend answers for a name and for a sign, without asking it.
    if (UT::nameBeg(line[begin])) {
      while (pos < size && UT::nameCont(line[pos])) pos++;
      m_pos = pos;
    } else if (isSign(line[begin])) {
      m_pos = pos;  // a token of one character
    } else {
      m_pos = pos;  // canAppend reports its errors at m_pos
      while (m_pos < size && canAppend(line + begin, (size_t)(m_pos - begin), line[m_pos])) m_pos++;
    }
    if (m_pos > begin) return true;
  }
}

// Pushed-back tokens come first, then the next token of the input.
mstring Parser::get() {
  if (v_taken.size()) {
    mstring t = std::move(v_taken.back());
    v_taken.pop_back();
    return t;
  }
  int begin;
  if (!nextToken(begin)) return mstring();
  return mstring(m_line.c_str() + begin, (size_t)(m_pos - begin));
}

void Parser::takeBack(mstring& t) { v_taken.push_back(std::move(t)); }

bool Parser::match(const mstring& sample) { return match(sample.c_str()); }

// Compares the token where it stands in the line: no string is made for it.
bool Parser::match(const char* sample) {
  if (v_taken.size()) {
    if (get() != sample) error1("expected #1", mstring(sample), m_pos);
    return true;
  }
  int begin = 0;
  const bool got = nextToken(begin);
  const size_t len = got ? (size_t)(m_pos - begin) : 0;
  if (strlen(sample) != len || memcmp(m_line.c_str() + begin, sample, len) != 0)
    error1("expected #1", mstring(sample), m_pos);
  return true;
}

mstring Parser::getName() {
  mstring t = get();
  const char* s = t.c_str();
  bool ok = UT::nameBeg(s[0]);
  for (int i = 1; ok && s[i]; i++) ok = UT::nameCont(s[i]);
  // An empty token (end of input) is dropped by the translation, so the
  // message then shows its placeholder: identifier expected, found "#1".
  if (!ok) error1("identifier expected, found #1", t, m_pos);
  return t;
}

unsigned int Parser::getNum() { return getNumEx(false); }

// Hexadecimal and octal texts are read as such ("0" passes as 0); anything
// else must be a positive decimal. With ok_if_fail a failed token is pushed
// back and strtol's value (0 for a word) returned. No range check: the value
// is cut to 32 bits.
unsigned int Parser::getNumEx(bool ok_if_fail) {
  mstring t;
  if (v_taken.size() == 0) {
    // A plain decimal is read where it stands, to the value strtol gives it.
    int begin = 0;
    if (nextToken(begin)) {
      const char* d = m_line.c_str() + begin;
      const int len = m_pos - begin;
      unsigned long long v = 0;
      int i = d[0] >= '1' && d[0] <= '9' && len <= 18 ? 0 : len + 1;
      for (; i < len && d[i] >= '0' && d[i] <= '9'; i++) v = v * 10 + (unsigned long long)(d[i] - '0');
      if (i == len) return (unsigned int)v;
      t = mstring(d, (size_t)len);
    }
  } else {
    t = get();
  }
  const char* s = t.c_str();
  long n = 0;
  if (isHexStart(s)) {
    if (!UT::CVT::fromHex(s, &n)) error1("not a hex number: #1", t, m_pos);
    return (unsigned int)n;
  }
  if (s[0] == '0') {
    if (!UT::CVT::fromOct(s, &n)) error1("not an octal number: #1", t, m_pos);
    return (unsigned int)n;
  }
  char* end;
  n = strtol(s, &end, 10);
  if (*end != 0 || n <= 0) {
    if (!ok_if_fail) error1("positive number expected, found #1", t, m_pos);
    takeBack(t);
  }
  return (unsigned int)n;
}

// Like getNumEx, but any decimal value passes. A "-" token holds only digits
// and points, so "-0x5" reads as 0 and leaves "x5" for the next get.
int Parser::getSigned() {
  mstring t = get();
  const char* s = t.c_str();
  long n = 0;
  if (isHexStart(s)) {
    if (!UT::CVT::fromHex(s, &n)) error1("not a hex number: #1", t, m_pos);
    return (int)n;
  }
  if (s[0] == '0') {
    if (!UT::CVT::fromOct(s, &n)) error1("not an octal number: #1", t, m_pos);
    return (int)n;
  }
  char* end;
  n = strtol(s, &end, 10);
  if (*end != 0) error1("number expected, found #1", t, m_pos);
  return (int)n;
}

// Works on the characters of the line and doesn't see pushed-back tokens.
// Unlike get, it keeps an escape flag, so "a\\" ends at its last quote.
mstring Parser::getQuotedString() {
  mstring result;
  while (!m_prepr.finished() && result.empty()) {
    while (!m_prepr.finished() && m_pos >= (int)m_line.size()) {
      m_line = m_prepr.readLine();
      m_pos = 0;
    }
    if (m_prepr.finished()) break;
    skipBlanks();
    if (m_pos >= (int)m_line.size()) continue;
    if (m_line[m_pos] != '"') error("opening double quote is expected", m_pos);
    result += m_line[m_pos++];
    bool escaped = false;
    bool closed = false;
    while (!closed && m_pos < (int)m_line.size()) {
      char c = m_line[m_pos++];
      result += c;
      if (c == '\\' && !escaped) {
        escaped = true;
      } else {
        closed = c == '"' && !escaped;
        escaped = false;
      }
    }
    if (!closed) error("closing double quote is expected", m_pos);
  }
  return result;
}

void Parser::skipBlanks() {
  while (m_pos < (int)m_line.size() && isBlank(m_line[m_pos])) m_pos++;
}

// Whether c continues token; the tests are tried in this order.
bool Parser::canAppend(const mstring& token, char c) { return canAppend(token.c_str(), token.size(), c); }

bool Parser::canAppend(const char* t, size_t len, char c) {
  char fst = t[0];
  if (UT::nameBeg(fst)) return UT::nameCont(c);
  if (fst == '0') {
    if (len == 1 && (c == 'x' || c == 'X')) return true;
    if (len > 1 && (t[1] == 'x' || t[1] == 'X')) return UT::CVT::isHexDigit(c);
  }
  // Numbers may hold several points and have no exponent: 1.2.3 is one
  // token, 1e5 two. A lone "-" is a token.
  if (isDigit(fst) || fst == '-') return isDigit(c) || c == '.';
  // A string runs to the first quote not directly behind a backslash, or to
  // the end of the line.
  if (fst == '"') {
    if (len == 1 || t[len - 1] != '"') return true;
    return t[len - 2] == '\\';
  }
  if (isBlank(c)) return false;
  if (isSign(fst)) return false;
  // Names the character behind the strange one (intended); a strange
  // character before a blank or the line end becomes a token of its own.
  error(mstring("Unrecognized Symbol \"") + mstring(&c, 1) + "\"", m_pos);
}

bool Parser::wasError() const { return m_prepr.wasError(); }

void Parser::error(const mstring& txt, int pos) { m_prepr.error(txt, pos); }

void Parser::error1(const mstring& txt, const mstring& p1, int pos) { m_prepr.error1(txt, p1, pos); }

void Parser::error2(const mstring& txt, const mstring& p1, const mstring& p2, int pos) {
  m_prepr.error2(txt, p1, p2, pos);
}

void Parser::error3(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3, int pos) {
  m_prepr.error3(txt, p1, p2, p3, pos);
}

void Parser::error4(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                    const mstring& p4, int pos) {
  m_prepr.error4(txt, p1, p2, p3, p4, pos);
}

void Parser::warning(const mstring& txt, int pos) { m_prepr.warning(txt, pos); }
