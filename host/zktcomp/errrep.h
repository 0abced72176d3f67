// Console reporter: prints diagnostics on standard error and ends the process on the first error.
#ifndef ZKTCOMP_ERRREP_H
#define ZKTCOMP_ERRREP_H

#include "ierrrep.h"

class ErrReporter : public IErrReporter {
public:
  int m_nErr = 0;
  int m_nWarnings = 0;
  IFinalCallback* m_cbk = nullptr;  // not owned
  mstring m_defaultFileName;
  bool m_gccForm = false;  // -diag gcc: "{file}:{line}:{pos}: error: {msg}", one line each

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
  bool wasError() const override { return m_nErr > 0; }
  void setDefaultFilename(const mstring& name) override { m_defaultFileName = name; }

private:
  [[noreturn]] void processError(const mstring& txt, const mstring& filename, int line, int pos);
  void printPlace(const mstring& filename, int line, int pos);
  // The gcc form of an error or warning (kind) at a place.
  void printGcc(const char* kind, const mstring& filename, int line, int pos, const mstring& text);
};

// Runs the callback (if any), prints the failure line and exits with -1.
[[noreturn]] void final(IFinalCallback* cbk);

#endif
