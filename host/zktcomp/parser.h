// Token reader: cuts preprocessed lines into tokens and offers typed reads of them.
#ifndef ZKTCOMP_PARSER_H
#define ZKTCOMP_PARSER_H

#include <stdio.h>

#include "ierrrep.h"
#include "macro.h"

namespace UT {
// Conversions of number texts; each returns true when the whole text was a number.
struct CVT {
  static bool isHexDigit(char c);
  static bool fromHex(const char* s, long* n);
  static bool fromOct(const char* s, long* n);
  static bool s2int(const char* s, long* n);
  static bool s2i8(const char* s, long long* n);
  static bool s2u8(const char* s, unsigned long long* n);
  static bool s2dbl(const char* s, double* n);
};
}  // namespace UT

// A token is just text: keywords and names are told apart by the analyzer.
// Errors of the reader itself carry m_pos, a column of the line as the
// preprocessor rewrote it (a blank on both sides of every name).
class Parser {
public:
  int m_pos;
  mstring m_line;
  PreProcessor m_prepr;
  mvector<mstring> v_taken;  // pushed-back tokens, last in first out

  Parser(FILE* inp, const mstring& name, IErrReporter* rep, const mstring& includeDir, const mstring& dir);

  mstring get();  // empty only at the end of the input
  void takeBack(mstring& t);  // takes the text of t, which is left empty
  bool match(const mstring& sample);  // true, or the error "expected #1"
  bool match(const char* sample);     // the same for a literal, without a string made for it
  mstring getName();
  unsigned int getNum();
  unsigned int getNumEx(bool ok_if_fail);
  int getSigned();
  mstring getQuotedString();  // keeps quotes and backslashes; ignores v_taken
  void skipBlanks();
  bool canAppend(const mstring& token, char c);
  bool canAppend(const char* token, size_t len, char c);  // token: len characters, not empty
  bool wasError() const;

  [[noreturn]] void error(const mstring& txt, int pos);
  [[noreturn]] void error1(const mstring& txt, const mstring& p1, int pos);
  [[noreturn]] void error2(const mstring& txt, const mstring& p1, const mstring& p2, int pos);
  [[noreturn]] void error3(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3, int pos);
  [[noreturn]] void error4(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                           const mstring& p4, int pos);
  void warning(const mstring& txt, int pos);

private:
  bool nextToken(int& begin);
};

#endif
