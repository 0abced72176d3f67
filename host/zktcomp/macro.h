// Preprocessor: turns a schema file into clean text lines (comments out, directives obeyed, macros expanded).
#ifndef ZKTCOMP_MACRO_H
#define ZKTCOMP_MACRO_H

#include <stdio.h>

#include "ierrrep.h"

// Reads the schema line by line. A directive, a comment-only line or a line
// of an inactive branch comes back as an empty line; every active text line
// comes back rewritten with a blank on both sides of each name. Line numbers
// are those of the physical lines of the file being read; the read that meets
// the end of a file counts as a line too.
//
// The first input file belongs to the caller; files opened by "#include" are
// closed here, at their end or in the destructor.
class PreProcessor {
public:
  // One open conditional block: "ifdef", "ifndef" or "else".
  class Cond {
  public:
    mstring m_cmd;
    bool m_enabled;
    Cond() : m_enabled(false) {}
    Cond(const mstring& cmd, bool enabled) : m_cmd(cmd), m_enabled(enabled) {}
  };

  // An object-like macro; m_value is kept unexpanded and expanded at each use.
  class Macros : public IComparable {
  public:
    mstring m_name;
    mstring m_value;
    Macros(const mstring& name, const mstring& value) : m_name(name), m_value(value) {}
    bool less(const IComparable* other) const override {
      return m_name < static_cast<const Macros*>(other)->m_name;
    }
    const mstring* key() const override { return &m_name; }
  };

  // dir (the output directory) is accepted for the caller's sake and not used.
  PreProcessor(FILE* inp, const mstring& name, IErrReporter& rep, const mstring& includeDir,
               const mstring& dir);
  ~PreProcessor();

  mvector<mstring> m_opened;  // every file "#include" opened, in order (for the dependency file)

  mstring readLine();  // empty both for an empty line and once finished
  bool finished() const { return m_finished; }
  bool wasError() const { return m_rep.wasError(); }
  bool isDefined(const mstring& name) { return findDef(name) != nullptr; }
  Macros* findDef(const mstring& s);
  void removeDef(const mstring& s);

  // Forward to the reporter with the current file and line. The
  // preprocessor's own errors pass position 0: a line without a position.
  [[noreturn]] void error(const mstring& txt, int pos);
  [[noreturn]] void error1(const mstring& txt, const mstring& p1, int pos);
  [[noreturn]] void error2(const mstring& txt, const mstring& p1, const mstring& p2, int pos);
  [[noreturn]] void error3(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3, int pos);
  [[noreturn]] void error4(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                           const mstring& p4, int pos);
  void warning(const mstring& txt, int pos);

private:
  IErrReporter& m_rep;           // not owned
  HISet s_macros;                // of Macros
  mvector<Cond> v_ifStack;       // open blocks, innermost last; not tied to files
  FILE* m_inp;                   // file being read
  mstring m_inpName;             // its name as used in messages
  int m_lineNum;                 // lines read from m_inp so far
  mvector<FILE*> m_inpStack;     // suspended files; the first is the caller's.
  mvector<mstring> m_inpNameStack;  // These three stacks move in step.
  mvector<int> m_lineNumStack;
  mstring m_includeDir;          // the one directory searched by "#include"
  bool m_finished;               // the outermost file has ended
  bool m_inComment;              // a block comment runs on into the next line
  long m_expansions = 0;         // macro uses expanded for the current line
  Cond* last;                    // innermost open block or null; set by setLast
  bool active;                   // text lines count; set by setLast

  void stripComments(char* line);
  mstring processLine(const char* line);
  void setLast();
  void doElse(const mstring& tail);
  void doInclude(const mstring& tail);
  void rewriteText(const char* line, mstring& out);
  mstring expand(const mstring& token, int level);

  PreProcessor(const PreProcessor&);
  PreProcessor& operator=(const PreProcessor&);
};

#endif
