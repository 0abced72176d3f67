// Diagnostics interface: every error and warning of the compiler passes through IErrReporter.
#ifndef ZKTCOMP_IERRREP_H
#define ZKTCOMP_IERRREP_H

#include "util.h"

// What a reporter runs before giving up on an error.
class IFinalCallback {
public:
  virtual ~IFinalCallback() {}
  virtual void execute() = 0;
};

// Callers name a message by its key (translated through ZKT_MESSAGES) and
// pass up to four arguments and a place. No error operation returns: the
// console reporter ends the process, the in-memory one throws. Warnings
// return.
class IErrReporter {
public:
  virtual ~IErrReporter() {}
  virtual void setFinalCallback(IFinalCallback* cbk) = 0;
  [[noreturn]] virtual void err(const mstring& txt) = 0;
  [[noreturn]] virtual void err1(const mstring& txt, const mstring& p1, const mstring& filename, int line,
                                 int pos) = 0;
  [[noreturn]] virtual void err2(const mstring& txt, const mstring& p1, const mstring& p2,
                                 const mstring& filename, int line, int pos) = 0;
  [[noreturn]] virtual void err3(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                                 const mstring& filename, int line, int pos) = 0;
  [[noreturn]] virtual void err4(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                                 const mstring& p4, const mstring& filename, int line, int pos) = 0;
  [[noreturn]] virtual void err(const mstring& txt, const mstring& filename, int line, int pos) = 0;
  virtual void warning(const mstring& txt) = 0;
  virtual void warning1(const mstring& txt, const mstring& p1) = 0;
  virtual void warning(const mstring& txt, const mstring& filename, int line, int pos) = 0;
  virtual bool wasError() const = 0;
  virtual void setDefaultFilename(const mstring& name) = 0;

  // For what no schema can repair (exhausted memory, an output file that
  // can't be opened, internal stops): prints "error: " or "internal error: "
  // and the text on standard error and exits at once, without the final
  // callback, in both compilers.
  [[noreturn]] static void panic(const mstring& msg, bool normalError);
  // Test seam, null in both compilers: when set, panic calls it first, and
  // a hook that throws unwinds the compile instead of ending the process.
  static void (*s_panicHook)(const mstring& msg, bool normalError);
};

// The message table: "key = message" rows, ended by a null pointer.
extern const char* ZKT_MESSAGES[];

// Looks txt up in ZKT_MESSAGES and fills "#1" to "#4" with the non-empty
// arguments, in order.
mstring translateError(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                       const mstring& p4);

#endif
