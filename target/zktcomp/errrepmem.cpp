// In-memory reporter.
#include "errrepmem.h"

#include "arena.h"

void ErrReporterMem::ProcessError(CompilerErrorType type, const mstring& msg, const mstring& file, int line,
                                  int pos) {
  if (m_errfn) {
    CompileArena::Outside keep;  // what the caller keeps of a message must outlive the compile
    m_errfn(type, msg.c_str(), file.c_str(), line, pos, m_ctx);
  }
  if (m_cbk) m_cbk->execute();  // warnings run it as well
  if (type == ZKTCOMP_ERROR) {
    m_err_count++;
    throw CompilerError(type, msg, file, line, pos);
  }
}

[[noreturn]] static void unreachable() { throw CompilerError(ZKTCOMP_ERROR, mstring(), mstring(), 0, 0); }

void ErrReporterMem::err(const mstring& txt) {
  mstring e;
  ProcessError(ZKTCOMP_ERROR, translateError(txt, e, e, e, e), m_default_filename, 0, 0);
  unreachable();
}

void ErrReporterMem::err1(const mstring& txt, const mstring& p1, const mstring& filename, int line, int pos) {
  mstring e;
  ProcessError(ZKTCOMP_ERROR, translateError(txt, p1, e, e, e), filename, line, pos);
  unreachable();
}

void ErrReporterMem::err2(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& filename,
                          int line, int pos) {
  mstring e;
  ProcessError(ZKTCOMP_ERROR, translateError(txt, p1, p2, e, e), filename, line, pos);
  unreachable();
}

void ErrReporterMem::err3(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                          const mstring& filename, int line, int pos) {
  mstring e;
  ProcessError(ZKTCOMP_ERROR, translateError(txt, p1, p2, p3, e), filename, line, pos);
  unreachable();
}

void ErrReporterMem::err4(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                          const mstring& p4, const mstring& filename, int line, int pos) {
  ProcessError(ZKTCOMP_ERROR, translateError(txt, p1, p2, p3, p4), filename, line, pos);
  unreachable();
}

void ErrReporterMem::err(const mstring& txt, const mstring& filename, int line, int pos) {
  mstring e;
  ProcessError(ZKTCOMP_ERROR, translateError(txt, e, e, e, e), filename, line, pos);
  unreachable();
}

void ErrReporterMem::warning(const mstring& txt) {
  mstring e;
  ProcessError(ZKTCOMP_WARNING, translateError(txt, e, e, e, e), m_default_filename, 0, 0);
}

void ErrReporterMem::warning1(const mstring& txt, const mstring& p1) {
  mstring e;
  ProcessError(ZKTCOMP_WARNING, translateError(txt, p1, e, e, e), m_default_filename, 0, 0);
}

// The file name passed is ignored: warnings name the default file.
void ErrReporterMem::warning(const mstring& txt, const mstring&, int line, int pos) {
  mstring e;
  ProcessError(ZKTCOMP_WARNING, translateError(txt, e, e, e, e), m_default_filename, line, pos);
}
