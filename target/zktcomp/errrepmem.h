// In-memory reporter: hands each message to the application's callback and throws on errors.
#ifndef ZKTCOMP_ERRREPMEM_H
#define ZKTCOMP_ERRREPMEM_H

#include "ierrrep.h"
#include "zktcomp.h"

// Thrown by ErrReporterMem on an error; the compile ends with it.
class CompilerError {
public:
  CompilerErrorType m_errtype;
  mstring m_msg;  // translated text
  mstring m_file;
  int m_line;
  int m_pos;
  CompilerError(CompilerErrorType type, const mstring& msg, const mstring& file, int line, int pos)
      : m_errtype(type), m_msg(msg), m_file(file), m_line(line), m_pos(pos) {}
};

// Unlike the console reporter, a placeless message has line 0 and positions
// are passed on as given. A warning runs the final callback too.
class ErrReporterMem : public IErrReporter {
public:
  dicterrfn m_errfn;
  void* m_ctx;
  int m_err_count = 0;
  IFinalCallback* m_cbk = nullptr;  // not owned
  mstring m_default_filename;

  ErrReporterMem(dicterrfn errfn, void* ctx) : m_errfn(errfn), m_ctx(ctx) {}

  void setFinalCallback(IFinalCallback* cbk) override { m_cbk = cbk; }
  [[noreturn]] void err(const mstring& txt) override;
  [[noreturn]] void err1(const mstring& txt, const mstring& p1, const mstring& filename, int line,
                         int pos) override;
  [[noreturn]] void err2(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& filename,
                         int line, int pos) override;
  [[noreturn]] void err3(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                         const mstring& filename, int line, int pos) override;
  [[noreturn]] void err4(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                         const mstring& p4, const mstring& filename, int line, int pos) override;
  [[noreturn]] void err(const mstring& txt, const mstring& filename, int line, int pos) override;
  void warning(const mstring& txt) override;
  void warning1(const mstring& txt, const mstring& p1) override;
  void warning(const mstring& txt, const mstring& filename, int line, int pos) override;
  bool wasError() const override { return m_err_count > 0; }
  void setDefaultFilename(const mstring& name) override { m_default_filename = name; }

  void ProcessError(CompilerErrorType type, const mstring& msg, const mstring& file, int line, int pos);
};

#endif
